// What the running application tells other programs of its restores.
#pragma once
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace quillo {

struct RestoreEvent {
    enum class Kind : std::uint8_t { started, progressed, ended };
    Kind kind = Kind::started;
    std::string id;    // of the workspace, in lower case; as all texts here from another process
    std::string name;  // empty where it progressed
    std::int64_t windows = 0, windowsDone = 0;
    std::vector<std::pair<std::string, std::int64_t>> totals = {};  // of its end, by name
    bool cancelled = false;

    bool operator==(const RestoreEvent&) const = default;
};

/// Ends the listening when it goes.
class RestoreEvents {
  public:
    using Told = std::function<void(const RestoreEvent&)>;
    virtual ~RestoreEvents() = default;
};

}  // namespace quillo
