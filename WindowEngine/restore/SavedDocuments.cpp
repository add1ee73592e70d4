#include "WindowEngine/restore/SavedDocuments.hpp"

#include <algorithm>
#include <utility>

namespace quillo::SavedDocuments {
namespace {

class Collection {
  public:
    explicit Collection(const std::set<std::string>& elsewhere) : known_(elsewhere) {}

    void add(const std::optional<Url>& url, const std::optional<std::string>& title) {
        if (url && url->isFile() && known_.insert(url->standardized().string()).second)
            documents_.push_back({.url = *url, .title = title});
    }
    std::vector<SavedDocument> take() { return std::move(documents_); }

  private:
    std::set<std::string> known_;
    std::vector<SavedDocument> documents_;
};

}  // namespace

std::vector<SavedDocument> of(const ApplicationSnapshot& application,
                              const std::set<std::string>& elsewhere) {
    Collection documents(elsewhere);
    for (const WindowSnapshot& window : application.windows) {
        documents.add(window.documentURL, window.title);
        if (!window.tabs) continue;
        for (const TabSnapshot& tab : *window.tabs) documents.add(tab.documentURL, tab.title);
    }
    return documents.take();
}

bool isIn(const WindowSnapshot& window) {
    const auto isFile = [](const auto& shown) { return shown.documentURL && shown.documentURL->isFile(); };
    return isFile(window) || (window.tabs && std::ranges::any_of(*window.tabs, isFile));
}

std::set<std::string> locations(const AppContext& context) {
    std::set<std::string> result;
    for (const ContextWindow& window : context.windows) {
        for (const Url& url : window.urls) result.insert(url.standardized().string());
    }
    return result;
}

std::vector<SavedDocument> missing(std::vector<SavedDocument> documents,
                                   std::span<const LiveWindowInfo> live) {
    std::set<std::string> addresses, titles;
    for (const LiveWindowInfo& window : live) {
        if (window.documentURL) {
            addresses.insert(window.documentURL->standardized().string());
        } else if (window.title) {
            titles.insert(*window.title);
        }
    }
    std::erase_if(documents, [&](const SavedDocument& document) {
        return addresses.contains(document.url.standardized().string()) ||
               (document.target && addresses.contains(document.target->standardized().string())) ||
               (document.title && titles.contains(*document.title));
    });
    return documents;
}

}  // namespace quillo::SavedDocuments
