#include "platform/x11/X11HotKeys.hpp"

#include <sys/socket.h>

#include <algorithm>
#include <atomic>
#include <list>
#include <ranges>
#include <utility>
#include <vector>

#include "platform/x11/ClassicKeyCodes.hpp"
#include "platform/x11/ModifierMap.hpp"

namespace quillo {

using namespace x11;

namespace {

Error refusal(int code) {
    switch (code) {
        case codeNoConnection:
            return {ErrorKind::unavailable, "The X server went away.", code};
        case XCB_ACCESS:
            return {ErrorKind::refused, "another program holds the combination", code};
        default:
            return {ErrorKind::refused, "the keyboard has no such key", code};
    }
}

/// One registered combination. Its key and mask are what the server was asked for last.
struct Grab {
    HotKeyID id;
    std::uint32_t modifiers = 0;  // as registered
    xcb_keycode_t key = 0;
    std::uint16_t mask = 0;
    bool held = false;  // false: lost when the keyboard was laid out anew
};

}  // namespace

/// All for the executor's thread, but for the reader's.
class X11HotKeys::Grabs : public std::enable_shared_from_this<Grabs> {
  public:
    using Handle = std::list<Grab>::iterator;

    Grabs(Executor& executor, std::unique_ptr<X11Connection> connection)
        : executor_(executor), connection_(std::move(connection)), map_(ModifierMap::read(*connection_)) {}

    bool alive() const { return map_ && connection_->alive(); }
    Result<Handle> add(xcb_keycode_t key, std::uint32_t modifiers, HotKeyID id);
    void remove(Handle handle);

    /// Of the reader's thread: posts what it hears until the connection ends.
    void readEvents();
    /// Makes the reader return, whatever the server does.
    void endReading() { shutdown(xcb_get_file_descriptor(connection_->xcb()), SHUT_RDWR); }

    HotKeyCallbacks handler;

  private:
    /// Of the reader's thread: runs the member on the executor's, unless the service has gone by then.
    template <class... Given>
    void post(void (Grabs::*member)(Given...), Given... given) {
        executor_.post([self = weak_from_this(), member, given...] {
            if (const auto grabs = self.lock()) (grabs.get()->*member)(given...);
        });
    }
    void keyPressed(xcb_keycode_t key, std::uint16_t state, xcb_timestamp_t time);
    void keyReleased(xcb_keycode_t key, xcb_timestamp_t time) { released_ = {key, time}; }
    void mapChanged();

    bool holdsAlready(xcb_keycode_t key, std::uint16_t mask) const;
    std::int32_t hold(Grab& grab);
    void release(Grab& grab);

    Executor& executor_;
    std::unique_ptr<X11Connection> connection_;
    std::optional<ModifierMap> map_;
    std::list<Grab> grabs_;
    std::pair<xcb_keycode_t, xcb_timestamp_t> released_{};  // the latest
    std::atomic<bool> mapChangePosted_ = false;
};

struct X11HotKeys::Registration final : HotKeyRegistration {
    Registration(std::weak_ptr<Grabs> owner, Grabs::Handle mine) : grabs(std::move(owner)), handle(mine) {}
    Registration(const Registration&) = delete;
    Registration& operator=(const Registration&) = delete;
    ~Registration() override {
        if (const auto owner = grabs.lock()) owner->remove(handle);
    }

