// What the system's workspace object tells and does, in plain values: the narrow side of the Objective-C++
// shell, which decides nothing.
#pragma once
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "WindowEngine/services/Applications.hpp"

namespace quillo {

/// One process, as the system describes it.
struct WorkspaceProcess {
    ProcessID pid = 0;
    std::optional<std::string> identifier, name;
    ActivationPolicy policy = ActivationPolicy::prohibited;
    std::optional<Url> location;
    std::optional<Instant> launchDate;  // absent where something else than the system's launcher started it
    bool terminated = false;
    bool hidden = false;
};

/// An error and what it came from.
struct WorkspaceError {
    struct Cause {
        std::string domain;
        long code = 0;
    };
    std::vector<Cause> causes;  // the outermost first; never empty
};

/// What the system says of a file or folder.
struct DocumentFacts {
    bool isApplication = false;
    bool isAlias = false;            // a Finder alias or a symbolic link
    std::vector<std::string> types;  // identifiers of its type and of all that this one conforms to
};

/// For the executor's thread, which is the main thread.
class WorkspaceShell {
  public:
    /// Called once, on any thread; without an error when it was accepted.
    using Answered = std::function<void(std::optional<WorkspaceError>)>;

    virtual ~WorkspaceShell() = default;

    virtual std::vector<WorkspaceProcess> processes() = 0;
    /// The parent of any process, others' included.
    virtual std::optional<ProcessID> parent(ProcessID pid) = 0;
    /// Of this program's own bundle.
    virtual std::optional<std::string> ownIdentifier() = 0;

    /// All installed applications that carry the identifier, the one that the system would open first.
    virtual std::vector<Url> locations(std::string_view identifier) = 0;
    /// What the bundle at `location` says of itself.
    virtual std::optional<std::string> identifierAt(const Url& location) = 0;
    /// What it calls itself, in the person's language.
    virtual std::optional<std::string> name(const Url& location) = 0;
    virtual std::optional<DocumentFacts> facts(const Url& document) = 0;
    /// All applications that the system knows to open such a document.
    virtual std::vector<Url> openers(const Url& document) = 0;

    /// Opens the documents with the application at `location`, which is launched where it does not run.
    /// Without documents: launches it, or activates it and asks it to open again, on which one without
    /// windows opens one.
    virtual void open(const Url& location, const std::vector<Url>& documents, Answered answered) = 0;
    /// Whether the request could be sent.
    virtual bool activate(ProcessID pid) = 0;
    virtual bool hide(ProcessID pid) = 0;
    /// Shows what is hidden, without activating it; true where it was not.
    virtual bool show(ProcessID pid) = 0;
    virtual bool terminate(ProcessID pid) = 0;
};

}  // namespace quillo
