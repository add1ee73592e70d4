#include "app/gui/Windows.hpp"

#include <QCoreApplication>
#include <QCursor>
#include <QEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPixmapCache>
#include <QQuickItem>
#include <QScreen>
#include <algorithm>
#include <chrono>
#include <utility>

namespace quillo {
namespace {

constexpr QSize mainMinimum{760, 520};
constexpr int panelMargin = 20;
/// Nothing tells of a compositing manager that comes or goes. What was translucent is black without one.
constexpr std::chrono::seconds backdropInterval{1};
/// Beyond it a panel's shadow is nothing (the largest in Shadow.qml).
constexpr int shadowRoom = 72;

/// A panel's room in its own window, which ends where the screen does.
QMargins roomAround(PanelAnchor anchor, bool translucent) {
    if (!translucent) return {};
    const int after = anchor == PanelAnchor::bottomTrailing ? panelMargin : shadowRoom;
    return {shadowRoom, shadowRoom, after, after};
}

bool isTranslucent(const QQuickView& view) {
    return view.color().alpha() == 0;
}

QString file(PanelID panel) {
    return panel == PanelID::switcher ? QStringLiteral("SwitcherPanel.qml")
                                      : QStringLiteral("RestorePanel.qml");
}

/// The one the person looks at: where the pointer is.
QScreen* screenInUse() {
    QScreen* screen = QGuiApplication::screenAt(QCursor::pos());
    return screen ? screen : QGuiApplication::primaryScreen();
}

}  // namespace

Windows::Windows(Theme& theme, Prepare prepare, PanelBackdrop backdrop, QObject* parent)
    : QObject(parent), theme_(theme), prepare_(std::move(prepare)), backdrop_(std::move(backdrop)) {
    QCoreApplication::instance()->installEventFilter(&presses_);
    // A window that is maximized has its new size before it says so.
    mainSizeSettled_.setSingleShot(true);
    mainSizeSettled_.setInterval(300);
    connect(&mainSizeSettled_, &QTimer::timeout, this, &Windows::noteMainSize);
    backdropWatch_.setInterval(backdropInterval);
    connect(&backdropWatch_, &QTimer::timeout, this, &Windows::followBackdrop);
    connect(&theme_, &Theme::changed, this, [this] {
        if (main_) main_->setColor(theme_.background());
        const auto recolour = [this](QQuickView& view) {
            if (!isTranslucent(view)) view.setColor(theme_.raised());
        };
        if (switcher_) recolour(*switcher_);
        for (const auto& [panel, view] : panels_) recolour(*view);
    });
}

Windows::~Windows() {
    dropAll();
}

std::unique_ptr<QQuickView> Windows::makeView(const QString& name, const QVariantMap& properties) {
    if (!engine_) {
        engine_ = std::make_unique<QQmlEngine>();
        engine_->addImportPath("qrc:/qt/qml");
        prepare_(*engine_);
    }
    auto view = std::make_unique<QQuickView>(engine_.get(), nullptr);
    view->setInitialProperties(properties);
    view->installEventFilter(this);
    view->setSource(QUrl("qrc:/qt/qml/Quillo/" + name));
    return view;
}

void Windows::openMain() {
    if (bringMainForward()) return;
    main_ = makeView("RootView.qml");
    presses_.pageCame();
    main_->setTitle("Quillo");
    main_->setColor(theme_.background());
    main_->setResizeMode(QQuickView::SizeRootObjectToView);
    main_->setMinimumSize(mainMinimum);
    const QRect room = screenInUse()->availableGeometry();
    const QSize size = mainSize_.size.boundedTo(room.size()).expandedTo(mainMinimum);
    main_->setGeometry(QRect(room.center() - QPoint(size.width() / 2, size.height() / 2), size));
    for (const auto changed : {&QWindow::widthChanged, &QWindow::heightChanged})
        connect(main_.get(), changed, &mainSizeSettled_, qOverload<>(&QTimer::start));
    if (mainSize_.maximized)
        main_->showMaximized();
    else
        main_->show();
    main_->raise();  // on a Mac this, too, brings the program to the front
    main_->requestActivate();
}

/// While it is maximized, the size it had before stays the one to remember.
void Windows::noteMainSize() {
    if (!main_) return;
    const Qt::WindowStates states = main_->windowStates();
    mainSize_.maximized = states.testFlag(Qt::WindowMaximized);
    if (!(states & (Qt::WindowMaximized | Qt::WindowFullScreen | Qt::WindowMinimized)))
        mainSize_.size = main_->size();
    Q_EMIT mainSizeNoted();
}

bool Windows::bringMainForward() {
    if (!main_) return false;
    if (main_->windowStates() & Qt::WindowMinimized) main_->showNormal();
    main_->show();
    main_->raise();
    main_->requestActivate();
    return true;
}

void Windows::lowerMain() {
    if (main_) main_->lower();
}

bool Windows::panelInUse(PanelID panel) const {
    const auto found = panels_.find(panel);
    if (found == panels_.end()) return false;
    const QQuickView& view = *found->second;
    return view.isActive() || view.geometry().contains(QCursor::pos());
}

std::unique_ptr<QQuickView> Windows::makePanel(PanelID panel, PanelPlace where) {
    const bool translucent = translucentPanels();
    auto view = makeView(file(panel), {{"translucent", translucent}});
    view->setTitle(panel == PanelID::switcher ? "Quillo switcher" : "Quillo restore");
    view->setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint);
    if (where.staysOnTop)
        view->setFlag(Qt::WindowStaysOnTopHint);
    else
        view->setTransientParent(main_.get());
    view->setColor(translucent ? QColor(Qt::transparent) : theme_.raised());
    // The other way round the view would resize its window by itself, at the place that it takes it to have.
    view->setResizeMode(QQuickView::SizeRootObjectToView);
    view->setProperty("_q_macAlwaysShowToolWindow", true);  // a Mac hides it with the program otherwise
    // The progress of a restore must not take the keyboard from what the person types into.
    if (!where.activates) view->setProperty("_q_showWithoutActivating", true);
    // It grows and shrinks with its rows, from the edge that its place holds it at; once for all that changes
    // in one turn.
    if (QQuickItem* const root = view->rootObject()) {
        root->setWidth(where.width);
        connect(
            root, &QQuickItem::implicitHeightChanged, this, [this, panel] { hold(panel); },
            Qt::QueuedConnection);
    }
    connect(view.get(), &QWindow::heightChanged, this, [this, panel, view = view.get()] {
        if (panelWindow(panel) == view) declareShadow(*view, standings_[panel].place);
    });
    return view;
}