    std::weak_ptr<Grabs> grabs;
    Grabs::Handle handle;
};

Result<X11HotKeys::Grabs::Handle> X11HotKeys::Grabs::add(xcb_keycode_t key, std::uint32_t modifiers,
                                                         HotKeyID id) {
    Grab grab{.id = id, .modifiers = modifiers, .key = key};
    if (const auto code = hold(grab); code != codeDone) return std::unexpected(refusal(code));
    return grabs_.insert(grabs_.end(), grab);
}

void X11HotKeys::Grabs::remove(Handle handle) {
    release(*handle);
    grabs_.erase(handle);
}

bool X11HotKeys::Grabs::holdsAlready(xcb_keycode_t key, std::uint16_t mask) const {
    return std::ranges::any_of(
        grabs_, [&](const Grab& grab) { return grab.held && grab.key == key && grab.mask == mask; });
}

/// All requests are sent at once; the first answer looked at is the last one's, and then all are there.
std::int32_t X11HotKeys::Grabs::hold(Grab& grab) {
    if (!alive()) return codeNoConnection;
    const auto* setup = xcb_get_setup(connection_->xcb());
    const auto mask = map_->maskOf(grab.modifiers);
    if (!mask || grab.key < setup->min_keycode || grab.key > setup->max_keycode) return XCB_VALUE;
    if (holdsAlready(grab.key, *mask)) return XCB_ACCESS;
    grab.mask = *mask;
    std::vector<xcb_void_cookie_t> asked;
    for (const auto state : map_->withLocks(*mask)) {
        asked.push_back(xcb_grab_key_checked(connection_->xcb(), 0, connection_->root(), state, grab.key,
                                             XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    }
    std::int32_t worst = codeDone;
    for (const auto cookie : asked | std::views::reverse) {
        if (const auto code = connection_->check(cookie); code != codeDone) worst = code;
    }
    grab.held = true;
    if (worst != codeDone) release(grab);
    return worst;
}

/// Of combinations that are another program's, the server takes nothing away.
void X11HotKeys::Grabs::release(Grab& grab) {
    if (!std::exchange(grab.held, false) || !alive()) return;
    for (const auto state : map_->withLocks(grab.mask)) {
        xcb_ungrab_key(connection_->xcb(), grab.key, connection_->root(), state);
    }
    xcb_flush(connection_->xcb());
}

void X11HotKeys::Grabs::readEvents() {
    while (const Reply<xcb_generic_event_t> event{xcb_wait_for_event(connection_->xcb())}) {
        const auto* key = reinterpret_cast<const xcb_key_press_event_t*>(event.get());
        const auto* mapping = reinterpret_cast<const xcb_mapping_notify_event_t*>(event.get());
        switch (event->response_type & 0x7F) {
            case XCB_KEY_PRESS:
                post(&Grabs::keyPressed, key->detail, key->state, key->time);
                break;
            case XCB_KEY_RELEASE:
                post(&Grabs::keyReleased, key->detail, key->time);
                break;
            case XCB_MAPPING_NOTIFY:
                if (mapping->request != XCB_MAPPING_POINTER && !mapChangePosted_.exchange(true)) {
                    post(&Grabs::mapChanged);
                }
                break;
            default:
                break;
        }
    }
}

/// A held key repeats as a release and a press of the same time.
void X11HotKeys::Grabs::keyPressed(xcb_keycode_t key, std::uint16_t state, xcb_timestamp_t time) {
    if (!map_ || released_ == std::pair{key, time}) return;
    const auto mask = map_->withoutLocks(state);
    const auto pressed = std::ranges::find_if(
        grabs_, [&](const Grab& grab) { return grab.held && grab.key == key && grab.mask == mask; });
    if (pressed != grabs_.end()) handler.pressed(pressed->id);
}

/// A grab names the key by its place, so only a modifier that moved calls for new ones.
void X11HotKeys::Grabs::mapChanged() {
    mapChangePosted_ = false;
    auto map = ModifierMap::read(*connection_);
    if (!map || map == map_) return;
    std::vector<bool> heldBefore;
    for (auto& grab : grabs_) {
        heldBefore.push_back(grab.held);
        release(grab);
    }
    map_ = map;
    std::vector<std::pair<HotKeyID, Error>> lost;
    for (auto before = heldBefore.begin(); auto& grab : grabs_) {
        const auto code = hold(grab);
        if (*before++ && code != codeDone) lost.emplace_back(grab.id, refusal(code));
    }
    for (const auto& [id, error] : lost) handler.lost(id, error);
}

X11HotKeys::X11HotKeys(Executor& executor, const std::string& display) {
    auto connection = X11Connection::open(display);
    if (!connection) {
        unavailable_ = connection.error().text;
        return;
    }
    grabs_ = std::make_shared<Grabs>(executor, std::move(*connection));
    reader_ = std::thread([grabs = grabs_.get()] { grabs->readEvents(); });
}

X11HotKeys::~X11HotKeys() {
    if (!grabs_) return;
    grabs_->endReading();
    reader_.join();
}

Capability X11HotKeys::capability() const {
    if (!grabs_) return Capability::unavailable(unavailable_);
    if (!grabs_->alive()) return Capability::unavailable(refusal(codeNoConnection).text);
    return Capability::available();
}

std::unique_ptr<HotKeyHandler> X11HotKeys::installHandler(Pressed pressed, Lost lost) {
    if (!grabs_) return nullptr;
    return grabs_->handler.install(std::move(pressed), std::move(lost));
}

Result<std::unique_ptr<HotKeyRegistration>> X11HotKeys::registerHotKey(std::uint32_t keyCode,
                                                                       std::uint32_t modifiers, HotKeyID id) {
    if (!grabs_) return fail(ErrorKind::unavailable, unavailable_, codeNoConnection);
    const auto key = keyOfClassicCode(keyCode);
    if (!key) return std::unexpected(refusal(XCB_VALUE));
    const auto handle = grabs_->add(*key, modifiers, id);
    if (!handle) return std::unexpected(handle.error());
    return std::make_unique<Registration>(grabs_, *handle);
}

}  // namespace quillo
