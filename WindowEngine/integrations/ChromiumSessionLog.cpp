#include "WindowEngine/integrations/ChromiumSessionLog.hpp"

#include <unicode/unistr.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <map>
#include <tuple>
#include <unordered_map>
#include <utility>

#include "WindowEngine/support/Text.hpp"

namespace quillo::ChromiumSessionLog {
namespace {

constexpr std::string_view magic = "SNSS";
constexpr std::uint32_t plain = 1, plainWithMarker = 3;

constexpr std::size_t mostEntries = 1'000;  // of one tab; the browsers keep fifty

enum Command : std::uint8_t {
    tabInWindow = 0,
    tabIndex = 2,
    historyCutFromBack = 5,
    historyEntry = 6,
    currentEntry = 7,
    selectedIndex = 8,
    windowType = 9,
    historyCutFromFront = 11,
    windowBounds = 14,
    windowApplication = 15,
    tabClosed = 16,
    windowClosed = 17,
    tabLastActive = 21,
    windowDesktop = 23,
    historyCutFromMiddle = 24,
    windowOnAllDesktops = 32,
    stateIsWhole = 255,
};

/// Numbers and texts from the front of some bytes; once something is missing, all that follows is.
class Bytes {
  public:
    explicit Bytes(std::string_view bytes) : rest_(bytes) {}

    bool good() const { return good_; }

    template <class Number>
    Number number() {
        Number value{};
        const std::string_view bytes = take(sizeof value);
        if (good_) std::memcpy(&value, bytes.data(), sizeof value);
        return value;
    }

    std::string_view take(std::size_t count) {
        if (count > rest_.size()) good_ = false;
        if (!good_) return {};
        const std::string_view taken = rest_.substr(0, count);
        rest_.remove_prefix(count);
        return taken;
    }

  private:
    std::string_view rest_;
    bool good_ = true;
};

/// A record within a record: its own length, then fields that are each filled up to four bytes.
class Pickle {
  public:
    explicit Pickle(std::string_view body) : fields_({}) {
        Bytes bytes(body);
        const auto length = bytes.number<std::uint32_t>();
        fields_ = Bytes(bytes.take(length));
        good_ = bytes.good();
    }

    bool good() const { return good_ && fields_.good(); }

    template <class Number>
    Number number() {
        return fields_.number<Number>();
    }
    std::string_view text(std::size_t unit = 1) {
        const auto units = number<std::int32_t>();
        if (units < 0) {
            good_ = false;
            return {};
        }
        const std::size_t bytes = static_cast<std::size_t>(units) * unit;
        const std::string_view text = fields_.take(bytes);
        fields_.take(std::min((4 - bytes % 4) % 4, std::size_t{3}));
        return text;
    }

  private:
    Bytes fields_;
    bool good_ = true;
};

struct Page {
    std::string_view address;  // UTF-8
    std::string_view title;    // UTF-16
};

struct Tab {
    std::optional<std::int32_t> window, index;
    std::optional<std::int32_t> current;
    std::map<std::int32_t, Page> history;
    std::int64_t lastActive = 0;  // microseconds since 1601
    bool closed = false;

