#include "app/gui/MenuIcons.hpp"

#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <array>

namespace quillo::MenuIcons {
namespace {

constexpr std::array sizes{16, 32};

/// `background`: none where it is not valid.
QPixmap draw(const Theme& theme, const QString& symbol, int size, const QColor& color,
             const QColor& background) {
    QPixmap picture(size, size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    if (background.isValid()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(background);
        painter.drawRoundedRect(picture.rect(), size * 0.28, size * 0.28);
    }
    QFont font(theme.symbolFamily());
    font.setPixelSize(qRound(size * (background.isValid() ? 0.7 : 1.0)));
    painter.setFont(font);
    painter.setPen(color);
    painter.drawText(picture.rect(), Qt::AlignCenter, theme.glyph(symbol));
    return picture;
}

QIcon icon(const Theme& theme, const QString& symbol, const QColor& color, const QColor& background) {
    QIcon icon;
    for (const int size : sizes) icon.addPixmap(draw(theme, symbol, size, color, background));
    return icon;
}

}  // namespace

QIcon badge(const Theme& theme, const Workspace& workspace) {
    const WorkspaceColors& colors = theme.workspaceColors(workspace.color);
    return icon(theme, theme.workspaceSymbol(QString::fromStdString(workspace.icon)), Theme::color(colors.on),
                Theme::color(colors.base));
}

QIcon symbol(const Theme& theme, const QString& name) {
    return icon(theme, name, QGuiApplication::palette().color(QPalette::WindowText), {});
}

}  // namespace quillo::MenuIcons
