#include "platform/simulated/ScriptInterpretation.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <map>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

#include "platform/simulated/ScriptedApplications.hpp"

namespace quillo::simulated {
namespace {

using Windows = Reference::Windows;
using Part = Reference::Part;

// -- words --------------------------------------------------------------------------------------------------

struct Token {
    bool literal = false;  // a text in quotes
    std::string text;

    bool is(std::string_view word) const { return !literal && text == word; }
};

using Line = std::vector<Token>;

bool isWordCharacter(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) || c == '_' || c == '\'';
}

/// Reads the literal that begins at `at` and leaves `at` behind it.
Token literal(std::string_view text, std::size_t& at) {
    Token token{.literal = true, .text = {}};
    for (++at; text.at(at) != '"'; ++at) {
        if (text[at] == '\\') ++at;
        token.text += text.at(at);
    }
    ++at;
    return token;
}

Token word(std::string_view text, std::size_t& at) {
    const std::size_t begin = at++;
    if (!isWordCharacter(text[begin])) return {false, std::string(1, text[begin])};
    while (at < text.size() && isWordCharacter(text[at])) ++at;
    return {false, std::string(text.substr(begin, at - begin))};
}

std::vector<Line> linesOf(std::string_view text) {
    std::vector<Line> lines(1);
    for (std::size_t at = 0; at < text.size();) {
        if (text[at] == '\n') {
            lines.emplace_back();
            ++at;
        } else if (text[at] == ' ') {
            ++at;
        } else {
            lines.back().push_back(text[at] == '"' ? literal(text, at) : word(text, at));
        }
    }
    std::erase_if(lines, [](const Line& line) { return line.empty(); });
    return lines;
}

// -- values -------------------------------------------------------------------------------------------------

[[noreturn]] void notUnderstood(std::string_view what) {
    throw std::logic_error(fmt::format("the simulated interpreter does not know this: {}", what));
}

template <class T>
const T& as(const Value& value) {
    const T* held = std::get_if<T>(&value.is);
    if (!held) throw ScriptError{"Can’t make something into the type that is wanted.", -1700};
    return *held;
}

std::string joined(const std::vector<Value>& values, std::string_view delimiter);

std::string textOf(const Value& value) {
    if (const auto* text = std::get_if<std::string>(&value.is)) return *text;
    if (const auto* number = std::get_if<std::int64_t>(&value.is)) return std::to_string(*number);
    if (const auto* list = std::get_if<std::vector<Value>>(&value.is)) return joined(*list, "");
    if (const auto* flag = std::get_if<bool>(&value.is)) return *flag ? "true" : "false";
    return std::holds_alternative<Reference>(value.is) ? "a reference" : "missing value";
}

std::string joined(const std::vector<Value>& values, std::string_view delimiter) {
    std::string text;
    for (const Value& value : values) {
        if (&value != values.data()) text += delimiter;
        text += textOf(value);
    }
    return text;
}

// -- statements ---------------------------------------------------------------------------------------------

class Interpreter {
  public:
    Interpreter(std::string_view text, ScriptedApplication& application)
        : lines_(linesOf(text)), application_(application) {}

    std::string run() {
        execute(0, lines_.size());
        return std::move(result_);
    }

  private:
    /// Whether the line begins a block that a line of its own ends.
    bool opens(std::size_t line) const {
        const Line& words = lines_.at(line);
        if (words.front().is("if")) return words.back().is("then");
        if (words.front().is("on")) return words.size() > 1 && !words[1].is("error");
        return words.front().is("tell") || words.front().is("repeat") || words.front().is("try");
    }
    /// The line that ends the block; the line itself where it opens none.
    std::size_t endOf(std::size_t line) const {
        std::size_t depth = 0;
        for (std::size_t at = line;; ++at) {
            if (opens(at)) ++depth;
            if (lines_[at].front().is("end") && depth > 0) --depth;
            if (depth == 0) return at;
        }
    }
    /// The line of the block itself that begins with this word; its end where there is none.
    std::size_t branch(std::size_t line, std::size_t end, std::string_view word) const {
        for (std::size_t at = line + 1; at < end; at = endOf(at) + 1) {
            if (lines_[at].front().is(word)) return at;
        }
        return end;
    }

