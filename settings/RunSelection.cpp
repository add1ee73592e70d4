#include "settings/RunSelection.hpp"

#include <algorithm>
#include <iterator>
#include <utility>

#include "WindowEngine/capture/CaptureFilter.hpp"

namespace quillo {

void RunSelection::apply(WorkspaceSnapshot& snapshot, Restore::Options& options) const {
    options.kept = spared;
    for (const ApplicationSnapshot& application : snapshot.applications)
        options.kept.insert(application.bundleIdentifier);
    if (excluded.empty()) return;
    options.passedOver = {.windows = {}, .displays = snapshot.displays};
    std::set<std::string> emptied = excluded.apps;
    for (const ApplicationSnapshot& application : snapshot.applications) {
        const std::string& identifier = application.bundleIdentifier;
        if (excluded.apps.contains(identifier)) continue;
        std::vector<WindowSnapshot> left;
        for (const WindowSnapshot& window : application.windows)
            if (excluded.windows.contains(CaptureFilter::windowKey(identifier, window.index)))
                left.push_back(window);
        if (left.empty()) continue;
        if (left.size() == application.windows.size()) emptied.insert(identifier);
        std::ranges::move(left, std::back_inserter(options.passedOver.windows[identifier]));
    }
    snapshot = CaptureFilter::apply(std::move(snapshot), emptied, excluded.windows, excluded.contextURLs);
}

}  // namespace quillo
