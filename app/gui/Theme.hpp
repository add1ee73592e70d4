// The interface's colours, motion and text scale as QML reads them.
#pragma once
#include <QColor>
#include <QFont>
#include <QObject>
#include <QVariantMap>

#include "app/gui/ThemeColors.hpp"

namespace quillo {

class Theme final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool dark READ dark NOTIFY changed)
    Q_PROPERTY(bool reducedMotion READ reducedMotion NOTIFY motionChanged)
    Q_PROPERTY(qreal scale READ scale CONSTANT)
    Q_PROPERTY(QString family READ family CONSTANT)
    Q_PROPERTY(QString symbolFamily READ symbolFamily CONSTANT)
    Q_PROPERTY(QVariantMap workspaces READ workspaces NOTIFY changed)
    Q_PROPERTY(QColor background READ background NOTIFY changed)
    Q_PROPERTY(QColor surface READ surface NOTIFY changed)
    Q_PROPERTY(QColor raised READ raised NOTIFY changed)
    Q_PROPERTY(QColor sunken READ sunken NOTIFY changed)
    Q_PROPERTY(QColor border READ border NOTIFY changed)
    Q_PROPERTY(QColor borderStrong READ borderStrong NOTIFY changed)
    Q_PROPERTY(QColor text READ text NOTIFY changed)
    Q_PROPERTY(QColor text2 READ text2 NOTIFY changed)
    Q_PROPERTY(QColor text3 READ text3 NOTIFY changed)
    Q_PROPERTY(QColor accent READ accent NOTIFY changed)
    Q_PROPERTY(QColor accentHover READ accentHover NOTIFY changed)
    Q_PROPERTY(QColor accentPress READ accentPress NOTIFY changed)
    Q_PROPERTY(QColor onAccent READ onAccent NOTIFY changed)
    Q_PROPERTY(QColor accentTint READ accentTint NOTIFY changed)
    Q_PROPERTY(QColor accentText READ accentText NOTIFY changed)
    Q_PROPERTY(QColor focus READ focus NOTIFY changed)
    Q_PROPERTY(QColor success READ success NOTIFY changed)
    Q_PROPERTY(QColor successTint READ successTint NOTIFY changed)
    Q_PROPERTY(QColor warning READ warning NOTIFY changed)
    Q_PROPERTY(QColor warningTint READ warningTint NOTIFY changed)
    Q_PROPERTY(QColor danger READ danger NOTIFY changed)
    Q_PROPERTY(QColor dangerTint READ dangerTint NOTIFY changed)
    Q_PROPERTY(QColor display READ display NOTIFY changed)
    Q_PROPERTY(QColor switchOff READ switchOff NOTIFY changed)
    Q_PROPERTY(QColor tooltip READ tooltip NOTIFY changed)
    Q_PROPERTY(QColor panelEdge READ panelEdge NOTIFY changed)
    Q_PROPERTY(QColor displayEdge READ displayEdge NOTIFY changed)
    Q_PROPERTY(QColor shadow READ shadow NOTIFY changed)

  public:
    /// Motion is reduced by QUILLO_REDUCED_MOTION=1; QUILLO_TEXT_SCALE (1 to 1.5) makes all text larger.
    explicit Theme(QObject* parent = nullptr);

    bool dark() const { return dark_; }
    void setDark(bool dark);
    bool reducedMotion() const { return reducedMotion_; }
    /// Where the system asks for less motion too.
    void setReducedMotion(bool reduced);
    qreal scale() const { return scale_; }

    const ThemeColors& colors() const { return dark_ ? darkTheme : lightTheme; }
    /// The colours of a workspace; slate for a name that is none.
    const WorkspaceColors& workspaceColors(std::string_view name) const;
    static QColor color(std::string_view token);

    /// By color name, and in each by role.
    QVariantMap workspaces() const { return workspaces_; }
    Q_INVOKABLE QVariantMap workspace(const QString& name) const;
    /// Type by its role: display, title, field-large, query, lead, heading, name, body, body-medium,
    /// body-strong, caption, map-label, map-desktop, map-small; sizes in logical pixels, with the text scale.
    Q_INVOKABLE QFont font(const QString& role) const;
    Q_INVOKABLE int lineHeight(const QString& role) const;
    /// The character of a symbol in the symbol font; a question mark for a name that there is none of.
    Q_INVOKABLE QString glyph(const QString& symbol) const;
    /// The symbol for an icon name as workspaces store it; "layers" for one that is unknown.
    Q_INVOKABLE QString workspaceSymbol(const QString& icon) const;
    /// Of all text: Inter where it is installed, else the system's own.
    static QString family();
    QString symbolFamily() const;

    /// How long something may fade, in milliseconds; what moves asks for reducedMotion.
    Q_INVOKABLE int fade(int milliseconds) const { return reducedMotion_ ? 80 : milliseconds; }

    QColor background() const { return color(colors().background); }
    QColor surface() const { return color(colors().surface); }
    QColor raised() const { return color(colors().raised); }
    QColor sunken() const { return color(colors().sunken); }
    QColor border() const { return color(colors().border); }
    QColor borderStrong() const { return color(colors().borderStrong); }
    QColor text() const { return color(colors().text); }
    QColor text2() const { return color(colors().text2); }
    QColor text3() const { return color(colors().text3); }
    QColor accent() const { return color(colors().accent); }
    QColor accentHover() const { return color(colors().accentHover); }
    QColor accentPress() const { return color(colors().accentPress); }
    QColor onAccent() const { return color(colors().onAccent); }
    QColor accentTint() const { return color(colors().accentTint); }
    QColor accentText() const { return color(colors().accentText); }
    QColor focus() const { return color(colors().focus); }
    QColor success() const { return color(colors().success); }
    QColor successTint() const { return color(colors().successTint); }
    QColor warning() const { return color(colors().warning); }
    QColor warningTint() const { return color(colors().warningTint); }
    QColor danger() const { return color(colors().danger); }
    QColor dangerTint() const { return color(colors().dangerTint); }
    QColor display() const { return color(colors().display); }
    QColor switchOff() const { return color(colors().switchOff); }
    QColor tooltip() const { return color(colors().tooltip); }
    QColor panelEdge() const { return color(colors().panelEdge); }
    QColor displayEdge() const { return color(colors().displayEdge); }
    QColor shadow() const { return color(colors().shadow); }

  Q_SIGNALS:
    void changed();
    void motionChanged();

  private:
    void fillWorkspaces();

    bool dark_ = false;
    bool fromEnvironment_ = false;
    bool reducedMotion_ = false;
    qreal scale_ = 1;
    QVariantMap workspaces_;
};

}  // namespace quillo
