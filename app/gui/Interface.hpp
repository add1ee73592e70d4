// Puts the model on the screen: the presenters, the windows, and what the model asks of them.
#pragma once
#include <QObject>
#include <QTimer>
#include <memory>

#include "app/AppModel.hpp"
#include "app/Surfaces.hpp"
#include "app/gui/FileDialogs.hpp"
#include "app/gui/ScreenNumbers.hpp"
#include "app/gui/Theme.hpp"
#include "app/gui/Ui.hpp"
#include "app/gui/Windows.hpp"
#include "platform/services/IconPixels.hpp"
#include "platform/services/KeyMonitorService.hpp"

namespace quillo {

class UpdateController;

/// Made before the model, which asks for windows through it; attached to the model once that stands.
class Interface final : public QObject, public Surfaces {
    Q_OBJECT

  public:
    struct Parts {
        Theme& theme;
        Shell& shell;
        SystemServices system;
        KeyMonitorService& keys;
        UpdateController& updates;
        TextVariant variant;
        FindIcon systemIcon = nullptr;  // none: icons come from .desktop files
        PanelBackdrop panels = {};
        /// Whether the tray shows Quillo's icon now; none where there always is one.
        std::function<bool()> trayShown = nullptr;
        std::function<void()> quit = nullptr;  // none where another part offers it
    };

    explicit Interface(const Parts& parts);
    ~Interface() override;

    /// The model must outlive it from here on, or be detached.
    void attach(AppModel& model);
    /// Takes everything off the screen: nothing looks at the model from here on. How the main window was left
    /// is kept for the next time.
    void detach();

    Windows& windows() { return windows_; }
    Ui& ui();
    void openSettings(const QString& pane = {});
    /// Another start of the program, or any part of this one, wants the main window.
    void askForMainWindow();

    bool bringMainWindowForward() override { return windows_.bringMainForward(); }
    void showPanel(PanelID panel, PanelPlace place) override;
    void closePanel(PanelID panel) override { windows_.closePanel(panel); }
    bool panelVisible(PanelID panel) const override { return windows_.panelVisible(panel); }
    bool panelInUse(PanelID panel) const override { return windows_.panelInUse(panel); }
    void stepAside() override { windows_.lowerMain(); }
    void numberScreens(const std::vector<Rect>& screens) override { numbers_.show(screens); }
    Task<std::optional<std::filesystem::path>> fileToWrite(std::string proposedName) override {
        return dialogs_.fileToWrite(std::move(proposedName));
    }
    Task<std::optional<std::filesystem::path>> fileToRead() override { return dialogs_.fileToRead(); }
    Task<std::optional<std::filesystem::path>> folderToWrite() override { return dialogs_.folderToWrite(); }
    std::unique_ptr<SurfaceObserver> observeOpenMainWindow(std::function<void()> asked) override;

  private:
    struct Presenters;

    void remember();

    QTimer remembering_;  // before the windows, which start it

    Parts parts_;
    AppModel* model_ = nullptr;
    std::shared_ptr<std::function<void()>> openMainAsked_ = std::make_shared<std::function<void()>>();
    std::unique_ptr<Presenters> presenters_;
    ScreenNumbers numbers_;
    FileDialogs dialogs_{[this] { return windows_.mainWindow(); }};
    Windows windows_;  // last: views go before what they show
};

}  // namespace quillo
