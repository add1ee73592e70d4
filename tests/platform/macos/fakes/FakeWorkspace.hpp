// The workspace object over a simulated desktop, whose applications are the processes that it lists.
#pragma once
#include <map>
#include <utility>

#include "WindowEngine/support/Job.hpp"
#include "platform/macos/WorkspaceShell.hpp"
#include "platform/simulated/SimulatedDesktop.hpp"

namespace quillo::fakes {

class FakeWorkspace final : public WorkspaceShell {
  public:
    /// The desktop must outlive it.
    explicit FakeWorkspace(SimulatedDesktop& desktop) : desktop_(desktop) {}

    std::vector<WorkspaceProcess> processes() override;
    std::optional<ProcessID> parent(ProcessID pid) override;
    std::optional<std::string> ownIdentifier() override { return own; }
    std::vector<Url> locations(std::string_view identifier) override;
    std::optional<std::string> identifierAt(const Url& location) override;
    std::optional<std::string> name(const Url& location) override;
    std::optional<DocumentFacts> facts(const Url& document) override;
    std::vector<Url> openers(const Url& document) override;
    void open(const Url& location, const std::vector<Url>& documents, Answered answered) override;
    bool activate(ProcessID pid) override;
    bool hide(ProcessID pid) override;
    bool show(ProcessID pid) override;
    bool terminate(ProcessID pid) override;

    // What a test adds.
    std::vector<WorkspaceProcess> more;      // listed first; they accept whatever they are asked
    std::map<ProcessID, ProcessID> parents;  // of a process
    std::map<std::string, std::string>
        strangers;  // path of a bundle that is not installed, what it says it is
    std::map<std::string, DocumentFacts> documents;  // by path; others are plain files, and told nothing of
    std::map<std::string, Url, std::less<>>
        unpacked;  // of an identifier: known, in no folder for applications
    std::map<std::string, std::string>
        onlyOpener;  // of a document's path, an identifier; others: all open it
    std::optional<std::string> own;
    std::optional<WorkspaceError> refusal;  // of all that is to be opened
    bool dropsAnswers = false;
    std::vector<std::pair<std::string_view, ProcessID>> asked;  // of those in `more`

  private:
    Applications& applications() { return desktop_.platform().applications; }
    Task<Result<void>> opened(Url location, std::vector<Url> documents);
    Task<void> answer(Url location, std::vector<Url> documents, Answered answered);
    /// Absent where the desktop has none with that number.
    std::optional<std::string> identifierOf(ProcessID pid);
    bool isMore(ProcessID pid, std::string_view what);

    SimulatedDesktop& desktop_;
    std::vector<Job<void>> jobs_;
};

}  // namespace quillo::fakes
