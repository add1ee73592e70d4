// Scanning a library of 2,000 workspaces of about 60 KB, against plain reading and parsing of the same files
// on one thread. Both run in turns; `ratio` is the scan's throughput as a part of the plain one's.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <simdjson.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <vector>

#include "WindowEngine/library/WorkspaceStore.hpp"
#include "bench/SampleLibrary.hpp"
#include "platform/posix/PosixFileSystem.hpp"

namespace quillo {
namespace {

constexpr int fileCount = 2000;

// The least that a program reading these files could do.
std::size_t readAndParse(const bench::SampleLibrary& library) {
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
    const bench::SampleLibrary library(fileCount);
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
