#include "WindowEngine/support/TextSearch.hpp"

#include <unicode/locid.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

#include <algorithm>

#include "WindowEngine/support/Text.hpp"

namespace quillo::text {
namespace {

constexpr char separator = '\xff';  // never part of UTF-8

icu::UnicodeString composed(const icu::UnicodeString& s) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* normalizer = icu::Normalizer2::getNFCInstance(status);
    if (U_FAILURE(status)) return s;
    const icu::UnicodeString result = normalizer->normalize(s, status);
    return U_SUCCESS(status) ? result : s;
}

bool selectsVariation(char16_t unit) {
    return unit >= 0xFE00 && unit <= 0xFE0F;
}

// Composed before folding, for a decomposed İ must not lose its dot, and again after it. Whether a symbol is
// to be drawn in colour makes no difference.
std::string folded(std::string_view s, std::uint32_t options) {
    const icu::UnicodeString decoded =
        icu::UnicodeString::fromUTF8(icu::StringPiece(s.data(), static_cast<std::int32_t>(s.size())));
    const icu::UnicodeString whole = composed(composed(decoded).foldCase(options));
    icu::UnicodeString plain;
    for (std::int32_t i = 0; i < whole.length(); ++i) {
        if (!selectsVariation(whole[i])) plain.append(whole[i]);
    }
    std::string bytes;
    return plain.toUTF8String(bytes);
}

std::vector<std::string> forms(std::string_view s, CaseRules rules) {
    std::vector<std::string> all{isAscii(s) ? lowercase(s) : folded(s, U_FOLD_CASE_DEFAULT)};
    if (rules == CaseRules::dotlessI) {
        std::string local = folded(s, U_FOLD_CASE_EXCLUDE_SPECIAL_I);
        if (local != all.front()) all.push_back(std::move(local));
    }
    return all;
}

// A letter whose diacritic has no composed form still is another letter than the bare one. (A virama, of
// class 9, is no diacritic: the next letter may not have been typed yet.)
bool diacriticAt(std::string_view s, std::size_t at) {
    if (at == s.size() || static_cast<unsigned char>(s[at]) < 0x80 || s[at] == separator) return false;
    UChar32 c = 0;
    auto next = static_cast<std::int32_t>(at);
    U8_NEXT_OR_FFFD(s.data(), next, static_cast<std::int32_t>(s.size()), c);
    const std::uint8_t combiningClass = u_getCombiningClass(c);
    return combiningClass != 0 && combiningClass != 9;
}

bool contains(std::string_view texts, std::string_view form) {
    for (std::size_t at = texts.find(form); at != std::string_view::npos; at = texts.find(form, at + 1)) {
        if (!diacriticAt(texts, at + form.size())) return true;
    }
    return false;
}

}  // namespace

CaseRules personCaseRules() {
    const std::string_view language = icu::Locale::getDefault().getLanguage();
    return language == "tr" || language == "az" ? CaseRules::dotlessI : CaseRules::common;
}

void SearchableTexts::add(std::string_view text) {
    for (const std::string& form : forms(text, rules_)) (folded_ += separator) += form;
}

TypedQuery::TypedQuery(std::string_view typed, CaseRules rules) : forms_(forms(trim(typed), rules)) {}

bool TypedQuery::isIn(const SearchableTexts& texts) const {
    return empty() || std::ranges::any_of(
                          forms_, [&](const std::string& form) { return contains(texts.folded_, form); });
}

}  // namespace quillo::text