/// Drawn, it has all glyphs, symbols and maps of its first frame; created, the window system knows it.
void Windows::prepareSwitcher() {
    if (switcher_ || panels_.contains(PanelID::switcher)) return;
    switcher_ = makePanel(PanelID::switcher, switcherPlace);
    Standing standing{switcherPlace, {}, {}};
    place(*switcher_, standing);
    switcher_->create();
    switcher_->grabWindow();
}

void Windows::showPanel(PanelID panel, PanelPlace where) {
    closePanel(panel);
    // What a window is made for, it stays: with a compositor that came or went it is made anew.
    if (switcher_ && isTranslucent(*switcher_) != translucentPanels()) switcher_.reset();
    const bool prepared = panel == PanelID::switcher && switcher_;
    auto view = prepared ? std::move(switcher_) : makePanel(panel, where);
    QQuickView& shown = *view;
    panels_[panel] = std::move(view);
    standings_[panel] = {where, screenInUse(), {}};
    if (QQuickItem* root = shown.rootObject()) root->setProperty("open", true);  // and has its rows by now
    hold(panel);
    shown.create();
    declareShadow(shown, where);
    // And once it stands: window managers that put it into a frame of their own look for its shape only from
    // then on, and one that took it for where it was hidden has it put right.
    connect(
        &shown, &QQuickWindow::frameSwapped, this,
        [this, panel, &shown, where] {
            if (panelWindow(panel) != &shown) return;
            hold(panel);
            declareShadow(shown, where);
        },
        Qt::SingleShotConnection);
    presses_.pageCame();
    if (backdrop_.translucent) backdropWatch_.start();
    shown.show();
    if (where.activates) {
        shown.raise();
        shown.requestActivate();
    }
}

void Windows::followBackdrop() {
    const bool translucent = translucentPanels();
    for (const auto& [panel, view] : panels_) {
        if (isTranslucent(*view) != translucent)
            return showPanel(panel, standings_[panel].place);  // any other one the next time
    }
    if (panels_.empty()) backdropWatch_.stop();
}

void Windows::declareShadow(const QQuickView& view, PanelPlace where) const {
    const QMargins room = roomAround(where.anchor, isTranslucent(view));
    if (!room.isNull() && backdrop_.declareShadow) backdrop_.declareShadow(view, room);
}

void Windows::hold(PanelID panel) {
    const auto open = panels_.find(panel);
    if (open != panels_.end()) place(*open->second, standings_[panel]);
}

