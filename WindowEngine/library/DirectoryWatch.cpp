#include "WindowEngine/library/DirectoryWatch.hpp"

#include <utility>

namespace quillo {
namespace {

using namespace std::chrono_literals;

/// Saving a workspace is some renames in a row: they are told as one.
constexpr Duration together = 50ms;

}  // namespace

DirectoryWatch::DirectoryWatch(Executor& executor, FileSystem& files, std::filesystem::path directory,
                               std::function<void()> changed)
    : executor_(executor),
      files_(files),
      directory_(std::move(directory)),
      changed_(std::move(changed)),
      self_(std::make_shared<DirectoryWatch*>(this)) {
    // Best effort: without its parent there is nothing to watch, and saving will say what is wrong.
    [[maybe_unused]] const Result<void> created = files_.createDirectories(directory_.parent_path());
    watch();
}

DirectoryWatch::~DirectoryWatch() {
    watch_.reset();  // no call comes from here on; one that is queued finds nobody
    *self_ = nullptr;
}

void DirectoryWatch::watch() {
    const auto queued = [&executor = executor_, self = self_] {
        executor.post([self] {
            if (*self) (*self)->noticed();
        });
    };
    // Until it is there, the nearest one above tells how it comes. More of the way may come while we look.
    std::filesystem::path watched;
    for (int tries = 0; tries < 2 && watched != directory_; ++tries) {
        watched = directory_;
        auto watching = files_.watch(watched, queued);
        while (!watching && watched.has_relative_path()) {
            watched = watched.parent_path();
            watching = files_.watch(watched, queued);
        }
        watch_ = watching ? *std::move(watching) : nullptr;
    }
}

void DirectoryWatch::noticed() {
    if (!settling_ || settling_->done()) settling_.emplace(executor_, settle());
}

Task<> DirectoryWatch::settle() {
    co_await sleepFor(together);
    watch();  // anew: the directory may be another one of the same name
    if (stamps() != seen_) changed_();
}

void DirectoryWatch::look() {
    seen_ = stamps();
}

DirectoryWatch::Stamps DirectoryWatch::stamps() const {
    Result<std::vector<EntryStamp>> found = files_.stamps(directory_);
    return found ? Stamps(*std::move(found)) : std::nullopt;
}

}  // namespace quillo
