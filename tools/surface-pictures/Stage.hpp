// The interface over a simulated desktop, with short ways to bring a surface to what its picture is to show.
#pragma once
#include <QDir>
#include <QSettings>
#include <QStandardPaths>
#include <array>
#include <map>
#include <span>
#include <string>
#include <vector>

#include "app/gui/AppIcons.hpp"
#include "tests/app/map/MapSamples.hpp"
#include "tests/gui/GuiFixture.hpp"

namespace quillo::samples {

/// A desk with folders, browser tabs, several windows of one application, and one that is not running.
inline Scene fullDesk() {
    const auto called = [](SceneApplication application, const char* name) {
        application.name = name;
        return application;
    };
    const auto showing = [](SceneWindow window, std::vector<std::string> addresses) {
        window.tabs = std::move(addresses);
        return window;
    };
    return scene(
        {called(sceneApplication(
                    "org.xfce.mousepad",
                    {sceneWindow("Notes", {10, 40, 620, 460}),
                     sceneWindow("Letter to the harbour office, second draft", {520, 300, 560, 420})}),
                "Mousepad"),
         called(
             sceneApplication("com.google.Chrome",
                              {showing(sceneWindow("Timetable", {700, 40, 660, 520}),
                                       {"https://trains.example/timetable", "https://maps.example/harbour",
                                        "https://news.example/a-rather-long/address/of/an-article.html"})}),
             "Google Chrome"),
         called(sceneApplication(
                    "com.apple.finder",
                    {showing(sceneWindow("Recordings", {1420, 40, 460, 360}), {"file:///Research/"}),
                     showing(sceneWindow("Downloads", {1440, 420, 460, 300}), {"file:///Downloads/"})}),
                "Finder"),
         called(sceneApplication("debian-xterm", {sceneWindow("build", {1900, 60, 480, 600})}), "XTerm"),
         called(sceneApplication("org.bank", {sceneWindow("Accounts", {200, 500, 500, 300})}), "Banking"),
         notRunning(
             called(sceneApplication("org.viewer", {sceneWindow("Page", {60, 400, 300, 200})}), "Viewer"))});
}

inline WorkspaceSnapshot oneDisplay() {
    MapSample sample;
    sample.display("main", {0, 0, 1512, 982}, true)
        .window("Notes", {6, 10, 40, 70}, "Plan")
        .window("Browser", {40, 6, 56, 86}, "Start page");
    return sample.made;
}
inline WorkspaceSnapshot stacked() {
    MapSample sample;
    sample.display("upper", {-300, -1440, 2560, 1440}).window("Editor", {2, 4, 60, 90}, "main.cpp");
    sample.window("Terminal", {64, 4, 34, 90}, "build");
    sample.display("lower", {0, 0, 1512, 982}, true).window("Mail", {4, 8, 70, 84}, "Inbox");
    return sample.made;
}
inline WorkspaceSnapshot threeDisplays() {
    MapSample sample;
    sample.display("upright", {-1200, -400, 1200, 1920}).window("Chat", {4, 4, 92, 44}, "Team");
    sample.window("Calendar", {4, 52, 92, 44}, "November");
    sample.display("middle", {0, 0, 2560, 1440}, true).desktops("middle", 2);
    sample.window("Editor", {2, 6, 55, 90}, "chapter four").window("Browser", {45, 10, 52, 80}, "Sources");
    sample.display("small", {2560, 300, 1280, 800}).window("Music", {10, 10, 80, 80}, "Quiet hours");
    return sample.made;
}
inline WorkspaceSnapshot tiled() {
    MapSample sample;
    sample.display("main", {0, 0, 1920, 1080}, true).window("Editor", {0, 3, 50, 97}, "main.cpp");
    sample.window("Browser", {50, 3, 50, 49}, "Manual").window("Terminal", {50, 52, 25, 48}, "build");
    sample.window("Mail", {75, 52, 25, 48}, "Inbox");
    return sample.made;
}

/// Applications of this machine that have an icon, by identifier; their names.
inline const std::map<std::string, std::string>& installedApplications() {
    static const auto found = [] {
        std::map<std::string, std::string> applications;
        const AppIcons::Source icon = desktopFileIcons();
        for (const QString& folder :
             QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation)) {
            for (const QFileInfo& file : QDir(folder).entryInfoList({"*.desktop"})) {
                if (icon(file.completeBaseName(), 64).isNull()) continue;
                const QSettings entry(file.filePath(), QSettings::IniFormat);
                applications.emplace(file.completeBaseName().toStdString(),
                                     entry.value("Desktop Entry/Name").toString().toStdString());
            }
        }
        return applications;
    }();
    return found;
}
/// The same desktop with them, as far as there are enough.
inline WorkspaceSnapshot withInstalled(WorkspaceSnapshot snapshot) {
    auto next = installedApplications().begin();
    for (ApplicationSnapshot& application : snapshot.applications) {
        if (next == installedApplications().end()) break;
        application.bundleIdentifier = next->first;
        application.name = next++->second;
    }
    return snapshot;
}

