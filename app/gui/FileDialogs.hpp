// Asking for a file, as tasks: no event loop is nested for it.
#pragma once
#include <QString>
#include <QWindow>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "WindowEngine/support/Task.hpp"

namespace quillo {

/// A task that is cancelled or destroyed takes its dialog away. This must outlive its tasks.
class FileDialogs {
  public:
    using File = std::optional<std::filesystem::path>;  // absolute; absent when the person cancelled

    /// `parent` gives the window that a dialog belongs to, null for none.
    explicit FileDialogs(std::function<QWindow*()> parent) : parent_(std::move(parent)) {}

    /// A JSON file to write, which gets the suffix where the person gave none. A file that is there already
    /// is only answered after the person has agreed to replace it.
    Task<File> fileToWrite(std::string proposedName);
    /// A JSON file to read; whether it can be read is for the reader to say.
    Task<File> fileToRead();
    /// A folder that is there, to write several files into.
    Task<File> folderToWrite();

  private:
    std::function<QWindow*()> parent_;
    QString directory_;  // the one last chosen in
};

}  // namespace quillo
