#include "WindowEngine/SavedDocuments.hpp"

#include <algorithm>
#include <utility>

namespace quillo::SavedDocuments {
namespace {

class Collection {
  public:
    explicit Collection(const std::set<std::string>& elsewhere) : known_(elsewhere) {}

    void add(const std::optional<Url>& url, const std::optional<std::string>& title) {
        if (url && url->isFile() && known_.insert(url->standardized().string()).second)
            documents_.push_back({*url, title});
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

std::set<std::string> locations(const AppContext& context) {
    std::set<std::string> result;
    for (const ContextWindow& window : context.windows) {
        for (const Url& url : window.urls) result.insert(url.standardized().string());
    }
    return result;
}

bool isShown(const SavedDocument& document, std::span<const LiveWindowInfo> live) {
    const Url wanted = document.url.standardized();
    return std::ranges::any_of(live, [&](const LiveWindowInfo& window) {
        if (window.documentURL) return window.documentURL->standardized() == wanted;
        return document.title && window.title == document.title;
    });
}

std::vector<SavedDocument> missing(std::vector<SavedDocument> documents,
                                   std::span<const LiveWindowInfo> live) {
    std::erase_if(documents, [&](const SavedDocument& document) { return isShown(document, live); });
    return documents;
}

}  // namespace quillo::SavedDocuments
