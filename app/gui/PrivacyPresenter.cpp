#include "app/gui/PrivacyPresenter.hpp"

#include <QCollator>
#include <QFileInfo>
#include <algorithm>

#include "WindowEngine/capture/Capture.hpp"
#include "WindowEngine/integrations/Adapters.hpp"
#include "app/gui/Words.hpp"

namespace quillo {
namespace {

struct NamedApp {
    QString name, key;
};

void sortByName(std::vector<NamedApp>& apps) {
    QCollator collator;
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::ranges::sort(apps, [&](const NamedApp& one, const NamedApp& other) {
        const int order = collator.compare(one.name, other.name);
        return order != 0 ? order < 0 : one.key < other.key;
    });
}

}  // namespace

PrivacyPresenter::PrivacyPresenter(AppModel& model, DesktopAccess& desktop, QObject* parent)
    : QObject(parent), model_(model), desktop_(desktop) {
    connect(&model, &AppModel::settingsChanged, this, &PrivacyPresenter::follow);
    follow();
}

QString PrivacyPresenter::adaptersRefusal() const {
    return QString::fromStdString(Adapters::any(desktop_.platform).reason());
}

void PrivacyPresenter::setAdapter(const QString& key, bool on) {
    edit([&](AppSettings& settings) {
        if (on) {
            settings.enabledAdapters.insert(key.toStdString());
        } else {
            settings.enabledAdapters.erase(key.toStdString());
        }
    });
}

QVariantList PrivacyPresenter::runningApps() const {
    std::vector<NamedApp> apps;
    for (const RunningApplication& app :
         Capture::eligibleApplications(desktop_, model_.settings().captureOptions())) {
        const std::string& identifier = *app.bundleIdentifier;
        apps.push_back({QString::fromStdString(app.localizedName.value_or(identifier)),
                        QString::fromStdString(identifier)});
    }
    sortByName(apps);
    QVariantList list;
    for (const NamedApp& app : apps) list << QVariantMap{{"key", app.key}, {"name", app.name}};
    return list;
}

void PrivacyPresenter::excludeApp(const QString& key) {
    edit([&](AppSettings& settings) { settings.excludedBundleIdentifiers.insert(key.toStdString()); });
}

void PrivacyPresenter::includeApp(const QString& key) {
    edit([&](AppSettings& settings) { settings.excludedBundleIdentifiers.erase(key.toStdString()); });
}

QString PrivacyPresenter::excludeDomains(const QString& typed) {
    AppSettings settings = model_.settings();
    if (const Result<void> done = settings.excludeDomains(typed.toStdString()); !done)
        return line(done.error().text);
    model_.setSettings(std::move(settings));
    return {};
}

void PrivacyPresenter::includeDomain(const QString& domain) {
    edit([&](AppSettings& settings) { settings.excludedDomains.erase(domain.toStdString()); });
}

void PrivacyPresenter::follow() {
    adapters_.setRows(adapterRows());
    std::vector<NamedApp> apps;
    for (const std::string& identifier : model_.settings().excludedBundleIdentifiers)
        apps.push_back({appName(identifier), QString::fromStdString(identifier)});
    sortByName(apps);
    std::vector<RowList::Row> appRows, domainRows;
    for (const NamedApp& app : apps) appRows.push_back({app.key, {app.name}});
    for (const std::string& domain : model_.settings().excludedDomains)
        domainRows.push_back({QString::fromStdString(domain), {}});
    excludedApps_.setRows(appRows);
    excludedDomains_.setRows(domainRows);
}

std::vector<RowList::Row> PrivacyPresenter::adapterRows() const {
    const auto unavailable = Adapters::unavailable(desktop_.platform);
    std::vector<RowList::Row> rows;
    for (const ContextAdapter* adapter : Adapters::all()) {
        const auto refused = std::ranges::find(unavailable, adapter->id(), &UnavailableAdapter::id);
        const bool enabled = model_.settings().enabledAdapters.contains(adapter->id());
        if (refused != unavailable.end() && !enabled) continue;  // nothing that this system could ever do
        rows.push_back(
            {QString::fromStdString(adapter->id()),
             {QString::fromStdString(adapter->name(desktop_.platform)),
              QString::fromStdString(adapter->privacyNote(desktop_.platform)), enabled,
              refused == unavailable.end() ? QString() : QString::fromStdString(refused->reason)}});
    }
    return rows;
}

/// Of its bundle. Where applications are not bundles the file's name means little to people: what the running
/// application calls itself goes before it.
QString PrivacyPresenter::appName(const std::string& identifier) const {
    const std::optional<Url> location = desktop_.platform.applications.location(identifier);
    const QFileInfo bundle(QString::fromStdString(location ? location->filePath().value_or("") : ""));
    if (bundle.suffix() != "app") {
        const auto running = desktop_.platform.applications.running(identifier);
        if (running && running->localizedName) return QString::fromStdString(*running->localizedName);
    }
    const QString name = bundle.completeBaseName();
    return name.isEmpty() ? QString::fromStdString(identifier) : name;
}

}  // namespace quillo