    /// False once the script has returned.
    bool execute(std::size_t from, std::size_t to) {
        for (std::size_t line = from; line < to;) {
            const std::size_t end = endOf(line);
            line_ = &lines_[line];
            next_ = 0;
            if (!statement(line, end)) return false;
            line = end + 1;
        }
        return true;
    }
    bool statement(std::size_t line, std::size_t end) {
        if (accept("on")) return true;  // joinList, which is known here
        if (accept("tell")) return execute(line + 1, end);
        if (accept("repeat")) return repeated(line, end);
        if (accept("if")) return chosen(line, end);
        if (accept("try")) return tried(line, end);
        return simple();
    }
    bool repeated(std::size_t line, std::size_t end) {
        expect("with");
        const std::string variable = take().text;
        const bool overNumbers = accept("from");
        if (!overNumbers) expect("in");
        const Value first = expression();
        if (overNumbers) expect("to");
        const std::int64_t from = overNumbers ? as<std::int64_t>(first) : 1,
                           to = overNumbers ? as<std::int64_t>(expression())
                                            : application_.count(as<Reference>(first));
        for (std::int64_t i = from; i <= to; ++i) {
            // Of windows no list is made: what each name stands for is decided whenever it is used.
            variables_[variable] =
                overNumbers ? Value{i} : Value{Reference{.windows = Windows::atPlace, .place = i}};
            if (!execute(line + 1, end)) return false;
        }
        return true;
    }
    bool chosen(std::size_t line, std::size_t end) {
        const bool holds = as<bool>(expression());
        expect("then");
        if (line == end) return !holds || simple();
        const std::size_t otherwise = branch(line, end, "else");
        return holds ? execute(line + 1, otherwise) : execute(std::min(otherwise + 1, end), end);
    }
    bool tried(std::size_t line, std::size_t end) {
        const std::size_t handler = branch(line, end, "on");
        try {
            return execute(line + 1, handler);
        } catch (const ScriptError&) {
            return execute(std::min(handler + 1, end), end);
        }
    }
    bool simple() {
        const bool returns = accept("return");
        if (accept("set")) {
            assign();
        } else if (accept("error")) {
            throw ScriptError{textOf(expression()), -2700};
        } else {
            result_ = returns && atEnd() ? "" : textOf(expression());
        }
        if (!atEnd()) notUnderstood(take().text);
        return !returns;
    }
    /// The value comes first, then what it is given to.
    void assign() {
        const std::size_t target = next_;
        for (int depth = 0; depth > 0 || !peek("to"); ++next_) depth += peek("(") ? 1 : peek(")") ? -1 : 0;
        expect("to");
        Value value = expression();
        const std::size_t behind = std::exchange(next_, target);
        if (accept("end")) {
            expect("of");
            std::get<std::vector<Value>>(variables_.at(take().text).is).push_back(std::move(value));
        } else if (const std::string name = take().text; accept("of")) {
            application_.set(reference(), name, as<std::string>(value));
            result_ = textOf(value);
        } else {
            const auto* named = std::get_if<Reference>(&value.is);
            variables_[name] = named && named->windows != Windows::withID
                                   ? Value{application_.resolved(*named)}
                                   : std::move(value);
        }
        next_ = behind;
    }

    // -- expressions ----------------------------------------------------------------------------------------

