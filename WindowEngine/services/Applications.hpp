// Running and installed applications. An application is an identity, not a process: where several processes
// carry one identifier (two terminals started apart), the layer presents one application. Called on the
// executor's thread only.
#pragma once
#include <cstdint>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "WindowEngine/services/AccessibilityService.hpp"
#include "WindowEngine/support/Error.hpp"
#include "WindowEngine/support/Instant.hpp"
#include "WindowEngine/support/Url.hpp"

namespace quillo {

enum class ActivationPolicy { regular, accessory, prohibited };

struct RunningApplication {
    ProcessID pid = 0;  // the oldest living process of the identity; AXWindows of its element lists the
                        // windows of all of them
    std::optional<std::string> bundleIdentifier;
    std::optional<std::string> localizedName;
    ActivationPolicy activationPolicy = ActivationPolicy::regular;
    std::optional<Url> bundleURL;       // where it is installed, fit for launch()
    std::optional<Instant> launchDate;  // of `pid`
    bool isHidden = false;  // by Applications::hide, or by a person; never where that means minimizing
};

struct InstalledApplication {
    std::string bundleIdentifier;
    std::string name;  // in the person's language
    Url location;      // fit for launch()
};

/// How an application takes documents that are to be in a window each.
enum class DocumentHanding : std::uint8_t {
    together,        // it opens a window for each, however many it is handed at once
    oneByOne,        // of those that it is handed at once it makes one window
    intoNewWindows,  // it makes tabs of one window of them, unless it is asked for an empty window before
                     // each
};

class Applications {
  public:
    virtual ~Applications() = default;

    /// Every running application, in the platform's order. An application that has ended is not listed.
    virtual std::vector<RunningApplication> running() = 0;
    /// The running application that `pid` belongs to; absent once it has ended.
    virtual std::optional<RunningApplication> running(ProcessID pid) = 0;
    /// The running application with this identifier, resolved anew at each call: launchers fork.
    virtual std::optional<RunningApplication> running(std::string_view bundleIdentifier) = 0;

    /// Identifier of this program itself, and of the application it was started from (a terminal), which is
    /// never hidden or quit; empty where unknown.
    virtual std::vector<std::string> ownIdentifiers() = 0;

    /// Identifiers, in lower case, of the applications that keep secrets on this platform, beside those that
    /// the engine never captures anywhere. A running application's own identifier is compared in lower case.
    virtual std::set<std::string> neverCaptured() { return {}; }

    /// Numbers of the windows that may belong to an application with one of these identifiers by anything
    /// that they or their process say, compared ignoring case, whatever application they are counted to: who
    /// keeps an application out of workspaces means all its windows. None where a window's application is
    /// certain.
    virtual std::set<WindowNumber> windowsOfAny(const std::set<std::string>& /*identifiers*/) { return {}; }
    /// How many windows stand here of programs that run on another machine: no application's, and not saved.
    virtual std::int64_t remoteWindows() { return 0; }

    /// Of a terminal, whose windows' documents are the folders of their shells: how many shells run in it, in
    /// windows, tabs and panes. Absent for every other application, and where the platform does not tell.
    virtual std::optional<std::int64_t> shells(std::string_view /*bundleIdentifier*/) { return std::nullopt; }

    /// Where an installed application lives; absent when it is not installed, even while a program runs
    /// under that identifier.
    virtual std::optional<Url> location(std::string_view bundleIdentifier) = 0;
    /// Which identifier the installed application at `location` carries; absent for a bare program and for
    /// whatever else the system does not hold for an installed application: the location may come from a
    /// stranger's file, which must not choose what is run.
    virtual std::optional<std::string> identifierAt(const Url& location) = 0;
    /// What the installed application calls itself, in the person's language; absent when it is not
    /// installed.
    virtual std::optional<std::string> name(std::string_view bundleIdentifier) = 0;

    /// Why an application without a location cannot be launched, for the report.
    virtual std::string notInstalled() { return "not installed"; }

    /// Those a person may start, in no order; empty where the platform does not tell.
    virtual std::vector<InstalledApplication> installed() { return {}; }

    /// Launches the installed application at `location`, or activates it when it runs; refuses any other.
    /// Waits (suspended, never blocking) until the system accepts or refuses it, not for its windows.
    /// `documents` travel with the launch. The error's text is the system's reason without path or title.
    virtual Task<Result<void>> launch(Url location, std::vector<Url> documents) = 0;
    /// Whether documents handed to launch() spare an application the empty window that it would open without
    /// any, so that they should not be opened after it.
    virtual bool documentsTravelWithLaunch() { return false; }
    /// How these documents, which the application opens, are best handed to it. As far as is known of it:
    /// what came of it is to be looked at.
    virtual DocumentHanding handing(std::string_view /*bundleIdentifier*/,
                                    std::span<const Url> /*documents*/) {
        return DocumentHanding::together;
    }
    /// Opens documents with a running application.
    virtual Task<Result<void>> open(std::string bundleIdentifier, std::vector<Url> documents) = 0;
    /// `document` as launch() and open() may be given it: the address of the very file or folder that was
    /// judged, with all links resolved. Refused with a reason, which names neither path nor title, unless it
    /// exists, opening it cannot run it, and this installed application declares that it opens such
    /// documents. A workspace may come from a stranger. Blocks for the disk only.
    virtual Result<Url> openable(std::string_view bundleIdentifier, const Url& document) = 0;
    /// Asks a running application without windows for one.
    virtual Task<Result<void>> requestWindow(std::string bundleIdentifier) = 0;

    /// Whether the request was accepted.
    virtual bool hide(std::string_view bundleIdentifier) = 0;
    /// Ends what hide() began, also where a person began it, and leaves the application in front in front.
    /// Whether the request was accepted; true where nothing was hidden, or where hiding an application means
    /// no more than minimizing its windows, each of which is brought back by itself.
    virtual bool show(std::string_view /*bundleIdentifier*/) { return true; }
    /// Asks the application to quit normally; it may ask its user to save. Never forces it.
    virtual bool terminate(std::string_view bundleIdentifier) = 0;

    /// The pid of a process that is no regular application (the Dock); absent when it does not run.
    virtual std::optional<ProcessID> serviceProcess(std::string_view bundleIdentifier) = 0;

    virtual Capability hiding() = 0;
    virtual Capability quitting() = 0;

    /// Whether this application, if it runs, can be asked for one more window than it has.
    virtual Capability openingWindows(std::string_view /*bundleIdentifier*/) {
        return Capability::unavailable("This system asks no application for more windows than it opens.");
    }
    /// Asks a running application for one more window, an empty one. Waits until the system accepts or
    /// refuses that, not for the window; nobody promises that one comes (an application of a single window
    /// brings that one forward), or that it is one only: callers look. The error's text holds no path or
    /// title.
    virtual Task<Result<void>> openWindow(std::string bundleIdentifier) {
        co_return fail(ErrorKind::unavailable, openingWindows(bundleIdentifier).reason());
    }
};

}  // namespace quillo
