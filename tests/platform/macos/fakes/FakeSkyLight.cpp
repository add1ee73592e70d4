#include "tests/platform/macos/fakes/FakeSkyLight.hpp"

#include <algorithm>
#include <optional>
#include <set>

#include "platform/macos/CFValues.hpp"
#include "tests/platform/macos/fakes/FakeCoreFoundation.hpp"
#include "tests/platform/macos/fakes/FakeDisplays.hpp"
#include "tests/platform/macos/fakes/FakeObject.hpp"

namespace quillo::fakes {
namespace {

using namespace skyLight;

constexpr Connection connection = 4711;
constexpr std::int32_t fullScreenSpace = 4;
constexpr std::uint64_t documentTag = 1, floatingTag = 2, shown = 1;  // as SkyLight.cpp takes them

FakeSkyLight& fake(Connection given) {
    if (given != connection) fail("a connection to the window server that is not this program's");
    return FakeMac::onItsThread().part<FakeSkyLight>();
}

/// The answer to a query: what exists of the windows asked for.
class Query final : public Typed<"SLSWindowQuery"> {
  public:
    explicit Query(std::vector<WindowFacts> found) : windows(std::move(found)) {}
    const std::vector<WindowFacts> windows;
};

class Iterator final : public Typed<"SLSWindowIterator"> {
  public:
    explicit Iterator(std::vector<WindowFacts> found) : windows_(std::move(found)) {}
    bool advance() {
        at_ = at_ ? *at_ + 1 : 0;
        return *at_ < windows_.size();
    }
    const WindowFacts& here() const {
        if (!at_ || *at_ >= windows_.size())
            fail("an iterator is asked where it stands before or behind all windows");
        return windows_[*at_];
    }