void Windows::place(QQuickView& view, Standing& standing) const {
    QQuickItem* root = view.rootObject();
    if (!root) return;
    const PanelPlace& where = standing.place;
    const QMargins room = roomAround(where.anchor, isTranslucent(view));
    root->setProperty("roomBefore", room.left());
    root->setProperty("roomAfter", room.right());
    root->setWidth(where.width + room.left() + room.right());
    const QSize whole = QSizeF(root->width(), root->implicitHeight()).toSize();
    const QSize size = whole.shrunkBy(room);
    if (!standing.screen) standing.screen = screenInUse();
    const QRect screen = standing.screen->availableGeometry();
    QPoint corner;  // of the panel itself
    if (where.anchor == PanelAnchor::bottomTrailing) {
        corner = QPoint(screen.right(), screen.bottom()) + QPoint(1, 1) - QPoint(panelMargin, panelMargin) -
                 QPoint(size.width(), size.height());
    } else {
        // What one reads and types into stays where it is while the rows below come and go.
        if (!standing.top)
            standing.top = screen.y() + (screen.height() - size.height()) / 2 - screen.height() / 10;
        corner = {screen.x() + (screen.width() - size.width()) / 2,
                  std::max(screen.y(), std::min(*standing.top, screen.bottom() + 1 - size.height()))};
    }
    view.setGeometry(QRect(corner - QPoint(room.left(), room.top()), whole));
}

void Windows::closePanel(PanelID panel) {
    const auto found = panels_.find(panel);
    if (found == panels_.end()) return;
    auto view = std::move(found->second);
    panels_.erase(found);
    standings_.erase(panel);
    if (view->geometry().contains(QCursor::pos())) presses_.pageCame();
    if (panel == PanelID::restore) return retire(std::move(view));
    view->hide();
    if (QQuickItem* root = view->rootObject()) root->setProperty("open", false);
    switcher_ = std::move(view);
    QMetaObject::invokeMethod(this, &Windows::trimWhenUnused, Qt::QueuedConnection);
}

void Windows::closeMain() {
    if (!main_) return;
    noteMainSize();
    retire(std::move(main_));
    Q_EMIT mainClosed();
}

void Windows::dropAll() {
    noteMainSize();
    for (const QPointer<QQuickView>& view : std::exchange(retiring_, {})) delete view;
    main_.reset();
    panels_.clear();
    switcher_.reset();
    dropEngine();
}

QQuickWindow* Windows::panelWindow(PanelID panel) const {
    const auto found = panels_.find(panel);
    return found == panels_.end() ? nullptr : found->second.get();
}

/// Whatever closes a window may run inside a handler of that very window: it goes in a turn of its own.
void Windows::retire(std::unique_ptr<QQuickView> view) {
    view->removeEventFilter(this);
    view->hide();
    trimmed_ = false;
    ++retired_;
    QQuickView* gone = view.release();
    std::erase_if(retiring_, [](const QPointer<QQuickView>& one) { return !one; });
    retiring_.emplace_back(gone);
    connect(gone, &QObject::destroyed, this, [this] {
        --retired_;
        QMetaObject::invokeMethod(this, &Windows::trimWhenUnused, Qt::QueuedConnection);
    });
    gone->deleteLater();
}

void Windows::trimWhenUnused() {
    if (trimmed_ || main_ || !panels_.empty() || retired_ > 0 || !engine_) return;
    trimmed_ = true;
    engine_->collectGarbage();
    engine_->trimComponentCache();
    QPixmapCache::clear();
    Q_EMIT allClosed();
}

/// Lists leave the deletion of their rows to a later turn, and a row that is being animated goes on moving
/// until then: without its engine that ends the program.
void Windows::dropEngine() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    engine_.reset();
}

bool Windows::eventFilter(QObject* watched, QEvent* event) {
    const bool escape = event->type() == QEvent::KeyPress &&
                        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape;  // NOLINT: Qt's own downcast
    if (event->type() != QEvent::Close && !escape) return false;
    for (const auto& [panel, view] : panels_) {
        if (view.get() != watched) continue;
        // A panel's own keys come first; Escape that it left alone closes it.
        if (escape && panel == PanelID::switcher) return false;
        const PanelID dismissed = panel;
        closePanel(dismissed);
        Q_EMIT panelDismissed(dismissed);
        return true;
    }
    if (watched == main_.get() && event->type() == QEvent::Close) {
        if (mainMayClose()) {
            closeMain();
        } else {
            event->ignore();
            bringMainForward();
        }
        return true;
    }
    return false;
}

}  // namespace quillo
