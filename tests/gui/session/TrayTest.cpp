// The tray's menu as a desktop reads and clicks it, over StatusNotifier and its menus on a session bus.
#include <QCoreApplication>
#include <QDBusArgument>
#include <QStringList>
#include <QWindow>

#include "app/gui/TrayIcon.hpp"
#include "platform/simulated/SimulatedUpdater.hpp"
#include "platform/x11/SystemTray.hpp"
#include "tests/app/ModelFixture.hpp"
#include "tests/gui/session/MockedService.hpp"

namespace quillo::x11test {
namespace {

using namespace std::chrono_literals;

struct MenuItem {
    int id = 0;
    QVariantMap properties;
    std::vector<MenuItem> children;

    bool shown() const { return properties.value("visible", true).toBool(); }
    /// As it reads on the screen: of two underscores one is shown, of one none.
    std::string label() const {
        QString label = properties.value("label").toString();
        label.replace("__", QChar(0)).replace("_", "").replace(QChar(0), "_");
        return label.toStdString();
    }
};

MenuItem menuItem(const QDBusArgument& from) {
    MenuItem item;
    from.beginStructure();
    from >> item.id >> item.properties;
    for (from.beginArray(); !from.atEnd();) {
        QDBusVariant child;
        from >> child;
        item.children.push_back(menuItem(child.variant().value<QDBusArgument>()));
    }
    from.endArray();
    from.endStructure();
    return item;
}

/// The tray of a desktop, with its icons.
class Tray {
  public:
    Tray() : watcher_(service, "/StatusNotifierWatcher") {
        watcher_.addMethod("RegisterStatusNotifierItem", "s", "", "");
        watcher_.addProperty("IsStatusNotifierHostRegistered", false);
        // Set from inside, for what comes over the bus is declared as a variant, not as the boolean it is.
        watcher_.addMethod("StartDrawing", "", "",
                           "self.props[self.interface]['IsStatusNotifierHostRegistered'] = True\n"
                           "self.EmitSignal('', 'StatusNotifierHostRegistered', '', [])");
    }
    void startDrawing() { ask(service, "/StatusNotifierWatcher", service, "StartDrawing"); }
    std::vector<QVariantList> icons() { return watcher_.calls("RegisterStatusNotifierItem"); }
    QVariantList item(const QString& method, const QVariantList& arguments, bool menu = true) {
        return ask(icons().at(0).at(0).toString(), menu ? "/MenuBar" : "/StatusNotifierItem",
                   menu ? "com.canonical.dbusmenu" : "org.kde.StatusNotifierItem", method, arguments);
    }
    MenuItem menu() {
        return menuItem(item("GetLayout", {0, -1, QStringList()}).at(1).value<QDBusArgument>());
    }
    void click(int id) {
        item("Event", {id, "clicked", QVariant::fromValue(QDBusVariant(0)), 0U});
        QCoreApplication::processEvents();  // Qt answers first, and does it in a turn of its own
    }

  private:
    static constexpr auto service = "org.kde.StatusNotifierWatcher";
    MockedService watcher_;
};

class TrayTest : public testing::Test {
  protected:
    /// The desktop's panel comes up after the program has started.
    TrayTest() {
        EXPECT_TRUE(icon.lookedFor() && !icon.shown());
        tray.startDrawing();
        EXPECT_TRUE(untilQt([&] { return icon.shown() && tray.icons().size() == 1; }));
        EXPECT_FALSE(icon.lookedFor());
    }

    /// The rows of a menu as they are shown; "(…)" for what cannot be chosen.
    static std::vector<std::string> texts(const MenuItem& menu) {
        std::vector<std::string> texts;
        for (const MenuItem& item : menu.children) {
            if (!item.shown()) continue;
            const bool separator = item.properties.value("type") == "separator";
            const bool enabled = item.properties.value("enabled", true).toBool();
            texts.push_back(separator ? "-" : enabled ? item.label() : "(" + item.label() + ")");
        }
        return texts;
    }
    static std::optional<MenuItem> find(const std::string& label, const std::optional<MenuItem>& above) {
        if (!above) return std::nullopt;
        const auto found = std::ranges::find(above->children, label, &MenuItem::label);
        if (found == above->children.end()) return std::nullopt;
        return *found;
    }
    /// Of the menu, or of the options of a workspace.
    std::optional<MenuItem> find(const std::string& label, const std::string& workspace = {}) {
        if (workspace.empty()) return find(label, std::optional(tray.menu()));
        return find(label, find(workspace, find("Workspace Options")));
    }
    bool click(const std::string& label, const std::string& row = {}) {
        const auto item = find(label, row);
        EXPECT_TRUE(item) << label;
        if (item) tray.click(item->id);
        return item.has_value();
    }
    std::string chosen() { return std::exchange(chosen_, {}); }

