// The person's defaults in one file, for systems that keep none for programs.
#pragma once
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "WindowEngine/services/FileSystem.hpp"
#include "platform/services/UserDefaults.hpp"

namespace quillo {

/// A JSON object with one member for each value: flags as true, JSON objects as they are, all other bytes as
/// a string. What else a person wrote there is data too, which whoever asks for it cannot read. Read when
/// first asked, and after refresh(); replaced in one step, each time after reading it again, so that two
/// programs do not lose each other's values. What cannot be read counts as empty. A damaged file is kept
/// aside before it is replaced, as NAME.damaged, NAME.damaged-2 and so on up to nine; none of these is
/// overwritten: a tenth is an error of the set. A set that failed only to make the change durable leaves it
/// in place.
///
/// notes() are another such file beside it, notes.json.
class FileDefaults final : public UserDefaults {
  public:
    FileDefaults(FileSystem& files, std::filesystem::path file) : files_(files), file_(std::move(file)) {}

    UserDefaults& notes() override;
    std::string place() const override { return file_.string(); }
    std::optional<std::string> trouble() const override;
    Result<std::string> keepAside() override;
    void refresh() override { content_.reset(); }

    std::optional<std::string> data(std::string_view key) const override;
    /// `bytes` must be valid UTF-8. A JSON object comes back as one of the same value, spelt anew where a
    /// file was read in between; everything else to the byte.
    Result<void> setData(std::string_view key, std::optional<std::string> bytes) override;
    bool boolean(std::string_view key) const override;
    Result<void> setBoolean(std::string_view key, bool value) override;

  private:
    using Values = std::map<std::string, std::string, std::less<>>;  // each as JSON
    struct Content {
        Values values;
        std::optional<Error> trouble;
    };

    const Content& content() const;
    Content read() const;
    Result<void> set(std::string_view key, std::optional<std::string> json);
    Result<std::filesystem::path> moveAside() const;

    FileSystem& files_;
    std::filesystem::path file_;
    mutable std::optional<Content> content_;
    std::unique_ptr<FileDefaults> notes_;  // once asked for
};

}  // namespace quillo
