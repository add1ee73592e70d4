#include "app/gui/ReviewRows.hpp"

#include <QDir>
#include <QStringList>
#include <algorithm>
#include <map>
#include <set>

#include "WindowEngine/capture/CaptureFilter.hpp"
#include "app/gui/Words.hpp"

namespace quillo {
namespace {

/// Beyond so many windows the list begins as an overview of the applications.
constexpr std::int64_t windowsShownAtOnce = 24;

/// Below one application; beyond them there is only the application to leave out.
constexpr std::int64_t mostRows = 1000;

constexpr std::string_view finder = "finder";

QString applicationCounts(const ApplicationSnapshot& application) {
    WorkspaceSnapshot alone;
    alone.applications = {application};
    QStringList parts{application.windows.empty() ? QStringLiteral("no windows")
                                                  : counted(alone.windowCount(), "window")};
    if (alone.tabCount() > 0) parts << counted(alone.tabCount(), "tab");
    if (alone.folderCount() > 0) parts << counted(alone.folderCount(), "folder");
    return joined(parts);
}

/// An address as people read it: without the scheme of the web, a path from the home directory on.
QString shortAddress(const Url& url) {
    if (const auto path = url.filePath()) {
        const QString home = QDir::homePath();
        QString text = qt(*path);
        if (text == home || text.startsWith(home + "/")) return "~" + text.mid(home.size());
        return text;
    }
    QString text = qt(url.string());
    if (!url.isWeb()) return text;
    text.remove(0, text.indexOf("://") + 3);
    if (text.endsWith('/') && text.count('/') == 1) text.chop(1);
    return text;
}

/// How the draft knows a window of the context.
std::int64_t contextNumber(const AppContext& context, std::size_t place) {
    return context.windows[place].sourceWindowIndex.value_or(static_cast<std::int64_t>(place));
}

}  // namespace

void ReviewRows::show(CaptureDraft* draft, const std::optional<std::set<std::string>>& open,
                      const Describe& describe) {
    beginResetModel();
    if (draft_) disconnect(draft_, nullptr, this, nullptr);
    draft_ = draft;
    entries_.clear();
    shown_.clear();
    if (draft_) {
        connect(draft_, &CaptureDraft::exclusionsChanged, this, &ReviewRows::tickChanged);
        const WorkspaceSnapshot& snapshot = draft_->snapshot();
        const bool allOpen = snapshot.windowCount() <= windowsShownAtOnce;
        for (const ApplicationSnapshot& application : snapshot.applications)
            addApplication(application, describe ? describe(application) : applicationCounts(application),
                           open ? open->contains(application.bundleIdentifier) : allOpen);
    }
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        if (reachable(i)) shown_.push_back(i);
    }
    endResetModel();
}

void ReviewRows::addApplication(const ApplicationSnapshot& application, QString detail, bool open) {
    const std::size_t self = entries_.size();
    entries_.push_back({.kind = Kind::app,
                        .parent = none,
                        .title = line(application.name),
                        .detail = std::move(detail),
                        .application = application.bundleIdentifier,
                        .window = 0,
                        .address = 0,
                        .end = 0,
                        .open = open});
    room_ = mostRows;
    left_ = 0;
    std::multimap<std::int64_t, std::size_t> contextPlaces;  // by the window that they would be left out with
    std::set<std::int64_t> windows;
    for (const WindowSnapshot& window : application.windows) windows.insert(window.index);
    const std::size_t places = application.context ? application.context->windows.size() : 0;
    std::vector<std::size_t> own;  // without a window they are the application's
    for (std::size_t place = 0; place < places; ++place) {
        const auto source = application.context->windows[place].sourceWindowIndex;
        if (source && windows.contains(*source)) {
            contextPlaces.emplace(*source, place);
        } else {
            own.push_back(place);
        }
    }
    for (const WindowSnapshot& window : application.windows) {
        const std::size_t at = entries_.size();
        addWindow(application, window, self);
        const auto [first, last] = contextPlaces.equal_range(window.index);
        for (auto one = first; one != last; ++one) addLocations(application, one->second, at);
        if (at < entries_.size()) entries_[at].end = entries_.size();
    }
    for (const std::size_t place : own) addLocations(application, place, self);
    if (left_ > 0) addMore(self);
    entries_[self].end = entries_.size();
}

bool ReviewRows::takeRoom() {
    if (room_ == 0) ++left_;
    return room_ > 0 && room_-- > 0;
}

void ReviewRows::addMore(std::size_t parent) {
    entries_.push_back({.kind = Kind::more,
                        .parent = parent,
                        .title = andMore(left_),
                        .detail = {},
                        .application = {},
                        .window = 0,
                        .address = 0,
                        .end = entries_.size() + 1});
}

