// Finding and ordering workspaces, and the keys of the switcher and the library.
#include <gtest/gtest.h>

#include "app/LibraryState.hpp"
#include "app/LibraryTexts.hpp"
#include "app/Switcher.hpp"

namespace quillo {
namespace {

using Names = std::vector<std::string>;

/// `restored` 0: never. Identities are the names' own.
Workspace workspace(std::string name, const Names& applications = {}, int saved = 0, int restored = 0) {
    WorkspaceSnapshot snapshot;
    for (const std::string& application : applications)
        snapshot.applications.push_back({"org." + application, application, std::nullopt, {}, std::nullopt});
    Workspace made = Workspace::create(Uuid::random(), std::move(name), "square", "teal", snapshot,
                                       Instant{std::chrono::seconds{saved}});
    if (restored) made.lastRestoredAt = Instant{std::chrono::seconds{restored}};
    return made;
}

TEST(WorkspaceSearch, FindsWholeCharactersWithoutRegardToCase) {
    constexpr auto common = text::CaseRules::common, dotlessI = text::CaseRules::dotlessI;
    const struct {
        std::string_view query, name;
        bool found;
        text::CaseRules rules = common;
    } cases[] = {
        {"", "Work", true},
        {" \t\n", "Work", true},
        {" \u00a0oR\r\n", "Work", true},
        {"o r", "Work", false},
        {"workk", "Work", false},
        {"a", "", false},
        {"", "", true},
        {"büro", "BÜRO", true},
        {"buro", "Büro", false},
        {"bu\u0308ro", "Büro", true},
        {"büro", "bu\u0308ro", true},
        {"bu", "bu\u0308ro", false},
        {"q", "q\u0307", false},  // no composed form
        {"q", "q\u0307q", true},
        {"q\u0307", "Q\u0307", true},
        {"strasse", "Straße", true},
        {"ΣΊΣΥΦΟΣ", "σίσυφος", true},
        {"क", "की", true},
        {"🦊", "Den 🦊🐾", true},
        {"❤ it", "I \u2764\ufe0f it", true},
        {"\xff", "bad \xc3 byte", true},  // both are the replacement character
        {"inkscape", "Inkscape", true},
        {"istanbul", "İstanbul", false},
        {"istanbul", "İstanbul", true, dotlessI},
        {"istanbul", "I\u0307stanbul", true, dotlessI},
        {"ızgara", "IZGARA", true, dotlessI},
        {"inkscape", "Inkscape", true, dotlessI},
        {"INKSCAPE", "inkscape", true, dotlessI},
        {"kır", "kir", false, dotlessI},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(std::string(row.query) + " in " + std::string(row.name));
        const std::vector list{workspace(std::string(row.name)), workspace("", {std::string(row.name)})};
        EXPECT_EQ(WorkspaceSearch(list, row.rules).matches(row.query).size(), row.found ? 2U : 0U);
    }
}

TEST(WorkspaceSearch, NeverFindsAcrossTwoNames) {
    const std::vector list{workspace("Mail", {"Finder", "Safari"}), workspace("Safari notes")};
    const WorkspaceSearch search(list);
    EXPECT_EQ(search.matches(" safari "), (std::vector<std::size_t>{0, 1}));
    EXPECT_TRUE(search.matches("ls").empty());
    EXPECT_TRUE(search.matches("rs").empty());
}

TEST(WorkspaceSearch, LooksThroughTheBeginningOfWhatIsNoDesktop) {
    Names many;
    for (int i = 0; i < 10'000; ++i) many.push_back(std::to_string(i));
    const std::vector list{workspace("Work", many), workspace(std::string(1000, 'x') + "z")};
    const WorkspaceSearch search(list);
    const std::pair<const char*, std::size_t> cases[] = {{"999", 1}, {"9999", 0}, {"xxx", 1}, {"z", 0}};
    for (const auto& [query, matches] : cases) EXPECT_EQ(search.matches(query).size(), matches) << query;
}

TEST(WorkspaceOrder, SortsByItsKeyAndKeepsEqualOnes) {
    const struct {
        WorkspaceOrder order;
        std::vector<Workspace> list;
        Names sorted;
    } cases[] = {
        {WorkspaceOrder::recent,
         {workspace("a", {}, 10), workspace("b", {}, 30), workspace("c", {}, 5, 20),
          workspace("d", {}, 40, 15)},
         {"b", "c", "d", "a"}},
        {WorkspaceOrder::recent, {workspace("x", {}, 7), workspace("y", {}, 1, 7)}, {"x", "y"}},
        {WorkspaceOrder::saved,
         {workspace("a", {}, 10, 99), workspace("b", {}, 30), workspace("c", {}, 10)},
         {"b", "a", "c"}},
        {WorkspaceOrder::name,
         {workspace("Work 10"), workspace("work 9"), workspace("Work 009"), workspace("Work")},
         {"Work", "work 9", "Work 009", "Work 10"}},
        {WorkspaceOrder::name,
         {workspace("Zebra"), workspace("apple"), workspace("APPLE"), workspace(""), workspace("🦊")},
         {"", "🦊", "apple", "APPLE", "Zebra"}},
        {WorkspaceOrder::name,
         {workspace("résumé b"), workspace("resume c"), workspace("résumé"), workspace("resume")},
         {"resume", "résumé", "résumé b", "resume c"}},
        {WorkspaceOrder::name,
         {workspace(std::string(300, 'z')), workspace(std::string(299, 'z'))},
         {std::string(299, 'z'), std::string(300, 'z')}},
    };
    for (const auto& row : cases) {
        Names sorted;
        for (const std::size_t place : WorkspaceSearch(row.list).matches("", row.order))
            sorted.push_back(row.list[place].name);
        EXPECT_EQ(sorted, row.sorted) << label(row.order);
    }
}

class Library : public testing::Test {
  protected:
    void change(std::vector<Workspace> list) {
        list_ = std::move(list);
        index_.reload();
    }
    Names names(const std::vector<std::size_t>& places) const {
        Names all;
        for (const std::size_t place : places) all.push_back(list_[place].name);
        return all;
    }

    std::vector<Workspace> list_{workspace("Mail", {"Safari"}, 1), workspace("Safari", {}, 3),
                                 workspace("Code", {"Xcode"}, 2)};
    LibraryIndex index_{[this]() -> const std::vector<Workspace>& { return list_; }};
    LibraryState library_{index_};
    Names log_;
    Switcher switcher_{
        index_,
        {.restore = [this](const Workspace& chosen) { log_.push_back("restore " + chosen.name); },
         .beginCapture = [this] { log_.emplace_back("capture"); },
         .closePanel =
             [this] {
                 log_.emplace_back("close");
                 if (whileClosing_) whileClosing_();
             },
         .refreshCurrentSnapshot = [this] { log_.emplace_back("refresh"); },
         .preview = [this](const Workspace& one) { log_.push_back("preview " + one.name); }}};
    std::function<void()> whileClosing_;
};

TEST_F(Library, SwitcherKeysMoveAndAct) {
    using enum Switcher::Key;
    const struct {
        std::vector<Switcher::Key> keys;
        std::string query;  // typed before the last key
        std::size_t highlighted;
        Names log;
    } cases[] = {
        {{up, down}, "", 1, {}},
        {{down, down, down, down, down}, "", 3, {}},
        {{down, down, down, down, down, enter}, "", 3, {"close", "capture"}},
        {{enter}, "", 0, {"close", "restore Mail"}},
        {{enter}, " SAFARI ", 0, {"close", "restore Mail"}},
        {{down, enter}, "safari", 0, {"close", "restore Mail"}},  // a new query begins at its first match
        {{pageDown, pageUp, pageDown}, "", 3, {}},
        {{end, home, end, enter}, "", 3, {"close", "capture"}},
        {{end, home}, "", 0, {}},
        {{down, down, down, down}, "xcode", 1, {}},
        {{down, down, down, up}, "xcode", 0, {}},
        {{enter}, "nothing like it", 0, {"close", "capture"}},
        {{escape}, "", 0, {"close"}},
        {{commandS}, "safari", 0, {"close", "capture"}},
        {{down, commandEnter}, "safari", 0, {"close", "preview Mail"}},
        {{end, commandEnter}, "", 3, {"close", "capture"}},  // of that there is nothing to preview
    };
    for (const auto& row : cases) {
        switcher_.shown();
        EXPECT_EQ(std::exchange(log_, {}), Names{"refresh"});
        EXPECT_EQ(switcher_.query() + std::to_string(switcher_.highlightedIndex()), "0");
        for (std::size_t i = 0; i < row.keys.size(); ++i) {
            if (i + 1 == row.keys.size()) switcher_.setQuery(row.query);
            EXPECT_TRUE(switcher_.press(row.keys[i]));
        }
        EXPECT_EQ(switcher_.highlightedIndex(), row.highlighted);
        EXPECT_EQ(log_, row.log);
        EXPECT_EQ(switcher_.focused(), row.log.empty());
        EXPECT_EQ(switcher_.press(down), row.log.empty()) << "keys work with the focus only";
        log_.clear();
    }
}

TEST_F(Library, SwitcherRowsAreTheLibrarysMatchesAndTheSaveRow) {
    switcher_.shown();
    EXPECT_EQ(names(switcher_.matches()), (Names{"Mail", "Safari", "Code"}));
    EXPECT_EQ(switcher_.emptyText(), "");
    switcher_.pick(switcher_.saveRow());
    switcher_.pick(2);
    EXPECT_EQ(log_, (Names{"refresh", "close", "capture", "close", "restore Code"}));

    switcher_.setQuery(" zzz");
    EXPECT_EQ(switcher_.emptyText(), "Nothing matches “ zzz”");
    EXPECT_EQ(switcher_.highlightedRow(), switcher_.saveRow());
    change({workspace("Zzz")});
    EXPECT_EQ(names(switcher_.matches()), Names{"Zzz"});
    change({});
    switcher_.setQuery(" ");
    EXPECT_EQ(switcher_.emptyText(), "");
}

TEST_F(Library, APickCountsTheMatchesOfThatMoment) {
    switcher_.shown();
    switcher_.press(Switcher::Key::down);
    whileClosing_ = [this] { change({list_[1], list_[2]}); };
    switcher_.press(Switcher::Key::enter);
    EXPECT_EQ(log_.back(), "restore Code");
    whileClosing_ = [this] { change({}); };
    switcher_.pick();
    EXPECT_EQ(log_.back(), "capture");
}

TEST_F(Library, RowsAreFilteredAndSorted) {
    EXPECT_EQ(names(library_.rows()), (Names{"Safari", "Code", "Mail"}));
    library_.setOrder(WorkspaceOrder::name);
    EXPECT_EQ(names(library_.rows()), (Names{"Code", "Mail", "Safari"}));
    library_.setQuery("safari");
    EXPECT_EQ(names(library_.rows()), (Names{"Mail", "Safari"}));
    EXPECT_EQ(std::string(library_.emptyTitle()) + std::string(library_.emptyHint()), "");
    library_.setQuery("zzz");
    EXPECT_EQ(library_.emptyTitle(), "No matching workspaces");
    EXPECT_EQ(library_.emptyHint(), "Try a workspace name or an app, like Safari or Xcode.");
    change({});
    EXPECT_EQ(library_.emptyTitle(), "Save your first workspace");
    EXPECT_EQ(library_.emptyHint(), LibraryTexts::windowEmptyHint);
}

TEST_F(Library, TheCursorKeepsToItsWorkspaceAndToTheRows) {
    library_.moveCursorUp();
    EXPECT_EQ(library_.cursor(), 0U);
    for (int i = 0; i < 5; ++i) library_.moveCursorDown();
    EXPECT_EQ(library_.cursor(), 2U);
    library_.setOrder(WorkspaceOrder::name);
    EXPECT_EQ(library_.cursor(), 1U) << "Mail is there now";
    change({list_[1], list_[2]});
    EXPECT_EQ(library_.cursor(), 1U);
    library_.setQuery("code");
    EXPECT_EQ(library_.cursor(), 0U) << "a new query begins at its first match";
    library_.setQuery("");
    EXPECT_EQ(library_.cursor(), 0U);
    library_.setQuery("zzz");
    library_.moveCursorDown();
    EXPECT_EQ(library_.cursor(), 0U);
}

TEST_F(Library, TellsOfEachChangeOnce) {
    int rows = 0, moves = 0;
    QObject::connect(&library_, &LibraryState::rowsChanged, [&] { ++rows; });
    QObject::connect(&library_, &LibraryState::cursorMoved, [&] { ++moves; });
    for (int twice = 0; twice < 2; ++twice) {
        library_.setQuery("safari");
        library_.setOrder(WorkspaceOrder::saved);
        library_.moveCursorDown();  // of two rows
    }
    EXPECT_EQ(rows, 2);
    EXPECT_EQ(moves, 1);
}

}  // namespace
}  // namespace quillo
