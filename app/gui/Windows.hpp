// The application's windows: the main window and the two floating panels, each a window of its own over one
// QML engine. The switcher, once made, is only hidden, and the engine stays with it: a shortcut is answered
// at once, also on a busy machine.
#pragma once
#include <QMargins>
#include <QObject>
#include <QPointer>
#include <QQmlEngine>
#include <QQuickView>
#include <QScreen>
#include <QTimer>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "app/Surfaces.hpp"
#include "app/gui/PressGuard.hpp"
#include "app/gui/Theme.hpp"

namespace quillo {

/// How the main window opens.
struct MainWindowSize {
    QSize size{1080, 720};  // while it is not maximized
    bool maximized = false;
};

/// What the window system says and hears of floating panels; without it they are opaque.
struct PanelBackdrop {
    /// Whether windows may be translucent at the moment.
    std::function<bool()> translucent = nullptr;
    /// The panel stands within the margins of its window, which exists: around it is its shadow only, where
    /// presses are meant for what lies below.
    std::function<void(const QWindow&, const QMargins&)> declareShadow = nullptr;
};

class Windows final : public QObject {
    Q_OBJECT

  public:
    /// Told of each engine before it loads anything: picture providers belong there.
    using Prepare = std::function<void(QQmlEngine&)>;

    Windows(Theme& theme, Prepare prepare, PanelBackdrop backdrop = {}, QObject* parent = nullptr);
    ~Windows() override;

    /// Opens the main window where there is none, else brings it forward.
    void openMain();
    /// How large it opens, and opened last; a person's choice among the windows that there were.
    const MainWindowSize& mainSize() const { return mainSize_; }
    void setMainSize(const MainWindowSize& size) { mainSize_ = size; }
    /// False when there is none.
    bool bringMainForward();
    bool mainOpen() const { return main_ != nullptr; }
    /// As the person's own closing does, but unasked; nothing where it is not open.
    void closeMain();

    /// Makes the switcher, and draws it once out of sight, as large as it will be, so that showing it takes
    /// no more than a frame.
    void prepareSwitcher();
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

    /// Of all these windows.
    PressGuard& presses() { return presses_; }

    /// For pictures of them.
    QQuickWindow* mainWindow() const { return main_.get(); }
    QQuickWindow* panelWindow(PanelID panel) const;

  Q_SIGNALS:
    void mainClosed();
    /// mainSize() is what it is now, some time after it changed.
    void mainSizeNoted();
    /// The last of all windows and panels is closed, and what only they needed is let go.
    void allClosed();
    /// By the person: Escape, or the window manager.
    void panelDismissed(quillo::PanelID panel);

  private:
    bool eventFilter(QObject* watched, QEvent* event) override;
    std::unique_ptr<QQuickView> makeView(const QString& file, const QVariantMap& properties = {});
    /// Where an open panel stands, as it was decided when it came up. It is never read back from its window:
    /// until the window manager has put that into its frame, what the window system tells of its place may be
    /// anything, and would be asked for in earnest with the next change of size.
    struct Standing {
        PanelPlace place;
        QPointer<QScreen> screen;
        std::optional<int> top;  // of the panel itself, where its upper edge is what stays
    };

    std::unique_ptr<QQuickView> makePanel(PanelID panel, PanelPlace place);
    bool translucentPanels() const { return backdrop_.translucent && backdrop_.translucent(); }
    /// Makes an open panel anew where its window does not fit any more what translucentPanels() says.
    void followBackdrop();
    void declareShadow(const QQuickView& view, PanelPlace where) const;
    void place(QQuickView& view, Standing& standing) const;
    /// In its place again, whatever became of it meanwhile.
    void hold(PanelID panel);
    void noteMainSize();
    void retire(std::unique_ptr<QQuickView> view);
    void trimWhenUnused();
    void dropEngine();

    Theme& theme_;
    Prepare prepare_;
    PanelBackdrop backdrop_;
    PressGuard presses_;
    MainWindowSize mainSize_;
    QTimer mainSizeSettled_;
    QTimer backdropWatch_;                // while a panel is open
    std::unique_ptr<QQmlEngine> engine_;  // before the views: they go first
    std::unique_ptr<QQuickView> main_;
    std::map<PanelID, std::unique_ptr<QQuickView>> panels_;  // that are open
    std::map<PanelID, Standing> standings_;                  // of these
    std::unique_ptr<QQuickView> switcher_;                   // while it is not
    bool trimmed_ = true;                                    // since the last view was closed for good
    std::size_t retired_ = 0;                                // views that are closed and not yet gone
    std::vector<QPointer<QQuickView>> retiring_;             // these views
};

}  // namespace quillo
