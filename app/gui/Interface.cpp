#include "app/gui/Interface.hpp"

#include <algorithm>
#include <tuple>
#include <utility>

#include "app/LibraryIndex.hpp"
#include "app/LibraryState.hpp"
#include "app/gui/AppIcons.hpp"
#include "app/gui/AutomationPresenter.hpp"
#include "app/gui/ClosingPresenter.hpp"
#include "app/gui/DetailPresenter.hpp"
#include "app/gui/LayoutsPresenter.hpp"
#include "app/gui/LibraryPresenter.hpp"
#include "app/gui/OnboardingPresenter.hpp"
#include "app/gui/Pictures.hpp"
#include "app/gui/PreviewPresenter.hpp"
#include "app/gui/PrivacyPresenter.hpp"
#include "app/gui/QmlTypes.hpp"
#include "app/gui/QuestionPresenter.hpp"
#include "app/gui/RestorePresenter.hpp"
#include "app/gui/ReviewPresenter.hpp"
#include "app/gui/SettingsPresenter.hpp"
#include "app/gui/ShortcutsPresenter.hpp"
#include "app/gui/SwitcherPresenter.hpp"
#include "app/gui/TwinsPresenter.hpp"
#include "settings/WindowMemory.hpp"

namespace quillo {
namespace {

class OpenMainObserver final : public SurfaceObserver {
  public:
    explicit OpenMainObserver(std::shared_ptr<std::function<void()>> asked) : asked_(std::move(asked)) {}
    OpenMainObserver(const OpenMainObserver&) = delete;
    OpenMainObserver& operator=(const OpenMainObserver&) = delete;
    ~OpenMainObserver() override { *asked_ = nullptr; }

  private:
    std::shared_ptr<std::function<void()>> asked_;
};

/// The engine owns its picture providers.
void givePictures(QQmlEngine& engine, const FindIcon& systemIcon) {
    engine.addImageProvider("shadow", new ShadowPictures);
    const auto icons = std::make_shared<AppIcons>(systemIcon ? systemIcons(systemIcon) : desktopFileIcons());
    engine.addImageProvider("appicon", new AppIconPictures([icons](const QString& identifier, int size) {
                                return icons->find(identifier, size);
                            }));
}

}  // namespace

/// One for each surface, over the model.
struct Interface::Presenters {
    Presenters(AppModel& model, const Parts& parts, Interface& surfaces, PressGuard& presses)
        : index([&model]() -> const std::vector<Workspace>& { return model.workspaces(); }),
          reloads(QObject::connect(&model, &AppModel::workspacesChanged, &index, &LibraryIndex::reload)),
          ui(model, parts.variant),
          libraryState(index),
          library(model, libraryState),
          detail(model, ui),
          preview(model),
          review(model, parts.variant),
          onboarding(model, parts.system.hotKeys),
          closing(model, surfaces.windows_, parts.trayShown, parts.quit),
          settings(model, parts.updates, parts.system.loginItem),
          privacy(model, parts.system.desktop),
          shortcuts(model, ui, parts.system.hotKeys, parts.keys),
          automation(model, ui),
          switcher(model, index, surfaces),
          restore(model),
          question(model),
          layouts(model, ui),
          twins(model) {
        registerItems();
        registerSingleton("Theme", parts.theme);
        registerSingleton("Ui", ui);
        registerSingleton("Library", library);
        registerSingleton("Detail", detail);
        registerSingleton("Preview", preview);
        registerSingleton("Review", review);
        registerSingleton("Onboarding", onboarding);
        registerSingleton("Closing", closing);
        registerSingleton("Settings", settings);
        registerSingleton("Privacy", privacy);
        registerSingleton("Shortcuts", shortcuts);
        registerSingleton("Automation", automation);
        registerSingleton("Switcher", switcher);
        registerSingleton("Restore", restore);
        registerSingleton("Question", question);
        registerSingleton("Layouts", layouts);
        registerSingleton("Twins", twins);
        registerSingleton("Presses", presses);
    }

