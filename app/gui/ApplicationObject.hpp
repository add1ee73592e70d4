// What the desktop, and other starts of the program, call on the session bus.
#pragma once
#include <QObject>
#include <QVariantMap>

#include "app/gui/SingleInstance.hpp"

namespace quillo {

class ApplicationObject final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

  public:
    ApplicationObject(SingleInstance::Requested requested, QObject* parent)
        : QObject(parent), requested_(std::move(requested)) {}

    Q_SLOT void Activate(const QVariantMap& platformData) { ActivateAction({}, {}, platformData); }
    /// The first of them that is one of our links. Files are opened through the window only, so it is shown.
    Q_SLOT void Open(const QStringList& addresses, const QVariantMap& platformData);
    /// Those of launchOfAction(), and "restore" with a workspace's name or identifier as its parameter.
    Q_SLOT void ActivateAction(const QString& name, const QVariantList& parameters,
                               const QVariantMap& platformData);

  private:
    SingleInstance::Requested requested_;
};

}  // namespace quillo
