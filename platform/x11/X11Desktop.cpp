#include "platform/x11/X11Desktop.hpp"

#include "platform/linux/LoginSession.hpp"
#include "platform/linux/NoScripts.hpp"
#include "platform/x11/DesktopView.hpp"
#include "platform/x11/X11Accessibility.hpp"
#include "platform/x11/X11Applications.hpp"
#include "platform/x11/X11BrowserFiles.hpp"
#include "platform/x11/X11Changes.hpp"
#include "platform/x11/X11Connection.hpp"
#include "platform/x11/X11Screens.hpp"
#include "platform/x11/X11WindowServer.hpp"

namespace quillo {

struct X11Desktop::Services {
    Services(Executor& executor, std::unique_ptr<x11::X11Connection> given, RegisteredCommands commands)
        : connection(std::move(given)),
          view(executor, *connection),
          applications(view, std::move(commands)) {}

    std::unique_ptr<x11::X11Connection> connection;
    x11::DesktopView view;
    x11::X11Changes changes{view.executor(), *connection};
    LoginSession session;
    x11::X11Screens screens{view, [this] { return session.locked(); }};
    x11::X11WindowServer windowServer{view, screens, changes};
    x11::X11Accessibility accessibility{view, screens, changes};
    x11::X11Applications applications;
    NoScripts scripts;
    x11::X11BrowserFiles browserFiles{view};
};

X11Desktop::X11Desktop(std::unique_ptr<Services> services) : services_(std::move(services)) {}
X11Desktop::~X11Desktop() = default;

Result<std::unique_ptr<X11Desktop>> X11Desktop::create(Executor& executor, const X11Options& options) {
    auto connection = x11::X11Connection::open(options.display);
    if (!connection) return std::unexpected(connection.error());
    if ((*connection)->isXwayland()) {
        return fail(
            ErrorKind::unavailable,
            "This is a Wayland session. Display " + (*connection)->displayName() +
                " shows only its X11 programs, so most windows could be neither saved nor brought back. "
                "Log out and choose an X11 (Xorg) session.");
    }
    auto services =
        std::make_unique<Services>(executor, std::move(*connection), RegisteredCommands(options.commandOf));
    if (const auto access = services->view.access(); !access)
        return fail(ErrorKind::unavailable, access.reason());
    return std::unique_ptr<X11Desktop>(new X11Desktop(std::move(services)));
}

Platform X11Desktop::platform(SystemLog& log) {
    return {services_->view.executor(), services_->accessibility,
            services_->windowServer,    services_->applications,
            services_->screens,         services_->scripts,
            services_->browserFiles,    log};
}

std::size_t X11Desktop::strayErrors() {
    return services_->connection->strayErrors();
}

}  // namespace quillo