    /// What it shows: the current entry, else the nearest before it.
    const Page& page() const {
        const auto after = current ? history.upper_bound(*current) : history.end();
        return after == history.begin() ? after->second : std::prev(after)->second;
    }
};

struct Window {
    std::optional<std::int32_t> type;
    std::optional<std::int32_t> selected;
    std::optional<Rect> bounds;
    std::int32_t showState = 1;
    std::optional<std::int64_t> desktop;
    bool isApplication = false, onAllDesktops = false, closed = false;
};

void cutHistory(Tab& tab, std::int32_t from, std::int32_t count) {
    if (count <= 0) return;
    const std::int64_t end = std::int64_t{from} + count;
    std::map<std::int32_t, Page> left;
    for (const auto& [index, page] : tab.history) {
        if (index < from) left.emplace(index, page);
        if (index >= end) left.emplace(index - count, page);
    }
    tab.history = std::move(left);
    if (!tab.current || *tab.current < from) return;
    tab.current = std::max(*tab.current < end ? from - 1 : *tab.current - count, 0);
}

std::optional<std::int64_t> desktopNumber(std::string_view text) {
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool whole = error == std::errc() && end == text.data() + text.size() && number >= 0;
    return whole ? std::optional(number) : std::nullopt;
}

std::string utf8(std::string_view utf16) {
    std::u16string units(utf16.size() / 2, u'\0');
    std::memcpy(units.data(), utf16.data(), units.size() * 2);
    std::string text;
    icu::UnicodeString(units.data(), static_cast<std::int32_t>(units.size())).toUTF8String(text);
    return text;
}

/// What the records come to, one after the other.
class Log {
  public:
    void apply(std::uint8_t command, std::string_view body) {
        Bytes bytes(body);
        const auto first = bytes.number<std::int32_t>();  // a tab or a window, in all that are no pickle
        switch (command) {
            case tabInWindow:
                if (const auto tab = bytes.number<std::int32_t>(); bytes.good()) {
                    windows_[first];
                    tabs_[tab].window = first;
                    tabs_[tab].closed = false;
                }
                break;
            case tabIndex:
                set(bytes, tabs_, first, &Tab::index);
                break;
            case currentEntry:
                set(bytes, tabs_, first, &Tab::current);
                break;
            case selectedIndex:
                set(bytes, windows_, first, &Window::selected);
                break;
            case windowType:
                set(bytes, windows_, first, &Window::type);
                break;
            case tabClosed:
                if (bytes.good()) tabs_[first].closed = true;
                break;
            case windowClosed:
                if (bytes.good()) windows_[first].closed = true;
                break;
            case windowBounds:
                setBounds(bytes, windows_[first]);
                break;
            case tabLastActive:
                bytes.number<std::int32_t>();  // fills up to eight bytes
                if (const auto when = bytes.number<std::int64_t>(); bytes.good())
                    tabs_[first].lastActive = when;
                break;
            case windowOnAllDesktops:
                if (const auto flag = bytes.number<std::uint8_t>(); bytes.good())
                    windows_[first].onAllDesktops = flag != 0;
                break;
            default:
                applyToHistory(command, body, bytes, first);
        }
    }

    void applyToHistory(std::uint8_t command, std::string_view body, Bytes& bytes, std::int32_t tab) {
        switch (command) {
            case historyCutFromBack:
                if (const auto from = bytes.number<std::int32_t>(); bytes.good())
                    std::erase_if(tabs_[tab].history, [&](const auto& entry) { return entry.first >= from; });
                break;
            case historyCutFromFront:
                if (const auto count = bytes.number<std::int32_t>(); bytes.good())
                    cutHistory(tabs_[tab], 0, count);
                break;
            case historyCutFromMiddle: {
                const auto from = bytes.number<std::int32_t>(), count = bytes.number<std::int32_t>();
                if (bytes.good() && from >= 0) cutHistory(tabs_[tab], from, count);
                break;
            }
            default:
                applyPickle(command, Pickle(body));
        }
    }

    void applyPickle(std::uint8_t command, Pickle pickle) {
        const auto number = pickle.number<std::int32_t>();
        switch (command) {
            case historyEntry: {
                const auto index = pickle.number<std::int32_t>();
                const Page page{pickle.text(), pickle.text(2)};
                if (!pickle.good()) break;
                if (auto& history = tabs_[number].history;
                    history.size() < mostEntries || history.contains(index))
                    history[index] = page;
                break;
            }
            case windowApplication:
                if (const auto name = pickle.text(); pickle.good())
                    windows_[number].isApplication = !name.empty();
                break;
            case windowDesktop:
                if (const auto name = pickle.text(); pickle.good())
                    windows_[number].desktop = desktopNumber(name);
                break;
            default:
                break;
        }
    }

