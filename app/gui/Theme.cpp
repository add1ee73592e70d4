#include "app/gui/Theme.hpp"

#include <IconGlyphs.hpp>
#include <QFontDatabase>
#include <QResource>
#include <algorithm>
#include <utility>

namespace quillo {
namespace {

QString fromUtf8(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

QVariantMap roles(const WorkspaceColors& colors) {
    return {{"base", Theme::color(colors.base)},
            {"on", Theme::color(colors.on)},
            {"strong", Theme::color(colors.strong)},
            {"tint", Theme::color(colors.tint)},
            {"tile", Theme::color(colors.tile)},
            {"tileFront", Theme::color(colors.tileFront)},
            {"tileBorder", Theme::color(colors.tileBorder)},
            {"tileBand", Theme::color(colors.tileBand)},
            {"tileLanding", Theme::color(colors.tileLanding)}};
}

struct TypeRole {
    std::string_view name;
    int size, line;
    QFont::Weight weight;
    double spacing = 0;
};
constexpr std::array typeRoles{TypeRole{"display", 28, 36, QFont::DemiBold, -0.5},
                               TypeRole{"title", 20, 26, QFont::DemiBold, -0.2},
                               TypeRole{"field-large", 16, 22, QFont::DemiBold},
                               TypeRole{"query", 17, 24, QFont::Normal},
                               TypeRole{"lead", 15, 23, QFont::Normal},
                               TypeRole{"heading", 15, 20, QFont::DemiBold},
                               TypeRole{"name", 14, 18, QFont::DemiBold},
                               TypeRole{"body", 13, 18, QFont::Normal},
                               TypeRole{"body-medium", 13, 18, QFont::Medium},
                               TypeRole{"body-strong", 13, 18, QFont::DemiBold},
                               TypeRole{"caption", 12, 16, QFont::Normal},
                               TypeRole{"map-label", 11, 14, QFont::DemiBold},
                               TypeRole{"map-desktop", 11, 14, QFont::Medium},
                               TypeRole{"map-small", 10, 12, QFont::Medium}};

const TypeRole& typeRole(const QString& name) {
    const std::string wanted = name.toStdString();
    const auto found = std::ranges::find(typeRoles, wanted, &TypeRole::name);
    return found != typeRoles.end() ? *found : *std::ranges::find(typeRoles, "body", &TypeRole::name);
}

/// Stored icon names are the other system's; each has a symbol that shows the same.
constexpr std::array<std::pair<std::string_view, std::string_view>, 13> workspaceSymbols{
    {{"square.stack.3d.up", "layers"},
     {"briefcase", "briefcase"},
     {"hammer", "hammer"},
     {"paintbrush.pointed", "paintbrush"},
     {"terminal", "terminal"},
     {"book", "book"},
     {"gamecontroller", "gamepad-2"},
     {"music.note", "music"},
     {"person", "user"},
     {"sparkles", "sparkles"},
     {"leaf", "leaf"},
     {"globe", "globe"},
     {"clock.arrow.circlepath", "history"}}};

qreal textScale() {
    bool given = false;
    const qreal scale = qEnvironmentVariable("QUILLO_TEXT_SCALE").toDouble(&given);
    return given ? std::clamp<qreal>(scale, 1, 1.5) : 1;
}

}  // namespace

Theme::Theme(QObject* parent)
    : QObject(parent),
      fromEnvironment_(qEnvironmentVariable("QUILLO_REDUCED_MOTION") == "1"),
      reducedMotion_(fromEnvironment_),
      scale_(textScale()) {
    fillWorkspaces();
}

void Theme::setReducedMotion(bool reduced) {
    reduced = reduced || fromEnvironment_;
    if (std::exchange(reducedMotion_, reduced) != reduced) Q_EMIT motionChanged();
}

void Theme::setDark(bool dark) {
    if (std::exchange(dark_, dark) == dark) return;
    fillWorkspaces();
    Q_EMIT changed();
}

QColor Theme::color(std::string_view token) {
    return QColor(fromUtf8(token));
}

const WorkspaceColors& Theme::workspaceColors(std::string_view name) const {
    const auto& all = dark_ ? darkWorkspaceColors : lightWorkspaceColors;
    const auto found = std::ranges::find(all, name, &WorkspaceColors::name);
    return found != all.end() ? *found : *std::ranges::find(all, "slate", &WorkspaceColors::name);
}

QVariantMap Theme::workspace(const QString& name) const {
    return roles(workspaceColors(name.toStdString()));
}

QString Theme::family() {
    static const QString found = QFontDatabase::hasFamily("Inter")
                                     ? QStringLiteral("Inter")
                                     : QFontDatabase::systemFont(QFontDatabase::GeneralFont).family();
    return found;
}

QFont Theme::font(const QString& name) const {
    const TypeRole& role = typeRole(name);
    QFont font(family());
    font.setPixelSize(qRound(role.size * scale_));
    font.setWeight(role.weight);
    font.setLetterSpacing(QFont::AbsoluteSpacing, role.spacing);
    return font;
}

int Theme::lineHeight(const QString& name) const {
    return qRound(typeRole(name).line * scale_);
}

QString Theme::glyph(const QString& symbol) const {
    const std::string name = symbol.toStdString();
    const auto found = std::ranges::find(iconGlyphs, name, [](const auto& one) { return one.first; });
    if (found != iconGlyphs.end()) return QString(QChar(found->second));
    if (!name.empty()) qWarning("icon-names.txt does not list %s", name.c_str());
    return QStringLiteral("?");
}

QString Theme::workspaceSymbol(const QString& icon) const {
    const std::string name = icon.toStdString();
    const auto found = std::ranges::find(workspaceSymbols, name, [](const auto& one) { return one.first; });
    return fromUtf8(found != workspaceSymbols.end() ? found->second : "layers");
}

QString Theme::symbolFamily() const {
    static const QString family = [] {
        // By its name, Qt would keep a megabyte of it twice.
        const QResource font(":/symbols/lucide.ttf");
        const auto* const bytes = reinterpret_cast<const char*>(font.data());
        const int id = QFontDatabase::addApplicationFontFromData(QByteArray::fromRawData(bytes, font.size()));
        return QFontDatabase::applicationFontFamilies(id).value(0);
    }();
    return family;
}

void Theme::fillWorkspaces() {
    workspaces_.clear();
    for (const WorkspaceColors& colors : dark_ ? darkWorkspaceColors : lightWorkspaceColors) {
        workspaces_.insert(fromUtf8(colors.name), roles(colors));
    }
}

}  // namespace quillo
