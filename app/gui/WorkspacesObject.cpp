#include "app/gui/WorkspacesObject.hpp"

#include <QDBusMetaType>

#include "app/gui/Words.hpp"

namespace quillo {
namespace {

QString identifier(const Uuid& id) {
    return QString::fromStdString(id.lower());
}

QVariantMap countsMap(const Automation::Counts& counts) {
    QVariantMap map;
    for (const auto& [name, count] : counts)
        map.insert(QString::fromStdString(name), static_cast<qlonglong>(count));
    return map;
}

/// What keeps a disk or a window manager from working is for the person: it may name a path.
QString errorText(const Error& error) {
    const bool aboutTheCall = error.kind == ErrorKind::notFound || error.kind == ErrorKind::invalidArgument ||
                              error.kind == ErrorKind::refused;
    return aboutTheCall ? qt(error.text) : QStringLiteral("Quillo could not do it; its window says why.");
}

QString errorName(ErrorKind kind) {
    switch (kind) {
        case ErrorKind::notFound:
            return QStringLiteral("app.quillo.Error.NotFound");
        case ErrorKind::invalidArgument:
            return QStringLiteral("org.freedesktop.DBus.Error.InvalidArgs");
        case ErrorKind::refused:
            return QStringLiteral("app.quillo.Error.Busy");
        default:
            return QStringLiteral("app.quillo.Error.Failed");
    }
}

}  // namespace

QDBusArgument& operator<<(QDBusArgument& argument, const ListedWorkspace& workspace) {
    argument.beginStructure();
    argument << workspace.id << workspace.name;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, ListedWorkspace& workspace) {
    argument.beginStructure();
    argument >> workspace.id >> workspace.name;
    argument.endStructure();
    return argument;  // NOLINT: the form that Qt asks for
}

WorkspacesObject::WorkspacesObject(QDBusConnection bus) : bus_(std::move(bus)) {
    qDBusRegisterMetaType<ListedWorkspace>();
    qDBusRegisterMetaType<QList<ListedWorkspace>>();
    if (bus_.isConnected())
        bus_.registerObject(path, this, QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals);
}

WorkspacesObject::~WorkspacesObject() {
    if (bus_.isConnected()) bus_.unregisterObject(path);
}

void WorkspacesObject::attach(Automation& automation) {
    automation_ = &automation;
    connect(&automation, &Automation::restoreStarted, this,
            [this](const Uuid& id, const std::string& name, std::int64_t windows) {
                Q_EMIT RestoreStarted(identifier(id), qt(name), windows);
            });
    connect(&automation, &Automation::restoreProgressed, this,
            [this](const Uuid& id, std::int64_t done, std::int64_t windows) {
                Q_EMIT RestoreProgress(identifier(id), done, windows);
            });
    connect(
        &automation, &Automation::restoreEnded, this,
        [this](const Uuid& id, const std::string& name, const Automation::Counts& totals, bool cancelled) {
            Q_EMIT RestoreEnded(identifier(id), qt(name), countsMap(totals), cancelled);
        });
    connect(&automation, &Automation::libraryChanged, this, &WorkspacesObject::tell);
}

void WorkspacesObject::tell(const LibraryChange& change) {
    const QString id = identifier(change.id), name = qt(change.name);
    switch (change.kind) {
        case LibraryChange::Kind::saved:
            return Saved(id, name);
        case LibraryChange::Kind::renamed:
            return Renamed(id, name, qt(change.formerName.value_or("")));
        case LibraryChange::Kind::deleted:
            return Deleted(id, name);
        case LibraryChange::Kind::restored:
            return;
    }
}

bool WorkspacesObject::refusesUnattached() {
    if (automation_) return false;
    sendErrorReply(errorName(ErrorKind::refused), "Quillo is still starting, or ending.");
    return true;
}

QList<ListedWorkspace> WorkspacesObject::List() {
    QList<ListedWorkspace> all;
    if (refusesUnattached()) return all;
    for (const LibraryEntry& entry : automation_->list()) all.append({identifier(entry.id), qt(entry.name)});
    return all;
}

template <class T>
AppModel::Answer<T> WorkspacesObject::laterAnswer(QVariant (*value)(const T&)) {
    setDelayedReply(true);
    return [bus = bus_, call = message(), value](const Result<T>& result) {
        const QDBusMessage reply =
            result ? call.createReply(value(*result))
                   : call.createErrorReply(errorName(result.error().kind), errorText(result.error()));
        bus.send(reply);
    };
}

QString WorkspacesObject::Save(const QString& name) {
    if (refusesUnattached()) return {};
    automation_->save(name.toStdString(),
                      laterAnswer<Uuid>([](const Uuid& id) { return QVariant(identifier(id)); }));
    return {};
}

QString WorkspacesObject::Restore(const QString& workspace) {
    if (refusesUnattached()) return {};
    if (workspace.isEmpty()) {
        sendErrorReply(errorName(ErrorKind::invalidArgument), "The name is empty.");
        return {};
    }
    const Result<Automation::Begun> begun = automation_->restore(workspace.toStdString());
    if (!begun) {
        sendErrorReply(errorName(begun.error().kind), errorText(begun.error()));
        return {};
    }
    return *begun == Automation::Begun::started ? QStringLiteral("started") : QStringLiteral("waiting");
}

QVariantMap WorkspacesObject::Plan(const QString& workspace) {
    if (refusesUnattached()) return {};
    automation_->plan(workspace.toStdString(),
                      laterAnswer<Automation::Counts>(
                          [](const Automation::Counts& counts) { return QVariant(countsMap(counts)); }));
    return {};
}

}  // namespace quillo
