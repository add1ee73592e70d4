// Session files are read on a thread of its own: a disk may hang, and a large file takes its time to decode.
#pragma once
#include <memory>
#include <thread>
#include <vector>

#include "WindowEngine/services/BrowserFiles.hpp"
#include "WindowEngine/support/Executor.hpp"

namespace quillo {

class ProfileReader {
  public:
    using Profiles = std::vector<std::vector<BrowserProfile>>;  // one list for each process

    explicit ProfileReader(Executor& executor);
    ProfileReader(const ProfileReader&) = delete;
    ProfileReader& operator=(const ProfileReader&) = delete;
    ~ProfileReader();

    /// One list for each process, in order. `timedOut` after some seconds; what hangs is left behind.
    Task<Result<Profiles>> read(std::vector<ProcessID> processes, BrowserFamily family);

  private:
    struct Shared;

    Executor& executor_;
    std::shared_ptr<Shared> shared_;  // also the thread's, which may outlive this object
    std::thread thread_;              // from the first reading on
};

}  // namespace quillo
