#include "platform/linux/WindowDocuments.hpp"

#include <unistd.h>

#include <array>
#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <optional>
#include <thread>

#include "platform/linux/PathEntries.hpp"
#include "platform/linux/ProcessInfo.hpp"
#include "platform/linux/Terminals.hpp"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto longestWait = 250ms;
constexpr auto longestAnswer = 200ms;  // of what applications answer
constexpr auto longestPatience = 1s;   // where nobody is held up meanwhile
constexpr auto documentsEnd = 1s;
constexpr std::size_t mostRemembered = 4096;

struct Inquiry {
    std::vector<DocumentQuestion> questions;
    std::string bus;
    bool patient = false;
};

std::string homeDirectory() {
    const char* home = std::getenv("HOME");
    return home ? home : "";
}

/// What processes have open, each looked at once.
using OpenFiles = std::map<ProcessID, std::vector<std::string>>;

std::optional<WindowDocument> fromTitleOrProcess(const DocumentQuestion& question, const std::string& home,
                                                 OpenFiles& openFiles) {
    if (auto document = DocumentEvidence::inTitle(question.title, home))
        return WindowDocument{std::move(*document), false};
    if (!question.opensFolders) {
        const auto [files, isNew] = openFiles.try_emplace(question.pid);
        if (isNew) files->second = openFilesOf(question.pid);
        if (auto document = DocumentEvidence::inOpenFiles(files->second, question.title))
            return WindowDocument{std::move(*document), false};
    }
    auto document = DocumentEvidence::inArguments(argumentsOf(question.pid), workingDirectoryOf(question.pid),
                                                  question.title);
    return document ? std::optional(WindowDocument{std::move(*document), true}) : std::nullopt;
}

std::string hostName() {
    std::array<char, 256> name{};
    return ::gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "";
}

void lookIntoTerminals(const std::vector<DocumentQuestion>& questions, const std::string& home,
                       WindowDocuments::Answers& answers) {
    static const std::string host = hostName();
    std::map<ProcessID, std::vector<const DocumentQuestion*>> windows;
    for (const auto& question : questions) {
        if (question.isTerminal) windows[question.pid].push_back(&question);
    }
    for (const auto& [pid, ofProcess] : windows) {
        std::vector<std::string> titles;
        for (const auto* window : ofProcess) titles.push_back(window->title);
        const auto folders = Terminals::windowFolders(titles, Terminals::shellFolders(pid), {home, host});
        for (std::size_t i = 0; i < ofProcess.size(); ++i) {
            if (folders[i]) answers[ofProcess[i]->window] = {{*folders[i], true}, false};
        }
    }
}

WindowDocuments::Answers lookFor(const Inquiry& job, const std::string& home, PathEntries& entries) {
    WindowDocuments::Answers answers;
    std::vector<PathEntries::Window> managers;
    OpenFiles openFiles;
    lookIntoTerminals(job.questions, home, answers);
    for (const auto& question : job.questions) {
        if (question.isTerminal) continue;
        auto document = fromTitleOrProcess(question, home, openFiles);
        if (document && document->document.isFolder && !question.opensFolders) continue;
        // A file manager's window may by now show another folder of the same name than the one it was
        // started with.
        if (question.opensFolders && (!document || document->fromArguments))
            managers.push_back({question.window, question.pid, question.title, question.frame});
        if (document) answers.emplace(question.window, std::move(*document));
    }
    if (job.patient) entries.startAnew();
    const auto deadline = Clock::now() + (job.patient ? longestPatience : longestAnswer);
    for (auto& [window, folder] : entries.read(managers, job.bus, home, deadline))
        answers[window] = {{std::move(folder), true}, false};
    return answers;
}

}  // namespace

struct WindowDocuments::Shared {
    struct Remembered {
        std::string title;
        WindowDocument document;
    };

    void work();
    void workUntilTheEnd(PathEntries& entries);
    void addLastKnown(const std::vector<DocumentQuestion>& questions, bool foldersOnly,
                      Answers& answers) const;
    bool isStuck() const { return busySince && Clock::now() - *busySince > longestWait; }

