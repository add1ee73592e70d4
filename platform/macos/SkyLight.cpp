#include "platform/macos/SkyLight.hpp"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/macos/CFValues.hpp"

namespace quillo {
namespace {

using namespace skyLight;

CFRef<CFArrayRef> arrayOf(WindowNumber window) {
    const auto number = cf::makeInteger(window);
    const CFTypeRef value = number.get();
    return cf::makeArray({&value, 1});
}

/// Identifiers are positive; 64 bits of them come as a signed number.
std::optional<SpaceID> identifierFrom(CFTypeRef value) {
    const auto id = cf::integerAs<SpaceID>(value);
    return id && *id != 0 ? id : std::nullopt;
}

SpaceKind kindFrom(std::int64_t type) {
    return type == ordinarySpace ? SpaceKind::standard : SpaceKind::fullScreen;
}

/// The first desktop of a display is known to carry an empty one, which tells it from nothing.
std::optional<std::string> uuidFrom(CFTypeRef value) {
    auto uuid = cf::text(value);
    return uuid && !uuid->empty() ? uuid : std::nullopt;
}

using Need = std::pair<const void*, const char*>;  // a function and its name

template <std::size_t count>
const char* firstMissing(const std::array<Need, count>& needs) {
    const auto missing = std::ranges::find(needs, nullptr, &Need::first);
    return missing == needs.end() ? nullptr : missing->second;
}

template <class Function>
Need need(Function* function, const char* name) {
    return {reinterpret_cast<const void*>(function), name};
}

}  // namespace

bool skyLight::isStandard(const WindowTraits& traits) {
    constexpr std::uint64_t documentTag = 1 << 0, floatingTag = 1 << 1;
    return (traits.tags & documentTag) != 0 && (traits.tags & floatingTag) == 0 && traits.attributes != 0;
}

SkyLight::SkyLight(SymbolLookup lookup)
    : mainConnection_(symbol<MainConnection>(lookup, library, mainConnection)),
      copyManagedDisplaySpaces_(symbol<CopyManagedDisplaySpaces>(lookup, library, copyManagedDisplaySpaces)),
      managedDisplayIsAnimating_(
          symbol<ManagedDisplayIsAnimating>(lookup, library, managedDisplayIsAnimating)),
      copySpacesForWindows_(symbol<CopySpacesForWindows>(lookup, library, copySpacesForWindows)),
      spaceGetType_(symbol<SpaceGetType>(lookup, library, spaceGetType)),
      moveWindowsToManagedSpace_(
          symbol<MoveWindowsToManagedSpace>(lookup, library, moveWindowsToManagedSpace)),
      spaceSetCompatID_(symbol<SpaceSetCompatID>(lookup, library, spaceSetCompatID)),
      setWindowListWorkspace_(symbol<SetWindowListWorkspace>(lookup, library, setWindowListWorkspace)),
      windowQueryWindows_(symbol<WindowQueryWindows>(lookup, library, windowQueryWindows)),
      windowQueryResultCopyWindows_(
          symbol<WindowQueryResultCopyWindows>(lookup, library, windowQueryResultCopyWindows)),
      windowIteratorAdvance_(symbol<WindowIteratorAdvance>(lookup, library, windowIteratorAdvance)),
      windowIteratorGetTags_(symbol<WindowIteratorGetTags>(lookup, library, windowIteratorGetTags)),
      windowIteratorGetAttributes_(
          symbol<WindowIteratorGetAttributes>(lookup, library, windowIteratorGetAttributes)),
      coreDockSendNotification_(
          symbol<CoreDockSendNotification>(lookup, hiServices::library, coreDockSendNotification)) {}

const char* SkyLight::missingForSpaces() const {
    return firstMissing(std::array{need(mainConnection_, mainConnection),
                                   need(copyManagedDisplaySpaces_, copyManagedDisplaySpaces),
                                   need(copySpacesForWindows_, copySpacesForWindows)});
}

const char* SkyLight::missingForMoves() const {
    if (!mainConnection_) return mainConnection;
    const bool throughWorkspace = spaceSetCompatID_ && setWindowListWorkspace_;
    return moveWindowsToManagedSpace_ || throughWorkspace ? nullptr : moveWindowsToManagedSpace;
}

const char* SkyLight::missingForOverview() const {
    return coreDockSendNotification_ ? nullptr : coreDockSendNotification;
}

std::optional<Space> SkyLight::spaceFrom(CFTypeRef dictionary) const {
    auto id = identifierFrom(cf::lookup(dictionary, "id64"));
    if (!id) id = identifierFrom(cf::lookup(dictionary, "ManagedSpaceID"));
    if (!id) return std::nullopt;
    const auto type = cf::integer(cf::lookup(dictionary, "type"));
    const auto kind = type ? kindFrom(*type) : kindOf(*id).value_or(SpaceKind::standard);
    return Space{.id = *id, .kind = kind, .uuid = uuidFrom(cf::lookup(dictionary, "uuid"))};
}

std::vector<ManagedDisplay> SkyLight::displays() const {
    std::vector<ManagedDisplay> displays;
    if (!mainConnection_ || !copyManagedDisplaySpaces_) return displays;
    const auto answer = CFRef<CFArrayRef>::created(copyManagedDisplaySpaces_(connection()));
    for (const CFTypeRef entry : cf::items(answer.get())) {
        auto identifier = cf::text(cf::lookup(entry, "Display Identifier"));
        std::vector<Space> spaces;
        for (const CFTypeRef space : cf::items(cf::lookup(entry, "Spaces"))) {
            if (auto read = spaceFrom(space)) spaces.push_back(*std::move(read));
        }
        if (identifier && !spaces.empty()) displays.push_back({*std::move(identifier), std::move(spaces)});
    }
    return displays;
}

std::vector<SpaceID> SkyLight::spacesOf(WindowNumber window) const {
    std::vector<SpaceID> spaces;
    if (!mainConnection_ || !copySpacesForWindows_) return spaces;
    const auto windows = arrayOf(window);
    const auto answer =
        CFRef<CFArrayRef>::created(copySpacesForWindows_(connection(), everySpace, windows.get()));
    for (const CFTypeRef space : cf::items(answer.get())) {
        if (const auto id = identifierFrom(space)) spaces.push_back(*id);
    }
    return spaces;
}

std::optional<SpaceKind> SkyLight::kindOf(SpaceID space) const {
    if (!mainConnection_ || !spaceGetType_) return std::nullopt;
    return kindFrom(spaceGetType_(connection(), space));
}

std::optional<WindowTraits> SkyLight::traitsOf(WindowNumber window) const {
    if (!mainConnection_ || !windowQueryWindows_ || !windowQueryResultCopyWindows_ ||
        !windowIteratorAdvance_ || !windowIteratorGetTags_ || !windowIteratorGetAttributes_)
        return std::nullopt;
    const auto windows = arrayOf(window);
    const auto query = CFRef<Object>::created(windowQueryWindows_(connection(), windows.get(), 1));
    if (!query) return std::nullopt;
    const auto iterator = CFRef<Object>::created(windowQueryResultCopyWindows_(query.get()));
    if (!iterator || !windowIteratorAdvance_(iterator.get())) return std::nullopt;
    return WindowTraits{.tags = windowIteratorGetTags_(iterator.get()),
                        .attributes = windowIteratorGetAttributes_(iterator.get())};
}

bool SkyLight::isAnimating(std::string_view displayIdentifier) const {
    const auto identifier = cf::makeText(displayIdentifier);
    return mainConnection_ && managedDisplayIsAnimating_ && identifier &&
           managedDisplayIsAnimating_(connection(), identifier.get());
}

bool SkyLight::moveManaged(WindowNumber window, SpaceID space) const {
    if (!mainConnection_ || !moveWindowsToManagedSpace_) return false;
    moveWindowsToManagedSpace_(connection(), arrayOf(window).get(), space);
    return true;
}

bool SkyLight::moveThroughWorkspace(WindowNumber window, SpaceID space) const {
    if (!mainConnection_ || !spaceSetCompatID_ || !setWindowListWorkspace_) return false;
    spaceSetCompatID_(connection(), space, workspaceInPassing);
    setWindowListWorkspace_(connection(), &window, 1, workspaceInPassing);
    spaceSetCompatID_(connection(), space, 0);
    return true;
}

bool SkyLight::toggleOverview() const {
    if (!coreDockSendNotification_) return false;
    coreDockSendNotification_(cf::makeText(exposeAwake).get(), 0);
    return true;
}

}  // namespace quillo
