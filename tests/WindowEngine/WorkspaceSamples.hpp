// Workspaces for tests: the manual's example, and random ones by seed, which have every key.
#pragma once
#include <fstream>
#include <iterator>
#include <random>

#include "WindowEngine/records/WorkspaceCoding.hpp"
#include "WindowEngine/records/WorkspaceFields.hpp"

namespace quillo::samples {

inline Url url(std::string_view text) {
    return Url::parse(text).value();
}

inline const std::string& exampleDocument() {
    static const std::string document = [] {
        std::ifstream file(QUILLO_SOURCE_DIR "/docs/file-format.md");
        const std::string manual(std::istreambuf_iterator<char>(file), {});
        const std::size_t begin = manual.find("```json\n") + 8;
        return manual.substr(begin, manual.find("```", begin) - begin);
    }();
    return document;
}
inline Workspace example() {
    return WorkspaceCoding::decode(exampleDocument()).value();
}

/// A small workspace; `content` tells two versions of it apart.
inline Workspace named(Uuid id, std::string name, std::string content = {},
                       std::int64_t updatedSeconds = 1000) {
    Workspace workspace = Workspace::create(id, std::move(name), "square", "sky", {},
                                            Instant{std::chrono::seconds{updatedSeconds}});
    workspace.snapshot.notes = {{std::move(content)}};
    return workspace;
}

/// Every field of a record at random, from the list of fields that documents have.
class RandomRecords {
  public:
    explicit RandomRecords(std::uint64_t seed) : engine_(seed) {}

    std::size_t below(std::size_t limit) { return engine_() % limit; }
    Workspace workspace() {
        Workspace made;
        fill(made);
        made.schemaVersion = Workspace::currentSchemaVersion;
        return made;
    }

  private:
    void fill(bool& value) { value = below(2) == 0; }
    void fill(std::int64_t& value) { value = static_cast<std::int64_t>(engine_()) >> below(64); }
    void fill(std::uint32_t& value) { value = static_cast<std::uint32_t>(engine_() >> below(64)); }
    void fill(double& value) {
        const double scales[] = {1, 0.1, 1e-9, 1e9, 1e300, -1, 0};
        value = static_cast<double>(below(100000)) / 7 * scales[below(7)];
    }
    void fill(Rect& r) {
        for (double* part : {&r.x, &r.y, &r.width, &r.height}) fill(*part);
    }
    void fill(Instant& value) { value = Instant{std::chrono::seconds{below(4'000'000'000)}}; }
    void fill(Uuid& value) { value = Uuid::random(); }
    void fill(CleanSlateMode& value) { value = allCleanSlateModes[below(3)]; }
    void fill(std::string& value) {
        const char* const pieces[] = {"a",    "/", "\"", "\\", "\n",     "\x01",
                                      "\x7f", "é", "漢", "😀", "\u2028", "]"};
        for (std::size_t i = below(8); i > 0; --i) value += pieces[below(std::size(pieces))];
    }
    Url address() { return url("https://host" + std::to_string(below(100)) + ".example/|^/é"); }
    void fill(std::optional<Url>& value) {
        if (below(2)) value = address();
    }
    void fill(std::vector<Url>& list) {
        for (std::size_t i = below(4); i > 0; --i) list.push_back(address());
    }
    template <class T>
    void fill(std::optional<T>& value) {
        if (below(2)) fill(value.emplace());
    }
    template <class T>
    void fill(std::vector<T>& list) {
        for (std::size_t i = below(4); i > 0; --i) fill(list.emplace_back());
    }
    template <Named T>
    void fill(T& value) {
        value = namesOf<T>[below(namesOf<T>.size())].second;
    }
    template <Record R>
    void fill(R& record) {
        std::apply([&](const auto&... field) { (fill(record.*field.member), ...); }, fieldsOf<R>);
    }

    std::mt19937_64 engine_;
};

}  // namespace quillo::samples
