// What a log may hold: sentences that are known here, with counts, seconds and identifiers. Any other line
// could carry a title, a path or an address, and fails the test that wrote it.
#pragma once
#include <gtest/gtest.h>

#include <regex>
#include <sstream>
#include <string>

namespace quillo {

inline void expectOnlyKnownSentences(const std::string& log) {
    static const std::regex known(R"((.* )?(capture|restore|hotkeys) (info|error):? ()"
                                  R"(captured \d+ apps, \d+ windows|)"
                                  R"(adapter (finder|chromium|safari|firefox) captured \d+ urls|)"
                                  R"(adapter (finder|chromium|safari|firefox) failed: [A-Z][a-zA-Z ]+\.|)"
                                  R"((\(not an identifier\)|[\w.-]+) ready at \d+\.\d+s|)"
                                  R"(requested a new window for windowless (\(not an identifier\)|[\w.-]+)|)"
                                  R"((\(not an identifier\)|[\w.-]+) is asked for \d+ more windows|)"
                                  R"(Desktop creation: [a-zA-Z][\w ;:,()-]+|)"
                                  R"(hotkey [⌃⌥⇧⌘]+\S+ unavailable: -?\d+|)"
                                  R"(\d+ of (\(not an identifier\)|[\w.-]+) [a-z]+: [a-zA-Z][\w ;:,()'.-]+|)"
                                  R"(restore finished: \d+ items in \d+\.\d+s))");
    std::istringstream lines(log);
    for (std::string line; std::getline(lines, line);)
        EXPECT_TRUE(std::regex_match(line, known)) << "not for a log: " << line;
}

}  // namespace quillo
