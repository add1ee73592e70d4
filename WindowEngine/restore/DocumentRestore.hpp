// Documents of an application that no window shows any more.
#pragma once
#include <cstddef>
#include <map>
#include <vector>

#include "WindowEngine/restore/ApplicationRestore.hpp"
#include "WindowEngine/restore/SavedDocuments.hpp"

namespace quillo::Restore {

/// Where a saved document stands in a run.
struct DocumentPlan {
    std::vector<SavedDocument> open;     // to be handed to the application: their targets
    std::vector<SavedDocument> refused;  // each with the reason
};

/// What may be handed to the application for a saved document; refused with a reason that names nothing.
Result<Url> documentTarget(const Platform& platform, const ApplicationSnapshot& application,
                           const Options& options, const Url& saved);

/// The documents that are the documents' business: not those in folders that an integration brings back.
/// `live` are the application's windows.
DocumentPlan planDocuments(const Platform& platform, const ApplicationSnapshot& application,
                           const Options& options, std::span<const LiveWindowInfo> live);

/// Reports what is not to be opened.
void reportRefused(const ApplicationRestore& restore, const DocumentPlan& plan);

/// Takes from documents that are to travel with a launch those that follow it: all but the first, where more
/// than one window had documents and the application would not open one for each.
std::vector<SavedDocument> takeFollowing(const ApplicationRestore& restore,
                                         std::vector<SavedDocument>& documents);

/// Opens them one by one, so that one that is refused keeps no other from opening, into new windows where it
/// would make tabs of them; reports how many were asked for, and waits until they are shown.
Task<void> openDocuments(ApplicationRestore& restore, std::vector<SavedDocument> documents);

/// What an application shows that is about to be asked for documents.
struct ShownBefore {
    std::size_t windows = 0;                          // it has
    std::map<WindowNumber, SavedDocument> documents;  // saved ones, by their windows
};

/// Waits until windows have shown documents that the application was asked for: until `deadline`, and 5 s at
/// most after one of them did. Where no window of it names a document, as many new windows as documents will
/// do. What did not appear is added to what is `late`. A document whose window another one took comes to the
/// front there again, and the other one has a note. Whether all came, each without taking another one's
/// window.
Task<bool> awaitDocuments(ApplicationRestore& restore, std::vector<SavedDocument> documents,
                          ShownBefore before, TimePoint deadline);

/// Reports what is late and still shown by no window, once the windows are in place.
void reportLateDocuments(const ApplicationRestore& restore);

}  // namespace quillo::Restore
