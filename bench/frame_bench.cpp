// How long a person waits for the window, on a private X server, by the software renderer: for each frame of
// the library with 2,000 workspaces, typing in its search field and scrolling it, and for the window's first
// frame when it is opened again, with 200. Each round has a new application and window, so that what is made
// on first use counts.
#include <QApplication>
#include <QPainter>
#include <QQuickWindow>
#include <QTest>
#include <QWheelEvent>
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "WindowEngine/records/WorkspaceCoding.hpp"
#include "app/QtExecutor.hpp"
#include "app/UpdateController.hpp"
#include "app/gui/Interface.hpp"
#include "bench/SampleLibrary.hpp"
#include "platform/posix/PosixFileSystem.hpp"
#include "platform/simulated/SimulatedKeyMonitor.hpp"
#include "platform/simulated/SimulatedSystem.hpp"
#include "platform/x11/X11Desktop.hpp"
#include "tests/TemporaryDirectory.hpp"
#include "tests/platform/x11/PrivateDesktop.hpp"

namespace {

using namespace quillo;

constexpr int rounds = 3, reopenings = 15;
constexpr std::chrono::milliseconds restTime{30};  // without a frame: what an input set off is over

struct SilentLog final : SystemLog {
    void write(std::string_view, LogLevel, std::string_view) override {}
};

/// Milliseconds, of the wall clock and of this thread's own processor time.
struct Moment {
    double wall, cpu;

    static Moment now() {
        const auto read = [](clockid_t clock) {
            timespec time{};
            clock_gettime(clock, &time);
            return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
        };
        return {read(CLOCK_MONOTONIC), read(CLOCK_THREAD_CPUTIME_ID)};
    }
};

/// Sees every frame of a window, from the request to draw it (polish, sync, render) until it is on the
/// screen.
class Frames final : public QObject {
  public:
    explicit Frames(QQuickWindow& window) : window_(window) {
        window.installEventFilter(this);
        connect(&window, &QQuickWindow::frameSwapped, this, [this] {
            const Moment now = Moment::now();
            dearest_ = std::max(dearest_, now.cpu - last_.cpu);
            if (drawing_) dearestDrawing_ = std::max(dearestDrawing_, now.cpu - began_.cpu);
            last_ = now;
            drawing_ = false;
            ++count_;
        });
    }

    /// The frame that shows what `input` did, from the input on; and then all that it sets in motion.
    double answerTo(const std::function<void()>& input) {
        const int before = count_;
        const double start = Moment::now().wall;
        input();
        if (!QTest::qWaitFor([&] { return count_ > before; }, 2000)) return 2000;
        const double answer = last_.wall - start;
        rest();
        return answer;
    }
    void rest() {
        for (int seen = -1; seen != count_;) {
            seen = count_;
            QTest::qWait(static_cast<int>(restTime.count()));
        }
    }
    QQuickWindow& window() { return window_; }
    /// All that this thread did for a frame, since the one before was on the screen.
    double dearest() const { return dearest_; }
    /// Of that, the frame itself: polish, sync, render, onto the screen.
    double dearestDrawing() const { return dearestDrawing_; }
    int count() const { return count_; }

  private:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::UpdateRequest) {
            began_ = Moment::now();
            drawing_ = true;
        }
        return false;
    }

    QQuickWindow& window_;
    Moment began_{}, last_ = Moment::now();
    double dearest_ = 0, dearestDrawing_ = 0;
    bool drawing_ = false;
    int count_ = 0;
};

using Step = std::function<void(QQuickWindow&)>;

Step key(Qt::Key key) {
    return [key](QQuickWindow& window) { QTest::keyClick(&window, key); };
}

std::vector<Step> typing() {
    std::vector<Step> steps;
    for (const char* query : {"work on chapter 7", "saf", "b", "zz", "1 9", "e", "term", "note"}) {
        const std::string text = query;
        for (const char c : text) {
            steps.emplace_back([c](QQuickWindow& window) { QTest::keyClick(&window, c); });
        }
        for (std::size_t i = 0; i < text.size(); ++i) steps.push_back(key(Qt::Key_Backspace));
    }
    for (const char c : {'s', 'a', 'f'})
        steps.emplace_back([c](QQuickWindow& window) { QTest::keyClick(&window, c); });
    steps.push_back(key(Qt::Key_Escape));  // clears the field at once
    return steps;
}

