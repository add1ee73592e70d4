// Small pictures for menus, which take no symbols from a font.
#pragma once
#include <QIcon>

#include "WindowEngine/records/Workspace.hpp"
#include "app/gui/Theme.hpp"

namespace quillo::MenuIcons {

/// A workspace's symbol on its color.
QIcon badge(const Theme& theme, const Workspace& workspace);
/// A symbol by its name, in the colour of the menu's texts.
QIcon symbol(const Theme& theme, const QString& name);

}  // namespace quillo::MenuIcons
