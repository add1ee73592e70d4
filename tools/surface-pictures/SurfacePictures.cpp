// Pictures of every surface of the interface in every look, for people to look at: tools/surfaces makes them.
#include <QIcon>
#include <QStandardPaths>
#include <QStyleHints>
#include <algorithm>
#include <set>
#include <tuple>

#include "tools/surface-pictures/Stage.hpp"

namespace quillo {
namespace {

using samples::Look;
using samples::Stage;

struct Surface {
    const char* name;
    void (*make)(Stage&);
    bool moves = false;  // all the time
    bool tip = false;    // a tooltip is to come first
    TextVariant texts = TextVariant::onLinux;
    const char* updatesRefusal = nullptr;
};

constexpr auto longName =
    "The quarterly report with everything that belongs to it, and a few other things besides";
constexpr auto arabicName = "مساحة عمل الصباح";

constexpr auto noUpdates = "The package manager keeps Quillo up to date.";

Instant hoursAgo(int hours) {
    return std::chrono::time_point_cast<Instant::duration>(std::chrono::system_clock::now() -
                                                           std::chrono::hours(hours));
}

void approveLogin(Stage& stage) {
    stage.model.loginItem.current = LoginItemStatus::requiresApproval;
    stage.model->loginItem().setEnabled(true);
    stage.settings("general");
}

const Surface pages[] = {
    {"library-empty", [](Stage&) {}},
    {"library-empty-issues", [](Stage& s) { s.damage(3); }},
    {"library-empty-no-access", [](Stage& s) { s.withoutAccess(); }},
    {"library-3", [](Stage& s) { s.fill(3); }},
    {"library-3-hover", [](Stage& s) { s.fill(3), s.hover("Thesis"); }},
    {"library-3-focus", [](Stage& s) { s.fill(3), s.key(Qt::Key_Down); }},
    {"library-12", [](Stage& s) { s.fill(12); }},
    {"library-200", [](Stage& s) { s.fill(200); }},
    {"library-names",
     [](Stage& s) {
         for (const char* name : {longName, "朝の仕事と会議の準備", arabicName, "סביבת העבודה של הבוקר",
                                  "सुबह का कार्यक्षेत्र और बैठक", "Design 🎨 review 👩‍💻 🇳🇴"})
             s.put(name);
     }},
    {"library-issues-2", [](Stage& s) { s.fill(3), s.damage(2); }},
    {"library-issues-8", [](Stage& s) { s.fill(3), s.damage(8); }},
    {"library-search", [](Stage& s) { s.fill(12), s.type("mu"); }},
    {"library-no-match", [](Stage& s) { s.fill(12), s.type("nothing like it"); }},
    {"library-order-menu", [](Stage& s) { s.fill(12), s.press("Order: "); }},
    {"library-card-menu", [](Stage& s) { s.fill(12), s.hover("Thesis"), s.press("More actions"); }},
    {"library-card-delete", [](Stage& s) { s.fill(3), s.key(Qt::Key_Down), s.key(Qt::Key_Delete); }},
    {"library-toast", [](Stage& s) { s.fill(3), s.model->show("Duplicated Thesis, chapter four"); }},
    {"library-toast-long",
     [](Stage& s) {
         s.fill(3);
         s.model->show("Couldn't save “" + std::string(longName) +
                           "”: there is no room left on the disk that holds your workspaces.",
                       ToastKind::failure);
     }},
    {"library-no-access", [](Stage& s) { s.fill(3), s.withoutAccess(); }},
    {"library-tip-switcher", [](Stage& s) { s.fill(3), s.hover("Open workspace switcher"); }, false, true},
    {"library-tip-settings", [](Stage& s) { s.fill(3), s.hover("Settings"); }, false, true},
    {"library-tip-more", [](Stage& s) { s.fill(3), s.hover("Thesis"), s.hover("More actions"); }, false,
     true},
    {"library-tip-resume", [](Stage& s) { s.fill(3), s.hover("Thesis"), s.hover("Resume"); }, false, true},
    {"library-tip-name", [](Stage& s) { s.put(longName), s.hover(longName); }, false, true},
    {"library-tip-clear", [](Stage& s) { s.fill(3), s.type("e"), s.hover("Clear"); }, false, true},

    {"detail-1", [](Stage& s) { s.detail("Garden plans", samples::oneDisplay()); }},
    {"detail-2", [](Stage& s) { s.detail("Product launch"); }},
    {"detail-2-stacked", [](Stage& s) { s.detail("Chapter four", samples::stacked()); }},
    {"detail-3", [](Stage& s) { s.detail("Everything", samples::threeDisplays()); }},
    {"detail-60", [](Stage& s) { s.detail("Crowded", samples::crowded()); }},
    {"detail-full-screen", [](Stage& s) { s.detail("Music", samples::withFullScreen()); }},
    {"detail-tiled", [](Stage& s) { s.detail("Server room", samples::tiled()); }},
    {"detail-icons", [](Stage& s) { s.detail("Installed", samples::withInstalled(samples::crowded())); }},
    {"detail-long-name", [](Stage& s) { s.detail(longName); }},
    {"detail-arabic", [](Stage& s) { s.detail(arabicName); }},
    {"detail-renaming", [](Stage& s) { s.detail("Product launch"), s.press("Rename"); }},
    {"detail-desktop-2", [](Stage& s) { s.detail("Product launch"), s.press("Desktop 2"); }},
    {"detail-quit", [](Stage& s) { s.detail("Product launch"), s.press("Quit other apps"); }},
    {"detail-end", [](Stage& s) { s.detail("Product launch"), s.toTheEnd(); }},
    {"library-question", [](Stage& s) { s.fill(3), s.askToResume("From a friend"); }},
    {"detail-delete", [](Stage& s) { s.detail("Product launch"), s.press("Delete Workspace"); }},
    {"automation", [](Stage& s) { s.detail("Product launch"), s.press("Shortcut and Automation…"); }},
    {"detail-tip-rename", [](Stage& s) { s.detail("Product launch"), s.hover("Rename"); }, false, true},

    {"preview", [](Stage& s) { s.preview(s.saved("Morning")); }},
    {"preview-trouble",
     [](Stage& s) {
         s.preview(s.troubled("Morning", 2), CleanSlateMode::quit);
         CaptureDraft& ticks = s.model->preview()->ticks();
         ticks.includeApp(ticks.snapshot().applications.front().bundleIdentifier, false);
     }},
    {"preview-60",
     [](Stage& s) {
         s.put("Crowded", samples::crowded());
         s.preview(s.model.named("Crowded"));
     }},

    {"review-reading", [](Stage& s) { s.model->beginCapture(); }, true},
    {"review", [](Stage& s) { s.review(); }},
    {"review-left-out",
     [](Stage& s) {
         s.review();
         s.type("Interview week");
         CaptureDraft& draft = *s.model->draft();
         draft.setColor("teal");
         draft.includeApp("org.bank", false);
         draft.includeWindow("org.xfce.mousepad", 0, false);
         draft.includeContextURL("com.google.Chrome", 0, 1, false);
     }},
    {"review-updating",
     [](Stage& s) {
         s.put("Product launch");
         s.review(s.model->workspaces().front());
     }},
    {"review-notes",
     [](Stage& s) {
         s.model.desktop.world().add(samples::fault(samples::FaultKind::automationRefused));
         s.review();
     }},
    {"review-icon-focus", [](Stage& s) { s.review(), s.key(Qt::Key_Tab); }},
    {"review-color-focus", [](Stage& s) { s.review(), s.key(Qt::Key_Tab, {}, 2); }},
    {"review-list-focus",
     [](Stage& s) { s.review(), s.find("What is saved")->forceActiveFocus(), s.key(Qt::Key_Down, {}, 3); }},
    {"review-discard", [](Stage& s) { s.review(), s.type("Interview week"), s.key(Qt::Key_Escape); }},

    {"settings-general",
     [](Stage& s) {
         WorkspaceSnapshot snapshot = samples::productLaunch();
         for (int day : {3, 2, 1}) {
             snapshot.applications.pop_back();
             EXPECT_TRUE(s.model.history.save(snapshot, hoursAgo(24 * day)));
         }
         s.model.disk.tellWatchers();
         EXPECT_TRUE(s.until([&] { return s.model->sessions().size() == 3; }));
         s.settings("general");
     },
     false, false, TextVariant::onLinux, noUpdates},
    {"settings-general-off", [](Stage& s) { s.interface->openSettings("general"); }},
    {"settings-general-end", [](Stage& s) { s.settings("general"), s.toTheEnd(); }},
    {"settings-general-menu", [](Stage& s) { s.settings("general"), s.press("Snapshot interval: "); }},
    {"settings-recording", [](Stage& s) { s.settings("general"), s.press("Shortcut for saving"); }},
    {"settings-shortcut-taken",
     [](Stage& s) {
         const Shortcut taken = defaultShortcut(HotKeyAction::switcher);
         s.model.hotKeys.taken = {{taken.keyCode, taken.modifiers}};
         s.model.change([](AppSettings& settings) { settings.shortcutsEnabled = false; });
         s.model.change([](AppSettings& settings) { settings.shortcutsEnabled = true; });
         s.settings("general");
     }},
    {"settings-no-shortcuts",
     [](Stage& s) {
         s.model.hotKeys.able = Capability::unavailable("This session has no way to listen for keys.");
         s.settings("general");
     }},
    {"settings-no-access", [](Stage& s) { s.withoutAccess(), s.settings("general"); }},
    {"settings-login-approval", approveLogin},
    {"settings-login-approval-mac", approveLogin, false, false, TextVariant::onMac},
    {"settings-no-updates", [](Stage& s) { s.settings("general"), s.toTheEnd(); }, false, false,
     TextVariant::onLinux, noUpdates},
    {"settings-tip-shortcut", [](Stage& s) { s.settings("general"), s.hover("Shortcut for saving"); }, false,
     true},
    {"settings-integrations", [](Stage& s) { s.settings("integrations"); }},
    {"settings-privacy", [](Stage& s) { s.settings("privacy"); }},
    {"settings-privacy-menu", [](Stage& s) { s.settings("privacy"), s.press("Exclude a running app"); }},
    {"settings-privacy-end", [](Stage& s) { s.settings("privacy"), s.toTheEnd(); }},
    {"settings-delete", [](Stage& s) { s.settings("privacy"), s.press("Delete all workspace data…"); }},
    {"settings-tip-chip", [](Stage& s) { s.settings("privacy"), s.hover("Remove bank"); }, false, true},
    {"settings-about", [](Stage& s) { s.settings("about"); }},
    {"settings-about-no-updates", [](Stage& s) { s.settings("about"); }, false, false, TextVariant::onLinux,
     noUpdates},
    {"settings-about-update",
     [](Stage& s) {
         s.updater.findUpdate("2.0");
         s.settings("about");
     }},
    {"settings-about-relaunch",
     [](Stage& s) {
         s.updater.findUpdate("2.0");
         s.updater.finishDownload("2.0");
         s.settings("about");
     }},

    {"onboarding-1", [](Stage& s) { s.introduction(1); }},
    {"onboarding-2", [](Stage& s) { s.introduction(2); }},
    {"onboarding-3", [](Stage& s) { s.introduction(3); }},
    {"onboarding-4", [](Stage& s) { s.introduction(4); }},
    {"onboarding-2-waiting", [](Stage& s) { s.withoutAccess(), s.introduction(2); }, true},
    {"onboarding-2-mac", [](Stage& s) { s.introduction(2); }, false, false, TextVariant::onMac},
    {"onboarding-2-waiting-mac", [](Stage& s) { s.withoutAccess(), s.introduction(2); }, true, false,
     TextVariant::onMac},
    {"onboarding-3-mac", [](Stage& s) { s.introduction(3); }, false, false, TextVariant::onMac},
};

const Surface panels[] = {
    {"switcher", [](Stage& s) { s.switcher(5); }},
    {"switcher-found", [](Stage& s) { s.switcher(5), s.type("te"), s.key(Qt::Key_Down); }},
    {"switcher-no-match", [](Stage& s) { s.switcher(5), s.type("tax evasion"); }},
    {"switcher-empty", [](Stage& s) { s.switcher(0); }},
    {"switcher-30", [](Stage& s) { s.switcher(30); }},
    {"switcher-30-scrolled", [](Stage& s) { s.switcher(30), s.key(Qt::Key_Down, {}, 14); }},
    {"restore-begins", [](Stage& s) { s.resume(s.troubled("Morning", 2)); }, true},
    {"restore-progress", [](Stage& s) { s.resumeHalfWay(s.troubled("Morning", 2)); }, true},
    {"restore-stopped",
     [](Stage& s) {
         s.resumeHalfWay(s.troubled("Morning", 2));
         s.model->restoreRun()->cancel();
         EXPECT_TRUE(s.until([&] { return !s.model->restoreRunning(); }));
     }},
    {"restore-clean", [](Stage& s) { s.resumeToTheEnd(s.saved("Morning")); }},
    {"restore-partial", [](Stage& s) { s.resumeToTheEnd(s.troubled("Morning", 2)); }},
    {"restore-many", [](Stage& s) { s.resumeToTheEnd(s.troubled(arabicName, 14)); }},
    {"restore-many-all", [](Stage& s) { s.resumeToTheEnd(s.troubled(longName, 14)), s.press("All"); }},
    {"restore-tip-close", [](Stage& s) { s.resumeToTheEnd(s.saved("Morning")), s.hover("Close"); }, false,
     true},
};

const Look pageLooks[] = {{"light-1440x900", {1440, 900}},
                          {"dark-1440x900", {1440, 900}, true},
                          {"light-1080x720", {1080, 720}},
                          {"light-1024x700", {1024, 700}},
                          {"dark-1024x700", {1024, 700}, true},
                          {"light-1024x700-150", {1024, 700}, false, "1.5"},
                          {"dark-1024x700-150", {1024, 700}, true, "1.5"},
                          {"light-760x520-150", {760, 520}, false, "1.5"},
                          {"light-1080x720-mirrored", {1080, 720}, false, "1", true}};

const Look panelLooks[] = {{"light", {}},
                           {"dark", {}, true},
                           {"light-150", {}, false, "1.5"},
                           {"dark-mirrored", {}, true, "1", true}};

using Picture = std::tuple<Surface, Look>;

class SurfacePictures : public Stage, public testing::WithParamInterface<Picture> {
  protected:
    SurfacePictures() : Stage(std::get<Look>(GetParam()), surface().texts, updating()) {
        QGuiApplication::styleHints()->setCursorFlashTime(0);  // two pictures at rest are the same
        // Without a display, nobody has told Qt where icons are.
        QIcon::setThemeSearchPaths(QStandardPaths::locateAll(QStandardPaths::GenericDataLocation, "icons",
                                                             QStandardPaths::LocateDirectory));
        QIcon::setThemeName("hicolor");
        theme.setDark(std::get<Look>(GetParam()).dark);
    }
    static const Surface& surface() { return std::get<Surface>(GetParam()); }
    static Capability updating() {
        return surface().updatesRefusal ? Capability::unavailable(surface().updatesRefusal)
                                        : Capability::available();
    }
    void openPage() {
        model->openMain();
        main()->resize(std::get<Look>(GetParam()).window);
        EXPECT_TRUE(until([&] { return model->currentSnapshot() && !model->refreshingCurrentSnapshot(); }));
    }
    static bool hasTip(QQuickWindow& window) {
        bool found = false;
        walk(window.contentItem(), [&](QQuickItem& item) {
            found = found || item.inherits("QQuickPopupItem");
            return !found;
        });
        return found;
    }
    /// Once nothing moves any more; what always moves is given the time that the longest animation takes.
    QImage atRest(QQuickWindow& window) {
        if (surface().tip) EXPECT_TRUE(QTest::qWaitFor([&] { return hasTip(window); }, 3000)) << "no tooltip";
        QTest::qWait(surface().moves ? 600 : 60);
        QImage last = window.grabWindow();
        int same = surface().moves ? 2 : 0;
        for (int turn = 0; turn < 60 && same < 2; ++turn) {
            QTest::qWait(60);
            const QImage next = window.grabWindow();
            same = next == last ? same + 1 : 0;
            last = next;
        }
        EXPECT_EQ(same, 2) << "it does not come to rest";
        return last;
    }
    static std::size_t colors(const QImage& image) {
        std::set<QRgb> all;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x) all.insert(image.pixel(x, y));
        return all.size();
    }
};

TEST_P(SurfacePictures, AreMade) {
    const auto& [surface, look] = GetParam();
    const bool page = look.window.isValid();
    if (page) openPage();
    surface.make(*this);
    QQuickWindow* const shown = window();
    ASSERT_TRUE(shown);
    const QImage picture = atRest(*shown);
    if (page) EXPECT_EQ(picture.size(), look.window);
    EXPECT_GT(colors(picture), 30U) << "it is blank";
    const QString file =
        QString("%1/%2-%3.png").arg(qEnvironmentVariable("QUILLO_PICTURES"), surface.name, look.name);
    EXPECT_TRUE(picture.save(file)) << file.toStdString() << " cannot be written";
}

/// Letters and digits with underscores between: what a name of a test may hold.
std::string nameOf(const testing::TestParamInfo<Picture>& picture) {
    std::string name =
        std::string(std::get<Surface>(picture.param).name) + "-" + std::get<Look>(picture.param).name;
    std::ranges::replace(name, '-', '_');
    return name;
}
INSTANTIATE_TEST_SUITE_P(Pages, SurfacePictures,
                         testing::Combine(testing::ValuesIn(pages), testing::ValuesIn(pageLooks)), nameOf);
INSTANTIATE_TEST_SUITE_P(Panels, SurfacePictures,
                         testing::Combine(testing::ValuesIn(panels), testing::ValuesIn(panelLooks)), nameOf);

}  // namespace
}  // namespace quillo
