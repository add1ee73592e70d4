// What QML sees of C++: the module Quillo.Core.
#pragma once
#include <QQmlEngine>
#include <QtQml>
#include <functional>

namespace quillo {

inline constexpr const char* coreModule = "Quillo.Core";

/// Makes `object` the singleton `name` of Quillo.Core for every engine that first asks for it from here on.
/// It must outlive them. Another object may take its place later; QML's list of types is the process's and
/// can only grow, so that the type itself is registered once.
template <class T>
void registerSingleton(const char* name, T& object) {
    static T* current = nullptr;  // one name for each type
    const bool known = std::exchange(current, &object) != nullptr;
    QQmlEngine::setObjectOwnership(&object, QQmlEngine::CppOwnership);
    if (known) return;
    qmlRegisterSingletonType<T>(coreModule, 1, 0, name,
                                [](QQmlEngine*, QJSEngine*) -> QObject* { return current; });
}

/// Item types; any number of times.
void registerItems();

}  // namespace quillo
