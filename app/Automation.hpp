// What other programs may ask of Quillo and hear from it, whichever way they speak. Names of workspaces,
// identifiers and counts pass through here, and nothing else that a workspace holds: who listens may be a
// program that is not to know which windows, documents and sites a person has open.
#pragma once
#include <QObject>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "WindowEngine/library/LibraryChanges.hpp"
#include "app/AppModel.hpp"

namespace quillo {

class Automation final : public QObject {
    Q_OBJECT

  public:
    /// The model must outlive it.
    explicit Automation(AppModel& model, QObject* parent = nullptr);

    /// Names and counts, in the order of a report.
    using Counts = std::vector<std::pair<std::string, std::int64_t>>;

    /// Newest first.
    const std::vector<LibraryEntry>& list() const { return known_; }
    /// Its identifier, or why it was not saved.
    void save(const std::string& name, AppModel::Answer<Uuid> answer);
    enum class Begun : std::uint8_t { started, waiting };  // for the person's answer, or for what goes on
    /// Asks the person first, unless they have allowed it. Refused while they are at work with Quillo:
    /// nothing comes forward.
    Result<Begun> restore(std::string_view which);
    void plan(std::string_view which, AppModel::Answer<Counts> answer);

  Q_SIGNALS:
    void restoreStarted(const quillo::Uuid& id, const std::string& name, std::int64_t windows);
    void restoreProgressed(const quillo::Uuid& id, std::int64_t windowsDone, std::int64_t windows);
    void restoreEnded(const quillo::Uuid& id, const std::string& name,
                      const quillo::Automation::Counts& totals, bool cancelled);
    /// Of kinds `saved`, `renamed` and `deleted`.
    void libraryChanged(const quillo::LibraryChange& change);

  private:
    void followLibrary();
    void followRestore();
    void tellProgress(const RestoreRun& run);

    AppModel& model_;
    std::vector<LibraryEntry> known_;
    const RestoreRun* followed_ = nullptr;  // while it runs
};

}  // namespace quillo
