// The displays of the fake Mac: those of its desktop, as AppKit and ColorSync tell of them.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/macos/MacScreens.hpp"
#include "tests/platform/macos/fakes/FakeMac.hpp"

namespace quillo::fakes {

class FakeDisplays {
  public:
    explicit FakeDisplays(FakeMac& mac) : mac_(mac) {}

    /// As NSScreen lists them: from the bottom left.
    std::vector<NativeScreen> screens();
    /// A display's UUID spells its name in the scene, of at most 16 characters.
    static std::string uuidOf(std::string_view sceneName);
    static std::string sceneNameOf(std::string_view uuid);  // empty when it is of no such UUID
    /// Empty when no such display is attached.
    std::string sceneNameOf(std::uint32_t displayNumber);

    /// 0 where none is attached.
    std::uint32_t mainNumber();

    bool onConsole = true;  // else another person's session is on the screen
    /// Displays that ColorSync knows nothing of, by their names in the scene.
    std::vector<std::string> withoutUuid;

  private:
    std::uint32_t numberOf(const std::string& sceneName);

    FakeMac& mac_;
    std::vector<std::string> names_;  // a display's number is its place among all that were ever attached
};

}  // namespace quillo::fakes
