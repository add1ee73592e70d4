// The changes a person made to saved workspaces in this run of the program, to be undone and done again.
#pragma once
#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "WindowEngine/records/Workspace.hpp"
#include "WindowEngine/support/Error.hpp"

namespace quillo {

class EditHistory {
  public:
    /// In all, and of the largest workspaces fewer: each holds two versions of what it changed.
    static constexpr std::size_t mostSteps = 50;
    static constexpr std::size_t mostParts = 100'000;  // windows and addresses

    /// What can be edited of a workspace.
    struct Parts {
        explicit Parts(const Workspace& workspace);

        std::string name, icon, color;
        std::shared_ptr<const WorkspaceSnapshot> snapshot;
    };
    struct Step {
        std::string words;  // "Leave Out Mail"
        Parts before, after;
    };

    /// What had been undone of the workspace cannot be done again from here on.
    void add(const Uuid& workspace, std::string words, const Workspace& before, const Workspace& after);
    /// Null where there is none.
    const Step* undoable(const Uuid& workspace) const;
    const Step* redoable(const Uuid& workspace) const;
    void undone(const Uuid& workspace);
    void redone(const Uuid& workspace);
    void forget(const Uuid& workspace) { steps_.erase(workspace); }

    /// Puts back what a step changed, in one direction. What is stored may have been changed since, by
    /// another program: where that touched the same part, nothing is put back and the error says so.
    static Result<void> apply(const Parts& from, const Parts& to, Workspace& stored);

  private:
    struct Steps {
        std::vector<Step> all;
        std::size_t done = 0;  // so many of them
    };
    static void shorten(std::vector<Step>& steps);

    std::map<Uuid, Steps> steps_;
};

}  // namespace quillo
