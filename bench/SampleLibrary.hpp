// A library of large workspaces in a directory of its own.
#pragma once
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "WindowEngine/records/WorkspaceCoding.hpp"

namespace quillo::bench {

inline WindowSnapshot sampleWindow(int number) {
    WindowSnapshot window;
    window.title = "Chapter " + std::to_string(number) + " — notes on the northern harbour";
    window.subrole = "AXStandardWindow";
    window.documentURL =
        Url::file("/home/someone/Documents/harbour/chapter " + std::to_string(number) + ".odt");
    window.frame = {40.0 + number, 60.5, 1180, 760};
    window.displayID = "37D8832A-2D66-02CA-B9F7-8F30A301B230";
    window.desktop =
        DesktopSnapshot{"37D8832A-2D66-02CA-B9F7-8F30A301B230", number % 4, "S" + std::to_string(number)};
    window.normalizedFrame = {0.0213 + number / 997.0, 0.0616, 0.78042328042328, 0.773930753564154};
    window.index = number;
    return window;
}

inline Workspace sampleWorkspace(int number) {
    WorkspaceSnapshot snapshot;
    snapshot.displays = {
        {"37D8832A-2D66-02CA-B9F7-8F30A301B230", {0, 0, 1512, 982}, {0, 33, 1512, 949}, 2, true}};
    for (int app = 0; app < 8; ++app) {
        ApplicationSnapshot application;
        application.bundleIdentifier = "org.example.application" + std::to_string(app);
        application.name = "Application " + std::to_string(app);
        application.applicationURL =
            Url::file("/usr/share/applications/app" + std::to_string(app) + ".desktop");
        for (int i = 0; i < 8; ++i) application.windows.push_back(sampleWindow(i));
        ContextWindow tabs{.sourceWindowIndex = 0, .urls = {}, .sourceWindowID = 4711};
        for (int i = 0; i < 12; ++i) {
            tabs.urls.push_back(
                *Url::parse("https://www.example.org/articles/2025/03/harbour?page=" + std::to_string(i)));
        }
        application.context = AppContext{"chromium", {tabs}};
        snapshot.applications.push_back(application);
    }
    return Workspace::create(Uuid::random(), "Workspace " + std::to_string(number), "square", "teal",
                             snapshot, Instant{std::chrono::seconds{1'700'000'000 + number}});
}

class SampleLibrary {
  public:
    explicit SampleLibrary(int count) {
        std::string pattern = (std::filesystem::temp_directory_path() / "quillo-bench-XXXXXX").string();
        directory_ = ::mkdtemp(pattern.data());
        for (int i = 0; i < count; ++i) {
            const Workspace workspace = sampleWorkspace(i);
            const std::string bytes = WorkspaceCoding::encode(workspace).value();
            files_.push_back(directory_ / (workspace.id.lower() + ".json"));
            std::ofstream(files_.back(), std::ios::binary) << bytes;
            size_ += bytes.size();
        }
    }
    SampleLibrary(const SampleLibrary&) = delete;
    SampleLibrary& operator=(const SampleLibrary&) = delete;
    ~SampleLibrary() { std::filesystem::remove_all(directory_); }

    const std::filesystem::path& directory() const { return directory_; }
    const std::vector<std::filesystem::path>& files() const { return files_; }
    std::size_t size() const { return size_; }

  private:
    std::filesystem::path directory_;
    std::vector<std::filesystem::path> files_;
    std::size_t size_ = 0;
};

}  // namespace quillo::bench
