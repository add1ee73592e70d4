// Where in the main window one is, and what all surfaces share.
#pragma once
#include <QObject>
#include <QString>

#include "app/AppModel.hpp"
#include "app/PlatformTexts.hpp"
#include "app/gui/Words.hpp"

namespace quillo {

class Ui final : public QObject {
    Q_OBJECT
    /// "onboarding", "review", "settings", "detail" or "library".
    Q_PROPERTY(QString page READ page NOTIFY pageChanged)
    Q_PROPERTY(QString detailId READ detailId NOTIFY pageChanged)
    /// "general", "integrations", "privacy" or "about".
    Q_PROPERTY(QString settingsPane READ settingsPane WRITE setSettingsPane NOTIFY pageChanged)
    Q_PROPERTY(QString toast READ toast NOTIFY toastChanged)           // empty: none is shown
    Q_PROPERTY(QString toastKind READ toastKind NOTIFY toastChanged)   // "done", "refusal" or "failure"
    Q_PROPERTY(bool toastUndoes READ toastUndoes NOTIFY toastChanged)  // it offers to undo what it tells
    Q_PROPERTY(bool onLinux READ onLinux CONSTANT)
    Q_PROPERTY(QString saveShortcut READ saveShortcut NOTIFY settingsChanged)  // of the global hot key

  public:
    Ui(AppModel& model, TextVariant variant, QObject* parent = nullptr);

    /// A page of the main window that stays: "settings", "detail" or "library".
    struct Place {
        QString page, detailId, settingsPane;
    };
    /// What is shown, or would be without the introduction or a review.
    Place place() const;
    /// A workspace that is gone leads to the library.
    void goTo(const Place& place);

    QString page() const;
    QString detailId() const { return detailId_; }
    QString settingsPane() const { return settingsPane_; }
    void setSettingsPane(const QString& pane);
    QString toast() const { return line(model_.toast().value_or("")); }
    QString toastKind() const;
    bool toastUndoes() const { return model_.toastUndoes().has_value(); }
    bool onLinux() const { return variant_ == TextVariant::onLinux; }
    QString saveShortcut() const;

    Q_INVOKABLE QString text(const QString& text) const;
    Q_INVOKABLE QString modifierWord(const QString& glyph) const;
    Q_INVOKABLE QString shortcut(const QString& label) const;
    /// The detail of a workspace, by its identifier.
    Q_INVOKABLE void openDetail(const QString& id);
    Q_INVOKABLE void openSettings(const QString& pane = {});
    /// From settings or detail to the library.
    Q_INVOKABLE void back();
    /// What Escape does there: first it closes a report that was opened from the page.
    Q_INVOKABLE void leave();
    Q_INVOKABLE void dismissToast() { model_.dismissToast(); }
    Q_INVOKABLE void undoToast();
    Q_INVOKABLE void toggleSwitcher() { model_.toggleSwitcher(); }
    Q_INVOKABLE void beginCapture() { model_.beginCapture(); }
    Q_INVOKABLE void importWorkspace() { model_.importWorkspace(); }

  Q_SIGNALS:
    void pageChanged();
    void toastChanged();
    void settingsChanged();

  private:
    AppModel& model_;
    const TextVariant variant_;
    QString detailId_;
    QString settingsPane_ = QStringLiteral("general");
};

}  // namespace quillo
