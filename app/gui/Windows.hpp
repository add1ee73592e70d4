// The application's windows: the main window and the two floating panels, each a window of its own over one
// QML engine, which lives only while one of them is open.
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

    void showPanel(PanelID panel, PanelPlace place);
    void closePanel(PanelID panel);
    bool panelVisible(PanelID panel) const { return panels_.contains(panel); }
    /// Whether the pointer or the keyboard is in it.
    bool panelInUse(PanelID panel) const;
    /// The main window goes behind all others.
    void lowerMain();

    /// Asked before the person closes the main window; false keeps it, and brings it forward.
    std::function<bool()> mainMayClose = [] { return true; };

    /// At the end of the program: at once, and without a word to anybody.
    void dropAll();

    /// For pictures of them.
    QQuickWindow* mainWindow() const { return main_.get(); }
    QQuickWindow* panelWindow(PanelID panel) const;

  Q_SIGNALS:
    void mainClosed();
    /// The last of all windows and panels is gone, and the engine with it.
    void engineDropped();
    /// By the person: Escape, or the window manager.
    void panelDismissed(quillo::PanelID panel);

  private:
    bool eventFilter(QObject* watched, QEvent* event) override;
    std::unique_ptr<QQuickView> makeView(const QString& file);
    void place(QQuickView& view, PanelPlace place) const;
    void retire(std::unique_ptr<QQuickView> view);
    void dropEngineWhenUnused();
    void dropEngine();

    Theme& theme_;
    Prepare prepare_;
    std::unique_ptr<QQmlEngine> engine_;  // before the views: they go first
    std::unique_ptr<QQuickView> main_;
    std::map<PanelID, std::unique_ptr<QQuickView>> panels_;
    std::size_t retired_ = 0;                     // views that are closed and not yet gone
    std::vector<QPointer<QQuickView>> retiring_;  // these views
};

}  // namespace quillo
