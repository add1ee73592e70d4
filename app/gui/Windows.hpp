// The application's windows: the main window and the two floating panels, each a window of its own over one
// QML engine. The switcher, once made, is only hidden, and the engine stays with it: a shortcut is answered
// at once, also on a busy machine.
#pragma once
#include <QObject>
#include <QPointer>
#include <QQmlEngine>
#include <QQuickView>
#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "app/Surfaces.hpp"
#include "app/gui/Theme.hpp"

namespace quillo {

class Windows final : public QObject {
    Q_OBJECT

  public:
    /// Told of each engine before it loads anything: picture providers belong there.
    using Prepare = std::function<void(QQmlEngine&)>;

    Windows(Theme& theme, Prepare prepare, QObject* parent = nullptr);
    ~Windows() override;

    /// Opens the main window where there is none, else brings it forward.
    void openMain();
    /// False when there is none.
    bool bringMainForward();
    bool mainOpen() const { return main_ != nullptr; }
    /// As the person's own closing does, but unasked; nothing where it is not open.
    void closeMain();
    /// Asked when the person closes the main window; false keeps it open.
    std::function<bool()> mayCloseMain = [] { return true; };

    /// Makes the switcher, and draws it once out of sight, so that showing it takes no more than a frame.
    void prepareSwitcher();
    void showPanel(PanelID panel, PanelPlace place);
    void closePanel(PanelID panel);
    bool panelVisible(PanelID panel) const { return panels_.contains(panel); }

    /// At the end of the program: at once, and without a word to anybody.
    void dropAll();

    /// For pictures of them.
    QQuickWindow* mainWindow() const { return main_.get(); }
    QQuickWindow* panelWindow(PanelID panel) const;

  Q_SIGNALS:
    void mainClosed();
    /// The last of all windows and panels is closed, and what only they needed is let go.
    void allClosed();
    /// By the person: Escape, or the window manager.
    void panelDismissed(quillo::PanelID panel);

  private:
    bool eventFilter(QObject* watched, QEvent* event) override;
    std::unique_ptr<QQuickView> makeView(const QString& file);
    std::unique_ptr<QQuickView> makePanel(PanelID panel);
    void place(QQuickView& view, PanelPlace place) const;
    void retire(std::unique_ptr<QQuickView> view);
    void trimWhenUnused();
    void dropEngine();

    Theme& theme_;
    Prepare prepare_;
    std::unique_ptr<QQmlEngine> engine_;  // before the views: they go first
    std::unique_ptr<QQuickView> main_;
    std::map<PanelID, std::unique_ptr<QQuickView>> panels_;  // that are open
    std::map<PanelID, PanelPlace> places_;                   // of these
    std::unique_ptr<QQuickView> switcher_;                   // while it is not
    bool trimmed_ = true;                                    // since the last view was closed for good
    std::size_t retired_ = 0;                                // views that are closed and not yet gone
    std::vector<QPointer<QQuickView>> retiring_;             // these views
};

}  // namespace quillo
