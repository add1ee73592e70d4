// The window server's private functions for desktops (spaces), each found by its name while the program runs.
// A function that a system lacks costs the operation that needs it and nothing else.
//
// None of this is documented by the system. What is known is the names, and what each is for. The signatures
// stand here, once, and are UNPROVEN until they have run on a Mac; they follow the shape of their family:
//   - the first argument names this program's connection to the window server, a small number;
//   - window numbers travel in arrays of CFNumber, space identifiers are unsigned 64-bit numbers;
//   - a function with Copy in its name hands out an object to release.
// Where the system's own result is not known, none is declared: what was asked for is read back instead.
#pragma once
#include <ApplicationServices/ApplicationServices.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "WindowEngine/services/WindowServer.hpp"
#include "platform/macos/CFRef.hpp"
#include "platform/macos/PrivateSymbols.hpp"

namespace quillo {

namespace skyLight {

inline constexpr const char* library = "/System/Library/PrivateFrameworks/SkyLight.framework/SkyLight";

using Connection = std::int32_t;
using Object = CFTypeRef;  // a query or an iterator over its answer

/// Not among the functions known by purpose; but all the others need what it gives.
inline constexpr const char* mainConnection = "SLSMainConnectionID";
using MainConnection = Connection();

/// An array with a dictionary for each display: "Display Identifier" (text, a display's UUID; "Main" for all
/// displays where they share their spaces) and "Spaces" (an array with a dictionary for each: "id64" and
/// "ManagedSpaceID", numbers; "type", a number; "uuid", text). +1.
inline constexpr const char* copyManagedDisplaySpaces = "SLSCopyManagedDisplaySpaces";
using CopyManagedDisplaySpaces = CFArrayRef(Connection);

inline constexpr const char* managedDisplayIsAnimating = "SLSManagedDisplayIsAnimating";
using ManagedDisplayIsAnimating = bool(Connection, CFStringRef displayIdentifier);

/// The spaces of all the windows together, which is why windows are asked about one by one. The selector
/// chooses kinds of spaces by bits. +1.
inline constexpr const char* copySpacesForWindows = "SLSCopySpacesForWindows";
using CopySpacesForWindows = CFArrayRef(Connection, std::int32_t selector, CFArrayRef windows);
inline constexpr std::int32_t everySpace = 0b111;  // the one in front, the others, and those of all users

inline constexpr const char* spaceGetType = "SLSSpaceGetType";
using SpaceGetType = std::int32_t(Connection, std::uint64_t space);
inline constexpr std::int64_t ordinarySpace = 0;  // any other type is no desktop for ordinary windows

inline constexpr const char* moveWindowsToManagedSpace = "SLSMoveWindowsToManagedSpace";
using MoveWindowsToManagedSpace = void(Connection, CFArrayRef windows, std::uint64_t space);

/// Gives a space a number by which SLSSetWindowListWorkspace, which is older than spaces, can name it; 0
/// takes the number away.
inline constexpr const char* spaceSetCompatID = "SLSSpaceSetCompatID";
using SpaceSetCompatID = void(Connection, std::uint64_t space, std::int32_t workspace);
inline constexpr const char* setWindowListWorkspace = "SLSSetWindowListWorkspace";
using SetWindowListWorkspace = void(Connection, const std::uint32_t* windows, std::int32_t count,
                                    std::int32_t workspace);
inline constexpr std::int32_t workspaceInPassing = 0x51696c6f;  // any that nobody else is likely to use

/// Makes an object at each call, and nobody else could release it: taken for +1 although its name does not
/// say Copy.
inline constexpr const char* windowQueryWindows = "SLSWindowQueryWindows";
using WindowQueryWindows = Object(Connection, CFArrayRef windows, std::int32_t count);
/// An iterator, which stands before the first window. +1.
inline constexpr const char* windowQueryResultCopyWindows = "SLSWindowQueryResultCopyWindows";
using WindowQueryResultCopyWindows = Object(Object query);
inline constexpr const char* windowIteratorAdvance = "SLSWindowIteratorAdvance";
using WindowIteratorAdvance = bool(Object iterator);
inline constexpr const char* windowIteratorGetTags = "SLSWindowIteratorGetTags";
using WindowIteratorGetTags = std::uint64_t(Object iterator);
inline constexpr const char* windowIteratorGetAttributes = "SLSWindowIteratorGetAttributes";
using WindowIteratorGetAttributes = std::uint64_t(Object iterator);

/// The Dock's notifications. The library is one that every application with windows has loaded.
inline constexpr const char* coreDockSendNotification = "CoreDockSendNotification";
using CoreDockSendNotification = void(CFStringRef notification, std::int32_t argument);
inline constexpr std::string_view exposeAwake =
    "com.apple.expose.awake";  // opens Mission Control, or closes it

struct WindowTraits {
    std::uint64_t tags = 0;
    std::uint64_t attributes = 0;
};
/// Whether they are those of an ordinary application window. UNPROVEN like the signatures: the first tag is
/// taken for that of a document window, the second for that of a floating one; a window without any attribute
/// was never shown.
bool isStandard(const WindowTraits& traits);

/// A display as the window server names it.
struct ManagedDisplay {
    std::string identifier;
    std::vector<Space> spaces;
};
inline constexpr std::string_view sharedDisplay = "Main";

}  // namespace skyLight

/// The functions, and what they answer in the engine's words. Executor's thread only; nothing here waits for
/// another application. What cannot be asked, or is answered by null or with something else than expected, is
/// absent.
class SkyLight {
  public:
    explicit SkyLight(SymbolLookup lookup);