    Value expression() {
        Value left = concatenation();
        if (!accept("is")) return left;
        if (!accept("in")) return {left == concatenation()};
        const Value list = concatenation();
        return {std::ranges::count(as<std::vector<Value>>(list), left) > 0};
    }
    Value concatenation() {
        Value value = coerced();
        while (accept("&")) value = {textOf(value) + textOf(coerced())};
        return value;
    }
    Value coerced() {
        Value value = primary();
        while (accept("as")) {
            if (accept("text")) {
                value = {textOf(value)};
            } else {
                expect("alias");
                if (!application_.folderExists(as<std::string>(value)))
                    throw ScriptError{"File wasn’t found.", -43};
            }
        }
        return value;
    }
    Value primary() {
        if (accept("(")) {
            Value value = expression();
            expect(")");
            return value;
        }
        if (accept("{")) return {list("}")};
        const Token token = take();
        if (token.literal) return {token.text};
        if (std::isdigit(static_cast<unsigned char>(token.text.front())))
            return {static_cast<std::int64_t>(std::stoll(token.text))};
        if (const auto known = variables_.find(token.text); known != variables_.end()) return known->second;
        if (auto named = nameOf(token.text)) return {*std::move(named)};
        return phrase(token.text);
    }
    std::vector<Value> list(std::string_view end) {
        std::vector<Value> values;
        while (!accept(end)) {
            values.push_back(expression());
            if (!peek(end)) expect(",");
        }
        return values;
    }
    /// What begins with this word and gives a value.
    Value phrase(const std::string& word) {
        if (word == "linefeed") return {std::string("\n")};
        if (word == "ASCII") {
            expect("character");
            return {std::string(1, static_cast<char>(as<std::int64_t>(primary())))};
        }
        if (word == "my") {
            expect("joinList");
            expect("(");
            const std::vector<Value> arguments = list(")");
            return {joined(as<std::vector<Value>>(arguments.at(0)), as<std::string>(arguments.at(1)))};
        }
        if (word == "POSIX") return path();
        if (word == "make") return made();
        if (word == "item") {
            const std::int64_t place = as<std::int64_t>(primary());
            expect("of");
            const Value list = primary();
            return as<std::vector<Value>>(list).at(static_cast<std::size_t>(place - 1));
        }
        expect("of");
        if (word == "count") {
            const Value counted = primary();
            if (const auto* windows = std::get_if<Reference>(&counted.is))
                return {application_.count(*windows)};
            return {static_cast<std::int64_t>(std::ssize(as<std::vector<Value>>(counted)))};
        }
        if (word == "id" || word == "mode" || word == "URL" || word == "target")
            return application_.get(reference(), word);
        notUnderstood(word);
    }
    Value path() {
        if (accept("file")) return primary();
        expect("path");
        expect("of");
        std::string path = as<std::string>(primary());
        return {path.ends_with('/') ? path : path + '/'};
    }
    Value made() {
        expect("new");
        std::string kind = take().text;
        if (kind == "Finder") kind += " " + take().text;
        std::optional<Reference> at;
        std::string address;
        if (accept("at")) {
            for (const char* word : {"end", "of"}) expect(word);
            at = reference();
        }
        if (accept("with")) {
            for (const char* word : {"properties", "{", "URL", ":"}) expect(word);
            address = as<std::string>(expression());
            expect("}");
        }
        return application_.make(kind, at, address);
    }

    // -- what is spoken of ----------------------------------------------------------------------------------

    /// No request is made for it: it is resolved where it is used.
    std::optional<Reference> nameOf(const std::string& word) {
        if (word == "windows") return Reference{};
        if (word == "tabs") return tabs(Part::everyTab);
        if (word == "every" && accept("window")) return Reference{};
        if (word == "every" && accept("tab")) return tabs(Part::everyTab);
        if (word == "active" && accept("tab")) return tabs(Part::activeTab);
        if (word == "current" && accept("tab")) return tabs(Part::currentTab);
        if (word == "front" && accept("window")) return Reference{.windows = Windows::atPlace, .place = 1};
        if (word == "Finder" && accept("windows")) return Reference{};
        if (word == "Finder" && accept("window"))
            return Reference{.windows = Windows::atPlace, .place = as<std::int64_t>(primary())};
        if (word == "window" && accept("id")) return identified(Windows::withID);
        if (word != "first") return std::nullopt;
        for (const char* next : {"window", "whose", "id", "is"}) expect(next);
        return identified(Windows::whoseID);
    }
    Reference tabs(Part part) {
        expect("of");
        Reference result = reference();
        result.part = part;
        return result;
    }
    Reference identified(Windows windows) {
        const Value identifier = primary();
        Reference result{.windows = windows};
        if (const auto* text = std::get_if<std::string>(&identifier.is)) {
            result.identifier = *text;
        } else {
            result.identifier = as<std::int64_t>(identifier);
        }
        return result;
    }
    Reference reference() { return as<Reference>(primary()); }

    // -- the words of the line ------------------------------------------------------------------------------

    bool atEnd() const { return next_ == line_->size(); }
    bool peek(std::string_view word) const {
        if (atEnd()) notUnderstood("a line that ends too soon");
        return (*line_)[next_].is(word);
    }
    bool accept(std::string_view word) {
        const bool there = !atEnd() && peek(word);
        next_ += there ? 1 : 0;
        return there;
    }
    void expect(std::string_view word) {
        if (!accept(word)) notUnderstood(fmt::format("no \"{}\" where one belongs", word));
    }
    const Token& take() {
        if (atEnd()) notUnderstood("a line that ends too soon");
        return (*line_)[next_++];
    }

    std::vector<Line> lines_;
    ScriptedApplication& application_;
    std::map<std::string, Value, std::less<>> variables_;
    std::string result_;
    const Line* line_ = nullptr;
    std::size_t next_ = 0;
};

}  // namespace

std::string interpret(std::string_view text, ScriptedApplication& application) {
    return Interpreter(text, application).run();
}

}  // namespace quillo::simulated