  private:
    const std::vector<WindowFacts> windows_;
    std::optional<std::size_t> at_;
};

CFStringRef key(const char* name) {
    static std::map<std::string, CFStringRef> keys;
    CFStringRef& made = keys[name];
    if (!made) made = immortalText(name);
    return made;
}

std::vector<WindowNumber> numbersIn(CFArrayRef windows) {
    if (CFGetTypeID(windows) != CFArrayGetTypeID()) fail("windows that are no array");
    std::vector<WindowNumber> numbers;
    for (const CFTypeRef number : cf::items(windows)) {
        const auto read = cf::integerAs<WindowNumber>(number);
        if (!read) fail("a window number that is none");
        numbers.push_back(*read);
    }
    return numbers;
}

void provideSpaces(FakeMac& mac) {
    mac.provide<CopyManagedDisplaySpaces>(library, copyManagedDisplaySpaces, [](Connection given) {
        return fake(given).copyManagedDisplaySpaces();
    });
    mac.provide<ManagedDisplayIsAnimating>(
        library, managedDisplayIsAnimating,
        [](Connection given, CFStringRef display) { return fake(given).isAnimating(display); });
    mac.provide<CopySpacesForWindows>(library, copySpacesForWindows,
                                      [](Connection given, std::int32_t selector, CFArrayRef windows) {
                                          if (selector != everySpace)
                                              fail("kinds of spaces that the fake does not know");
                                          return fake(given).copySpacesForWindows(windows);
                                      });
    mac.provide<SpaceGetType>(library, spaceGetType, [](Connection given, std::uint64_t space) {
        return fake(given).typeOf(space);
    });
}

void provideMoves(FakeMac& mac) {
    mac.provide<MoveWindowsToManagedSpace>(
        library, moveWindowsToManagedSpace,
        [](Connection given, CFArrayRef windows, std::uint64_t space) { fake(given).move(windows, space); });
    mac.provide<SpaceSetCompatID>(library, spaceSetCompatID,
                                  [](Connection given, std::uint64_t space, std::int32_t workspace) {
                                      fake(given).nameWorkspace(space, workspace);
                                  });
    mac.provide<SetWindowListWorkspace>(
        library, setWindowListWorkspace,
        [](Connection given, const std::uint32_t* windows, std::int32_t count, std::int32_t workspace) {
            for (std::int32_t i = 0; i < count; ++i) fake(given).moveToWorkspace(windows[i], workspace);
        });
}

void provideQueries(FakeMac& mac) {
    mac.provide<WindowQueryWindows>(library, windowQueryWindows,
                                    [](Connection given, CFArrayRef windows, std::int32_t count) {
                                        if (count != CFArrayGetCount(windows))
                                            fail("another number of windows than are asked about");
                                        return fake(given).query(windows);
                                    });
    mac.provide<WindowQueryResultCopyWindows>(
        library, windowQueryResultCopyWindows, [](skyLight::Object query) {
            const auto* iterator = new Iterator(objectOf<Query>(query).windows);
            return handedOut<CFTypeRef>(orInstead(fake(connection).instead, windowQueryResultCopyWindows,
                                                  Value::created(iterator->as<CFTypeRef>())));
        });
    mac.provide<WindowIteratorAdvance>(library, windowIteratorAdvance, [](skyLight::Object iterator) {
        return objectOf<Iterator>(iterator).advance();
    });
    mac.provide<WindowIteratorGetTags>(library, windowIteratorGetTags, [](skyLight::Object iterator) {
        const bool isStandard = objectOf<Iterator>(iterator).here().isStandard;
        return isStandard ? documentTag : documentTag | floatingTag;
    });
    mac.provide<WindowIteratorGetAttributes>(library, windowIteratorGetAttributes,
                                             [](skyLight::Object iterator) {
                                                 objectOf<Iterator>(iterator).here();
                                                 return shown;
                                             });
}

}  // namespace

FakeSkyLight::FakeSkyLight(FakeMac& mac) : mac_(mac) {
    mac.provide<MainConnection>(library, mainConnection, [] { return connection; });
    provideSpaces(mac);
    provideMoves(mac);
    provideQueries(mac);
    mac.provide<CoreDockSendNotification>(
        hiServices::library, coreDockSendNotification,
        [](CFStringRef name, std::int32_t) { fake(connection).notifyDock(name); });
}

Value FakeSkyLight::dictionaryOf(const Space& space) const {
    const auto keyed = [&](const char* name, Value value) {
        return std::pair(key(name), orInstead(instead, name, std::move(value)));
    };
    const auto id = static_cast<std::int64_t>(space.id);
    const bool isStandard = space.kind == SpaceKind::standard;
    return dictionaryValue({keyed("id64", numberValue(id)), keyed("ManagedSpaceID", numberValue(id)),
                            keyed("type", numberValue(isStandard ? ordinarySpace : fullScreenSpace)),
                            keyed("uuid", textValue(space.uuid.value_or("")))});
}

Value FakeSkyLight::dictionaryOf(const DisplaySpaces& display) const {
    std::vector<Value> spaces;
    for (const Space& space : display.spaces)
        spaces.push_back(orInstead(instead, "space", dictionaryOf(space)));
    const std::string identifier =
        sharedSpaces ? std::string(sharedDisplay) : FakeDisplays::uuidOf(display.displayID);
    const auto keyed = [&](const char* name, Value value) {
        return std::pair(key(name), orInstead(instead, name, std::move(value)));
    };
    return dictionaryValue(
        {keyed("Display Identifier", textValue(identifier)), keyed("Spaces", arrayValue(spaces))});
}

CFArrayRef FakeSkyLight::copyManagedDisplaySpaces() {
    std::vector<Value> displays;
    // In an order of its own: that of the screens is not promised.
    auto all = server().displaySpaces();
    if (sharedSpaces) all.resize(std::min<std::size_t>(all.size(), 1));
    std::ranges::reverse(all);
    for (const DisplaySpaces& display : all)
        displays.push_back(orInstead(instead, "display", dictionaryOf(display)));
    return handedOut<CFArrayRef>(
        orInstead(instead, skyLight::copyManagedDisplaySpaces, arrayValue(displays)));
}

CFArrayRef FakeSkyLight::copySpacesForWindows(CFArrayRef windows) {
    std::set<SpaceID> together;
    for (const WindowFacts& facts : server().facts(numbersIn(windows)))
        together.insert(facts.spaces.begin(), facts.spaces.end());
    std::vector<Value> spaces;
    for (const SpaceID space : together) spaces.push_back(numberValue(static_cast<std::int64_t>(space)));
    return handedOut<CFArrayRef>(orInstead(instead, skyLight::copySpacesForWindows, arrayValue(spaces)));
}

bool FakeSkyLight::isAnimating(CFStringRef displayIdentifier) {
    const std::string identifier = cf::text(displayIdentifier).value();
    const auto displays = server().displaySpaces();
    return std::ranges::any_of(displays, [&](const DisplaySpaces& display) {
        const bool meant =
            identifier == (sharedSpaces ? sharedDisplay : FakeDisplays::uuidOf(display.displayID));
        return meant && server().isAnimating(display.displayID);
    });
}

std::int32_t FakeSkyLight::typeOf(SpaceID space) {
    const auto& windows = mac_.desktop().world().windows();
    const bool isOne =
        std::ranges::find(windows, space, &simulated::Window::fullscreenSpace) != windows.end();
    return isOne ? fullScreenSpace : static_cast<std::int32_t>(ordinarySpace);
}

void FakeSkyLight::move(CFArrayRef windows, SpaceID space) {
    if (managedMovesIgnored) return;
    for (const WindowNumber window : numbersIn(windows)) (void)server().moveWindow(window, space);
}

void FakeSkyLight::nameWorkspace(SpaceID space, std::int32_t workspace) {
    std::erase_if(workspaces_, [&](const auto& named) { return named.second == space; });
    if (workspace != 0) workspaces_[workspace] = space;
}

void FakeSkyLight::moveToWorkspace(WindowNumber window, std::int32_t workspace) {
    const auto named = workspaces_.find(workspace);
    if (!workspaceMovesIgnored && named != workspaces_.end())
        (void)server().moveWindow(window, named->second);
}

bool FakeSkyLight::moveThroughBridge(std::uint32_t window, std::uint64_t space) {
    (void)fake(connection).server().moveWindow(window, space);
    return true;
}

CFTypeRef FakeSkyLight::query(CFArrayRef windows) {
    std::vector<WindowFacts> found;
    for (const WindowNumber number : numbersIn(windows)) {
        const auto facts = server().facts({&number, 1}).front();
        if (mac_.desktop().world().window(number)) found.push_back(facts);
    }
    Value query = Value::created((new Query(std::move(found)))->as<CFTypeRef>());
    return handedOut<CFTypeRef>(orInstead(instead, windowQueryWindows, std::move(query)));
}

void FakeSkyLight::notifyDock(CFStringRef notification) {
    if (cf::text(notification) != exposeAwake) fail("a notification that the Dock does not know");
    ++toggles;
    overviewOpen_ = !overviewOpen_ && server().openOverview();
    if (!overviewOpen_) server().closeOverview();
}

}  // namespace quillo::fakes
