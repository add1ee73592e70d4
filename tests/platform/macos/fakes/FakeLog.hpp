// The fake unified log: what was written, as the log's reader would see it.
#pragma once
#include <string>
#include <vector>

#include "tests/platform/macos/fakes/FakeMac.hpp"

namespace quillo::fakes {

class FakeLog {
  public:
    struct Line {
        std::string subsystem{};
        std::string category{};
        int type = 0;
        std::string text{};  // what is not marked as public reads "<private>"

        bool operator==(const Line&) const = default;
    };

    explicit FakeLog(FakeMac&) {}

    std::vector<Line> lines{};
    bool infoEnabled = true;
};

}  // namespace quillo::fakes
