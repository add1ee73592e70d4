// What resuming a workspace would do, before it is done: the plan as it stands, and what the person unticks
// for this run. Nothing of it is saved.
#pragma once
#include <QObject>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "WindowEngine/restore/RestorePreview.hpp"
#include "app/CaptureDraft.hpp"
#include "settings/RunSelection.hpp"

namespace quillo {

class ResumePreview final : public QObject {
    Q_OBJECT

  public:
    /// `nameOf` tells the name that an application has here; `excluded` is that of another preview of the
    /// workspace.
    using NameOf = std::function<std::string(const ApplicationSnapshot&)>;
    ResumePreview(Workspace workspace, CleanSlateMode cleanSlate, const NameOf& nameOf,
                  LeftOut::Exclusions excluded = {});

    const Workspace& workspace() const { return workspace_; }
    CleanSlateMode cleanSlate() const { return cleanSlate_; }
    void setCleanSlate(CleanSlateMode mode);

    /// The ticks: over the workspace's applications, each once, under the names that they have here, and
    /// then, without windows, the other applications that are hidden or asked to quit. Made anew where those
    /// change.
    CaptureDraft& ticks() const { return *ticks_; }
    /// Identifiers of those.
    const std::set<std::string>& others() const { return others_; }
    RunSelection selection() const;
    /// How many of the others are not unticked.
    std::int64_t touchedOthers() const;

    /// Absent until it is known. It is of the selection; of what was ticked a moment ago it says nothing yet.
    const std::optional<RestorePreview>& plan() const { return plan_; }
    /// Why an application that is not there cannot be launched.
    const std::string& notInstalled() const { return notInstalled_; }
    /// The desktop as it will be: everything listed, in the place that it goes to; what is unticked where it
    /// would go.
    WorkspaceSnapshot afterwards() const;

    // For AppModel.
    void setPlan(RestorePreview plan, const std::vector<RunningApplication>& others,
                 std::string notInstalled);

  Q_SIGNALS:
    void ticksChanged();   // a row was ticked or unticked, or the choice about other applications changed
    void ticksReplaced();  // ticks() is another object; the old one is gone after the signal
    void planned();

  private:
    void makeTicks(LeftOut::Exclusions excluded);

    const Workspace workspace_;
    WorkspaceSnapshot listed_;  // of it, with the names of here
    CleanSlateMode cleanSlate_;
    std::vector<ApplicationSnapshot> otherApplications_;
    std::set<std::string> others_;
    std::shared_ptr<CaptureDraft> ticks_;
    std::optional<RestorePreview> plan_;
    std::string notInstalled_;
};

}  // namespace quillo
