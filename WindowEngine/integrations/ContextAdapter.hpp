// Integrations: each records, for one family of applications, what is open inside their windows (folders, tab
// addresses), and opens it again.
#pragma once
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "WindowEngine/desktop/Accessibility.hpp"

namespace quillo {

struct AdapterCaptureResult {
    std::optional<AppContext> context;
    std::set<std::int64_t> excludedWindowIndices;             // windows, by `index`, that capture must drop
    std::optional<std::set<WindowNumber>> includedWindowIDs;  // present: only these windows may be kept
    std::vector<std::string> notes;
    std::optional<std::string> failure;  // set: the capture failed and `context` is ignored
    /// How many windows the application itself counted; the indices are places in its own list. Where that
    /// is not the list accessibility gave, an index says nothing about a window.
    std::optional<std::size_t> windowCount = std::nullopt;
    /// Present, also beside a failure: no other windows keep title and document, for they might be private
    /// ones.
    std::optional<std::set<WindowNumber>> titledWindowIDs = std::nullopt;

    bool operator==(const AdapterCaptureResult&) const = default;
};

struct AdapterRestoreResult {
    std::int64_t opened = 0;      // items opened: folders, tabs
    std::int64_t newWindows = 0;  // windows made for them
    std::vector<std::string> failures;

    bool operator==(const AdapterRestoreResult&) const = default;
};

/// What restore() opens in one window, in order.
struct AdapterStep {
    bool newWindow = false;  // otherwise in one that is there
    std::vector<Url> urls;

    bool operator==(const AdapterStep&) const = default;
};

/// Stateless. Texts of results are fixed sentences: they hold no path, title or address. Cancelled, an
/// operation ends soon and says so in its result instead of throwing.
class ContextAdapter {
  public:
    virtual ~ContextAdapter() = default;

    virtual std::string id() const = 0;  // stable; stored in settings and in AppContext.adapter
    virtual std::string name(const Platform& platform) const = 0;  // by the applications that it is for here
    virtual std::set<std::string> bundleIdentifiers() const = 0;
    /// For the person who is to switch it on.
    virtual std::string privacyNote(const Platform& platform) const = 0;
    /// Whether this machine can run it.
    virtual Capability available(const Platform& platform) const { return platform.scripts.scripting(); }

    virtual Task<AdapterCaptureResult> capture(DesktopAccess& desktop,
                                               std::string bundleIdentifier) const = 0;
    /// What is not open yet, step by step, where the application shows `current`. Pure; what a restore does.
    virtual std::vector<AdapterStep> plan(const AppContext& saved, const AppContext& current) const = 0;
    /// Why restore() would open nothing in the application, which runs: of what it shows too little is known,
    /// and what is open already must not be opened again. `current` as for restore().
    virtual std::optional<std::string> obstacle(DesktopAccess&, const std::optional<AppContext>&) const {
        return std::nullopt;
    }
    /// Waits until an application that was launched a moment ago, and shows its windows, can tell what is
    /// open in them; why nothing may be opened in it, where that does not come to pass.
    virtual Task<std::optional<std::string>> awaitOwnWindows(DesktopAccess&,
                                                             std::string /*bundleIdentifier*/) const {
        co_return std::nullopt;
    }
    /// `current` is what the application shows now, as capture() gave it a moment ago; absent when that
    /// could not be read.
    virtual Task<AdapterRestoreResult> restore(DesktopAccess& desktop, AppContext saved,
                                               std::optional<AppContext> current,
                                               std::string bundleIdentifier) const = 0;
};

/// Seconds that a script of an integration may take.
inline constexpr double adapterScriptLimit = 20.0;

}  // namespace quillo
