#include "WindowEngine/support/JsonDamage.hpp"

#include <simdjson.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "WindowEngine/support/JsonPath.hpp"
#include "WindowEngine/support/Text.hpp"

namespace quillo {
namespace {

// Walks the structure only; whether a single text or number is right is the parser's to say.
class StructureWalk {
  public:
    explicit StructureWalk(std::string_view bytes) : bytes_(bytes) {}

    std::string describe() {
        skipBlanks();
        if (value()) {
            skipBlanks();
            if (at_ < bytes_.size()) refuse("something follows the end of the document");
        }
        if (reason_.empty()) reason_ = "the parser refuses it";
        const auto line = 1 + std::ranges::count(bytes_.substr(0, at_), '\n');
        return path() + ": not valid JSON in line " + std::to_string(line) + ": " + reason_;
    }

  private:
    struct Level {
        bool isArray = false;
        std::int64_t index = 0;
        std::string_view key{};
    };

    bool refuse(std::string_view reason) {
        reason_ = at_ < bytes_.size() ? reason : std::string_view("the document ends here");
        return false;
    }

    void skipBlanks() { at_ = std::min(bytes_.find_first_not_of(" \t\r\n", at_), bytes_.size()); }

    bool sees(char c) const { return at_ < bytes_.size() && bytes_[at_] == c; }

    bool take(char c) {
        skipBlanks();
        if (!sees(c)) return false;
        ++at_;
        skipBlanks();
        return true;
    }

    bool value() {
        if (sees('{')) return members('{', '}');
        if (sees('[')) return members('[', ']');
        return sees('"') ? text() : scalar();
    }

    bool members(char opening, char closing) {
        if (levels_.size() == maximumJsonDepth) return refuse("nested too deeply");
        levels_.push_back({.isArray = opening == '[', .index = 0, .key = {}});
        take(opening);
        if (!take(closing)) {
            do {
                if (!member()) return false;
                ++levels_.back().index;
            } while (take(','));
            if (!take(closing)) return refuse(closing == ']' ? "expected , or ]" : "expected , or }");
        }
        levels_.pop_back();
        return true;
    }

    bool member() {
        if (levels_.back().isArray) return value();
        if (!sees('"')) return refuse("expected a key in double quotes");
        const std::size_t begin = at_;
        if (!text()) return false;
        levels_.back().key = bytes_.substr(begin + 1, at_ - begin - 2);
        return take(':') ? value() : refuse("expected :");
    }

    bool text() {
        std::size_t end = at_ + 1;
        while (end < bytes_.size() && bytes_[end] != '"') end += bytes_[end] == '\\' ? 2 : 1;
        if (end >= bytes_.size()) {
            at_ = bytes_.size();
            return refuse({});
        }
        return token(end + 1, "a text with a control character, a bad escape or broken UTF-8");
    }

    bool scalar() {
        const std::size_t end = std::min(bytes_.find_first_of(" \t\r\n,:[]{}\"", at_), bytes_.size());
        return end == at_ ? refuse("expected a value")
                          : token(end, "expected a value, or a number within range");
    }

    // A scalar is judged by the parser, alone in an array.
    bool token(std::size_t end, std::string_view reason) {
        const std::string alone = "[" + std::string(bytes_.substr(at_, end - at_)) + "]";
        if (parser_.parse(alone).error() != simdjson::SUCCESS) return refuse(reason);
        at_ = end;
        return true;
    }

    /// No document of ours goes deeper than what is shown.
    std::string path() const {
        constexpr std::size_t levelsShown = 12, longestKeyShown = 40;
        std::string path;
        for (std::size_t depth = 0; depth < levels_.size(); ++depth) {
            if (depth == levelsShown) return path + "…";
            const Level& level = levels_[depth];
            if (level.isArray) {
                appendIndex(path, level.index);
            } else if (!level.key.empty()) {
                appendKey(path, text::printable(level.key.substr(0, longestKeyShown)));
            }
        }
        return path.empty() ? "the document" : path;
    }

    simdjson::dom::parser parser_;  // one for all tokens: making it costs more than a token
    std::string_view bytes_;
    std::size_t at_ = 0;
    std::vector<Level> levels_;
    std::string reason_;
};

}  // namespace

std::string describeJsonDamage(std::string_view bytes) {
    return StructureWalk(bytes).describe();
}

}  // namespace quillo
