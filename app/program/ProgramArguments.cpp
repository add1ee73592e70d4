#include "app/program/ProgramArguments.hpp"

#include <QMessageBox>
#include <cstdio>

#include "WindowEngine/support/Text.hpp"
#include "app/gui/SingleInstance.hpp"
#include "settings/Version.hpp"

namespace quillo {
namespace {

constexpr const char* usage =
    "usage: quillo [--save | --switcher | --background | --service | ADDRESS | --help | --version]\n"
    "\n"
    "  quillo               opens the window; a second start brings it forward\n"
    "  quillo --save        saves the current desktop, after a review\n"
    "  quillo --switcher    opens or closes the workspace switcher\n"
    "  quillo --background  opens no window, as at login, and resumes the workspace chosen for that\n"
    "  quillo --service     opens no window\n"
    "  quillo ADDRESS       resumes the workspace of a link, quillo:restore?name=NAME, after a question\n"
    "\n"
    "quilloctl does the same on the command line.\n";

}  // namespace

std::optional<int> printed(const QStringList& arguments) {
    if (arguments == QStringList{"--help"} || arguments == QStringList{"-h"})
        return std::fputs(usage, stdout) < 0;
    if (arguments == QStringList{"--version"}) return std::printf("quillo %s\n", versionWithCommit()) < 0;
    if (const auto request = launchOf(arguments); !request) {
        std::fprintf(stderr, "quillo: %s\n%s", text::printable(request.error().text).c_str(), usage);
        return 2;
    }
    return std::nullopt;
}

int refuse(const std::string& reason) {
    std::fprintf(stderr, "quillo: %s\n", text::printable(reason).c_str());
    QMessageBox::critical(nullptr, "Quillo", QString::fromStdString(reason));
    return 1;
}

}  // namespace quillo
