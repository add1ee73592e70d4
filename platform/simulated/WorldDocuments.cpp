// What applications do with documents, with new windows, and when they are asked to quit.
#include <algorithm>
#include <utility>

#include "platform/simulated/World.hpp"
#include "platform/simulated/WorldRules.hpp"

namespace quillo::simulated {
namespace {

constexpr std::string_view saveQuestion = "Do you want to save the changes?";

/// A scene may give a Finder window's folder as a path or as an address.
std::optional<Url> folderOf(const Window& window) {
    if (window.application != finder || window.state.tabs.empty()) return std::nullopt;
    const std::string& folder = window.state.tabs.front();
    if (folder.starts_with('/')) return Url::file(folder, true);
    return Url::parse(folder);
}

SceneWindow dialogOver(const Window& window) {
    const Rect& over = window.state.frame;
    SceneWindow dialog;
    dialog.title = saveQuestion;
    dialog.subrole = ax::dialog;
    dialog.frame = {over.x + over.width / 4, over.y + over.height / 4, over.width / 2, over.height / 2};
    return dialog;
}

}  // namespace

SceneWindow World::newWindow(const Application& application, std::string title) const {
    SceneWindow window;
    window.title = std::move(title);
    Rect bounds{0, 0, 800, 600};
    if (!displays_.empty()) {
        bounds = displays_.front().scene.visibleFrame;
        window.desktop = displays_.front().scene.shownDesktop;
    }
    const auto others = std::ranges::count(windows_, application.scene.identifier, &Window::application);
    const double step = 40 + 22.0 * static_cast<double>(others % 10);
    window.frame = {bounds.x + step, bounds.y + step, bounds.width / 2, bounds.height / 2};
    return window;
}

void World::openAnother(Application& application) {
    const std::string& identifier = application.scene.identifier;
    application.hidden = false;
    if (fault(FaultKind::openWindowIgnored, identifier)) return;
    const Fault* late = fault(FaultKind::openWindowLate, identifier);
    const int count = fault(FaultKind::openWindowOpensTwo, identifier) ? 2 : 1;
    at(executor_.now() + toDuration(application.scene.documentSeconds + (late ? late->seconds : 0)),
       [this, pid = application.pid, count] {
           Application* still = this->application(pid);
           for (int i = 0; still && i < count; ++i) openInFront(*still, newWindow(*still, "Untitled"));
       });
}

// -- documents ----------------------------------------------------------------------------------------------

std::string World::documentTitle(const Url& document) {
    const std::string path = document.filePath().value_or(document.string());
    return path == "/" ? path : path.substr(path.rfind('/') + 1);
}

std::optional<std::string> World::documentOf(const Window& window) {
    if (window.state.document) return window.state.document;
    const std::optional<Url> folder = folderOf(window);
    return folder ? std::optional(folder->string()) : std::nullopt;
}

bool World::showsDocument(const Application& application, const Url& document) const {
    return std::ranges::any_of(windows_, [&](const Window& window) {
        if (window.application != application.scene.identifier) return false;
        const auto shown = Url::parse(documentOf(window).value_or(""));
        return shown && shown->standardized() == document.standardized();
    });
}

bool World::broughtAlready(const Application& application, const SceneWindow& window) const {
    const auto document = Url::parse(window.document.value_or(""));
    return document && std::ranges::count(application.handedDocuments, document->standardized()) > 0 &&
           showsDocument(application, *document);
}

void World::openDocuments(Application& application, std::span<const Url> documents) {
    application.hidden = false;
    const std::string& identifier = application.scene.identifier;
    for (const Url& document : documents) {
        const std::string title = documentTitle(document);
        if (fault(FaultKind::documentRefused, identifier, title) ||
            fault(FaultKind::documentIgnored, identifier, title))
            continue;
        application.handedDocuments.push_back(document.standardized());
        const Fault* late = fault(FaultKind::documentLate, identifier, title);
        const double seconds = application.scene.documentSeconds + (late ? late->seconds : 0);
        at(executor_.now() + toDuration(seconds), [this, pid = application.pid, document, title] {
            Application* still = this->application(pid);
            if (!still || showsDocument(*still, document)) return;
            SceneWindow window = newWindow(*still, title);
            if (still->scene.identifier == finder) {
                window.tabs = {document.string()};
            } else {
                window.document = document.string();
            }
            openInFront(*still, window);
        });
    }
}

bool World::opensWindows(std::string_view identifier) const {
    const auto of = [](const Application& one) { return one.scene.identifier; };
    const auto found = std::ranges::find(applications_, identifier, of);
    return opensWindows_ && (found == applications_.end() || !found->scene.singleWindow);
}

std::optional<std::string> World::refusal(const Url& document) const {
    for (const RefusedDocument& one : refusedDocuments_) {
        const auto refused = Url::parse(one.document);
        if (refused && refused->standardized() == document.standardized()) return one.reason;
    }
    return std::nullopt;
}

bool World::folderExists(std::string_view path) const {
    if (!path.starts_with('/') || path.contains('\0')) return false;
    const Url folder = Url::file(path).standardized();
    return std::ranges::none_of(missingFolders_, [&](const std::string& missing) {
        return missing.starts_with('/') && Url::file(missing).standardized() == folder;
    });
}

std::string World::pageTitle(const Application& application, const std::string& address) {
    for (const auto* windows : {&application.scene.windows, &application.scene.reopens}) {
        for (const SceneWindow& window : *windows) {
            if (window.title && !window.tabs.empty() && window.tabs.front() == address) return *window.title;
        }
    }
    const auto url = Url::parse(address);
    return url ? url->host().value_or(address) : address;
}

// -- quitting -----------------------------------------------------------------------------------------------

void World::requestQuit(Application& application) {
    const std::string identifier = application.scene.identifier;
    if (fault(FaultKind::quitRefused, identifier)) return;
    const auto unsaved = std::ranges::find_if(windows_, [&](const Window& window) {
        return window.application == identifier && window.state.unsaved;
    });
    if (unsaved == windows_.end()) return end(application);
    application.hidden = false;
    if (!window(identifier, saveQuestion)) openInFront(application, dialogOver(*unsaved));
}

}  // namespace quillo::simulated