class Stage : LookSet, public GuiTest {
  protected:
    Stage(const Look& look, TextVariant texts, Capability updating)
        : LookSet(look), GuiTest(fullDesk(), std::move(updating)) {
        start(texts);
    }

  public:
    using GuiTest::interface, GuiTest::model, GuiTest::type, GuiTest::until, GuiTest::updater;
    QQuickWindow* window() override { return foremost(); }

    /// The first control whose accessible name begins like this.
    QQuickItem* find(const QString& name) {
        settle();
        QQuickItem* found = nullptr;
        walk(window()->contentItem(), [&](QQuickItem& item) {
            QAccessibleInterface* face = QAccessible::queryAccessibleInterface(&item);
            if (!found && face && (isPressed(item) || item.activeFocusOnTab()) &&
                face->text(QAccessible::Name).startsWith(name))
                found = &item;
            return !found;
        });
        if (!found) ADD_FAILURE() << "nothing is called " << name.toStdString();
        return found;
    }
    /// A pointer that is where it was for the picture before tells nobody: it comes from beside.
    void hover(const QString& name) {
        point(name, [&](QPoint at) {
            QTest::mouseMove(window(), at + QPoint(1, 1));
            QTest::mouseMove(window(), at);
        });
    }
    /// The pointer goes away again, so that what it would light up stays as it is.
    void press(const QString& name) {
        if (QQuickItem* item = named(name); item && !QRectF({}, window()->size()).contains(placeOf(*item))) {
            item->forceActiveFocus(Qt::TabFocusReason);  // its page scrolls to it
            settle();
        }
        point(name, [&](QPoint at) { QTest::mouseClick(window(), Qt::LeftButton, {}, at); });
        QTest::mouseMove(window(), {1, 1});
        settle();
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}, int times = 1) {
        GuiTest::press(key, modifiers, times);
    }

    /// Into the library, an hour older than the one before.
    Uuid put(const std::string& name, WorkspaceSnapshot snapshot = productLaunch()) {
        static constexpr std::array icons{"briefcase", "book",   "terminal",   "paintbrush.pointed",
                                          "leaf",      "hammer", "music.note", "square.stack.3d.up"};
        const auto place = static_cast<std::size_t>(number_++);
        const Workspace workspace = Workspace::create(
            Uuid::random(), name, icons.at(place % icons.size()),
            std::string(Workspace::colors.at(place % Workspace::colors.size())), std::move(snapshot),
            std::chrono::time_point_cast<Instant::duration>(std::chrono::system_clock::now() - number_ * 3h));
        model.keep(workspace);
        return workspace.id;
    }
    void fill(int count) {
        static const std::array names{
            "Product launch", "Thesis, chapter four", "Server room", "Garden plans",
            "Tax return",     "Interview week",       "Music",       "Travel to the north",
            "Morning",        "Design review",        "Support",     "Reading"};
        const std::array snapshots{productLaunch(), withFullScreen(), stacked(),   tiled(),
                                   crowded(),       threeDisplays(),  oneDisplay()};
        for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
            const std::string again = i < names.size() ? "" : " " + std::to_string(i / names.size() + 1);
            const WorkspaceSnapshot& snapshot = snapshots.at(i % snapshots.size());
            put(names.at(i % names.size()) + again, i % 2 ? withInstalled(snapshot) : snapshot);
        }
    }
    void detail(const std::string& name, WorkspaceSnapshot snapshot = productLaunch()) {
        openDetail(put(name, std::move(snapshot)));
        settle();
    }
    /// Files of the library that cannot be read.
    void damage(int count) {
        for (int i = 0; i < count; ++i) {
            model.directory.write("workspaces/" + Uuid::random().upper() + ".json", i % 2 ? "{" : "");
        }
        model->reload();
    }
    void withoutAccess() {
        model.setTrusted(false);
        EXPECT_TRUE(until([&] { return !model->accessibilityGranted(); }));
    }
    /// Settings with something in every list.
    void settings(const QString& pane) {
        model.change([](AppSettings& settings) {
            settings.excludedDomains = {"bank.example.com", "health.example.org",
                                        "a-rather-long-name.of.a.domain.example.org"};
            settings.excludedBundleIdentifiers = {"org.bank", "debian-xterm", "org.example.passwords"};
            settings.autoSnapshotMinutes = 10;
            settings.enabledAdapters = {"finder", "chromium"};
        });
        interface->openSettings(pane);
        settle();
    }
    /// To the last thing of a page that can be reached by keyboard, which scrolls it there.
    void toTheEnd() {
        window()->contentItem()->nextItemInFocusChain()->forceActiveFocus(Qt::OtherFocusReason);
        key(Qt::Key_Backtab);
    }

    void introduction(int step) {
        model.change([](AppSettings& settings) { settings.onboarded = false; });
        settle();
        key(Qt::Key_Return, {}, step - 1);
    }
    void review(std::optional<Workspace> updating = {}) {
        model.change([](AppSettings& settings) { settings.enabledAdapters = {"finder", "chromium"}; });
        model->beginCapture(std::move(updating));
        EXPECT_TRUE(until([&] { return model->draft() != nullptr; }));
        settle();
    }
    void switcher(int workspaces) {
        fill(workspaces);
        model->toggleSwitcher();
        EXPECT_TRUE(until([&] { return model->currentSnapshot() && !model->refreshingCurrentSnapshot(); }));
    }

    /// The desk as it is, as a workspace.
    Workspace saved(const char* name) {
        review();
        model->draft()->setName(name);
        model->draft()->setColor("coral");
        model->commit(*model->draft());
        EXPECT_TRUE(until([&] { return !model->draft(); }));
        return model->workspaces().front();
    }
    /// Also with an application that starts first, a window that is there no more, and some not installed.
    Workspace troubled(const char* name, int notInstalled) {
        Workspace workspace = saved(name);
        ApplicationSnapshot viewer{
            "org.viewer", "Viewer", model.desktop.plain.applications.location("org.viewer"), {}, {}};
        viewer.windows = {savedWindow(model.desktop, {60, 400, 300, 200}, "Page"),
                          savedWindow(model.desktop, {1500, 100, 300, 500},
                                      "A page that is no longer there, with a title that goes on and on")};
        viewer.windows.back().index = 1;
        workspace.snapshot.applications.push_back(viewer);
        static constexpr std::array names{"Presenter of long decks", "Messages", "ある長い名前のアプリ",
                                          "לוח שנה"};
        for (int i = 0; i < notInstalled; ++i) {
            ApplicationSnapshot gone{
                "org.gone" + std::to_string(i), names.at(static_cast<std::size_t>(i) % 4), {}, {}, {}};
            gone.windows = {savedWindow(model.desktop, {600.0 + 20 * i, 300, 500, 400}, "Launch deck")};
            workspace.snapshot.applications.push_back(gone);
        }
        return workspace;
    }
    void resume(const Workspace& workspace) {
        EXPECT_TRUE(model.known.savedHere(workspace));
        model->restore(workspace, {});
    }
    /// What resuming it would do.
    void preview(const Workspace& workspace, CleanSlateMode mode = CleanSlateMode::keep) {
        model.keep(workspace);
        model->openPreview(Workspace(model.named(workspace.name)), mode);
        EXPECT_TRUE(until([&] { return model->preview()->plan().has_value(); }));
        model->dismissToast();
        settle();
    }
    /// One from elsewhere, with a list that is longer than its room.
    void askToResume(const char* name) {
        Workspace workspace = troubled(name, 0);
        workspace.id = Uuid::random();
        WindowSnapshot window = workspace.snapshot.applications.front().windows.front();
        for (int i = 0; i < 12; ++i) {
            window.documentURL = Url::file("/home/ada/Documents/A folder with a name that goes on/" +
                                           std::to_string(i) + "/letter.txt");
            workspace.snapshot.applications.front().windows.push_back(window);
        }
        model->restore(workspace, CleanSlateMode::quit);
        EXPECT_TRUE(until([&] { return named("Resume Anyway") != nullptr; }));
    }
    void resumeHalfWay(const Workspace& workspace) {
        resume(workspace);
        EXPECT_TRUE(until([&] { return model->restoreRun()->items().size() > 2; }));
    }
    void resumeToTheEnd(const Workspace& workspace) {
        resume(workspace);
        EXPECT_TRUE(until([&] { return !model->restoreRunning(); }));
    }

  private:
    void point(const QString& name, const std::function<void(QPoint)>& act) {
        QQuickItem* const item = find(name);
        if (!item) return;
        if (item->activeFocusOnTab()) item->forceActiveFocus(Qt::OtherFocusReason);  // scrolls it into view
        QTest::qWait(200);  // a page that is opened slides into its place
        act(item->mapToScene({item->width() / 2, item->height() / 2}).toPoint());
        settle();
    }

    int number_ = 0;
};

}  // namespace quillo::samples
