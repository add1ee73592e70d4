// Made-up words in the place of what a person would not show a stranger, so that a restore decides as it
// would with the real ones: the same text always becomes the same word, different ones different words. In
// another object they become others.
#pragma once
#include <cstdint>
#include <map>
#include <random>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "WindowEngine/support/Url.hpp"

namespace quillo {

class Pseudonyms {
  public:
    explicit Pseudonyms(std::uint64_t seed);

    /// One word of six letters.
    std::string word(std::string_view text);

    /// All titles that title() will be asked for: windows are matched by whether one title holds another, so
    /// what is replaced as one word depends on all of them.
    void learnTitles(const std::vector<std::string>& titles);
    /// As windows are matched by it: titles that are equal to the matching stay equal, one that holds another
    /// holds it still, and where one holds no other it holds none. Blanks, dashes and brackets between words
    /// stay. A title that was not learnt becomes one word.
    std::string title(std::string_view title);

    /// A file's path, folder by folder, with the ending of a well-known kind of document; of any other
    /// address the host, and what follows. Schemes that everybody knows, and a browser's empty pages, stay.
    Url url(const Url& url);

  private:
    struct Learnt {
        std::string text;
        std::set<std::size_t> cuts;  // between bytes, both ends among them
    };
    void cutAlike(std::vector<Learnt>& all);

    std::mt19937_64 random_;
    std::map<std::string, std::string, std::less<>> words_;
    std::set<std::string> taken_;
    std::map<std::string, std::string, std::less<>> titles_;  // by the normalised title
};

}  // namespace quillo
