// The settings' panes Integrations and Privacy: what captures may ask, and what they leave out.
#pragma once
#include <QObject>
#include <QVariantList>

#include "app/AppModel.hpp"
#include "app/gui/KeyedList.hpp"

namespace quillo {

class PrivacyPresenter final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QAbstractListModel* adapters READ adapters CONSTANT)  // name, note, on, refusal
    /// Why no integration works here, where one reason holds for all of them; else empty.
    Q_PROPERTY(QString adaptersRefusal READ adaptersRefusal CONSTANT)
    Q_PROPERTY(QAbstractListModel* excludedApps READ excludedApps CONSTANT)        // name
    Q_PROPERTY(QAbstractListModel* excludedDomains READ excludedDomains CONSTANT)  // the key is the domain

  public:
    /// Both must outlive it.
    PrivacyPresenter(AppModel& model, DesktopAccess& desktop, QObject* parent = nullptr);

    QAbstractListModel* adapters() { return &adapters_; }
    QString adaptersRefusal() const;
    QAbstractListModel* excludedApps() { return &excludedApps_; }
    QAbstractListModel* excludedDomains() { return &excludedDomains_; }

    Q_INVOKABLE void setAdapter(const QString& key, bool on);
    /// { key, name } of those that captures look at now, by localized name.
    Q_INVOKABLE QVariantList runningApps() const;
    Q_INVOKABLE void excludeApp(const QString& key);
    Q_INVOKABLE void includeApp(const QString& key);
    /// As AppSettings::excludeDomains; why it refuses, and empty where it does not.
    Q_INVOKABLE QString excludeDomains(const QString& typed);
    Q_INVOKABLE void includeDomain(const QString& domain);
    Q_INVOKABLE void deleteAllData() { model_.deleteAllData(); }

  private:
    template <class Edit>
    void edit(Edit change) {
        AppSettings settings = model_.settings();
        change(settings);
        model_.setSettings(std::move(settings));
    }
    void follow();
    std::vector<RowList::Row> adapterRows() const;
    QString appName(const std::string& identifier) const;

    AppModel& model_;
    DesktopAccess& desktop_;
    RowList adapters_{{"name", "note", "on", "refusal"}};
    RowList excludedApps_{{"name"}};
    RowList excludedDomains_{{}};
};

}  // namespace quillo
