// Finding texts by what a person typed: without regard to case, but with regard to diacritics, and whichever
// of Unicode's ways of writing a character was used. All input is UTF-8.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quillo::text {

/// Where i and ı are two letters, "I" is the capital of ı. There letters are compared both as there and as
/// everywhere else, since names of programs are hardly ever written in that language.
enum class CaseRules : std::uint8_t { common, dotlessI };
CaseRules personCaseRules();  // of the person's locale

/// Texts kept ready for being searched, in memory of about their own size.
class SearchableTexts {
  public:
    explicit SearchableTexts(CaseRules rules = personCaseRules()) : rules_(rules) {}

    void add(std::string_view text);

  private:
    friend class TypedQuery;

    CaseRules rules_;
    std::string folded_;  // all forms of all texts, each behind a byte that no text has
};

class TypedQuery {
  public:
    /// White space and line breaks at both ends do not count.
    explicit TypedQuery(std::string_view typed, CaseRules rules = personCaseRules());

    /// Found everywhere.
    bool empty() const { return forms_.front().empty(); }
    /// Whether one of the texts contains it.
    bool isIn(const SearchableTexts& texts) const;

  private:
    std::vector<std::string> forms_;  // at least one
};

}  // namespace quillo::text
