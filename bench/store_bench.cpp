// Scanning a library of 2,000 workspaces of about 60 KB, against plain reading and parsing of the same files
// on one thread. Both run in turns; `ratio` is the scan's throughput as a part of the plain one's.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <simdjson.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <vector>

#include "WindowEngine/WorkspaceCoding.hpp"
#include "WindowEngine/WorkspaceStore.hpp"
#include "platform/posix/PosixFileSystem.hpp"

namespace quillo {
namespace {

constexpr int fileCount = 2000;

WindowSnapshot sampleWindow(int number) {
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

Workspace sampleWorkspace(int number) {
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

class Library {
  public:
    Library() {
        std::string pattern = (std::filesystem::temp_directory_path() / "quillo-bench-XXXXXX").string();
        directory_ = ::mkdtemp(pattern.data());
        for (int i = 0; i < fileCount; ++i) {
            const Workspace workspace = sampleWorkspace(i);
            const std::string bytes = WorkspaceCoding::encode(workspace).value();
            files_.push_back(directory_ / (workspace.id.lower() + ".json"));
            std::ofstream(files_.back(), std::ios::binary) << bytes;
            size_ += bytes.size();
        }
    }
    ~Library() { std::filesystem::remove_all(directory_); }

    const std::filesystem::path& directory() const { return directory_; }
    const std::vector<std::filesystem::path>& files() const { return files_; }
    std::size_t size() const { return size_; }

  private:
    std::filesystem::path directory_;
    std::vector<std::filesystem::path> files_;
    std::size_t size_ = 0;
};

// The least that a program reading these files could do.
std::size_t readAndParse(const Library& library) {
    simdjson::dom::parser parser;
    std::vector<char> buffer;
    std::size_t parsed = 0;
    for (const auto& file : library.files()) {
        const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
        struct stat status{};
        if (descriptor < 0 || ::fstat(descriptor, &status) < 0) return 0;
        const auto size = static_cast<std::size_t>(status.st_size);
        buffer.resize(std::max(buffer.size(), size + simdjson::SIMDJSON_PADDING));
        const auto got = ::read(descriptor, buffer.data(), size);
        ::close(descriptor);
        if (got == status.st_size && parser.parse(buffer.data(), size, false).error() == simdjson::SUCCESS)
            ++parsed;
    }
    return parsed;
}

double secondsOf(auto work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void StoreScan(benchmark::State& state) {
    const Library library;
    PosixFileSystem files;
    const WorkspaceStore store(files, library.directory());
    std::vector<double> ratios;
    double plainSeconds = 0;
    for (auto _ : state) {
        std::size_t parsed = 0;
        WorkspaceScanResult result;  // given back outside the clock
        const double plain = secondsOf([&] { parsed = readAndParse(library); });
        const double scan = secondsOf([&] { result = store.scan(); });
        if (parsed != fileCount || result.workspaces.size() != fileCount)
            state.SkipWithError("not every file was read");
        state.SetIterationTime(scan);
        plainSeconds += plain;
        ratios.push_back(plain / scan);
    }
    std::ranges::sort(ratios);
    state.counters["ratio"] = ratios[ratios.size() / 2];
    state.counters["plainSeconds"] = benchmark::Counter(plainSeconds, benchmark::Counter::kAvgIterations);
    state.counters["bytesPerFile"] = static_cast<double>(library.size()) / fileCount;
}
BENCHMARK(StoreScan)->UseManualTime()->Iterations(9)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quillo
