// What a person waits for: a whole restore of windows that run and were displaced, and of windows that are in
// place, on a real X server. Held against a shell script that moves the same windows with wmctrl and looks
// with it until all are where they belong.
#include <fmt/format.h>
#include <fmt/ranges.h>

#include <cstdio>

#include "WindowEngine/capture/Capture.hpp"
#include "WindowEngine/restore/Restore.hpp"
#include "WindowEngine/support/Loops.hpp"
#include "bench/X11Windows.hpp"
#include "platform/x11/X11Desktop.hpp"
#include "tests/platform/x11/PrivateDesktop.hpp"

namespace {

using namespace quillo;

constexpr int rounds = 7;

class RestoreBench {
  public:
    RestoreBench(x11test::PrivateDesktop& desktop, int windows, int applications)
        : desktop_(desktop), windows_(windows), applications_(applications) {
        for (int i = 0; i < applications; ++i)
            clients_.push_back(bench::startWindows("Bench" + std::to_string(i), windows / applications));
    }
    RestoreBench(const RestoreBench&) = delete;
    RestoreBench& operator=(const RestoreBench&) = delete;
    ~RestoreBench() {
        for (const pid_t clients : clients_) bench::endWindows(clients);
        x11test::waitFor([&] { return capture().windowCount() == 0; }, std::chrono::seconds(20));
    }

    /// False when the windows did not come or did not come back.
    bool run() {
        if (!layer_) return false;
        if (!x11test::waitFor([&] { return capture().windowCount() == windows_; }, std::chrono::seconds(60)))
            return false;
        spread();
        workspace_.snapshot = capture();
        bench::Times displaced, inPlace, script, ofScript;
        bool complete = true;
        for (int round = 0; round < rounds; ++round) {  // in turn, so that all see the same machine
            displace();
            script.all.push_back(bench::milliseconds([&] { shell(scriptText()); }));
            displace();
            displaced.all.push_back(bench::milliseconds([&] { complete &= restore(); }));
            inPlace.all.push_back(bench::milliseconds([&] { complete &= restore(); }));
            ofScript.all.push_back(displaced.all.back() / script.all.back());
        }
        line("script", script);
        std::printf("\n");
        line("displaced", displaced);
        std::printf(" of_wmctrl=%.3f\n", ofScript.median());
        line("inPlace", inPlace);
        std::printf("\n");
        return complete;
    }

  private:
    // In the form of the other benchmarks: name, least, median, counters.
    void line(const char* what, bench::Times& times) const {
        std::printf("x11/restore/%s/windows:%d/applications:%d %.3f ms %.3f ms %d", what, windows_,
                    applications_, times.median(), times.least(), rounds);
    }

    WorkspaceSnapshot capture() {
        Job<WorkspaceSnapshot> job(executor_, Capture::snapshot(*access_, {}));
        executor_.runUntil([&] { return job.done(); }, std::chrono::seconds(20));
        return job.result();
    }

    /// Each window is back, and nothing else is said.
    bool restore() {
        Job<RestoreReport> job(executor_, Restore::run(*access_, workspace_, {}, {}));
        executor_.runUntil([&] { return job.done(); }, std::chrono::seconds(60));
        const RestoreReport report = job.result();
        return report.totals().restored == windows_ && report.clean();
    }

    /// Apart from each other, and listed as wmctrl sees them there.
    void spread() { shell(moves(home) + "sleep 0.5; " + listing + " >" + listed()); }
    void displace() { shell(moves(away) + "sleep 0.3"); }
    static std::string home(int i) { return fmt::format("{},{}", 20 + i % 10 * 100, 30 + i / 10 * 60); }
    static std::string away(int i) { return fmt::format("{},{}", 300 + i % 7 * 90, 200 + i / 7 * 25); }
    std::string moves(std::string (*place)(int)) {
        std::string text;
        int i = 0;
        for (const std::string& window : ids())
            text += fmt::format("wmctrl -i -r {} -e 0,{},200,150\n", window, place(i++));
        return text;
    }
    std::vector<std::string> ids() {
        std::vector<std::string> found;
        for (const WindowListEntry& entry : access_->platform.windowServer.windowList())
            if (entry.layer == 0) found.push_back(std::to_string(entry.number));
        std::ranges::sort(found);
        return found;
    }

    /// What somebody writes who knows each window's number: move it, then look until all are there.
    std::string scriptText() {
        return moves(home) + "until [ \"$(" + listing + ")\" = \"$(cat " + listed() + ")\" ]; do :; done\n";
    }
    static constexpr const char* listing = "wmctrl -lG | cut -c1-36 | sort";
    static std::string listed() { return x11test::PrivateDesktop::home() / "listed"; }

    void shell(const std::string& text) { desktop_.run({"sh", "-c", text}); }

    x11test::PrivateDesktop& desktop_;
    int windows_, applications_;
    std::vector<pid_t> clients_;
    Workspace workspace_;
    LoopExecutor executor_;
    bench::SilentLog log_;
    Result<std::unique_ptr<X11Desktop>> layer_ = X11Desktop::create(executor_, {});
    WindowHandleCache handles_;
    std::optional<DesktopAccess> access_ =
        layer_ ? std::optional<DesktopAccess>(DesktopAccess{(*layer_)->platform(log_), handles_})
               : std::nullopt;
};

}  // namespace

int main() {
    x11test::PrivateDesktop desktop("openbox");
    for (const auto& [windows, applications] : {std::pair{20, 1}, {20, 4}, {20, 20}, {100, 20}}) {
        if (RestoreBench(desktop, windows, applications).run()) continue;
        std::fprintf(stderr, "%d windows of %d applications did not come back\n", windows, applications);
        return 1;
    }
}