    samples::Model model;
    SimulatedUpdater updater;
    UpdateController updates{updater};
    Theme theme;
    std::string chosen_;
    TrayMenu menu{*model.model,
                  updates,
                  theme,
                  TextVariant::onLinux,
                  {.openSettings = [this] { chosen_ = "settings"; }, .quit = [this] { chosen_ = "quit"; }}};
    Tray tray;
    TrayIcon icon{menu, [] { return false; }};
};

TEST_F(TrayTest, ReadsAsWhatTheModelHas) {
    using Texts = std::vector<std::string>;
    const Texts commands{"-",          "Save Current Desktop…", "(Restore Last Session)",
                         "-",          "Open Quillo",           "Settings",
                         "Quit Quillo"};
    const auto with = [&](Texts texts) {
        texts.insert(texts.end(), commands.begin(), commands.end());
        return texts;
    };
    EXPECT_EQ(texts(tray.menu()),
              with({"(Quillo · 0 saved)", "-", "(No workspaces yet)",
                    "(Save what's open now and it shows up here, one click from coming back.)"}));

    model.setTrusted(false);
    model.run(5s);
    EXPECT_EQ(texts(tray.menu()).at(1), "Windows cannot be read — see why");
    model.setTrusted(true);
    model.run(5s);

    const std::string names[] = {"R&D & more _now_", "last &", "two\nlines", std::string(300, 'x'),
                                 "名前 &_名"};
    for (const std::string& name : names) model.put({name.c_str()});
    const std::string options = "Workspace Options";
    Texts read = texts(tray.menu());
    EXPECT_EQ(texts(*find(options)), Texts(read.begin() + 2, read.begin() + 7));
    std::ranges::sort(read);
    Texts expected = with({"(Quillo · 5 saved)", "-", names[0], names[1], "two lines",
                           std::string(39, 'x') + "…", names[4], options});
    std::ranges::sort(expected);
    EXPECT_EQ(read, expected);
    EXPECT_TRUE(find("last &")->children.empty()) << "one click resumes";
    EXPECT_EQ(texts(*find("last &", find(options))),
              (Texts{"Resume · Keep other apps", "Resume · Hide other apps", "Resume · Quit other apps", "-",
                     "Preview in Quillo", "Update from Current Desktop"}));

    for (int more = 0; more < 30; ++more) model.put({("More " + std::to_string(more)).c_str()});
    read = texts(tray.menu());
    EXPECT_EQ(read.at(0), "(Quillo · 35 saved)");
    EXPECT_EQ(read.at(1 + 1 + TrayMenu::rowsShown), "More in Quillo…");
    EXPECT_EQ(read.size(), with({"", "", "", ""}).size() + TrayMenu::rowsShown);
}

TEST_F(TrayTest, ClicksDoWhatTheRowsSay) {
    model.save("Work");
    const Uuid id = model.named("Work").id;
    const std::pair<const char*, CleanSlateMode> modes[] = {
        {"Work", CleanSlateMode::hide},  // as stored
        {"Resume · Keep other apps", CleanSlateMode::keep},
        {"Resume · Hide other apps", CleanSlateMode::hide},
        {"Resume · Quit other apps", CleanSlateMode::quit},
    };
    model->setCleanSlate(model.named("Work"), CleanSlateMode::hide);
    auto& viewer = *model.desktop.world().application("org.viewer");
    for (const auto& [label, mode] : modes) {
        model.desktop.world().start(viewer);
        model.run(30s);
        ASSERT_TRUE(click(label, label == std::string("Work") ? "" : "Work"));
        ASSERT_TRUE(model->restoreRunning()) << label;
        model.finishRestore();
        EXPECT_EQ(viewer.running, mode != CleanSlateMode::quit) << label;
        if (viewer.running) EXPECT_EQ(viewer.hidden, mode == CleanSlateMode::hide) << label;
    }

    click("Preview in Quillo", "Work");
    ASSERT_TRUE(model->preview());
    EXPECT_EQ(model->preview()->workspace().id, id);
    click("Update from Current Desktop", "Work");
    EXPECT_EQ(model.review().updating()->id, id);
    EXPECT_FALSE(find("Save Current Desktop…")->properties.value("enabled", true).toBool());
    model->dismissDraft();
    click("Save Current Desktop…");
    EXPECT_FALSE(model.review().updating());
    model->dismissDraft();
    model.change([](AppSettings& settings) { settings.autoSnapshotMinutes = 10; });
    model.run(10s);
    click("Restore Last Session");
    ASSERT_TRUE(model->restoreRunning());
    EXPECT_EQ(model->restoreRun()->workspace().id, model->sessions().front().id);
    model.finishRestore();
    click("Settings");
    EXPECT_EQ(chosen(), "settings");
    click("Quit Quillo");
    EXPECT_EQ(chosen(), "quit");
    model.windowsOpened = 0;
    click("Open Quillo");
    tray.item("Activate", {0, 0}, false);
    EXPECT_EQ(model.windowsOpened, 2);
}

TEST_F(TrayTest, RowsKeepTheirPlaceInTheHostsMemoryWhileOthersComeAndGo) {
    model.put({"A", "B", "C"});
    const int a = find("A")->id, resume = find("C")->id, settings = find("Settings")->id;
    model->deleteWorkspace(model.named("B"));
    model.put({"D"});
    EXPECT_EQ(find("A")->id, a);
    model->rename(model.named("A"), "Renamed");  // which comes first then
    EXPECT_EQ(tray.menu().children.at(3).label(), "Renamed");
    EXPECT_EQ(find("C")->id, resume);
    EXPECT_EQ(find("Workspace Options")->children.at(0).label(), "Renamed");
    EXPECT_EQ(find("Settings")->id, settings);
    EXPECT_FALSE(find("B"));
    model->deleteWorkspace(model.named("C"));
    tray.click(resume);  // by a host that has not heard of it yet
    EXPECT_FALSE(model->restoreRunning());
}

TEST_F(TrayTest, UpdatesAreOfferedAndTakenOnlyWhileNothingIsUnderWay) {
    updater.findUpdate("1.4.0");
    click("Update available · 1.4.0");
    EXPECT_EQ(updater.checks, 1);
    updater.finishDownload("1.5.0");
    model.save("Work");
    const std::string relaunch = "Relaunch to update · 1.5.0";
    model->restore(model.named("Work"), {});
    EXPECT_FALSE(find(relaunch)->properties.value("enabled", true).toBool());
    tray.click(find(relaunch)->id);
    EXPECT_TRUE(updater.installed.empty());
    model.finishRestore();
    click(relaunch);
    EXPECT_EQ(updater.installed, std::vector<std::string>{"1.5.0"});
}

TEST(MenuText, ShowsEveryCharacterInMenusThatQtDraws) {
    EXPECT_EQ(menuText("R&D_x & y", MenuDrawnBy::qt), "R&&D_x && y");
}

TEST(SystemTray, OfTheOlderKindIsThereWhileSomebodyOwnsItsSelection) {
    const auto connection = x11::X11Connection::open({});
    ASSERT_TRUE(connection);
    EXPECT_FALSE(x11::hasSystemTray(**connection));
    xcb_connection_t* const server = (*connection)->xcb();
    constexpr std::string_view name = "_NET_SYSTEM_TRAY_S0";
    const x11::Reply<xcb_intern_atom_reply_t> atom(
        xcb_intern_atom_reply(server, xcb_intern_atom(server, false, name.size(), name.data()), nullptr));
    QWindow owner;
    owner.create();
    xcb_set_selection_owner(server, static_cast<xcb_window_t>(owner.winId()), atom->atom, XCB_CURRENT_TIME);
    EXPECT_TRUE(x11::hasSystemTray(**connection));
}

}  // namespace
}  // namespace quillo::x11test
