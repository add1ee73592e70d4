#include "WindowEngine/restore/Pseudonyms.hpp"

#include <algorithm>
#include <array>
#include <optional>

#include "WindowEngine/restore/WindowMatcher.hpp"
#include "WindowEngine/support/Text.hpp"

namespace quillo {
namespace {

constexpr std::size_t mostTitleBytes = 512;  // as many as the matching looks at
constexpr std::size_t mostTitlesCompared = 2000;

constexpr std::array<std::string_view, 7> knownSchemes{"http", "https",  "file",  "about",
                                                       "ftp",  "mailto", "chrome"};
constexpr std::array<std::string_view, 5> emptyPages{"about:blank", "about:newtab", "about:home",
                                                     "chrome://newtab/", "chrome://newtab"};

/// Well-known kinds of documents; any other ending may be a part of a name: "anna.mueller", "offer.ACME".
constexpr std::array<std::string_view, 40> knownEndings{
    "avi", "bmp",  "c",   "conf", "cpp",  "css", "csv",  "doc", "docx", "epub", "gif", "h",   "hpp", "html",
    "ini", "jpeg", "jpg", "js",   "json", "md",  "mkv",  "mp3", "mp4",  "odp",  "ods", "odt", "pdf", "png",
    "ppt", "pptx", "py",  "rtf",  "svg",  "tex", "tiff", "txt", "xls",  "xlsx", "xml", "zip"};

std::string normalised(std::string_view title) {
    return WindowMatcher::normalize(text::beginning(title, mostTitleBytes));
}

bool isSeparator(std::int32_t character) {
    constexpr std::u32string_view separators = U" -|:,()[]\u2013\u2014\u00b7";
    return separators.contains(static_cast<char32_t>(character));
}

bool isSeparators(std::string_view part) {
    bool all = true;
    text::forEachCharacter(part, [&](std::int32_t one, std::string_view) { all = all && isSeparator(one); });
    return all;
}

/// Both ends, and where words begin and end; a text of nothing but separators is one word.
std::set<std::size_t> wordEnds(std::string_view text) {
    std::set<std::size_t> cuts{0, text.size()};
    if (isSeparators(text)) return cuts;
    std::optional<bool> before;
    std::size_t at = 0;
    text::forEachCharacter(text, [&](std::int32_t one, std::string_view bytes) {
        const bool separator = isSeparator(one);
        if (before && *before != separator) cuts.insert(at);
        before = separator;
        at += bytes.size();
    });
    return cuts;
}

/// An ending that says what kind of file it is: ".txt".
std::string_view endingOf(std::string_view name) {
    const std::size_t dot = name.rfind('.');
    if (dot == name.npos || dot == 0) return {};
    const bool known =
        std::ranges::find(knownEndings, text::lowercase(name.substr(dot + 1))) != knownEndings.end();
    return known ? name.substr(dot) : std::string_view();
}

}  // namespace

Pseudonyms::Pseudonyms(std::uint64_t seed) : random_(seed) {}

std::string Pseudonyms::word(std::string_view text) {
    if (const auto known = words_.find(text); known != words_.end()) return known->second;
    constexpr std::string_view consonants = "bdfgklmnprstvz", vowels = "aeiou";
    std::string made;
    do {
        made.clear();
        for (int syllable = 0; syllable < 3; ++syllable) {
            made += consonants[random_() % consonants.size()];
            made += vowels[random_() % vowels.size()];
        }
    } while (!taken_.insert(made).second);
    words_.emplace(text, made);
    return made;
}

/// Where one title stands in another, both are cut in the same places, so that the same words come of both.
void Pseudonyms::cutAlike(std::vector<Learnt>& all) {
    struct Inside {
        Learnt *outer, *inner;
        std::size_t at;
    };
    std::vector<Inside> insides;
    const std::size_t count = std::min(all.size(), mostTitlesCompared);
    for (std::size_t i = 0; i < count; ++i) {
        for (std::size_t j = 0; j < count; ++j) {
            if (i == j || all[j].text.empty() || all[j].text.size() >= all[i].text.size()) continue;
            const std::size_t at = all[i].text.find(all[j].text);
            if (at != std::string::npos) insides.push_back({&all[i], &all[j], at});
        }
    }
    for (bool changed = true; changed;) {
        changed = false;
        for (const Inside& one : insides) {
            const std::size_t end = one.at + one.inner->text.size();
            for (const std::size_t cut : one.inner->cuts)
                changed |= one.outer->cuts.insert(one.at + cut).second;
            for (const std::size_t cut : one.outer->cuts)
                if (cut > one.at && cut < end) changed |= one.inner->cuts.insert(cut - one.at).second;
        }
    }
}

void Pseudonyms::learnTitles(const std::vector<std::string>& titles) {
    std::set<std::string> texts;
    for (const std::string& title : titles) texts.insert(normalised(title));
    std::vector<Learnt> all;
    for (const std::string& text : texts) all.push_back({text, wordEnds(text)});
    cutAlike(all);
    for (const Learnt& one : all) {
        std::string made;
        for (auto cut = one.cuts.begin(), next = std::next(cut); next != one.cuts.end(); cut = next++) {
            const std::string_view part = std::string_view(one.text).substr(*cut, *next - *cut);
            made += isSeparators(part) && !isSeparators(one.text) ? std::string(part) : word(part);
        }
        titles_[one.text] = std::move(made);
    }
}

std::string Pseudonyms::title(std::string_view title) {
    const std::string text = normalised(title);
    if (text.empty()) return {};
    const auto learnt = titles_.find(text);
    return learnt == titles_.end() ? word(text) : learnt->second;
}

Url Pseudonyms::url(const Url& original) {
    Url url = original.standardized();
    if (const auto path = url.filePath()) {
        const bool folder = original.string().ends_with('/');
        std::string made;
        for (std::size_t at = 1; at <= path->size() && path->size() > 1;) {
            const std::size_t end = std::min(path->find('/', at), path->size());
            const std::string_view part = std::string_view(*path).substr(at, end - at);
            const std::string_view ending =
                end == path->size() && !folder ? endingOf(part) : std::string_view();
            made += "/" + word(part.substr(0, part.size() - ending.size())).append(ending);
            at = end + 1;
        }
        return Url::file(made.empty() ? "/" : made, folder);
    }
    if (std::ranges::find(emptyPages, url.string()) != emptyPages.end()) return url;
    const std::string scheme = url.scheme(), host = url.host().value_or("");
    const std::string shown =
        std::ranges::find(knownSchemes, scheme) != knownSchemes.end() ? scheme : "other";
    std::string rest = url.string().substr(std::min(url.string().size(), scheme.size() + 1));
    if (host.empty()) return Url::parse(shown + ":" + word(rest)).value_or(Url::file("/"));
    const std::size_t after = rest.find('/', 2);
    rest = after == std::string::npos ? "" : rest.substr(after);
    const std::string made = shown + "://" + word(host) + ".example" +
                             (rest.empty()  ? ""
                              : rest == "/" ? "/"
                                            : "/" + word(rest));
    return Url::parse(made).value_or(Url::file("/"));
}

}  // namespace quillo
