// Applications of an EWMH desktop: found from their windows and .desktop files, launched through GIO.
#pragma once
#include "WindowEngine/services/Applications.hpp"
#include "platform/linux/ApplicationLauncher.hpp"
#include "platform/linux/RegisteredCommands.hpp"
#include "platform/x11/DesktopView.hpp"

namespace quillo::x11 {

class X11Applications final : public Applications {
  public:
    /// `commands`: for applications without a menu entry.
    X11Applications(DesktopView& view, RegisteredCommands commands)
        : view_(view),
          launcher_(view.executor(), view.connection().displayName()),
          commands_(std::move(commands)) {}

    std::vector<RunningApplication> running() override;
    std::optional<RunningApplication> running(ProcessID pid) override;
    std::optional<RunningApplication> running(std::string_view bundleIdentifier) override;
    std::vector<std::string> ownIdentifiers() override;
    std::set<std::string> neverCaptured() override;
    std::set<WindowNumber> windowsOfAny(const std::set<std::string>& identifiers) override;
    std::int64_t remoteWindows() override;
    std::optional<std::int64_t> shells(std::string_view bundleIdentifier) override;
    std::optional<Url> location(std::string_view bundleIdentifier) override;
    std::optional<std::string> identifierAt(const Url& location) override;
    std::optional<std::string> name(std::string_view bundleIdentifier) override;
    std::string notInstalled() override { return "no menu entry starts it"; }
    std::vector<InstalledApplication> installed() override { return view_.registry().installed(); }
    Task<Result<void>> launch(Url location, std::vector<Url> documents) override;
    bool documentsTravelWithLaunch() override { return true; }
    DocumentHanding handing(std::string_view bundleIdentifier, std::span<const Url> documents) override {
        return view_.registry().handing(bundleIdentifier, documents);
    }
    Task<Result<void>> open(std::string bundleIdentifier, std::vector<Url> documents) override;
    Result<Url> openable(std::string_view bundleIdentifier, const Url& document) override;
    Task<Result<void>> requestWindow(std::string bundleIdentifier) override;
    /// Minimizes every window.
    bool hide(std::string_view bundleIdentifier) override;
    /// Closes every window that can be asked to close, dialogs first. A window that does not take part in
    /// that is left alone: closing it would mean to break its application's connection.
    bool terminate(std::string_view bundleIdentifier) override;
    std::optional<ProcessID> serviceProcess(std::string_view bundleIdentifier) override;
    Capability hiding() override;
    Capability quitting() override { return Capability::available(); }
    Capability openingWindows(std::string_view bundleIdentifier) override;
    /// By the action of its menu entry for that, else by launching it again.
    Task<Result<void>> openWindow(std::string bundleIdentifier) override;

  private:
    Task<Result<void>> start(std::string identifier, ApplicationLauncher::Order order);
    Task<Result<void>> startWith(std::string identifier, std::vector<Url> documents);
    Result<void> startRegistered(const std::string& identifier);
    std::vector<WindowReading> listedWindows(const KnownApplication& application);
    std::vector<xcb_window_t> closable(std::span<const WindowReading> windows);

    DesktopView& view_;
    ApplicationLauncher launcher_;
    RegisteredCommands commands_;
};

}  // namespace quillo::x11
