#include "app/gui/ScreenNumbers.hpp"

#include <QGuiApplication>
#include <QPainter>
#include <QRasterWindow>
#include <QScreen>

namespace quillo {
namespace {

constexpr int side = 180;  // of such a window

class NumberWindow final : public QRasterWindow {
  public:
    explicit NumberWindow(int number) : text_(QString::number(number)) {
        setFlags(Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                 Qt::WindowDoesNotAcceptFocus | Qt::WindowTransparentForInput);
        setTitle(text_);
    }

  private:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const QRect all(QPoint(0, 0), size());
        painter.fillRect(all, QColor(28, 28, 30));
        QFont font = QGuiApplication::font();
        font.setPixelSize(height() * 2 / 3);
        font.setBold(true);
        painter.setFont(font);
        painter.setPen(Qt::white);
        painter.drawText(all, Qt::AlignCenter, text_);
    }

    QString text_;
};

/// In the window system's own coordinates: on X11 pixels, whatever Qt scales by.
QRectF nativeGeometry(const QScreen& screen) {
    const QRectF scaled = screen.geometry();
    const bool pixels = QGuiApplication::platformName() == QLatin1String("xcb");
    return pixels ? QRectF(scaled.topLeft(), scaled.size() * screen.devicePixelRatio()) : scaled;
}

QScreen* screenAt(const Rect& frame) {
    const QPointF center(frame.midX(), frame.midY());
    for (QScreen* screen : QGuiApplication::screens())
        if (nativeGeometry(*screen).contains(center)) return screen;
    return nullptr;
}

}  // namespace

ScreenNumbers::ScreenNumbers() = default;
ScreenNumbers::~ScreenNumbers() = default;

void ScreenNumbers::show(const std::vector<Rect>& screens) {
    shown_.clear();
    for (std::size_t i = 0; i < screens.size(); ++i) {
        QScreen* const screen = screenAt(screens[i]);
        if (!screen) continue;
        auto window = std::make_unique<NumberWindow>(static_cast<int>(i) + 1);
        window->setScreen(screen);
        QRect place(0, 0, side, side);
        place.moveCenter(screen->geometry().center());
        window->setGeometry(place);
        window->show();
        shown_.push_back(std::move(window));
    }
}

}  // namespace quillo
