#include "WindowEngine/restore/DocumentRestore.hpp"

#include <algorithm>
#include <chrono>
#include <exception>
#include <iterator>
#include <utility>

#include "WindowEngine/restore/ContextRestore.hpp"
#include "WindowEngine/restore/MissingWindows.hpp"

namespace quillo::Restore {
namespace {

constexpr Duration tabPatience = std::chrono::seconds(1);  // for another tab to come to the front

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

std::string address(const Url& url) {
    return url.standardized().string();
}

std::set<std::string> addressesOf(const std::vector<SavedDocument>& documents) {
    std::set<std::string> addresses;
    for (const SavedDocument& document : documents) {
        addresses.insert(address(document.url));
        if (document.target) addresses.insert(address(*document.target));
    }
    return addresses;
}

/// Documents in whose windows others of those `asked` for are now.
std::vector<SavedDocument> hiddenBy(const std::set<std::string>& asked, const ShownBefore& before,
                                    const std::vector<LiveWindow>& live) {
    std::vector<SavedDocument> hidden;
    for (const LiveWindow& window : live) {
        if (!window.windowID || !window.info.documentURL) continue;
        const auto was = before.documents.find(*window.windowID);
        if (was != before.documents.end() && asked.contains(address(*window.info.documentURL)))
            hidden.push_back(was->second);
    }
    return SavedDocuments::missing(std::move(hidden), infosOf(live));
}

/// An application that shows one document in the window of another has made tabs of them. The one that was in
/// front comes there again: otherwise each restore would find another one missing, and bring that forward.
Task<void> showAgain(const ApplicationRestore& restore, std::vector<SavedDocument> documents) {
    const Platform& platform = restore.desktop.platform;
    // A file manager would open the folder once more.
    std::erase_if(documents, [](const SavedDocument& one) { return one.url.string().ends_with('/'); });
    for (const SavedDocument& document : documents) {
        const auto target = documentTarget(platform, restore.application, restore.options, document.url);
        if (target)
            (void)co_await platform.applications.open(restore.application.bundleIdentifier, {*target});
    }
    const auto changes = platform.windowServer.watch(std::nullopt);
    const TimePoint deadline = restore.now() + tabPatience;
    while (restore.now() < deadline) {
        const auto live = infosOf(restore.live(false));
        documents = SavedDocuments::missing(std::move(documents), live);
        if (documents.empty()) co_return;
        co_await changes->next(windowInterval);
    }
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

ShownBefore shownNow(const ApplicationRestore& restore) {
    const auto live = restore.live(false);
    ShownBefore shown{.windows = live.size(), .documents = {}};
    for (const SavedDocument& document : SavedDocuments::of(restore.application, {})) {
        for (const LiveWindow& window : live) {
            if (window.windowID && window.info.documentURL &&
                address(*window.info.documentURL) == address(document.url))
                shown.documents.emplace(*window.windowID, document);
        }
    }
    return shown;
}

TimePoint patientUntil(const ApplicationRestore& restore) {
    return std::min(restore.deadline, restore.now() + windowPatience);
}

/// One after the other, each once the window that was opened for it is there, and shown before the next one
/// is asked for. Those for which that does not work are left in `documents`.
Task<void> openIntoNewWindows(ApplicationRestore& restore, std::vector<SavedDocument>& documents,
                              std::vector<SavedDocument>& accepted) {
    while (!documents.empty() && co_await openEmptyWindow(restore)) {
        restore.opensMore = true;
        restore.deadline = std::max(restore.deadline, restore.now() + windowPatience);
        const std::size_t before = accepted.size();
        const ShownBefore shown = shownNow(restore);
        std::vector<SavedDocument> next{std::move(documents.front())};
        documents.erase(documents.begin());
        co_await openEach(restore, std::move(next), accepted);
        if (accepted.size() == before) continue;
        if (!co_await awaitDocuments(restore, {accepted.back()}, shown, patientUntil(restore))) co_return;
    }
}

/// Whether each of several documents had a window of its own.
bool hadWindowsEach(const ApplicationSnapshot& application) {
    return std::ranges::count_if(application.windows, SavedDocuments::isIn) > 1;
}

DocumentHanding handingOf(const ApplicationRestore& restore, const std::vector<SavedDocument>& documents) {
    if (!hadWindowsEach(restore.application)) return DocumentHanding::together;
    std::vector<Url> targets;
    for (const SavedDocument& document : documents) targets.push_back(document.target.value_or(document.url));
    return restore.desktop.platform.applications.handing(restore.application.bundleIdentifier, targets);
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

std::vector<SavedDocument> takeFollowing(const ApplicationRestore& restore,
                                         std::vector<SavedDocument>& documents) {
    if (documents.size() < 2 || handingOf(restore, documents) == DocumentHanding::together) return {};
    std::vector<SavedDocument> following(std::make_move_iterator(documents.begin() + 1),
                                         std::make_move_iterator(documents.end()));
    documents.erase(documents.begin() + 1, documents.end());
    return following;
}

Task<void> openDocuments(ApplicationRestore& restore, std::vector<SavedDocument> documents) {
    if (documents.empty()) co_return;
    std::vector<SavedDocument> accepted;
    std::size_t awaited = 0;
    ShownBefore before;
    std::exception_ptr interruption;
    try {
        if (handingOf(restore, documents) == DocumentHanding::intoNewWindows)
            co_await openIntoNewWindows(restore, documents, accepted);
        awaited = accepted.size();
        before = shownNow(restore);
        co_await openEach(restore, std::move(documents), accepted);
    } catch (...) {
        interruption = std::current_exception();
    }
    restore.opensMore |= !accepted.empty();
    if (!accepted.empty()) restore.add(RestoreReport::opened{static_cast<std::int64_t>(accepted.size())});
    if (interruption) std::rethrow_exception(interruption);
    accepted.erase(accepted.begin(), accepted.begin() + static_cast<std::ptrdiff_t>(awaited));
    if (!accepted.empty())
        co_await awaitDocuments(restore, std::move(accepted), std::move(before), patientUntil(restore));
}

Task<bool> awaitDocuments(ApplicationRestore& restore, std::vector<SavedDocument> documents,
                          ShownBefore before, TimePoint deadline) {
    const std::size_t wanted = before.windows + documents.size();
    const std::set<std::string> asked = addressesOf(documents);
    std::vector<SavedDocument> all = documents;
    const auto changes = restore.desktop.platform.windowServer.watch(std::nullopt);
    std::vector<SavedDocument> hidden;
    bool enough = false;
    for (;;) {
        // The last look goes to other desktops too, where an application may have brought its window back.
        const bool last = restore.now() >= deadline;
        const auto live = restore.live(last);
        const auto infos = infosOf(live);
        const std::size_t outstanding = documents.size();
        documents = SavedDocuments::missing(std::move(documents), infos);
        hidden = hiddenBy(asked, before, live);
        // Before the next one is handed over, this one is looked for in its window: it may come a while after
        // that.
        enough = documents.empty() ||
                 (restore.following.empty() && !namesDocuments(infos) && infos.size() >= wanted);
        if (enough || last) break;
        if (documents.size() < outstanding) deadline = patientUntil(restore);
        if (!restore.following.empty() && !live.empty()) deadline = std::min(deadline, patientUntil(restore));
        if (!hidden.empty()) deadline = std::min(deadline, restore.now() + tabPatience);
        co_await changes->next(windowInterval);
    }
    std::erase_if(all, [&](const SavedDocument& one) {
        return std::ranges::find(documents, one.url, &SavedDocument::url) != documents.end();
    });
    if (!enough) std::ranges::move(documents, std::back_inserter(restore.late));
    if (hidden.empty()) co_return enough;
    co_await showAgain(restore, std::move(hidden));
    const auto live = infosOf(restore.live(false));
    for (const SavedDocument& document : SavedDocuments::missing(std::move(all), live))
        addAbout(restore, document, RestoreReport::note{"its document is a tab of another window"});
    co_return false;
}

void reportLateDocuments(const ApplicationRestore& restore) {
    if (restore.late.empty()) return;
    const auto live = infosOf(restore.live(true));
    for (const SavedDocument& document : SavedDocuments::missing(restore.late, live))
        addAbout(restore, document, RestoreReport::failed{"document did not appear before timeout"});
}

}  // namespace quillo::Restore
