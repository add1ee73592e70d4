#include "WindowEngine/restore/DesktopCreation.hpp"

#include <chrono>
#include <optional>
#include <utility>

#include "WindowEngine/desktop/Displays.hpp"
#include "WindowEngine/desktop/Log.hpp"
#include "WindowEngine/restore/DesktopOverview.hpp"
#include "WindowEngine/support/Poll.hpp"

namespace quillo::DesktopSpaces {
namespace {

using namespace std::chrono_literals;

constexpr Duration appearancePatience = 3s, creationInterval = 200ms;

// Where the window server makes desktops itself no Mission Control is spoken of.
constexpr std::string_view unreadableLayout =
    "macOS did not expose the current desktop layout; no desktops were created";
constexpr std::string_view nothingAppeared =
    "Mission Control accepted Add Desktop but no desktop appeared; its desktop limit may have been reached";
constexpr std::string_view nothingAppearedDirectly =
    "The request was accepted but no desktop appeared; the limit of desktops may have been reached";

constexpr std::string_view noLayout = "No desktops can be seen; none were created";

std::string unreadable(WindowServer& server, const Capability& spaces) {
    if (!server.createsDesktopsDirectly()) return std::string(unreadableLayout);
    return spaces ? std::string(noLayout) : spaces.reason();
}

using Trouble = std::optional<std::string>;

/// The creation of desktops on one display.
class Creation {
  public:
    Creation(DesktopAccess& desktop, DesktopOverview& overview, const std::string& displayID)
        : desktop_(desktop), overview_(overview), displayID_(displayID) {}

    std::int64_t count() const { return desktopCount(current(desktop_), displayID_); }
    bool isAttached() const { return displayFrame(desktop_, displayID_).has_value(); }

    /// One desktop more; the reason when there is none.
    Task<Trouble> add() {
        co_await checkpoint();
        if (!isAttached()) co_return std::string(displayDisconnected);
        const std::int64_t before = count();
        const bool directly = desktop_.platform.windowServer.createsDesktopsDirectly();
        if (Trouble trouble = directly ? request() : co_await overview_.addDesktop(displayID_))
            co_return trouble;
        const auto settled = [&] { return count() > before || !isAttached(); };
        const bool appeared = co_await pollUntil(settled, creationInterval, appearancePatience,
                                                 desktop_.platform.windowServer.watch(std::nullopt));
        if (!isAttached()) co_return std::string(displayDisconnected);
        if (!appeared) co_return std::string(directly ? nothingAppearedDirectly : nothingAppeared);
        co_return std::nullopt;
    }

  private:
    Trouble request() {
        const Result<void> requested = desktop_.platform.windowServer.createDesktop(displayID_);
        return requested ? std::nullopt : Trouble(requested.error().text);
    }

    DesktopAccess& desktop_;
    DesktopOverview& overview_;
    const std::string& displayID_;
};

class Preparation {
  public:
    explicit Preparation(DesktopAccess& desktop) : desktop_(desktop), overview_(desktop) {}

    void fail(std::string failure) {
        Log::desktopCreation(desktop_.platform.log, failure);
        result_.failures.push_back(std::move(failure));
    }

    Task<void> createDesktops(std::string displayID, std::int64_t wanted) {
        Creation creation(desktop_, overview_, displayID);
        if (!creation.isAttached()) co_return fail(std::string(displayDisconnected));
        for (std::int64_t count = creation.count(); count < wanted; ++count) {
            if (const Trouble trouble = co_await creation.add())
                co_return fail(notCreated(count + 1, *trouble));
            ++result_.created;
        }
    }

    DesktopPreparation take() { return std::move(result_); }
    DesktopPreparation& result() { return result_; }

  private:
    DesktopAccess& desktop_;
    // One for all displays: an overview that closes cannot be told from one that is open.
    DesktopOverview overview_;
    DesktopPreparation result_;
};

}  // namespace

DesktopList read(DesktopAccess& desktop) {
    WindowServer& server = desktop.platform.windowServer;
    const Capability spaces = server.spaces();
    return {.desktops = spaces ? current(desktop) : std::vector<NativeDesktop>{},
            .creation = server.desktopCreation(),
            .unreadable = unreadable(server, spaces)};
}

Task<DesktopPreparation> prepare(DesktopAccess& desktop, std::span<const DesktopSnapshot> saved,
                                 DisplayList savedDisplays, DisplayList current) {
    if (saved.empty()) co_return DesktopPreparation{};
    Preparation preparation(desktop);
    const DesktopPlan planned = plan(saved, savedDisplays, current, read(desktop));
    for (const std::string& failure : planned.failures) preparation.fail(failure);
    try {
        for (const DesktopPlan::Creation& creation : planned.creations)
            co_await preparation.createDesktops(creation.displayID, creation.wanted);
    } catch (const Cancelled&) {
        // What was made stays, and is to be reported.
        co_return preparation.take();
    }
    // Making desktops takes seconds in which displays may come and go.
    preparation.result().targets = resolveTargets(saved, read(desktop).desktops, savedDisplays,
                                                  Displays::current(desktop.platform.screens));
    co_return preparation.take();
}

}  // namespace quillo::DesktopSpaces
