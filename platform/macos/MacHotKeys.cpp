#include "platform/macos/MacHotKeys.hpp"

#include <Carbon/Carbon.h>

#include <string>
#include <utility>

namespace quillo {
namespace {

OSType codeOf(const std::array<char, 4>& characters) {
    OSType code = 0;
    for (const char character : characters) code = code << 8 | static_cast<unsigned char>(character);
    return code;
}

HotKeyID idOf(const EventHotKeyID& event) {
    HotKeyID id{.number = event.id};
    for (std::size_t i = 0; i < id.signature.size(); ++i)
        id.signature[i] = static_cast<char>(event.signature >> (24 - 8 * i) & 0xFF);
    return id;
}

Error refusal(OSStatus status) {
    switch (status) {
        case eventHotKeyExistsErr:
            return {ErrorKind::refused, "another program holds the combination", status};
        case eventHotKeyInvalidErr:
            return {ErrorKind::refused, "the system knows no such combination", status};
        default:
            return {ErrorKind::refused, "the system refused the combination", status};
    }
}

struct Registration final : HotKeyRegistration {
    explicit Registration(EventHotKeyRef mine) : hotKey(mine) {}
    Registration(const Registration&) = delete;
    Registration& operator=(const Registration&) = delete;
    ~Registration() override { UnregisterEventHotKey(hotKey); }

    EventHotKeyRef hotKey;
};

/// What the system calls, and the address that it calls it with.
struct Installed final : HotKeyHandler {
    Installed(HotKeyService::Pressed pressed, HotKeyService::Lost lost)
        : kept(callbacks.install(std::move(pressed), std::move(lost))) {}
    Installed(const Installed&) = delete;
    Installed& operator=(const Installed&) = delete;
    ~Installed() override {
        if (handler) RemoveEventHandler(handler);
    }

    static OSStatus handle(EventHandlerCallRef, EventRef event, void* installed) {
        EventHotKeyID id{};
        const OSStatus status = GetEventParameter(event, kEventParamDirectObject, typeEventHotKeyID, nullptr,
                                                  sizeof id, nullptr, &id);
        if (status != noErr) return eventNotHandledErr;
        // A copy: whoever is told may take the handler away.
        const HotKeyCallbacks callbacks = static_cast<const Installed*>(installed)->callbacks;
        return callbacks.pressed(idOf(id)) ? OSStatus{noErr} : OSStatus{eventNotHandledErr};
    }

    HotKeyCallbacks callbacks;
    std::unique_ptr<HotKeyHandler> kept;
    EventHandlerRef handler = nullptr;
};

}  // namespace

Capability MacHotKeys::capability() const {
    if (handlerStatus_ == noErr) return Capability::available();
    return Capability::unavailable("The system does not let Quillo hear key combinations (error " +
                                   std::to_string(handlerStatus_) + ").");
}

std::unique_ptr<HotKeyHandler> MacHotKeys::installHandler(Pressed pressed, Lost lost) {
    auto installed = std::make_unique<Installed>(std::move(pressed), std::move(lost));
    const EventTypeSpec type{kEventClassKeyboard, kEventHotKeyPressed};
    handlerStatus_ = InstallEventHandler(GetApplicationEventTarget(), Installed::handle, 1, &type,
                                         installed.get(), &installed->handler);
    if (handlerStatus_ != noErr) return nullptr;
    return installed;
}

Result<std::unique_ptr<HotKeyRegistration>> MacHotKeys::registerHotKey(std::uint32_t keyCode,
                                                                       std::uint32_t modifiers, HotKeyID id) {
    if (handlerStatus_ != noErr) return std::unexpected(refusal(handlerStatus_));
    EventHotKeyRef hotKey = nullptr;
    const OSStatus status = RegisterEventHotKey(keyCode, modifiers, {codeOf(id.signature), id.number},
                                                GetApplicationEventTarget(), 0, &hotKey);
    if (status != noErr) return std::unexpected(refusal(status));
    return std::make_unique<Registration>(hotKey);
}

}  // namespace quillo
