#include "ctl/SnapshotText.hpp"

#include <fmt/format.h>

#include "ctl/HumanText.hpp"
#include "ctl/Table.hpp"

namespace quillo::ctl {
namespace {

JsonLine jsonWindow(const ApplicationSnapshot& application, const WindowSnapshot& window) {
    JsonLine line;
    line.add("application", application.name)
        .add("bundleIdentifier", application.bundleIdentifier)
        .add("index", window.index)
        .add("title", window.title)
        .add("frame", window.frame)
        .add("displayID", window.displayID);
    if (window.desktop) line.add("desktop", window.desktop->index);
    line.add("isMinimized", window.isMinimized).add("isFullscreen", window.isFullscreen);
    if (window.documentURL) line.add("documentURL", window.documentURL->string());
    if (window.tabs) line.add("tabs", static_cast<std::int64_t>(window.tabs->size()));
    return line;
}

}  // namespace

std::string windowState(const WindowSnapshot& window) {
    std::string state;
    const auto add = [&state](std::string_view text) {
        if (!state.empty()) state += ", ";
        state += text;
    };
    if (window.desktop) add(fmt::format("Desktop {}", window.desktop->number()));
    if (window.isMinimized) add("minimized");
    if (window.isFullscreen) add("full screen");
    return state;
}

void printWindows(Output& output, const WorkspaceSnapshot& snapshot) {
    Table table({"APPLICATION", "WINDOW", "FRAME", "DISPLAY", "STATE"});
    for (const ApplicationSnapshot& application : snapshot.applications) {
        for (const WindowSnapshot& window : application.windows) {
            if (output.json()) {
                output.value(jsonWindow(application, window));
                continue;
            }
            table.row({{printable(application.name)},
                       {windowLabel(window)},
                       {frameText(window.frame)},
                       {printable(window.displayID.value_or("none")), Style::dim},
                       {windowState(window)}});
        }
    }
    if (!table.empty()) table.print(output);
}

void printDisplays(Output& output, std::span<const DisplaySnapshot> displays) {
    Table table({"DISPLAY", "FRAME", "USABLE", "SCALE", "ROLE"});
    for (const DisplaySnapshot& display : displays) {
        if (output.json()) {
            JsonLine line;
            line.add("id", display.id)
                .add("frame", display.frame)
                .add("visibleFrame", display.visibleFrame)
                .add("scale", display.scale)
                .add("isPrimary", display.isPrimary)
                .add("model", display.model)
                .add("connector", display.connector);
            output.value(std::move(line));
            continue;
        }
        table.row({{printable(display.id)},
                   {frameText(display.frame)},
                   {frameText(display.visibleFrame)},
                   {fmt::format("{}", display.scale)},
                   {display.isPrimary ? "primary" : ""}});
    }
    if (!table.empty()) table.print(output);
}

}  // namespace quillo::ctl
