#include "app/Switcher.hpp"

#include <algorithm>
#include <utility>

#include "WindowEngine/support/Text.hpp"
#include "app/LibraryTexts.hpp"

namespace quillo {

Switcher::Switcher(const LibraryIndex& index, Operations operations, QObject* parent)
    : QObject(parent), index_(index), operations_(std::move(operations)) {
    findMatches();
    connect(&index_, &LibraryIndex::reloaded, this, [this] {
        findMatches();
        Q_EMIT changed();
    });
}

void Switcher::shown() {
    query_.clear();
    highlighted_ = 0;
    focused_ = true;
    findMatches();
    Q_EMIT changed();
    operations_.refreshCurrentSnapshot();
}

void Switcher::setQuery(std::string query) {
    if (query == query_) return;
    query_ = std::move(query);
    highlighted_ = 0;
    findMatches();
    Q_EMIT changed();
}

void Switcher::setFocused(bool focused) {
    if (std::exchange(focused_, focused) != focused) Q_EMIT changed();
}

std::string Switcher::emptyText() const {
    if (!matches_.empty() || text::trim(query_).empty()) return {};
    return LibraryTexts::nothingMatches(query_);
}

bool Switcher::press(Key key) {
    if (!focused_) return false;
    switch (key) {
        case Key::down:
            highlight(std::min(highlighted_ + 1, saveRow()));
            break;
        case Key::up:
            highlight(highlighted_ - std::min<std::size_t>(highlighted_, 1));
            break;
        case Key::pageDown:
            highlight(std::min(highlighted_ + rowsPerPage, saveRow()));
            break;
        case Key::pageUp:
            highlight(highlighted_ - std::min(highlighted_, rowsPerPage));
            break;
        case Key::home:
            highlight(0);
            break;
        case Key::end:
            highlight(saveRow());
            break;
        case Key::enter:
            pick();
            break;
        case Key::escape:
            close();
            break;
        case Key::commandEnter:
            preview();
            break;
        case Key::commandS:
            close();
            operations_.beginCapture();
            break;
    }
    return true;
}

void Switcher::pick() {
    pick(operations_.restore);
}

void Switcher::preview() {
    pick(operations_.preview);
}

void Switcher::pick(const std::function<void(const Workspace&)>& act) {
    close();
    findMatches();
    if (highlighted_ >= matches_.size()) {
        operations_.beginCapture();
        return;
    }
    // A copy: a restore may have the library read again.
    const Workspace workspace = index_.workspaces()[matches_[highlighted_]];
    act(workspace);
}

void Switcher::pick(std::size_t row) {
    highlight(row);
    pick();
}

void Switcher::findMatches() {
    matches_ = index_.search().matches(query_);
}

void Switcher::highlight(std::size_t index) {
    if (std::exchange(highlighted_, index) != index) Q_EMIT changed();
}

void Switcher::close() {
    setFocused(false);
    operations_.closePanel();
}

}  // namespace quillo
