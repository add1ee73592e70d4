// Files in memory: a thousand sequences of saves need no disk, and changes are told in a known order.
#pragma once
#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "WindowEngine/services/FileSystem.hpp"

namespace quillo {

/// For one thread, as far as files are changed.
class MemoryFileSystem final : public FileSystem {
  public:
    /// Asked before every change: true lets it fail, and nothing has happened.
    std::function<bool()> refuses = [] { return false; };
    /// Told of every file that comes to stand under a name, with its content.
    std::function<void(const Path&, const std::string&)> onWritten;
    /// Counts changes.
    std::uint64_t version = 0;

    Result<std::string> read(const Path& file) override {
        const auto found = files_.find(file);
        return found == files_.end() ? missing() : Result<std::string>(found->second);
    }
    Result<void> createDirectories(const Path& directory) override {
        if (refuses()) return full();
        for (Path path = directory; path != path.root_path(); path = path.parent_path())
            if (directories_.insert(path).second) changed(path);
        return {};
    }
    Result<void> createFile(const Path& file, std::string_view bytes) override {
        if (refuses() || files_.contains(file)) return full();
        if (!directories_.contains(file.parent_path())) return missing();
        return put(file, std::string(bytes));
    }
    Result<void> copy(const Path& from, const Path& to) override {
        if (refuses() || files_.contains(to)) return full();
        const auto found = files_.find(from);
        return found == files_.end() ? missing() : put(to, found->second);
    }
    Result<void> rename(const Path& from, const Path& to) override {
        if (refuses()) return full();
        auto node = files_.extract(from);
        if (node.empty()) return missing();
        return put(to, std::move(node.mapped()));
    }
    Result<void> remove(const Path& file) override {
        if (refuses()) return full();
        if (files_.erase(file) == 0) return missing();
        changed(file);
        return {};
    }
    Result<void> removeTree(const Path& directory) override {
        if (refuses()) return full();
        const auto within = [&](const Path& path) {
            const auto [end, rest] =
                std::mismatch(directory.begin(), directory.end(), path.begin(), path.end());
            return end == directory.end();
        };
        std::erase_if(files_, [&](const auto& file) { return within(file.first); });
        const std::set<Path> removed(directories_.lower_bound(directory), directories_.end());
        for (const Path& path : removed) {
            if (!within(path)) continue;
            directories_.erase(path);
            changed(path);
            for (const auto& weak : watchers_) {
                if (const auto watcher = weak.lock(); watcher && watcher->directory == path) watcher->gone();
            }
        }
        return {};
    }
    Result<std::vector<std::string>> list(const Path& directory) override {
        if (!directories_.contains(directory)) return missing();
        std::vector<std::string> names;
        for (const auto& [file, bytes] : files_)
            if (file.parent_path() == directory) names.push_back(file.filename().string());
        return names;
    }
    Result<std::vector<EntryStamp>> stamps(const Path& directory) override {
        if (!directories_.contains(directory)) return missing();
        std::vector<EntryStamp> stamps;
        for (const auto& [file, bytes] : files_)
            if (file.parent_path() == directory)
                stamps.push_back({file.filename().string(), std::hash<std::string>()(bytes), 0, 0});
        return stamps;
    }
    bool exists(const Path& file) override { return files_.contains(file) || directories_.contains(file); }
    Result<void> syncDirectory(const Path&) override { return refuses() ? full() : Result<void>(); }
    Result<std::unique_ptr<DirectoryLock>> lock(const Path& directory) override {
        if (!directories_.contains(directory)) return missing();
        return std::make_unique<DirectoryLock>();
    }
    Result<std::unique_ptr<FileWatch>> watch(const Path& directory, std::function<void()> told) override {
        if (!directories_.contains(directory)) return missing();
        const auto watcher = std::make_shared<Watcher>(directory, std::move(told));
        watchers_.push_back(watcher);
        return std::make_unique<Watch>(watcher);
    }

  private:
    struct Watcher {
        Path directory;
        std::function<void()> told;

        /// Told once more, and never again: one of the same name is another directory.
        void gone() {
            directory.clear();
            told();
        }
    };
    struct Watch final : FileWatch {
        explicit Watch(std::shared_ptr<Watcher> watched) : watcher(std::move(watched)) {}
        std::shared_ptr<Watcher> watcher;
    };

    static std::unexpected<Error> missing() { return fail(ErrorKind::notFound, "no such file", 2); }
    static std::unexpected<Error> full() { return fail(ErrorKind::noSpace, "the disk is full", 28); }

    Result<void> put(const Path& file, std::string bytes) {
        const std::string& now = files_[file] = std::move(bytes);
        if (onWritten) onWritten(file, now);
        changed(file);
        return {};
    }
    /// As the system tells it: an entry of the directory above has changed.
    void changed(const Path& entry) {
        ++version;
        std::erase_if(watchers_, [](const auto& watcher) { return watcher.expired(); });
        for (const auto& weak : std::vector(watchers_)) {
            const auto watcher = weak.lock();
            if (watcher && watcher->directory == entry.parent_path()) watcher->told();
        }
    }

    std::map<Path, std::string> files_;
    std::set<Path> directories_;
    std::vector<std::weak_ptr<Watcher>> watchers_;
};

}  // namespace quillo
