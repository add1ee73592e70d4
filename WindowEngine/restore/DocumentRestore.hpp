// Documents of an application that no window shows any more.
#pragma once
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

/// Opens them one by one, so that one that is refused keeps no other from opening; reports how many were
/// asked for, and waits for their windows.
Task<void> openDocuments(ApplicationRestore& restore, std::vector<SavedDocument> documents);

/// Waits until windows show documents that the application was asked for, when it had `windowsBefore`
/// windows: for the rest of its launch timeout, 5 s at most unless they travelled with the launch. Where no
/// window of it names a document, as many new windows as documents will do. What did not appear is `late`.
Task<void> awaitDocuments(ApplicationRestore& restore, std::vector<SavedDocument> documents,
                          std::size_t windowsBefore);

/// Reports what is late and still shown by no window, once the windows are in place.
void reportLateDocuments(const ApplicationRestore& restore);

}  // namespace quillo::Restore