void ReviewRows::addWindow(const ApplicationSnapshot& application, const WindowSnapshot& window,
                           std::size_t parent) {
    if (!takeRoom()) return;
    entries_.push_back({.kind = Kind::window,
                        .parent = parent,
                        .title = line(reviewLabel(window)),
                        .detail = qt(placementLabel(window)),
                        .application = application.bundleIdentifier,
                        .window = window.index,
                        .address = 0});
}

void ReviewRows::addLocations(const ApplicationSnapshot& application, std::size_t place, std::size_t parent) {
    const AppContext& context = *application.context;
    const std::vector<Url>& urls = context.windows[place].urls;
    for (std::size_t i = 0; i < urls.size(); ++i) {
        if (!takeRoom()) continue;
        entries_.push_back({.kind = context.adapter == finder ? Kind::folder : Kind::tab,
                            .parent = parent,
                            .title = line(shortAddress(urls[i]).toStdString()),
                            .detail = {},
                            .application = application.bundleIdentifier,
                            .window = contextNumber(context, place),
                            .address = static_cast<std::int64_t>(i),
                            .end = entries_.size() + 1});
    }
}

int ReviewRows::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(shown_.size());
}

QVariant ReviewRows::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
    const auto row = static_cast<std::size_t>(index.row());
    const Entry& entry = entries_[shown_[row]];
    static constexpr const char* kinds[] = {"app", "window", "folder", "tab", "more"};
    switch (role) {
        case KindRole:
            return QString::fromLatin1(kinds[static_cast<std::size_t>(entry.kind)]);
        case TitleRole:
            return entry.title;
        case DetailRole:
            return entry.detail;
        case IdentifierRole:
            return qt(entry.application);
        case IncludedRole:
            return included(entry);
        case FadedRole:
            return faded(entry);
        case OpenableRole:
            return entry.end > shown_[row] + 1;
        case OpenRole:
            return entry.open;
        case LastRole:
            return last(row);
        case ReasonRole:
            return entry.reason;
        case WindowKeyRole:
            return windowKey(shown_[row]);
        default:
            return {};
    }
}

QHash<int, QByteArray> ReviewRows::roleNames() const {
    return {{KindRole, "kind"},          {TitleRole, "title"},
            {DetailRole, "detail"},      {IdentifierRole, "identifier"},
            {IncludedRole, "included"},  {FadedRole, "faded"},
            {OpenableRole, "openable"},  {OpenRole, "open"},
            {LastRole, "last"},          {ReasonRole, "reason"},
            {WindowKeyRole, "windowKey"}};
}

void ReviewRows::toggle(int row) {
    if (!draft_ || row < 0 || row >= rowCount()) return;
    const std::size_t self = shown_[static_cast<std::size_t>(row)];
    if (entries_[self].kind == Kind::more) return;
    if (included(entries_[self]) && !faded(entries_[self])) return include(entries_[self], false);
    for (std::size_t i = self; i != none; i = entries_[i].parent) include(entries_[i], true);
}

void ReviewRows::include(const Entry& entry, bool wanted) {
    switch (entry.kind) {
        case Kind::app:
            return draft_->includeApp(entry.application, wanted);
        case Kind::window:
            return draft_->includeWindow(entry.application, entry.window, wanted);
        case Kind::folder:
        case Kind::tab:
            return draft_->includeContextURL(entry.application, entry.window, entry.address, wanted);
        case Kind::more:
            return;
    }
}

void ReviewRows::setOpen(int row, bool open) {
    if (row < 0 || row >= rowCount()) return;
    const auto place = static_cast<std::size_t>(row);
    const std::size_t self = shown_[place];
    Entry& entry = entries_[self];
    if (entry.open == open || entry.end <= self + 1) return;
    entry.open = open;
    const auto first = shown_.begin() + row + 1;
    if (open) {
        std::vector<std::size_t> added;
        for (std::size_t i = self + 1; i < entry.end; ++i) {
            if (reachable(i)) added.push_back(i);
        }
        beginInsertRows({}, row + 1, row + static_cast<int>(added.size()));
        shown_.insert(first, added.begin(), added.end());
        endInsertRows();
    } else {
        const auto end = std::lower_bound(first, shown_.end(), entry.end);
        beginRemoveRows({}, row + 1, row + static_cast<int>(end - first));
        shown_.erase(first, end);
        endRemoveRows();
    }
    Q_EMIT dataChanged(index(row), index(row), {OpenRole, LastRole});
}

