#include "ctl/Output.hpp"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>

#include "WindowEngine/support/Text.hpp"
#include "ctl/HumanText.hpp"

namespace quillo::ctl {
namespace {

constexpr std::size_t usualWidth = 80;

std::size_t terminalWidth() {
    if (isatty(STDOUT_FILENO) == 0) return 0;
    winsize size{};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) return size.ws_col;
    return usualWidth;
}

bool isSet(const char* variable) {
    const char* value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

bool dumbTerminal() {
    const char* terminal = std::getenv("TERM");
    return terminal == nullptr || std::string_view(terminal) == "dumb";
}

std::string_view escape(Style style) {
    switch (style) {
        case Style::plain:
            return "";
        case Style::bold:
            return "\x1b[1m";
        case Style::dim:
            return "\x1b[2m";
        case Style::good:
            return "\x1b[32m";
        case Style::warning:
            return "\x1b[33m";
        case Style::bad:
            return "\x1b[31m";
    }
    return "";
}

/// What comes after a question that was left with Ctrl-C begins a line of its own.
void endLineAndProgram(int signal) {
    [[maybe_unused]] const ssize_t written = ::write(STDOUT_FILENO, "\n", 1);
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

bool put(std::FILE* stream, std::string_view text) {
    return std::fwrite(text.data(), 1, text.size(), stream) == text.size();
}

}  // namespace

Output::Output(bool json, bool quiet) : json_(json), quiet_(quiet), width_(terminalWidth()) {
    colours_ = width_ > 0 && !isSet("NO_COLOR") && !dumbTerminal();
}

void Output::write(std::string_view text) {
    const bool put = ctl::put(stdout, text) && std::fflush(stdout) == 0;
    readerLeft_ = readerLeft_ || (!put && errno == EPIPE);
    written_ = written_ && (put || readerLeft_);  // a reader that has had enough is no fault
}

void Output::line(std::string_view text) {
    if (kept_) return kept_->emplace_back(text), void();
    clearProgress();
    write(std::string(text) + "\n");
}

void Output::done(std::string_view text) {
    if (!quiet_) line(text);
}

void Output::document(std::string_view json) {
    if (json_) {
        line(onOneLine(json));
    } else {
        write(json);
    }
}

void Output::value(JsonLine value) {
    if (const Result<std::string> text = std::move(value).finish()) {
        line(*text);
    } else {
        complain(text.error().text);
        written_ = false;
    }
}

void Output::complain(std::string_view text) {
    clearProgress();
    put(stderr, "quilloctl: ");
    put(stderr, text);
    put(stderr, "\n");
}

void Output::progress(std::string_view text) {
    if (width_ == 0 || json_ || quiet_ || dumbTerminal()) return;
    clearProgress();
    put(stdout, fitted(text, width_ - 1));
    std::fflush(stdout);
    progressShown_ = true;
}

void Output::clearProgress() {
    if (progressShown_) put(stdout, "\r\x1b[K");
    progressShown_ = false;
}

bool Output::canAsk() const {
    return !json_ && width_ > 0 && isatty(STDIN_FILENO) != 0;
}

bool Output::confirmed(std::string_view question) {
    clearProgress();
    put(stdout, question);
    put(stdout, " [y/N] ");
    std::fflush(stdout);
    const auto before = std::signal(SIGINT, endLineAndProgram);
    std::string answer;
    const bool answered = static_cast<bool>(std::getline(std::cin, answer));
    std::signal(SIGINT, before);
    if (!answered) put(stdout, "\n");
    return answered && (text::equalIgnoringCase(answer, "y") || text::equalIgnoringCase(answer, "yes"));
}

std::string Output::painted(Style style, std::string_view text) const {
    if (!colours_ || style == Style::plain) return std::string(text);
    return std::string(escape(style)) + std::string(text) + "\x1b[0m";
}

bool Output::finish() {
    clearProgress();
    return written_;
}

}  // namespace quillo::ctl