    /// Its windows with, for each, when a tab of it was last in front.
    std::vector<std::pair<BrowserWindow, std::int64_t>> normalWindows() const {
        std::map<std::int32_t, std::vector<std::pair<std::int32_t, const Tab*>>> inside;
        for (const auto& [number, tab] : tabs_) {
            if (!tab.closed && tab.window && !tab.history.empty())
                inside[*tab.window].emplace_back(number, &tab);
        }
        std::vector<std::pair<BrowserWindow, std::int64_t>> result;
        for (auto& [number, tabs] : inside) {
            const Window& window = windows_.at(number);
            if (window.closed || window.isApplication || window.type != 0) continue;
            result.push_back(filled(number, window, tabs));
        }
        return result;
    }

  private:
    template <class Owner, class Number>
    static void set(Bytes& bytes, std::unordered_map<std::int32_t, Owner>& owners, std::int32_t number,
                    std::optional<Number> Owner::* field) {
        const auto value = bytes.number<Number>();
        if (bytes.good()) owners[number].*field = value;
    }

    static void setBounds(Bytes& bytes, Window& window) {
        std::array<std::int32_t, 4> box{};
        for (auto& side : box) side = bytes.number<std::int32_t>();
        const auto state = bytes.number<std::int32_t>();
        if (!bytes.good()) return;
        window.bounds = Rect{double(box[0]), double(box[1]), double(box[2]), double(box[3])};
        window.showState = state;
    }

    static std::pair<BrowserWindow, std::int64_t> filled(
        std::int32_t number, const Window& window, std::vector<std::pair<std::int32_t, const Tab*>>& tabs) {
        std::ranges::sort(tabs, {}, [](const auto& numbered) {
            const auto& [tabNumber, tab] = numbered;
            return std::tuple(!tab->index.has_value(), tab->index.value_or(0), tabNumber);
        });
        BrowserWindow result{.frame = window.bounds,
                             .isPlain = window.showState <= 1,
                             .desktop = window.onAllDesktops ? std::nullopt : window.desktop,
                             .order = number};
        for (const auto& [tabNumber, tab] : tabs) {
            const Page& page = tab->page();
            result.tabs.push_back({text::repaired(page.address), utf8(page.title)});
        }
        // The selected index is not written again when a tab moves; the times are right.
        const auto front = std::ranges::max_element(tabs, {}, [&](const auto& numbered) {
            const auto place = &numbered - tabs.data();
            return std::pair(numbered.second->lastActive, window.selected == place);
        });
        result.selected = static_cast<std::size_t>(front - tabs.begin());
        return {std::move(result), front->second->lastActive};
    }