const Url* ReviewRows::addressOf(const Entry& entry) const {
    const auto& applications = draft_->snapshot().applications;
    const auto owner =
        std::ranges::find(applications, entry.application, &ApplicationSnapshot::bundleIdentifier);
    if (owner == applications.end() || !owner->context) return nullptr;
    for (std::size_t place = 0; place < owner->context->windows.size(); ++place) {
        const std::vector<Url>& urls = owner->context->windows[place].urls;
        if (contextNumber(*owner->context, place) == entry.window && entry.address < std::ssize(urls))
            return &urls[static_cast<std::size_t>(entry.address)];
    }
    return nullptr;
}

void ReviewRows::reword(const Wording& wording) {
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        Entry& entry = entries_[i];
        Words words;
        if (!included(entry) || faded(entry)) {
            words = wording.leftAlone;
        } else if (entry.kind == Kind::app) {
            words = wording.ofApplication(entry.application);
        } else if (entry.kind == Kind::window) {
            words = wording.ofWindow(CaptureFilter::windowKey(entry.application, entry.window));
        } else if (const Url* address = entry.kind == Kind::more ? nullptr : addressOf(entry)) {
            words = wording.ofAddress(entry.application, address->string());
        }
        entry.detail = std::move(words.detail);
        entry.reason = std::move(words.reason);
    }
    if (!shown_.empty()) Q_EMIT dataChanged(index(0), index(rowCount() - 1), {DetailRole, ReasonRole});
}

std::set<std::string> ReviewRows::openApps() const {
    std::set<std::string> identifiers;
    for (const Entry& entry : entries_) {
        if (entry.kind == Kind::app && entry.open && entry.end > 0) identifiers.insert(entry.application);
    }
    return identifiers;
}

QString ReviewRows::windowKey(std::size_t entry) const {
    while (entry != none && entries_[entry].kind != Kind::window) entry = entries_[entry].parent;
    if (entry == none) return {};
    return qt(CaptureFilter::windowKey(entries_[entry].application, entries_[entry].window));
}

std::size_t ReviewRows::entryOf(const QString& key) const {
    const auto is = [&](std::size_t i) { return entries_[i].kind == Kind::window && windowKey(i) == key; };
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        if (is(i)) return i;
    }
    return none;
}

int ReviewRows::reveal(const QString& key) {
    const std::size_t entry = entryOf(key);
    if (entry == none) return -1;
    const auto parent = std::ranges::lower_bound(shown_, entries_[entry].parent);
    setOpen(static_cast<int>(parent - shown_.begin()), true);
    return rowOf(key);
}

int ReviewRows::rowOf(const QString& key) const {
    for (std::size_t i = entryOf(key); i != none; i = entries_[i].parent) {
        if (reachable(i)) return static_cast<int>(std::ranges::lower_bound(shown_, i) - shown_.begin());
    }
    return -1;
}

QStringList ReviewRows::windowKeys() const {
    QStringList keys;
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        if (entries_[i].kind == Kind::window) keys << windowKey(i);
    }
    return keys;
}

QStringList ReviewRows::windowKeys(int row) const {
    if (row < 0 || row >= rowCount()) return {};
    const std::size_t self = shown_[static_cast<std::size_t>(row)];
    if (entries_[self].kind != Kind::app) return {windowKey(self)};
    QStringList keys;
    for (std::size_t i = self + 1; i < entries_[self].end; ++i) {
        if (entries_[i].kind == Kind::window) keys << windowKey(i);
    }
    return keys;
}

bool ReviewRows::included(const Entry& entry) const {
    switch (entry.kind) {
        case Kind::app:
            return draft_->includesApp(entry.application);
        case Kind::window:
            return draft_->includesWindow(entry.application, entry.window);
        case Kind::folder:
        case Kind::tab:
            return draft_->includesContextURL(entry.application, entry.window, entry.address);
        case Kind::more:
            break;
    }
    return true;
}

bool ReviewRows::faded(const Entry& entry) const {
    for (std::size_t i = entry.parent; i != none; i = entries_[i].parent) {
        if (!included(entries_[i])) return true;
    }
    return false;
}

bool ReviewRows::reachable(std::size_t entry) const {
    for (std::size_t i = entries_[entry].parent; i != none; i = entries_[i].parent) {
        if (!entries_[i].open) return false;
    }
    return true;
}

bool ReviewRows::last(std::size_t row) const {
    return row + 1 >= shown_.size() || entries_[shown_[row + 1]].kind == Kind::app;
}

void ReviewRows::tickChanged() {
    if (!shown_.empty()) Q_EMIT dataChanged(index(0), index(rowCount() - 1), {IncludedRole, FadedRole});
}

}  // namespace quillo
