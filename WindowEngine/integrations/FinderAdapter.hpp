// The folders that Finder's windows show.
#pragma once
#include <string_view>

#include "WindowEngine/integrations/AppleScript.hpp"
#include "WindowEngine/integrations/ContextAdapter.hpp"

namespace quillo {

class FinderAdapter final : public ContextAdapter {
  public:
    static constexpr std::string_view finder = "com.apple.finder";

    std::string id() const override { return "finder"; }
    std::string name(const Platform&) const override { return "Finder"; }
    std::set<std::string> bundleIdentifiers() const override { return {std::string(finder)}; }
    std::string privacyNote(const Platform&) const override {
        return "Records which folders are open. Requires permission to control Finder.";
    }

    Task<AdapterCaptureResult> capture(DesktopAccess& desktop, std::string bundleIdentifier) const override;
    std::vector<AdapterStep> plan(const AppContext& saved, const AppContext& current) const override;
    /// Opens each folder once, and none that a window shows already.
    Task<AdapterRestoreResult> restore(DesktopAccess& desktop, AppContext saved,
                                       std::optional<AppContext> current,
                                       std::string bundleIdentifier) const override;

    /// One context window per row, in Finder's order; a window without a path (a search) has no folder.
    static AppContext context(const AppleScript::Rows& rows);
};

}  // namespace quillo
