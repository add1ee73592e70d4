#include "app/gui/TrayMenu.hpp"

#include <QTextBoundaryFinder>
#include <algorithm>

#include "app/LibraryTexts.hpp"
#include "app/WorkspaceOrder.hpp"
#include "app/gui/MenuIcons.hpp"
#include "app/gui/Words.hpp"

namespace quillo {
namespace {

constexpr int nameLength = 40, applicationsLength = 56;

std::vector<const Workspace*> latest(const std::vector<Workspace>& all) {
    std::vector<const Workspace*> latest;
    for (const std::size_t place : sortedPlaces(all, WorkspaceOrder::recent)) {
        if (latest.size() == TrayMenu::rowsShown) break;
        latest.push_back(&all[place]);
    }
    return latest;
}

}  // namespace

QString menuText(const QString& text, MenuDrawnBy drawer) {
    QString written = text;
    if (drawer == MenuDrawnBy::qt) return written.replace("&", "&&");
    // Desktops mark a shortcut by an underscore, which Qt puts in the place of the first ampersand before
    // some other character: that ampersand is doubled, and the second becomes the shortcut that shows as
    // itself.
    written.replace("_", "__");
    const qsizetype first = written.indexOf('&');
    if (first >= 0 && first + 1 < written.size()) written.insert(first, '&');
    return written;
}

QString elidedText(const QString& text, int length) {
    QString line = text.simplified();
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, line);
    qsizetype end = 0;
    for (int count = 0; characters.toNextBoundary() >= 0; ++count) {
        if (count == length) return line.left(end).trimmed() + QChar(0x2026);
        if (count == length - 2) end = characters.position();
    }
    return line;
}

TrayMenu::TrayMenu(AppModel& model, UpdateController& updates, Theme& theme, TextVariant variant, Ways ways,
                   QObject* parent)
    : QObject(parent),
      model_(model),
      updates_(updates),
      theme_(theme),
      variant_(variant),
      ways_(std::move(ways)) {
    header_ = addText({});
    finishSetup_ = addItem(qt(platformText("Finish setup — Accessibility needed", variant_)),
                           "triangle-alert", [this] { model_.openMain(); });
    menu_.addSeparator();
    empty_ = addText(qt(LibraryTexts::menuEmpty));
    emptyHint_ =
        addText(QStringLiteral("Save what's open now and it shows up here, one click from coming back."));
    more_ = addItem(QStringLiteral("More in Quillo…"), "ellipsis", [this] { model_.openMain(); });
    menu_.addMenu(&options_);
    menu_.addSeparator();
    save_ = addItem(QStringLiteral("Save Current Desktop…"), "plus", [this] { model_.beginCapture(); });
    lastSession_ =
        addItem(QStringLiteral("Restore Last Session"), "history", [this] { model_.restoreLastSession(); });
    putBack_ =
        addItem(QStringLiteral("Put Everything Back as It Was"), "undo-2", [this] { model_.putBack(); });
    stopWaiting_ = addItem({}, "x", [this] { model_.stopWaiting(); });
    updateSeparator_ = menu_.addSeparator();
    update_ = addItem({}, "download", [this] {
        const auto install = updates_.installAndRelaunch();
        if (!updates_.readyVersion()) return updates_.checkForUpdates();
        if (install && model_.canRelaunchForUpdate()) install();
    });
    menu_.addSeparator();
    addItem(QStringLiteral("Open Quillo"), "app-window", [this] { model_.openMain(); });
    addItem(QStringLiteral("Settings"), "settings", [this] { ways_.openSettings(); });
    addItem(QStringLiteral("Quit Quillo"), "power", [this] { ways_.quit(); });

    connect(&model_, &AppModel::workspacesChanged, this, &TrayMenu::refreshWorkspaces);
    connect(&model_, &AppModel::storageIssuesChanged, this, &TrayMenu::refreshWorkspaces);
    connect(&model_, &AppModel::accessibilityGrantedChanged, this, &TrayMenu::refreshState);
    for (const auto changed : {&AppModel::busyChanged, &AppModel::sessionsChanged, &AppModel::settingsChanged,
                               &AppModel::undoChanged, &AppModel::awaitedChanged})
        connect(&model_, changed, this, &TrayMenu::refreshState);
    connect(&updates_, &UpdateController::changed, this, &TrayMenu::refreshState);
    connect(&theme_, &Theme::changed, this, &TrayMenu::refreshIcons);
    refreshState();
    refreshIcons();
}

QAction* TrayMenu::addItem(const QString& text, const QString& symbol, std::function<void()> chosen) {
    QAction* const item = menu_.addAction(text);
    connect(item, &QAction::triggered, this, [chosen = std::move(chosen)] { chosen(); });
    symbols_.emplace_back(item, symbol);
    return item;
}

QAction* TrayMenu::addText(const QString& text) {
    QAction* const item = menu_.addAction(text);
    item->setEnabled(false);
    return item;
}

void TrayMenu::setDrawnBy(MenuDrawnBy drawer) {
    if (std::exchange(drawer_, drawer) == drawer) return;
    refreshState();
    refreshWorkspaces();
}

