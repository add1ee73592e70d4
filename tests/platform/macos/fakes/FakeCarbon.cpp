#include "tests/platform/macos/fakes/FakeCarbon.hpp"

#include <algorithm>
#include <cstring>
#include <optional>
#include <ranges>
#include <span>

#include "platform/macos/CFValues.hpp"
#include "tests/platform/macos/fakes/FakeCoreFoundation.hpp"
#include "tests/platform/macos/fakes/FakeObject.hpp"

namespace quillo::fakes {

class HotKey final : public Typed<"hot key"> {
  public:
    HotKey(FakeCarbon::Combination pressed, EventHotKeyID given) : combination(pressed), id(given) {}

    const FakeCarbon::Combination combination;
    const EventHotKeyID id;
};

class EventHandler final : public Typed<"event handler"> {
  public:
    EventHandler(EventHandlerUPP called, void* given) : function(called), userData(given) {}

    const EventHandlerUPP function;
    void* const userData;
};

namespace {

class HotKeyEvent final : public Typed<"event"> {
  public:
    explicit HotKeyEvent(std::optional<EventHotKeyID> given) : id(given) {}

    const std::optional<EventHotKeyID> id;
};

/// Its properties live as long as it does, and no longer.
class InputSource final : public Typed<"TISInputSource"> {
  public:
    explicit InputSource(CFRef<CFDataRef> data) : layout(std::move(data)) {}

    const CFRef<CFDataRef> layout;  // null: it has none
};

FakeCarbon& carbon() {
    return FakeMac::onItsThread().part<FakeCarbon>();
}

using Keys = std::map<UInt16, FakeCarbon::Key>;

/// The fake's own kind of resource: where the keys are. It is read as long as it lives only.
CFRef<CFDataRef> resourceOf(const Keys& keys) {
    const Keys* const place = &keys;
    return cf::makeData(std::as_bytes(std::span(&place, 1)));
}

FakeCarbon::Key keyIn(const UCKeyboardLayout* layout, UInt16 code) {
    const Keys* keys = nullptr;
    std::memcpy(&keys, layout, sizeof(void*));
    const auto found = keys->find(code);
    return found == keys->end() ? FakeCarbon::Key() : found->second;
}

}  // namespace

OSStatus FakeCarbon::press(UInt32 keyCode, UInt32 modifiers) {
    const auto pressed = std::ranges::find(hotKeys, Combination{keyCode, modifiers}, &HotKey::combination);
    return pressed == hotKeys.end() ? OSStatus{eventNotHandledErr} : deliver((*pressed)->id);
}

OSStatus FakeCarbon::deliver(EventHotKeyID id, bool hasParameter) {
    const auto event = CFRef<CFTypeRef>::created(
        (new HotKeyEvent(hasParameter ? std::optional(id) : std::nullopt))->as<CFTypeRef>());
    const auto asked = handlers;  // the latest first; they may come and go meanwhile
    for (const EventHandler* handler : asked | std::views::reverse) {
        if (std::ranges::find(handlers, handler) == handlers.end()) continue;
        const OSStatus answer = handler->function(
            nullptr, objectOf<HotKeyEvent>(event.get()).asMutable<EventRef>(), handler->userData);
        if (answer != eventNotHandledErr) return answer;
    }
    return eventNotHandledErr;
}

}  // namespace quillo::fakes

using namespace quillo::fakes;  // the functions below are global C functions

const CFStringRef kTISPropertyUnicodeKeyLayoutData = immortalText("TISPropertyUnicodeKeyLayoutData");

EventTargetRef GetApplicationEventTarget() {
    static int target = 0;
    return static_cast<EventTargetRef>(static_cast<void*>(&target));
}

OSStatus InstallEventHandler(EventTargetRef target, EventHandlerUPP handler, ItemCount typeCount,
                             const EventTypeSpec* types, void* userData, EventHandlerRef* result) {
    if (target != GetApplicationEventTarget() || typeCount != 1 ||
        types[0].eventClass != kEventClassKeyboard || types[0].eventKind != kEventHotKeyPressed)
        fail("a handler of events that the fake does not send");
    FakeCarbon& carbon = ::carbon();
    if (carbon.handlerFailure != noErr) return carbon.handlerFailure;
    carbon.handlers.push_back(new EventHandler(handler, userData));
    *result = carbon.handlers.back()->asMutable<EventHandlerRef>();
    return noErr;
}

