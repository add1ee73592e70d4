// Pretty-printed JSON as our documents have it. The caller gives keys in the order they shall have.
#pragma once
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "WindowEngine/support/Error.hpp"

namespace quillo {

/// Two blanks of indentation, slashes escaped, invalid UTF-8 replaced by U+FFFD, doubles in the shortest form
/// that reads back the same (2.0 as 2, -0 as 0).
class JsonWriter {
  public:
    void beginObject() { open('{'); }
    void endObject() { close('}'); }
    void beginArray() { open('['); }
    void endArray() { close(']'); }
    void key(std::string_view name);

    void text(std::string_view value);
    void integer(std::int64_t value);
    void boolean(bool value);
    /// A number that is not finite makes finish() fail.
    void number(double value);
    /// The array of arrays [[a, b], [c, d]] on one line.
    void pairs(double a, double b, double c, double d);

    /// The bytes with a closing line feed, or the first number that could not be written, by its path.
    Result<std::string> finish() &&;

  private:
    struct Level {
        std::string_view key;      // of the member being written, in an object
        std::int64_t members = 0;  // begun so far
        bool isArray = false;
    };

    void open(char bracket);
    void close(char bracket);
    void beginValue();
    void breakLine();
    void quoted(std::string_view value);
    void appendNumber(double value);
    std::string path() const;

    std::string out_;
    std::vector<Level> levels_;
    std::optional<Error> failure_;
};

}  // namespace quillo
