// What scripts and applications say to each other. Internal to this layer.
#pragma once
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace quillo::simulated {

/// Names something of an application. Which one that is, the application finds out anew at each request.
struct Reference {
    enum class Windows { every, atPlace, withID, whoseID };
    enum class Part { window, activeTab, currentTab, everyTab };

    Windows windows = Windows::every;
    std::int64_t place = 0;  // atPlace: from 1, front to back
    /// A text in some applications, a number in others; one does not find what the other names.
    std::variant<std::int64_t, std::string> identifier{};
    Part part = Part::window;

    bool operator==(const Reference&) const = default;
};

struct Value {
    struct Missing {
        bool operator==(const Missing&) const = default;
    };
    std::variant<Missing, bool, std::int64_t, std::string, std::vector<Value>, Reference> is;

    bool operator==(const Value&) const = default;
};

/// An error as a script raises it, or the application that it asks.
struct ScriptError {
    std::string message;
    int number = 0;
};

}  // namespace quillo::simulated
