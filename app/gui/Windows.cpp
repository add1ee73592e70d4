#include "app/gui/Windows.hpp"

#include <QCoreApplication>
#include <QCursor>
#include <QEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPixmapCache>
#include <QQuickItem>
#include <QScreen>
#include <utility>

namespace quillo {
namespace {

constexpr QSize mainSize{1080, 720}, mainMinimum{760, 520};
constexpr int panelMargin = 20;

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

Windows::Windows(Theme& theme, Prepare prepare, QObject* parent)
    : QObject(parent), theme_(theme), prepare_(std::move(prepare)) {
    connect(&theme_, &Theme::changed, this, [this] {
        if (main_) main_->setColor(theme_.background());
    });
}

Windows::~Windows() {
    for (const QPointer<QQuickView>& view : retiring_) delete view;
    dropAll();
}

std::unique_ptr<QQuickView> Windows::makeView(const QString& name) {
    if (!engine_) {
        engine_ = std::make_unique<QQmlEngine>();
        engine_->addImportPath("qrc:/qt/qml");
        prepare_(*engine_);
    }
    auto view = std::make_unique<QQuickView>(engine_.get(), nullptr);
    view->installEventFilter(this);
    view->setSource(QUrl("qrc:/qt/qml/Quillo/" + name));
    return view;
}

void Windows::openMain() {
    if (bringMainForward()) return;
    main_ = makeView("RootView.qml");
    main_->setTitle("Quillo");
    main_->setColor(theme_.background());
    main_->setResizeMode(QQuickView::SizeRootObjectToView);
    main_->setMinimumSize(mainMinimum);
    const QRect room = screenInUse()->availableGeometry();
    const QSize size = mainSize.boundedTo(room.size()).expandedTo(mainMinimum);
    main_->setGeometry(QRect(room.center() - QPoint(size.width() / 2, size.height() / 2), size));
    main_->show();
    main_->raise();  // on a Mac this, too, brings the program to the front
    main_->requestActivate();
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

void Windows::showPanel(PanelID panel, PanelPlace where) {
    closePanel(panel);
    auto view = makeView(file(panel));
    view->setTitle(panel == PanelID::switcher ? "Quillo switcher" : "Quillo restore");
    view->setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    view->setColor(theme_.raised());
    view->setResizeMode(QQuickView::SizeViewToRootObject);
    place(*view, where);
    QQuickView& shown = *view;
    // It grows and shrinks with its rows, from the edge that its place holds it at.
    connect(view.get(), &QWindow::heightChanged, this, [this, &shown, where] { place(shown, where); });
    panels_[panel] = std::move(view);
    // The progress of a restore must not take the keyboard from what the person types into.
    if (panel == PanelID::restore) shown.setProperty("_q_showWithoutActivating", true);
    shown.setProperty("_q_macAlwaysShowToolWindow", true);  // a Mac hides it with the program otherwise
    shown.show();
    if (panel == PanelID::switcher) {
        shown.raise();
        shown.requestActivate();
    }
}

void Windows::place(QQuickView& view, PanelPlace where) const {
    QQuickItem* root = view.rootObject();
    if (root) root->setWidth(where.width);
    const QRect room = (view.isVisible() ? view.screen() : screenInUse())->availableGeometry();
    const QSize size(static_cast<int>(where.width), root ? static_cast<int>(root->height()) : view.height());
    if (where.anchor == PanelAnchor::bottomTrailing) {
        view.setPosition(room.right() + 1 - panelMargin - size.width(),
                         room.bottom() + 1 - panelMargin - size.height());
    } else {
        view.setPosition(room.x() + (room.width() - size.width()) / 2,
                         room.y() + (room.height() - size.height()) / 2 - room.height() / 10);
    }
}

void Windows::closePanel(PanelID panel) {
    const auto found = panels_.find(panel);
    if (found == panels_.end()) return;
    auto view = std::move(found->second);
    panels_.erase(found);
    retire(std::move(view));
}

void Windows::dropAll() {
    main_.reset();
    panels_.clear();
    if (retired_ == 0) dropEngine();
}

QQuickWindow* Windows::panelWindow(PanelID panel) const {
    const auto found = panels_.find(panel);
    return found == panels_.end() ? nullptr : found->second.get();
}

/// Whatever closes a window may run inside a handler of that very window: it goes in a turn of its own.
void Windows::retire(std::unique_ptr<QQuickView> view) {
    view->removeEventFilter(this);
    view->hide();
    ++retired_;
    QQuickView* gone = view.release();
    std::erase_if(retiring_, [](const QPointer<QQuickView>& one) { return !one; });
    retiring_.emplace_back(gone);
    connect(gone, &QObject::destroyed, this, [this] {
        --retired_;
        QMetaObject::invokeMethod(this, &Windows::dropEngineWhenUnused, Qt::QueuedConnection);
    });
    gone->deleteLater();
}

void Windows::dropEngineWhenUnused() {
    if (main_ || !panels_.empty() || retired_ > 0 || !engine_) return;
    dropEngine();
    QPixmapCache::clear();
    Q_EMIT engineDropped();
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
        if (!mainMayClose()) {
            event->ignore();
            bringMainForward();
            return true;
        }
        retire(std::move(main_));
        Q_EMIT mainClosed();
        return true;
    }
    return false;
}

}  // namespace quillo
