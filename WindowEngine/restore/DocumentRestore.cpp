#include "WindowEngine/restore/DocumentRestore.hpp"

#include <algorithm>
#include <exception>
#include <utility>

#include "WindowEngine/restore/ContextRestore.hpp"

namespace quillo::Restore {
namespace {

void addAbout(const ApplicationRestore& restore, const SavedDocument& document,
              RestoreReport::Status status) {
    restore.sink.addAbout(restore.application, document.title, std::move(status));
}

void addRefused(const ApplicationRestore& restore, const SavedDocument& document) {
    addAbout(restore, document, RestoreReport::failed{"document could not be opened: " + document.refusal});
}

bool namesDocuments(std::span<const LiveWindowInfo> live) {
    return std::ranges::any_of(live,
                               [](const LiveWindowInfo& window) { return window.documentURL.has_value(); });
}

/// Whatever interrupts it, `accepted` has those that the application took.
Task<void> openEach(const ApplicationRestore& restore, std::vector<SavedDocument> documents,
                    std::vector<SavedDocument>& accepted) {
    for (SavedDocument& document : documents) {
        const auto opened = co_await restore.desktop.platform.applications.open(
            restore.application.bundleIdentifier, {document.target.value_or(document.url)});
        if (opened) {
            accepted.push_back(std::move(document));
        } else {
            addAbout(restore, document, RestoreReport::failed{"document could not be opened"});
        }
    }
}

}  // namespace

Result<Url> documentTarget(const Platform& platform, const ApplicationSnapshot& application,
                           const Options& options, const Url& saved) {
    auto target = platform.applications.openable(application.bundleIdentifier, saved);
    if (target && !options.followsLinks && target->filePath() != saved.standardized().filePath())
        return fail(ErrorKind::refused, "a link leads to it");
    return target;
}

DocumentPlan planDocuments(const Platform& platform, const ApplicationSnapshot& application,
                           const Options& options, std::span<const LiveWindowInfo> live) {
    std::set<std::string> elsewhere;
    if (contextAdapter(platform, application, options.enabledAdapters))
        elsewhere = SavedDocuments::locations(*application.context);
    DocumentPlan plan;
    for (SavedDocument& document :
         SavedDocuments::missing(SavedDocuments::of(application, elsewhere), live)) {
        auto target = documentTarget(platform, application, options, document.url);
        if (target) {
            document.target = *std::move(target);
        } else {
            document.refusal = std::move(target.error().text);
        }
        (document.target ? plan.open : plan.refused).push_back(std::move(document));
    }
    return plan;
}

void reportRefused(const ApplicationRestore& restore, const DocumentPlan& plan) {
    for (const SavedDocument& document : plan.refused) addRefused(restore, document);
}

Task<void> openDocuments(ApplicationRestore& restore, std::vector<SavedDocument> documents) {
    if (documents.empty()) co_return;
    const std::size_t windowsBefore = liveWindows(restore.desktop, restore.application, false).size();
    std::vector<SavedDocument> accepted;
    std::exception_ptr interruption;
    try {
        co_await openEach(restore, std::move(documents), accepted);
    } catch (...) {
        interruption = std::current_exception();
    }
    restore.opensMore |= !accepted.empty();
    if (!accepted.empty()) restore.add(RestoreReport::opened{static_cast<std::int64_t>(accepted.size())});
    if (interruption) std::rethrow_exception(interruption);
    if (accepted.empty()) co_return;
    co_await awaitDocuments(restore, std::move(accepted), windowsBefore);
}

Task<void> awaitDocuments(ApplicationRestore& restore, std::vector<SavedDocument> documents,
                          std::size_t windowsBefore) {
    const std::size_t wanted = windowsBefore + documents.size();
    // What travelled with a launch comes with the application's own windows.
    const TimePoint deadline =
        restore.sent.empty() ? std::min(restore.deadline, restore.now() + windowPatience) : restore.deadline;
    const auto changes = restore.desktop.platform.windowServer.watch(std::nullopt);
    for (;;) {
        // The last look goes to other desktops too, where an application may have brought its window back.
        const bool last = restore.now() >= deadline;
        const auto live = infosOf(liveWindows(restore.desktop, restore.application, last));
        documents = SavedDocuments::missing(std::move(documents), live);
        if (documents.empty() || (!namesDocuments(live) && live.size() >= wanted)) co_return;
        if (last) break;
        co_await changes->next(windowInterval);
    }
    restore.late = std::move(documents);
}

void reportLateDocuments(const ApplicationRestore& restore) {
    if (restore.late.empty()) return;
    const auto live = infosOf(liveWindows(restore.desktop, restore.application, true));
    for (const SavedDocument& document : SavedDocuments::missing(restore.late, live))
        addAbout(restore, document, RestoreReport::failed{"document did not appear before timeout"});
}

}  // namespace quillo::Restore
