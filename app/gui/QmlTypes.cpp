#include "app/gui/QmlTypes.hpp"

#include <QJSEngine>
#include <QQmlEngine>
#include <QtQml>

namespace quillo {
namespace {

constexpr const char* module = "Quillo.Core";

}  // namespace

void registerSingleton(const char* name, QObject& object) {
    QQmlEngine::setObjectOwnership(&object, QQmlEngine::CppOwnership);
    qmlRegisterSingletonInstance(module, 1, 0, name, &object);
}

void registerItems() {}

}  // namespace quillo
