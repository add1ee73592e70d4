#include "WindowEngine/desktop/AccessibilityReading.hpp"

#include <algorithm>
#include <chrono>
#include <utility>

namespace quillo {

using namespace std::chrono_literals;

bool UnresponsiveApplications::resting(ProcessID pid, TimePoint now) const {
    const auto rest = rests_.find(pid);
    return rest != rests_.end() && now < rest->second.until;
}

void UnresponsiveApplications::timedOut(ProcessID pid, TimePoint now) {
    constexpr Duration firstRest = 2s, longestRest = 4s;
    if (resting(pid, now)) return;  // another request of the same batch
    const auto rest = rests_.find(pid);
    const Duration length = rest == rests_.end() ? firstRest : std::min(2 * rest->second.length, longestRest);
    rests_[pid] = {now + length, length};
}

namespace Accessibility {
namespace {

std::vector<Attribute> unasked(const AttributeRequest& request) {
    const Attribute timedOut = std::unexpected(AttributeMiss{AttributeMiss::Reason::timedOut, 0});
    return std::vector<Attribute>(request.names.size(), timedOut);
}

void learn(DesktopAccess& desktop, ProcessID owner, const std::vector<Attribute>& answer) {
    UnresponsiveApplications& unresponsive = desktop.handles.unresponsive;
    if (std::ranges::any_of(answer, isUnasked)) return;
    if (std::ranges::any_of(answer, isTimeout)) {
        unresponsive.timedOut(owner, desktop.platform.executor.now());
    } else if (!unresponsive.resting(owner, desktop.platform.executor.now())) {
        unresponsive.answered(owner);
    }
}

}  // namespace

bool isTimeout(const Attribute& attribute) {
    return !attribute && attribute.error().reason == AttributeMiss::Reason::timedOut;
}

bool isUnasked(const Attribute& attribute) {
    return isTimeout(attribute) && attribute.error().code == 0;
}

bool unresponsive(const DesktopAccess& desktop, ProcessID owner) {
    return desktop.handles.unresponsive.resting(owner, desktop.platform.executor.now());
}

std::vector<std::vector<Attribute>> read(DesktopAccess& desktop, std::span<const OwnedRequest> requests) {
    std::vector<std::vector<Attribute>> answers(requests.size());
    std::vector<AttributeRequest> asked;
    std::vector<std::size_t> askedIndices;
    for (std::size_t i = 0; i < requests.size(); ++i) {
        if (unresponsive(desktop, requests[i].owner)) {
            answers[i] = unasked(requests[i].request);
        } else {
            asked.push_back(requests[i].request);
            askedIndices.push_back(i);
        }
    }
    if (asked.empty()) return answers;
    auto given = desktop.platform.accessibility.read(asked);
    for (std::size_t i = 0; i < given.size(); ++i) {
        learn(desktop, requests[askedIndices[i]].owner, given[i]);
        answers[askedIndices[i]] = std::move(given[i]);
    }
    return answers;
}

std::vector<Attribute> read(DesktopAccess& desktop, ProcessID owner, const AttributeRequest& request) {
    const OwnedRequest owned{owner, request};
    return std::move(read(desktop, {&owned, 1}).front());
}

}  // namespace Accessibility
}  // namespace quillo
