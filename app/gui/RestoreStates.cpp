#include "app/gui/RestoreStates.hpp"

#include <map>

#include "WindowEngine/capture/CaptureFilter.hpp"

namespace quillo {
namespace {

using Report = RestoreReport;

struct NameStatus {
    const char* operator()(const Report::createdDesktops&) const { return "created"; }
    const char* operator()(const Report::opened&) const { return "opened"; }
    const char* operator()(const Report::note&) const { return "note"; }
    const char* operator()(const Report::skipped&) const { return "skipped"; }
    const char* operator()(const Report::failed&) const { return "failed"; }
    const char* operator()(const Report::restored&) const { return "restored"; }
    const char* operator()(const Report::adjusted&) const { return "adjusted"; }
    const char* operator()(const Report::launched&) const { return "launched"; }
};

/// What the items say of one application of the workspace.
struct Fate {
    std::map<std::int64_t, QString> windows;  // by place; the latest word counts
    bool begun = false;
    QString whole;         // of the application, where it failed or was skipped
    bool missing = false;  // none of its windows can come
};

std::map<std::string, Fate> fates(const std::vector<Report::Item>& items) {
    std::map<std::string, Fate> fates;
    for (const Report::Item& item : items) {
        Fate& fate = fates[item.bundleIdentifier];
        fate.begun = true;
        const QString kind = kindOf(item.status);
        if (!item.savedIndex) {
            if (isTrouble(item.status)) fate.whole = kind;
            if (kind == "skipped") fate.missing = true;
        } else if (kind != "note") {
            fate.windows[*item.savedIndex] = kind == "adjusted" ? QStringLiteral("restored") : kind;
        }
    }
    return fates;
}

}  // namespace

QString kindOf(const Report::Status& status) {
    return QString::fromUtf8(std::visit(NameStatus{}, status));
}

bool isTrouble(const Report::Status& status) {
    return std::holds_alternative<Report::failed>(status) || std::holds_alternative<Report::skipped>(status);
}

QString reasonOf(const Report::Status& status) {
    if (const auto* failed = std::get_if<Report::failed>(&status))
        return QString::fromStdString(failed->reason);
    if (const auto* skipped = std::get_if<Report::skipped>(&status))
        return QString::fromStdString(skipped->reason);
    const auto* note = std::get_if<Report::note>(&status);
    return note ? QString::fromStdString(note->text) : QString();
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