Step wheel(int notches) {
    return [notches](QQuickWindow& window) {
        const QPointF at(window.width() / 2.0, window.height() / 2.0);
        QWheelEvent event(at, window.mapToGlobal(at), {}, {0, notches * 120}, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        event.setTimestamp(static_cast<quint64>(Moment::now().wall));
        QCoreApplication::sendEvent(&window, &event);
    };
}

std::vector<Step> wheeling() {
    std::vector<Step> steps(8, wheel(-1));
    steps.insert(steps.end(), 4, wheel(-5));
    steps.insert(steps.end(), 4, wheel(3));
    return steps;
}

std::vector<Step> walking() {
    std::vector<Step> steps(20, key(Qt::Key_Down));
    steps.insert(steps.end(), 6, key(Qt::Key_Right));
    steps.insert(steps.end(), 6, key(Qt::Key_Up));
    return steps;
}

/// Applications that are installed, each with its icon.
void installApplications(const std::filesystem::path& data) {
    std::filesystem::create_directories(data / "applications");
    for (int app = 0; app < 10; ++app) {
        const std::string name = "org.example.application" + std::to_string(app);
        const std::filesystem::path icon = data / (name + ".png");
        QImage image(128, 128, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter(&image).fillRect(16, 16, 96, 96, QColor::fromHsv(app * 36, 180, 200));
        image.save(QString::fromStdString(icon.string()));
        std::ofstream(data / "applications" / (name + ".desktop"))
            << "[Desktop Entry]\nType=Application\nName=" << name << "\nExec=true\nIcon=" << icon.string()
            << "\n";
    }
}

/// Written plainly: the store would sync each of them to the disk.
void writeWorkspaces(const std::filesystem::path& directory, int count) {
    std::filesystem::create_directories(directory);
    const std::array applications{"Files", "Safari",   "Éditeur de texte", "Terminal", "メール",
                                  "Notes", "Kalender", "Straßenkarte",     "Music",    "Préférences"};
    const std::array colors{"teal", "coral", "amber", "slate"};
    for (int i = 0; i < count; ++i) {
        const auto number = static_cast<std::size_t>(i);
        Workspace workspace = bench::sampleWorkspace(i);
        workspace.name = (i % 3 ? "Work on chapter " : "Büro, Ärger und ") + std::to_string(i * 7919 % count);
        workspace.color = colors.at(number % colors.size());
        workspace.snapshot.applications.resize(2 + number % 5);
        for (std::size_t app = 0; app < workspace.snapshot.applications.size(); ++app) {
            ApplicationSnapshot& application = workspace.snapshot.applications[app];
            const std::size_t which = (number + app * 3) % applications.size();
            application.bundleIdentifier = "org.example.application" + std::to_string(which);
            application.name = applications.at(which);
            application.windows.resize(1 + (number + app) % 4);
            for (WindowSnapshot& window : application.windows) {
                window.frame.x = static_cast<double>((number * 37 + app * 211) % 900);
                window.frame.width = static_cast<double>(300 + (number * 53 + app * 97) % 500);
                window.normalizedFrame.x = window.frame.x / 1512;
                window.normalizedFrame.width = window.frame.width / 1512;
            }
        }
        std::ofstream(directory / (workspace.id.lower() + ".json"), std::ios::binary)
            << WorkspaceCoding::encode(workspace).value();
    }
}

/// The application without its tray, over the real X11 layer, with its window opened and closed at will.
class Application {
  public:
    explicit Application(int workspaces) {
        settings_.onboarded = true;
        if (!layer_ || !settings_.save(system_.defaults)) std::exit(1);
        writeWorkspaces(data_.path() / "workspaces", workspaces);
        access_ = std::make_unique<DesktopAccess>(DesktopAccess{(*layer_)->platform(log_), handles_});
        const SystemServices services = system_.services(*access_, files_);
        interface_ = std::make_unique<Interface>(Interface::Parts{.theme = theme_,
                                                                  .shell = system_.shell,
                                                                  .system = services,
                                                                  .keys = keys_,
                                                                  .updates = updates_,
                                                                  .variant = TextVariant::onLinux});
        model_ = std::make_unique<AppModel>(
            AppServices{services, data_.path(), [](std::string_view bytes) { return std::string(bytes); },
                        system_.shell, *interface_});
        interface_->attach(*model_);
    }
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;
    ~Application() { interface_->detach(); }

    QQuickWindow& open() {
        model_->openMain();
        QQuickWindow* const window = interface_->windows().mainWindow();
        if (!window || !QTest::qWaitForWindowActive(window)) std::exit(1);
        return *window;
    }
    /// Milliseconds from the request, as the tray or another start makes it, to the window's first frame.
    Moment timeToOpen() {
        const Moment asked = Moment::now();
        interface_->askForMainWindow();
        Moment shown{};
        const QMetaObject::Connection watch =
            QObject::connect(interface_->windows().mainWindow(), &QQuickWindow::frameSwapped, [&] {
                if (shown.wall == 0) shown = Moment::now();
            });
        if (!QTest::qWaitFor([&] { return shown.wall > 0; }, 5000)) std::exit(1);
        QObject::disconnect(watch);
        return {shown.wall - asked.wall, shown.cpu - asked.cpu};
    }
    void close() {
        QTest::qWait(300);
        interface_->windows().mainWindow()->close();
        QTest::qWait(100);
    }

  private:
    QtExecutor executor_;
    SilentLog log_;
    PosixFileSystem files_;
    TemporaryDirectory data_;
    Result<std::unique_ptr<X11Desktop>> layer_ = X11Desktop::create(executor_, {});
    WindowHandleCache handles_;
    AppSettings settings_;
    SimulatedSystem system_{executor_};
    UpdateController updates_{system_.updater};
    SimulatedKeyMonitor keys_;
    Theme theme_;
    std::unique_ptr<DesktopAccess> access_;
    std::unique_ptr<Interface> interface_;
    std::unique_ptr<AppModel> model_;
};

double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values.empty() ? 0 : values[values.size() / 2];
}

/// `worst`, `median`: milliseconds from an input to the frame that shows it, each input at its best of the
/// rounds, for something else may run on the machine. `frame`, `drawing`: the dearest frame of all rounds, in
/// processor time.
void run(Application& application, const char* name, const std::vector<Step>& before,
         const std::vector<Step>& steps) {
    std::vector<double> best(steps.size(), std::numeric_limits<double>::max());
    double frame = 0, drawing = 0;
    int drawn = 0;
    for (int round = 0; round < rounds; ++round) {
        Frames frames(application.open());
        for (const Step& step : before) frames.answerTo([&] { step(frames.window()); });
        frames.rest();
        for (std::size_t i = 0; i < steps.size(); ++i) {
            best[i] = std::min(best[i], frames.answerTo([&] { steps[i](frames.window()); }));
        }
        frame = std::max(frame, frames.dearest());
        drawing = std::max(drawing, frames.dearestDrawing());
        drawn += frames.count();
        application.close();
    }
    std::printf("frames/%s worst=%.1f median=%.1f frame=%.1f drawing=%.1f drawn=%d\n", name,
                *std::ranges::max_element(best), median(best), frame, drawing, drawn);
    std::fflush(stdout);
}

/// The first time is a start's; afterwards the window is made anew each time, over what the process has
/// loaded.
void reopen(Application& application) {
    std::vector<double> wall, cpu;
    for (int i = 0; i <= reopenings; ++i) {
        const Moment time = application.timeToOpen();
        if (i > 0) wall.push_back(time.wall);
        if (i > 0) cpu.push_back(time.cpu);
        application.close();
    }
    std::printf("frames/reopen median=%.1f best=%.1f cpu=%.1f\n", median(wall),
                *std::ranges::min_element(wall), median(cpu));
    std::fflush(stdout);
}

}  // namespace

int main(int argumentCount, char** arguments) {
    const x11test::PrivateDesktop desktop("openbox");
    qputenv("QT_QPA_PLATFORM", "xcb");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QApplication qt(argumentCount, arguments);
    QApplication::setQuitOnLastWindowClosed(false);
    installApplications(qEnvironmentVariable("XDG_DATA_HOME").toStdString());
    {
        Application few(200);
        reopen(few);
    }
    Application application(2000);
    run(application, "typing", {}, typing());
    run(application, "wheel", {}, wheeling());
    // Nothing is called "zz": from nowhere, the cursor comes back to the first card.
    run(application, "keys", {key(Qt::Key_Z), key(Qt::Key_Z), key(Qt::Key_Escape), key(Qt::Key_Down)},
        walking());
    return 0;
}