    LibraryIndex index;
    // Before anybody else hears of a change: Ui may open the library at once.
    QMetaObject::Connection reloads;
    Ui ui;
    LibraryState libraryState;
    LibraryPresenter library;
    DetailPresenter detail;
    PreviewPresenter preview;
    ReviewPresenter review;
    OnboardingPresenter onboarding;
    ClosingPresenter closing;
    SettingsPresenter settings;
    PrivacyPresenter privacy;
    ShortcutsPresenter shortcuts;
    AutomationPresenter automation;
    SwitcherPresenter switcher;
    RestorePresenter restore;
    QuestionPresenter question;
    LayoutsPresenter layouts;
    TwinsPresenter twins;
};

Interface::Interface(const Parts& parts)
    : parts_(parts),
      windows_(
          parts_.theme, [find = parts_.systemIcon](QQmlEngine& engine) { givePictures(engine, find); },
          parts_.panels) {
    // Closing a window keeps the program running in the tray.
    // Not only at the end: where a session ends, there may be no time for it.
    remembering_.setSingleShot(true);
    remembering_.setInterval(1000);
    connect(&remembering_, &QTimer::timeout, this, &Interface::remember);
    connect(&windows_, &Windows::mainSizeNoted, &remembering_, qOverload<>(&QTimer::start));
    connect(&windows_, &Windows::mainClosed, this, [this] {
        remember();
        if (model_ && model_->reportShown()) model_->closeRestorePanel();  // it belongs to the window
        if (model_) model_->closePreview();
        if (model_) model_->answerTwin(std::nullopt);  // the question was in it
        parts_.shell.setActivationPolicy(ActivationPolicy::accessory);
    });
    windows_.mainMayClose = [this] {
        return !presenters_ || (presenters_->review.mayClose() && presenters_->closing.mayClose());
    };
    connect(&windows_, &Windows::allClosed, this, [this] {
        if (presenters_) presenters_->library.forgetMaps();
    });
    connect(&windows_, &Windows::panelDismissed, this, [this](PanelID panel) {
        if (panel == PanelID::restore && model_) model_->closeRestorePanel();
    });
}

Interface::~Interface() = default;

void Interface::attach(AppModel& model) {
    model_ = &model;
    presenters_ = std::make_unique<Presenters>(model, parts_, *this, windows_.presses());
    const auto memory = WindowMemory::load(parts_.system.defaults);
    windows_.setMainSize(
        {QSize(static_cast<int>(memory.width), static_cast<int>(memory.height)), memory.maximized});
    const auto order =
        std::ranges::find(allWorkspaceOrders, memory.order, [](WorkspaceOrder one) { return label(one); });
    if (order != allWorkspaceOrders.end()) presenters_->libraryState.setOrder(*order);
    ui().goTo({QString::fromStdString(memory.page), QString::fromStdString(memory.workspace),
               QString::fromStdString(memory.pane)});
    connect(&ui(), &Ui::pageChanged, &remembering_, qOverload<>(&QTimer::start));
    connect(&presenters_->libraryState, &LibraryState::rowsChanged, &remembering_,
            qOverload<>(&QTimer::start));
    model.openWindowAction = [this] { windows_.openMain(); };
}

void Interface::detach() {
    numbers_.show({});
    windows_.dropAll();
    remember();
    presenters_.reset();
    model_ = nullptr;
}

/// Where it cannot be kept, the window opens as it did before.
void Interface::remember() {
    remembering_.stop();
    if (!presenters_) return;
    const Ui::Place place = ui().place();
    const MainWindowSize& window = windows_.mainSize();
    const WindowMemory memory{.width = window.size.width(),
                              .height = window.size.height(),
                              .maximized = window.maximized,
                              .order = std::string(label(presenters_->libraryState.order())),
                              .page = place.page.toStdString(),
                              .workspace = place.detailId.toStdString(),
                              .pane = place.settingsPane.toStdString()};
    if (memory != WindowMemory::load(parts_.system.defaults))
        std::ignore = memory.save(parts_.system.defaults);
}

Ui& Interface::ui() {
    return presenters_->ui;
}

void Interface::openSettings(const QString& pane) {
    ui().openSettings(pane);
    model_->openMain();
}

void Interface::askForMainWindow() {
    if (*openMainAsked_) (*openMainAsked_)();
}

void Interface::showPanel(PanelID panel, PanelPlace place) {
    windows_.showPanel(panel, place);
}

std::unique_ptr<SurfaceObserver> Interface::observeOpenMainWindow(std::function<void()> asked) {
    *openMainAsked_ = std::move(asked);
    return std::make_unique<OpenMainObserver>(openMainAsked_);
}

}  // namespace quillo