    /// The name of the first function that is missing for this; null when there is all it takes.
    const char* missingForSpaces() const;    // displays(), spacesOf()
    const char* missingForMoves() const;     // moveManaged() or moveThroughWorkspace()
    const char* missingForOverview() const;  // toggleOverview()

    /// A space whose identifier is unreadable is left out, and so is a display without any.
    std::vector<skyLight::ManagedDisplay> displays() const;
    std::vector<SpaceID> spacesOf(WindowNumber window) const;
    std::optional<SpaceKind> kindOf(SpaceID space) const;
    std::optional<skyLight::WindowTraits> traitsOf(WindowNumber window) const;
    bool isAnimating(std::string_view displayIdentifier) const;

    // Each false where its functions are missing. That it was asked for is no proof: read spacesOf().
    bool moveManaged(WindowNumber window, SpaceID space) const;
    bool moveThroughWorkspace(WindowNumber window, SpaceID space) const;
    bool toggleOverview() const;

  private:
    skyLight::Connection connection() const { return mainConnection_(); }
    std::optional<Space> spaceFrom(CFTypeRef dictionary) const;

    skyLight::MainConnection* mainConnection_;
    skyLight::CopyManagedDisplaySpaces* copyManagedDisplaySpaces_;
    skyLight::ManagedDisplayIsAnimating* managedDisplayIsAnimating_;
    skyLight::CopySpacesForWindows* copySpacesForWindows_;
    skyLight::SpaceGetType* spaceGetType_;
    skyLight::MoveWindowsToManagedSpace* moveWindowsToManagedSpace_;
    skyLight::SpaceSetCompatID* spaceSetCompatID_;
    skyLight::SetWindowListWorkspace* setWindowListWorkspace_;
    skyLight::WindowQueryWindows* windowQueryWindows_;
    skyLight::WindowQueryResultCopyWindows* windowQueryResultCopyWindows_;
    skyLight::WindowIteratorAdvance* windowIteratorAdvance_;
    skyLight::WindowIteratorGetTags* windowIteratorGetTags_;
    skyLight::WindowIteratorGetAttributes* windowIteratorGetAttributes_;
    skyLight::CoreDockSendNotification* coreDockSendNotification_;
};

}  // namespace quillo