void TrayMenu::refreshState() {
    finishSetup_->setVisible(!model_.accessibilityGranted());
    // What holds a relaunch up is what makes the model refuse a capture.
    const bool free = model_.canRelaunchForUpdate();
    save_->setEnabled(free && model_.settings().onboarded && model_.accessibilityGranted());
    lastSession_->setEnabled(model_.canRestoreLastSession());
    putBack_->setVisible(model_.undoRecord() != nullptr);
    putBack_->setEnabled(free);
    const std::int64_t awaited = model_.awaitedWindows();
    stopWaiting_->setVisible(awaited > 0);
    stopWaiting_->setText(awaited == 1 ? QStringLiteral("Stop Waiting for 1 Window")
                                       : QStringLiteral("Stop Waiting for %1 Windows").arg(awaited));
    const auto& ready = updates_.readyVersion();
    const auto& available = updates_.availableVersion();
    update_->setVisible(ready || available);
    updateSeparator_->setVisible(update_->isVisible());
    update_->setEnabled(!ready || free);
    const std::string text =
        ready ? "Relaunch to update · " + *ready : "Update available · " + available.value_or(std::string());
    update_->setText(written(elidedText(qt(text), nameLength)));
}

void TrayMenu::refreshWorkspaces() {
    const std::vector<Workspace>& all = model_.workspaces();
    const std::vector<const Workspace*> shown = latest(all);
    for (auto row = rows_.end(); row != rows_.begin();) {
        const Uuid& id = (--row)->id;
        if (!std::ranges::any_of(shown, [&](const Workspace* one) { return one->id == id; })) dropRow(row);
    }
    for (std::size_t place = 0; place < shown.size(); ++place) placeRow(place, *shown[place]);

    const bool unlisted = model_.storageIssues().unlisted();
    empty_->setText(qt(unlisted ? LibraryTexts::unreadable : LibraryTexts::menuEmpty));
    header_->setText(QStringLiteral("Quillo · %1 saved").arg(all.size()));
    empty_->setVisible(all.empty());
    emptyHint_->setVisible(all.empty() && !unlisted);
    more_->setVisible(all.size() > shown.size());
    options_.menuAction()->setVisible(!all.empty());
}

void TrayMenu::placeRow(std::size_t place, const Workspace& workspace) {
    const auto here = rows_.begin() + static_cast<std::ptrdiff_t>(place);
    const auto found = std::ranges::find(here, rows_.end(), workspace.id, &Row::id);
    if (found != here || here == rows_.end()) {
        const bool last = here == rows_.end();
        const Row row = found == rows_.end() ? makeRow(workspace) : *found;
        menu_.insertAction(last ? empty_ : here->resume, row.resume);
        options_.insertAction(last ? nullptr : here->options->menuAction(), row.options->menuAction());
        if (found != rows_.end()) {
            std::rotate(here, found, found + 1);
        } else {
            rows_.insert(here, row);
        }
    }
    fillRow(rows_[place], workspace);
}

TrayMenu::Row TrayMenu::makeRow(const Workspace& workspace) {
    const Uuid id = workspace.id;
    auto* const options = new QMenu(&options_);
    QAction* const applications = options->addAction(QString());
    applications->setEnabled(false);
    for (const CleanSlateMode mode : allCleanSlateModes) {
        act(options->addAction(QStringLiteral("Resume · ") + qt(label(mode))), id,
            [this, mode](const Workspace& one) { model_.restore(one, mode); });
    }
    options->addSeparator();
    act(options->addAction(QStringLiteral("Preview in Quillo")), id,
        [this](const Workspace& one) { model_.openPreview(one, one.cleanSlate); });
    act(options->addAction(QStringLiteral("Update from Current Desktop")), id,
        [this](const Workspace& one) { model_.beginCapture(one); });
    QAction* const resume =
        act(new QAction(&menu_), id, [this](const Workspace& one) { model_.restore(one, one.cleanSlate); });
    return {.id = id, .resume = resume, .options = options, .applications = applications, .look = {}};
}

/// The workspace may have changed, or be gone, since its row was made.
QAction* TrayMenu::act(QAction* item, const Uuid& id, std::function<void(const Workspace&)> chosen) {
    connect(item, &QAction::triggered, this, [this, id, chosen = std::move(chosen)] {
        const auto found = std::ranges::find(model_.workspaces(), id, &Workspace::id);
        if (found != model_.workspaces().end()) chosen(*found);
    });
    return item;
}

void TrayMenu::fillRow(Row& row, const Workspace& workspace) {
    const QString name = written(elidedText(line(workspace.name), nameLength));
    row.resume->setText(name);
    row.options->setTitle(name);
    row.applications->setText(written(elidedText(applicationNames(workspace.snapshot), applicationsLength)));
    row.applications->setVisible(!workspace.snapshot.applications.empty());
    if (std::string look = workspace.icon + "/" + workspace.color; look != row.look) {
        row.look = std::move(look);
        const QIcon badge = MenuIcons::badge(theme_, workspace);
        row.resume->setIcon(badge);
        row.options->setIcon(badge);
    }
}

/// It may be open, or be where the click came from that led here.
void TrayMenu::dropRow(std::vector<Row>::iterator row) {
    menu_.removeAction(row->resume);
    row->resume->deleteLater();
    options_.removeAction(row->options->menuAction());
    row->options->deleteLater();
    rows_.erase(row);
}

void TrayMenu::refreshIcons() {
    for (const auto& [item, symbol] : symbols_) item->setIcon(MenuIcons::symbol(theme_, symbol));
    for (Row& row : rows_) row.look.clear();
    refreshWorkspaces();
}

}  // namespace quillo
