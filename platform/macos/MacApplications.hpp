// Applications of a Mac, as identities: what the workspace object lists as processes is put together here.
#pragma once
#include "WindowEngine/services/Applications.hpp"
#include "WindowEngine/support/Executor.hpp"
#include "platform/macos/OpenableDocument.hpp"
#include "platform/macos/WorkspaceShell.hpp"

namespace quillo {

class MacApplications final : public Applications {
  public:
    /// Whether a document may be opened at all, whatever opens it.
    using Judge = Result<Url> (*)(const Url&, WorkspaceShell&);

    /// Both must outlive it.
    MacApplications(Executor& executor, WorkspaceShell& shell, Judge judge = &openableDocumentOnMac)
        : executor_(executor), shell_(shell), judge_(judge) {}

    std::vector<RunningApplication> running() override;
    std::optional<RunningApplication> running(ProcessID pid) override;
    std::optional<RunningApplication> running(std::string_view bundleIdentifier) override;
    /// The living processes of the identity that `pid` belongs to, the one that stands for it first, without
    /// those beside it that may have no windows.
    std::vector<ProcessID> family(ProcessID pid);

    std::vector<std::string> ownIdentifiers() override;
    /// Of a running application its own place, which need not be where the system would open it from; of
    /// others only one in a folder for applications: the system also knows what was merely unpacked
    /// somewhere.
    std::optional<Url> location(std::string_view bundleIdentifier) override;
    std::optional<std::string> identifierAt(const Url& location) override;
    std::optional<std::string> name(std::string_view bundleIdentifier) override;
    Task<Result<void>> launch(Url location, std::vector<Url> documents) override;
    Task<Result<void>> open(std::string bundleIdentifier, std::vector<Url> documents) override;
    Result<Url> openable(std::string_view bundleIdentifier, const Url& document) override;
    Task<Result<void>> requestWindow(std::string bundleIdentifier) override;
    bool hide(std::string_view bundleIdentifier) override;
    bool show(std::string_view bundleIdentifier) override;
    bool terminate(std::string_view bundleIdentifier) override;
    std::optional<ProcessID> serviceProcess(std::string_view bundleIdentifier) override;
    Capability hiding() override { return Capability::available(); }
    Capability quitting() override { return Capability::available(); }

  private:
    bool activate(std::string_view identifier);
    Task<Result<void>> openWith(Url location, std::vector<Url> documents);

    Executor& executor_;
    WorkspaceShell& shell_;
    Judge judge_;
};

}  // namespace quillo