    std::unordered_map<std::int32_t, Tab> tabs_;
    std::unordered_map<std::int32_t, Window> windows_;
};

/// Calls `visit(command, body)` for each whole record; whether the log said that it is whole.
bool forEachRecord(std::string_view log, auto visit) {
    bool whole = false;
    Bytes bytes(log);
    bytes.take(magic.size());
    whole = bytes.number<std::uint32_t>() == plain;
    while (true) {
        const auto size = bytes.number<std::uint16_t>();
        const std::string_view record = bytes.take(size);
        if (!bytes.good() || record.empty()) return whole;
        const auto command = static_cast<std::uint8_t>(record.front());
        if (command == stateIsWhole) {
            whole = true;
        } else {
            visit(command, record.substr(1));
        }
    }
}

std::optional<Error> unreadable(std::string_view log) {
    if (log.size() > largestSessionFile)
        return Error{ErrorKind::invalidData, "its session file is too large"};
    Bytes bytes(log);
    if (bytes.take(magic.size()) != magic) return Error{ErrorKind::invalidData, "its session file is none"};
    const auto version = bytes.number<std::uint32_t>();
    if (!bytes.good()) return Error{ErrorKind::invalidData, "its session file is none"};
    if (version != plain && version != plainWithMarker)
        return Error{ErrorKind::unavailable, "its session file is encrypted or of an unknown version"};
    return std::nullopt;
}

/// A window that was closed, or a tab by itself, as Tabs_N remembers it.
struct Closed {
    std::int64_t when = 0;
    std::vector<std::int32_t> tabs;
};

/// The log of what was closed in one profile.
class ClosedLog {
  public:
    void apply(std::uint8_t command, std::string_view body) {
        constexpr std::uint8_t entry = 1, reopened = 2, tab = 4, window = 9;
        Bytes bytes(body);
        Pickle pickle(body);
        switch (command) {
            case window: {
                const auto number = pickle.number<std::int32_t>();
                pickle.number<std::int32_t>();  // the tab that was selected
                const auto tabs = pickle.number<std::int32_t>();
                const auto when = pickle.number<std::int64_t>();
                if (!pickle.good()) return;
                owner_ = number;
                missing_ = tabs;
                closed_[number] = {when, {}};
                return;
            }
            case tab: {
                const auto number = bytes.number<std::int32_t>(), current = bytes.number<std::int32_t>();
                const auto when = bytes.number<std::int64_t>();
                if (!bytes.good()) return;
                current_[number] = current;
                if (missing_ > 0) {
                    --missing_;
                } else {
                    owner_ = number;
                    closed_[number] = {when, {}};
                }
                closed_[owner_].tabs.push_back(number);
                return;
            }
            case entry: {
                const auto number = pickle.number<std::int32_t>(), index = pickle.number<std::int32_t>();
                const std::string_view address = pickle.text();
                if (pickle.good()) addresses_[{number, index}] = address;
                return;
            }
            case reopened:
                if (const auto number = bytes.number<std::int32_t>(); bytes.good()) closed_.erase(number);
                return;
            default:
                return;
        }
    }

    /// Whether it has a window of these tabs that was closed no earlier than `used`.
    bool has(const BrowserWindow& window, std::int64_t used) const {
        return std::ranges::any_of(closed_, [&](const auto& entry) {
            const Closed& closed = entry.second;
            return closed.when >= used &&
                   std::ranges::equal(
                       closed.tabs, window.tabs, {}, [&](std::int32_t tab) { return address(tab); },
                       &BrowserTab::address);
        });
    }

  private:
    std::string_view address(std::int32_t tab) const {
        const auto current = current_.find(tab);
        const auto found = addresses_.find({tab, current == current_.end() ? 0 : current->second});
        return found == addresses_.end() ? std::string_view() : found->second;
    }

    std::map<std::int32_t, Closed> closed_;
    std::map<std::int32_t, std::int32_t> current_;
    std::map<std::pair<std::int32_t, std::int32_t>, std::string_view> addresses_;
    std::int32_t owner_ = 0, missing_ = 0;
};

}  // namespace

Result<BrowserSession> read(std::string_view session, std::string_view closedTabs) {
    if (auto reason = unreadable(session)) return std::unexpected(*std::move(reason));
    Log log;
    if (!forEachRecord(session,
                       [&](std::uint8_t command, std::string_view body) { log.apply(command, body); }))
        return fail(ErrorKind::invalidData, "its session file is just being written");
    auto windows = log.normalWindows();
    if (windows.size() == 1 && !unreadable(closedTabs)) {
        ClosedLog closed;
        forEachRecord(closedTabs,
                      [&](std::uint8_t command, std::string_view body) { closed.apply(command, body); });
        if (closed.has(windows.front().first, windows.front().second)) windows.clear();
    }
    BrowserSession result;
    for (auto& [window, used] : windows) result.windows.push_back(std::move(window));
    return result;
}

}  // namespace quillo::ChromiumSessionLog