    const std::string home = homeDirectory();
    const GObjectPtr<GCancellable> cancellable{g_cancellable_new()};
    std::mutex mutex;  // for all below
    std::condition_variable changed;
    std::optional<Inquiry> next;
    Inquiry last;           // that was asked
    bool leftOpen = false;  // by the question answered last
    std::optional<Clock::time_point> busySince;
    std::uint64_t asked = 0, answered = 0;
    Answers answers;  // to the question answered last
    std::map<std::uint32_t, Remembered> lastKnown;
    bool ending = false, ended = false;
};

void WindowDocuments::Shared::work() {
    GMainContext* context = g_main_context_new();
    g_main_context_push_thread_default(context);
    {
        PathEntries entries(cancellable.get());
        workUntilTheEnd(entries);
    }
    g_main_context_pop_thread_default(context);
    g_main_context_unref(context);
    const std::lock_guard lock(mutex);
    ended = true;
    changed.notify_all();
}

void WindowDocuments::Shared::workUntilTheEnd(PathEntries& entries) {
    std::unique_lock lock(mutex);
    for (;;) {
        changed.wait(lock, [this] { return ending || next; });
        if (ending) return;
        const Inquiry job = *std::exchange(next, std::nullopt);
        const auto number = asked;
        busySince = Clock::now();
        lock.unlock();
        auto found = lookFor(job, home, entries);
        lock.lock();
        busySince.reset();
        if (lastKnown.size() > mostRemembered) lastKnown.clear();
        for (const auto& question : job.questions) {
            const auto answer = found.find(question.window);
            if (answer != found.end() && !answer->second.fromArguments)
                lastKnown[question.window] = {question.title, answer->second};
        }
        answers = std::move(found);
        answered = number;
        leftOpen = entries.leftOpen();
        changed.notify_all();
    }
}

void WindowDocuments::Shared::addLastKnown(const std::vector<DocumentQuestion>& questions, bool foldersOnly,
                                           Answers& to) const {
    for (const auto& question : questions) {
        const auto known = lastKnown.find(question.window);
        if (known == lastKnown.end() || known->second.title != question.title) continue;
        // A shell may have gone elsewhere under the same title.
        if (foldersOnly && (question.isTerminal || !known->second.document.document.isFolder)) continue;
        auto& answer = to.try_emplace(question.window, known->second.document).first->second;
        if (answer.fromArguments) answer = known->second.document;
    }
}

WindowDocuments::WindowDocuments() : shared_(std::make_shared<Shared>()) {}

WindowDocuments::~WindowDocuments() {
    if (!thread_.joinable()) return;
    g_cancellable_cancel(shared_->cancellable.get());
    std::unique_lock lock(shared_->mutex);
    shared_->ending = true;
    shared_->changed.notify_all();
    const bool ended = shared_->changed.wait_for(lock, documentsEnd, [this] { return shared_->ended; });
    lock.unlock();
    ended ? thread_.join() : thread_.detach();
}

WindowDocuments::Answers WindowDocuments::ask(const std::vector<DocumentQuestion>& questions,
                                              std::string bus) {
    if (questions.empty()) return {};
    if (!thread_.joinable()) thread_ = std::thread([shared = shared_] { shared->work(); });
    std::unique_lock lock(shared_->mutex);
    const auto number = ++shared_->asked;
    shared_->last = {questions, std::move(bus)};
    shared_->next = shared_->last;
    shared_->changed.notify_all();
    const bool answered = !shared_->isStuck() && shared_->changed.wait_for(lock, longestWait, [&] {
        return shared_->answered >= number;
    });
    auto answers = answered ? shared_->answers : Answers();
    // A file manager that does not answer, or in whose entry the person types, still shows what its title
    // says.
    shared_->addLastKnown(questions, answered, answers);
    return answers;
}

bool WindowDocuments::lookAgain() {
    const std::lock_guard lock(shared_->mutex);
    if (shared_->asked == shared_->answered && !shared_->leftOpen) return false;
    ++shared_->asked;
    shared_->next = shared_->last;
    shared_->next->patient = true;
    shared_->changed.notify_all();
    return true;
}

bool WindowDocuments::isLooking() const {
    const std::lock_guard lock(shared_->mutex);
    return shared_->asked > shared_->answered;
}

}  // namespace quillo
