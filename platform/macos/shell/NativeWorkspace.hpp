// The workspace object and running applications, as AppKit has them.
#pragma once
#include "platform/macos/WorkspaceShell.hpp"

namespace quillo {

class NativeWorkspace final : public WorkspaceShell {
  public:
    std::vector<WorkspaceProcess> processes() override;
    std::optional<ProcessID> parent(ProcessID pid) override;
    std::optional<std::string> ownIdentifier() override;
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
};

}  // namespace quillo
