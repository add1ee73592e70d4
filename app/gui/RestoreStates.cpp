#include "app/gui/RestoreStates.hpp"

#include <map>

#include "WindowEngine/capture/CaptureFilter.hpp"

namespace quillo {
namespace {

/// What the items say of one application of the workspace.
struct Fate {
    std::map<std::int64_t, QString> windows;  // by place; the latest word counts
    bool begun = false;
    QString whole;         // of the application, where it failed or was skipped
    bool missing = false;  // none of its windows can come
};

std::map<std::string, Fate> fates(const std::vector<RestoreReport::Item>& items) {
    std::map<std::string, Fate> fates;
    for (const RestoreReport::Item& item : items) {
        Fate& fate = fates[item.bundleIdentifier];
        fate.begun = true;
        const RestoreOutcome& outcome = outcomeOf(item.status);
        const QString state = stateOf(outcome.verdict);
        if (!item.savedIndex) {
            if (outcome.trouble()) fate.whole = state;
            if (outcome.verdict == Verdict::leftOut) fate.missing = true;
        } else if (!state.isEmpty()) {
            fate.windows[*item.savedIndex] = state;
        }
    }
    return fates;
}

}  // namespace

QString stateOf(Verdict verdict) {
    switch (verdict) {
        case Verdict::back:
        case Verdict::differs:
            return QStringLiteral("restored");
        case Verdict::leftOut:
            return QStringLiteral("skipped");
        case Verdict::failed:
            return QStringLiteral("failed");
        case Verdict::remark:
        case Verdict::done:
            break;
    }
    return {};
}

RestoreStates RestoreStates::of(const RestoreRun& run) {
    RestoreStates states;
    const auto known = fates(run.items());
    const bool over = run.report().has_value();
    const Fate none;
    std::size_t windows = 0, decided = 0;
    for (const ApplicationSnapshot& application : run.workspace().snapshot.applications) {
        const auto found = known.find(application.bundleIdentifier);
        const Fate& fate = found == known.end() ? none : found->second;
        for (std::size_t place = 0; place < application.windows.size(); ++place) {
            const auto own = fate.windows.find(static_cast<std::int64_t>(place));
            QString state = over || fate.missing ? fate.whole
                            : fate.begun         ? QStringLiteral("landing")
                                                 : QString();
            if (own != fate.windows.end()) state = own->second;
            if (state.isEmpty()) state = QStringLiteral("pending");
            ++windows;
            decided += own != fate.windows.end();
            states.byWindow.insert(QString::fromStdString(CaptureFilter::windowKey(
                                       application.bundleIdentifier, application.windows[place].index)),
                                   state);
        }
    }
    states.decided = over           ? 1
                     : windows == 0 ? 0
                                    : static_cast<double>(decided) / static_cast<double>(windows);
    return states;
}

}  // namespace quillo
