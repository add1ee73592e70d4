#include "ctl/ChangeText.hpp"

#include <fmt/format.h>

#include "ctl/HumanText.hpp"

namespace quillo::ctl {
namespace {

std::string arrow(std::string_view from, std::string_view to) {
    return fmt::format("{} → {}", from, to);
}

std::string flagText(const FromTo<bool>& step, std::string_view yes, std::string_view no) {
    return step.from ? arrow(yes, no) : arrow(no, yes);
}

std::string placeOf(const WindowChange::Desktop& desktop) {
    return desktop ? fmt::format("desktop {}", *desktop + 1) : "no one desktop";
}

template <class T>
void addStep(JsonLine& line, std::string_view name, const std::optional<FromTo<T>>& step) {
    if (!step) return;
    line.add(fmt::format("from{}", name), step->from).add(fmt::format("to{}", name), step->to);
}

}  // namespace

std::string changeText(const WindowChange& change) {
    std::string text;
    const auto add = [&text](const std::string& part) { text += (text.empty() ? "" : ", ") + part; };
    if (change.frame) add(arrow(frameText(change.frame->from), frameText(change.frame->to)));
    if (change.minimized) add(flagText(*change.minimized, "minimized", "shown"));
    if (change.fullscreen) add(flagText(*change.fullscreen, "full screen", "a window"));
    if (change.desktop) add(arrow(placeOf(change.desktop->from), placeOf(change.desktop->to)));
    return text.empty() ? "in place" : text;
}

void addChange(JsonLine& line, const WindowChange& change) {
    line.add("inPlace", change.none());
    addStep(line, "Frame", change.frame);
    addStep(line, "Minimized", change.minimized);
    addStep(line, "Fullscreen", change.fullscreen);
    addStep(line, "Desktop", change.desktop);
}

}  // namespace quillo::ctl
