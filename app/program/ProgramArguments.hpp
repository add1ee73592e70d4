// What a start of the program answers before it is the running application.
#pragma once
#include <QStringList>
#include <optional>
#include <string>

namespace quillo {

/// Of the arguments after the program's name. Prints what only asks for text, and why others are refused:
/// then the status to end with. Needs no application object, and so no display.
std::optional<int> printed(const QStringList& arguments);

/// Says on standard error and in a dialog why the application cannot run; the status to end with.
int refuse(const std::string& reason);

}  // namespace quillo
