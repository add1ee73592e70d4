// Reading and changing the windows of other applications, in the terms of an accessibility service:
// elements with named attributes. Called on the executor's thread only.
#pragma once
#include <cstdint>
#include <expected>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "WindowEngine/services/Capability.hpp"
#include "WindowEngine/support/Rect.hpp"
#include "WindowEngine/support/Task.hpp"

namespace quillo {

using ProcessID = std::int32_t;
using WindowNumber = std::uint32_t;

/// What a platform layer keeps behind an element.
class ElementHandle {
  public:
    virtual ~ElementHandle() = default;
    /// Whether both name the same thing; `other` comes from the same layer.
    virtual bool same(const ElementHandle& other) const = 0;
};

/// An opaque shared handle to an application, a window or a part of one. It may outlive what it names:
/// then reads answer `gone`. Equality is identity of the thing named.
class Element {
  public:
    explicit Element(std::shared_ptr<const ElementHandle> handle) : handle_(std::move(handle)) {}
    const ElementHandle& handle() const { return *handle_; }
    bool operator==(const Element& other) const {
        return handle_ == other.handle_ || handle_->same(*other.handle_);
    }

  private:
    std::shared_ptr<const ElementHandle> handle_;  // never null
};

/// Attribute names, as the accessibility service spells them.
namespace ax {
inline constexpr std::string_view windows = "AXWindows";                // list of elements
inline constexpr std::string_view subrole = "AXSubrole";                // text
inline constexpr std::string_view role = "AXRole";                      // text
inline constexpr std::string_view position = "AXPosition";              // point, global, top left
inline constexpr std::string_view size = "AXSize";                      // size
inline constexpr std::string_view title = "AXTitle";                    // text
inline constexpr std::string_view document = "AXDocument";              // text holding a URL
inline constexpr std::string_view minimized = "AXMinimized";            // boolean
inline constexpr std::string_view fullScreen = "AXFullScreen";          // boolean
inline constexpr std::string_view frontmost = "AXFrontmost";            // boolean, of an application
inline constexpr std::string_view children = "AXChildren";              // list of elements
inline constexpr std::string_view identifier = "AXIdentifier";          // text
inline constexpr std::string_view description = "AXDescription";        // text
inline constexpr std::string_view standardWindow = "AXStandardWindow";  // a subrole
inline constexpr std::string_view dialog = "AXDialog";                  // a subrole
inline constexpr std::string_view raise = "AXRaise";                    // an action
inline constexpr std::string_view press = "AXPress";                    // an action
}  // namespace ax

using AttributeValue = std::variant<bool, double, std::string, Point, Size, Element, std::vector<Element>>;

struct AttributeMiss {
    enum class Reason {
        absent,    // the element has no such attribute, or no value for it
        gone,      // the element no longer exists
        timedOut,  // its application did not answer within the messaging timeout
        refused,   // not permitted, or any other error
    };
    Reason reason = Reason::absent;
    std::int32_t code = 0;  // the platform's code

    bool operator==(const AttributeMiss&) const = default;
};

using Attribute = std::expected<AttributeValue, AttributeMiss>;

struct AttributeRequest {
    Element element;
    std::span<const std::string_view> names;
};

/// Outcome of a write or an action; code 0 is success.
struct AccessibilityCode {
    std::int32_t code = 0;
    explicit operator bool() const { return code == 0; }
};

struct FrameWrite {
    bool positionSet = false;
    bool sizeSet = false;
};

class AccessibilityService {
  public:
    virtual ~AccessibilityService() = default;

    /// Whether other applications' windows may be read. Cheap enough to poll once a second.
    virtual bool trusted() = 0;
    /// Why not, where trusted() is false, and what to do about it.
    virtual Capability access() = 0;
    /// Whether the folders that file managers show are known; where not, why and what to do about it.
    virtual Capability folders() { return Capability::available(); }
    /// Whether some applications' native tabs are listed as windows on top of each other.
    virtual bool listsTabsAsWindows() { return true; }
    /// Shows the system's permission prompt where there is one; returns at once.
    virtual void prompt() = 0;

    /// The element of an application. Never fails; reads on it do when there is no such process.
    virtual Element application(ProcessID pid) = 0;
    /// Bounds every later request on this element. A layer whose reads never wait for the application
    /// may ignore it.
    virtual void setMessagingTimeout(const Element& element, double seconds) = 0;

    /// One answer per request, in order; in each, one attribute per name, in order. The meaning is that of
    /// reading attribute by attribute; the batch only saves round trips. May block for the messaging
    /// timeout of one application that hangs: after the first timeout nothing more of the batch is asked of
    /// anybody, and the remaining requests answer `timedOut`, those to other processes with the code 0.
    virtual std::vector<std::vector<Attribute>> read(std::span<const AttributeRequest> requests) = 0;

    /// Asks applications anew, with more patience, for documents that the last reading did not learn in time:
    /// suspended meanwhile, for a second and a half at most. False, and at once, where it left nothing open;
    /// else everything is to be read anew, for the desktop may have changed.
    virtual Task<bool> askPatiently() { co_return false; }

    virtual AccessibilityCode write(const Element& element, std::string_view name,
                                    const AttributeValue& value) = 0;

    /// Position, size, position again: the second write corrects what resizing shifted. `positionSet` when
    /// either position write was accepted. Acceptance is no proof: callers read back. After a timeout nothing
    /// more is asked.
    virtual FrameWrite writeFrame(const Element& window, const Rect& frame) = 0;

    virtual AccessibilityCode perform(const Element& element, std::string_view action) = 0;

    /// The window server's number of a window element; absent where there is none.
    virtual std::optional<WindowNumber> windowNumber(const Element& window) = 0;

    /// Whether elements can be made from remote tokens; where not, none is tried.
    virtual Capability remoteTokens() { return Capability::available(); }
    /// An element from a remote token (layout: Accessibility.cpp); absent when none has that token.
    virtual std::optional<Element> elementFromToken(std::span<const std::byte, 20> token) = 0;

    /// Whether a window's place and size are anybody's to set. Where not, the reason, as words behind the
    /// outcome in a report; the window can still go to another desktop.
    virtual Capability placement(const Element& /*window*/) { return Capability::available(); }

    /// Brings a window into a state in which a frame write takes effect. Most layers return at once; on X11
    /// the window is brought to the current desktop, restored, unmaximized, and waited for until its
    /// extents are stable. False: it cannot be moved (it is gone, or the window manager did not comply).
    /// Cancelled, it leaves the window as far as it came.
    virtual Task<bool> makeMovable(Element window) = 0;

    /// Whether several windows of one application may be moved at the same time. Otherwise one follows the
    /// other, for a reading would see the animation of another window.
    virtual bool movesTogether() { return false; }

    /// Ends what makeMovable began: waits for stable extents and returns the window to the desktop it came
    /// from. Called once for each makeMovable, also after a failed write; returns at once on most layers.
    virtual Task<void> settleInPlace(Element window) = 0;
};

}  // namespace quillo
