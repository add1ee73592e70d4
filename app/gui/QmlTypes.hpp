// What QML sees of C++: the module Quillo.Core.
#pragma once
#include <QObject>

namespace quillo {

class Theme;
class Ui;

/// Makes `object` the singleton `name` of Quillo.Core, for engines made from here on. It must outlive them.
void registerSingleton(const char* name, QObject& object);
/// Item types; any number of times.
void registerItems();

}  // namespace quillo
