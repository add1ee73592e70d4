// The tray's menu: the saved workspaces, one click from coming back, what else can be done with each of them
// under one entry, and what a program without a window needs.
#pragma once
#include <QMenu>
#include <QObject>
#include <functional>
#include <vector>

#include "app/AppModel.hpp"
#include "app/PlatformTexts.hpp"
#include "app/UpdateController.hpp"
#include "app/gui/Theme.hpp"

namespace quillo {

/// What draws the menu, which decides how its texts are written.
enum class MenuDrawnBy { qt, desktop };

/// `text` so that no character of it is taken for the mark of a keyboard shortcut.
QString menuText(const QString& text, MenuDrawnBy drawer);
/// One line of at most `length` characters as people count them, the last an ellipsis where it was longer.
QString elidedText(const QString& text, int length);

/// Changes by differences while it is open. What it calls must outlive it.
class TrayMenu final : public QObject {
    Q_OBJECT

  public:
    /// Where a row leads in the main window, which these open too.
    struct Ways {
        std::function<void()> openSettings;
        std::function<void()> quit;
    };
    static constexpr std::size_t rowsShown = 20;  // the latest used; the others are "More in Quillo…"

    TrayMenu(AppModel& model, UpdateController& updates, Theme& theme, TextVariant variant, Ways ways,
             QObject* parent = nullptr);

    QMenu& menu() { return menu_; }
    AppModel& model() { return model_; }
    void setDrawnBy(MenuDrawnBy drawer);

  private:
    struct Row {
        Uuid id;
        QAction* resume;
        QMenu* options;  // of this workspace, a child of options_
        QAction* applications;
        std::string look;  // what its picture shows
    };

    QAction* addItem(const QString& text, const QString& symbol, std::function<void()> chosen);
    QAction* addText(const QString& text);
    QAction* act(QAction* item, const Uuid& id, std::function<void(const Workspace&)> chosen);
    Row makeRow(const Workspace& workspace);
    void placeRow(std::size_t place, const Workspace& workspace);
    void fillRow(Row& row, const Workspace& workspace);
    void dropRow(std::vector<Row>::iterator row);
    void refreshWorkspaces();
    void refreshState();
    void refreshIcons();
    QString written(const QString& text) const { return menuText(text, drawer_); }

    AppModel& model_;
    UpdateController& updates_;
    Theme& theme_;
    const TextVariant variant_;
    const Ways ways_;
    MenuDrawnBy drawer_ = MenuDrawnBy::qt;
    QMenu menu_;
    QMenu options_{QStringLiteral("Workspace Options")};
    std::vector<Row> rows_;  // in the menu's order
    QAction *header_, *finishSetup_, *empty_, *emptyHint_, *more_, *save_, *lastSession_, *putBack_,
        *stopWaiting_, *updateSeparator_, *update_;
    std::vector<std::pair<QAction*, QString>> symbols_;
};

}  // namespace quillo
