// Windows that an application is asked for, since neither its launch nor a document brings them.
#include <gtest/gtest.h>

#include <algorithm>

#include "WindowEngine/restore/MissingWindows.hpp"
#include "WindowEngine/restore/RestorePreview.hpp"
#include "tests/WindowEngine/DesktopFixture.hpp"

namespace quillo::samples {
namespace {

using Texts = std::vector<std::string>;
using enum FaultKind;

constexpr const char* terminal = "org.terminal";

/// A terminal with as many windows as `saved` has.
std::vector<SceneWindow> shells(std::size_t saved) {
    std::vector<SceneWindow> windows;
    for (std::size_t i = 0; i < saved; ++i)
        windows.push_back(
            sceneWindow(std::to_string(i + 1), {100 + 50.0 * static_cast<double>(i), 100, 600, 400}));
    return windows;
}

/// Saved with that many windows, then ended; launched again, it opens the first one.
struct SavedTerminal {
    explicit SavedTerminal(std::size_t saved, bool opensWindows = true) : desktop(with(saved, opensWindows)) {
        snapshot = desktop.capture();
        simulated::Application& application = *desktop.world().application(terminal);
        desktop.world().end(application);
        application.scene.windows.resize(1);
    }
    static Scene with(std::size_t saved, bool opensWindows) {
        Scene result = scene({sceneApplication(terminal, shells(saved))});
        result.opensWindows = opensWindows;
        return result;
    }
    std::size_t windows() { return desktop.world().windowsOf(terminal).size(); }

    TestDesktop desktop;
    WorkspaceSnapshot snapshot;
};

TEST(MissingWindows, AreAskedForUntilAllAreThereOrOneDoesNotCome) {
    const std::string refused =
        "org.terminal: failed couldn't open another window: the application did not "
        "open a window";
    struct Case {
        const char* what;
        std::size_t saved;
        bool opensWindows;
        std::optional<FaultKind> fault;
        std::size_t windows, restored;
    };
    const Case cases[] = {
        {"as it should be", 5, true, {}, 5, 5},
        {"late", 3, true, openWindowLate, 3, 3},
        {"two at once, and one is missing then", 4, true, openWindowOpensTwo, 3, 3},
        {"its window is brought forward instead", 5, true, openWindowIgnored, 1, 1},
        {"refused", 5, true, openWindowRefused, 1, 1},
        {"cannot be asked", 5, false, {}, 1, 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        SavedTerminal saved(c.saved, c.opensWindows);
        if (c.fault) saved.desktop.world().add(fault(*c.fault, terminal, 0, 2));
        const RestoreReport report = saved.desktop.restore(saved.snapshot);
        EXPECT_EQ(saved.windows(), c.windows);
        EXPECT_EQ(report.totals().restored, static_cast<std::int64_t>(c.restored));
        EXPECT_EQ(report.totals().skipped, static_cast<std::int64_t>(c.saved - c.restored));
        EXPECT_EQ(std::ranges::count(texts(report), refused), c.fault == openWindowRefused ? 1 : 0);
        if (c.windows == c.saved) {
            EXPECT_TRUE(saved.desktop.restore(saved.snapshot).clean());
            EXPECT_EQ(saved.windows(), c.windows) << "a second restore opens nothing";
        }
    }
}

TEST(MissingWindows, OfARestoreThatWasStoppedAreNotAskedFor) {
    SavedTerminal saved(4);
    saved.desktop.world().add(fault(openWindowLate, terminal, 0, 3));
    Job<RestoreReport> job(
        saved.desktop.executor(),
        Restore::run(saved.desktop.access, TestDesktop::workspaceOf(saved.snapshot), {}, {}));
    saved.desktop.executor().runFor(4s);
    ASSERT_EQ(saved.windows(), 1u);
    job.cancel();
    saved.desktop.executor().runFor(30s);
    EXPECT_EQ(saved.windows(), 2u) << "the one that was asked for before, and no more";
}

TEST(MissingWindows, ArePlannedAndPartOfWhatAPersonAgreesTo) {
    SavedTerminal saved(4);
    saved.snapshot.applications[0].windows[3].subrole = std::string(ax::dialog);
    const auto preview = saved.desktop.run(Restore::preview(saved.desktop.access, saved.snapshot, {}));
    EXPECT_EQ(preview.applications[0].reopening.moreWindows, 2u)
        << "one comes with the launch, none is a dialog";
    const auto all = Restore::consequences(saved.desktop.plain.applications, preview,
                                           TestDesktop::workspaceOf(saved.snapshot), CleanSlateMode::keep);
    EXPECT_EQ(all.launched, Texts{"org.terminal (up to 4 windows)"});
}

/// Whose document is shown by another window only is asked for with it; whose is shown nowhere, not at all.
TEST(MissingWindows, WithADocumentAreTheDocumentsBusinessUnlessTwoShowIt) {
    SavedTerminal saved(3);
    auto& windows = saved.snapshot.applications[0].windows;
    const Url shared = Url::file("/home/ada/src", true), other = Url::file("/home/ada/gone", true);
    windows[0].documentURL = windows[1].documentURL = shared;
    windows[2].documentURL = other;
    LiveWindowInfo live;
    live.subrole = std::string(ax::standardWindow);
    live.documentURL = shared;
    EXPECT_EQ(Restore::missingWindows(saved.desktop.access.platform, saved.snapshot.applications[0], {},
                                      std::span(&live, 1)),
              std::vector<Restore::WindowRequest>{shared.standardized()});
}

}  // namespace
}  // namespace quillo::samples