OSStatus RemoveEventHandler(EventHandlerRef handler) {
    EventHandler& removed = objectOf<EventHandler>(handler);
    std::erase(carbon().handlers, &removed);
    removed.release();
    return noErr;
}

OSStatus GetEventParameter(EventRef event, EventParamName name, EventParamType desiredType, EventParamType*,
                           ByteCount bufferSize, ByteCount*, void* data) {
    const auto& id = objectOf<HotKeyEvent>(event).id;
    if (!id || name != kEventParamDirectObject || desiredType != typeEventHotKeyID)
        return eventParameterNotFoundErr;
    if (bufferSize != sizeof *id) fail("a buffer of another size than the parameter's");
    std::memcpy(data, &*id, sizeof *id);
    return noErr;
}

OSStatus RegisterEventHotKey(UInt32 keyCode, UInt32 modifiers, EventHotKeyID id, EventTargetRef target,
                             OptionBits options, EventHotKeyRef* result) {
    if (target != GetApplicationEventTarget() || options != 0) fail("a hot key that the fake does not know");
    FakeCarbon& carbon = ::carbon();
    const FakeCarbon::Combination combination{keyCode, modifiers};
    if (keyCode > 127) return eventHotKeyInvalidErr;
    if (carbon.taken.contains(combination) ||
        std::ranges::find(carbon.hotKeys, combination, &HotKey::combination) != carbon.hotKeys.end())
        return eventHotKeyExistsErr;
    carbon.hotKeys.push_back(new HotKey(combination, id));
    *result = carbon.hotKeys.back()->asMutable<EventHotKeyRef>();
    return noErr;
}

OSStatus UnregisterEventHotKey(EventHotKeyRef hotKey) {
    HotKey& gone = objectOf<HotKey>(hotKey);
    std::erase(carbon().hotKeys, &gone);
    gone.release();
    return noErr;
}

TISInputSourceRef TISCopyCurrentKeyboardLayoutInputSource() {
    const FakeCarbon& carbon = ::carbon();
    if (carbon.layout == FakeCarbon::Layout::noSource) return nullptr;
    auto data =
        carbon.layout == FakeCarbon::Layout::data ? resourceOf(carbon.keys) : quillo::CFRef<CFDataRef>();
    return (new InputSource(std::move(data)))->asMutable<TISInputSourceRef>();
}

void* TISGetInputSourceProperty(TISInputSourceRef source, CFStringRef key) {
    if (!CFEqual(key, kTISPropertyUnicodeKeyLayoutData)) return nullptr;
    return const_cast<void*>(static_cast<CFTypeRef>(objectOf<InputSource>(source).layout.get()));
}

UInt8 LMGetKbdType() {
    return 59;
}

// NOLINTNEXTLINE(readability-function-size): so many parameters the real one has
OSStatus UCKeyTranslate(const UCKeyboardLayout* layout, UInt16 virtualKeyCode, UInt16 keyAction,
                        UInt32 modifiers, UInt32 keyboardType, OptionBits options, UInt32* deadKeyState,
                        UniCharCount maximumLength, UniCharCount* actualLength, UniChar* characters) {
    if (keyAction != kUCKeyActionDown || modifiers != 0 || keyboardType != LMGetKbdType() ||
        *deadKeyState != 0)
        fail("a translation of a key that the fake does not make");
    const FakeCarbon::Key key = keyIn(layout, virtualKeyCode);
    const bool writes = !key.dead || (options & kUCKeyTranslateNoDeadKeysMask) != 0;
    *deadKeyState = writes ? 0 : 1;
    *actualLength = writes ? std::min<UniCharCount>(key.writes.size(), maximumLength) : 0;
    std::copy_n(key.writes.begin(), *actualLength, characters);
    return noErr;
}
