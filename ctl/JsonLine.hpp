// One JSON object on one line: what every command prints with --json.
#pragma once
#include <concepts>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "WindowEngine/support/Instant.hpp"
#include "WindowEngine/support/JsonWriter.hpp"
#include "WindowEngine/support/Rect.hpp"

namespace quillo::ctl {

/// Keys in the order in which they are added, each once.
class JsonLine {
  public:
    JsonLine() { writer_.beginObject(); }

    JsonLine& add(std::string_view key, std::string_view value);
    JsonLine& add(std::string_view key, const char* value) { return add(key, std::string_view(value)); }
    JsonLine& add(std::string_view key, std::same_as<bool> auto value) { return flag(key, value); }
    JsonLine& add(std::string_view key, std::int64_t value);
    JsonLine& add(std::string_view key, double value);
    JsonLine& add(std::string_view key, Instant value);
    JsonLine& add(std::string_view key,
                  const Rect& value);  // [[x, y], [width, height]], as documents have it
    JsonLine& add(std::string_view key, const std::vector<std::string>& values);
    /// An absent value adds nothing.
    template <class T>
    JsonLine& add(std::string_view key, const std::optional<T>& value) {
        return value ? add(key, *value) : *this;
    }

    /// Ends the object. A number that is not finite is an error.
    Result<std::string> finish() &&;

  private:
    JsonLine& flag(std::string_view key, bool value);

    JsonWriter writer_;
};

/// A pretty-printed document on one line.
std::string onOneLine(std::string_view json);

}  // namespace quillo::ctl
