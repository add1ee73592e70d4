// Starts applications through GIO, without a shell and detached: they outlive this program, and neither its
// terminal nor a Ctrl-C there reaches them. GIO may look at files and talk to a session bus, so each launch
// runs on a thread of its own.
#pragma once
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "WindowEngine/services/AccessibilityService.hpp"
#include "WindowEngine/support/Error.hpp"
#include "WindowEngine/support/Executor.hpp"
#include "WindowEngine/support/Task.hpp"
#include "WindowEngine/support/Url.hpp"

namespace quillo {

class ApplicationLauncher {
  public:
    ApplicationLauncher(Executor& executor, std::string display)
        : executor_(executor), display_(std::move(display)) {}
    ApplicationLauncher(const ApplicationLauncher&) = delete;
    ApplicationLauncher& operator=(const ApplicationLauncher&) = delete;
    ~ApplicationLauncher();  // waits for launches that are under way

    /// What is started.
    struct Order {
        std::string entry;                // the .desktop file of an installed application
        std::vector<Url> documents = {};  // canonical addresses of what it declares to open
        std::string action = {};          // one of the entry's actions, instead of the entry itself
        /// Of a terminal, which is started in the one folder that `documents` are then (Terminals).
        std::optional<std::string> folderOption = std::nullopt;
    };

    /// Entry and documents are judged once more right before they are handed over. Gives the new process;
    /// absent when the system started the application in another way (over its session bus). The error's text
    /// holds no path or title.
    Task<Result<std::optional<ProcessID>>> launch(Order order);

  private:
    struct Running {
        std::thread thread;
        std::shared_ptr<bool> ended;  // set on the executor's thread
    };
    void joinEnded();

    Executor& executor_;
    std::string display_;
    std::vector<Running> running_;
};

}  // namespace quillo
