// Automation on the session bus: the object /app/quillo/Quillo/Workspaces of app.quillo.Quillo, described in
// docs/dbus.md. Thread: Qt's main one.
#pragma once
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QObject>
#include <QVariantMap>

#include "app/Automation.hpp"

namespace quillo {

/// As List() gives it.
struct ListedWorkspace {
    QString id, name;
};
QDBusArgument& operator<<(QDBusArgument& argument, const ListedWorkspace& workspace);
const QDBusArgument& operator>>(const QDBusArgument& argument, ListedWorkspace& workspace);

class WorkspacesObject final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "app.quillo.Workspaces1")

  public:
    static constexpr const char* path = "/app/quillo/Quillo/Workspaces";

    /// On the bus from here on, so that whoever has Quillo started by its name finds the object. Calls are
    /// answered in turns of the loop, by then with what was attached.
    explicit WorkspacesObject(QDBusConnection bus);
    ~WorkspacesObject() override;

    /// It must outlive the loop.
    void attach(Automation& automation);

    Q_SLOT QList<quillo::ListedWorkspace> List();
    Q_SLOT QString Save(const QString& name);
    Q_SLOT QString Restore(const QString& workspace);
    Q_SLOT QVariantMap Plan(const QString& workspace);

  Q_SIGNALS:
    void RestoreStarted(const QString& id, const QString& name, qlonglong windows);
    void RestoreProgress(const QString& id, qlonglong windowsDone, qlonglong windows);
    void RestoreEnded(const QString& id, const QString& name, const QVariantMap& totals, bool cancelled);
    void Saved(const QString& id, const QString& name);
    void Renamed(const QString& id, const QString& name, const QString& formerName);
    void Deleted(const QString& id, const QString& name);

  private:
    bool refusesUnattached();
    /// For a call that is answered later.
    template <class T>
    AppModel::Answer<T> laterAnswer(QVariant (*value)(const T&));
    void tell(const LibraryChange& change);

    QDBusConnection bus_;
    Automation* automation_ = nullptr;
};

}  // namespace quillo

Q_DECLARE_METATYPE(quillo::ListedWorkspace)
