// What ContractDesktop describes, for the layers that stand over the simulated desktop.
#pragma once
#include <string_view>

namespace quillo {

inline constexpr std::string_view contractScene = R"({
  "displays": [{"id": "LEFT", "frame": [0, 0, 1440, 900], "visibleFrame": [0, 25, 1440, 875], "desktops": 2},
               {"id": "RIGHT", "frame": [1440, 0, 1280, 1024]}],
  "applications": [
    {"identifier": "org.example.editor", "name": "Editor", "windows": [
      {"title": "Alpha", "frame": [40, 60, 400, 300]},
      {"title": "Beta", "frame": [500, 80, 420, 320]},
      {"title": "Gamma", "frame": [1600, 100, 300, 200], "subrole": "AXDialog"}]},
    {"identifier": "org.example.launcher", "running": false, "windows": [{"title": "New", "frame": [90, 90, 300, 200]}]}
  ]})";

}  // namespace quillo
