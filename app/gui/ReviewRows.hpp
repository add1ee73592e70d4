// What a review or a detail lists: applications, below each its windows, and below those the folders or tabs
// that belong to them. Rows of a closed one are not in the list.
#pragma once
#include <QAbstractListModel>
#include <QStringList>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "app/CaptureDraft.hpp"

namespace quillo {

class ReviewRows final : public QAbstractListModel {
    Q_OBJECT

  public:
    enum Role {
        KindRole = Qt::UserRole,  // "app", "window", "folder", "tab", or "more": how many are not listed
        TitleRole,
        DetailRole,      // of an application its counts, of a window its desktop
        IdentifierRole,  // the application's
        IncludedRole,    // by its own tick
        FadedRole,       // what it belongs to is left out, so it is too
        OpenableRole,
        OpenRole,
        LastRole,      // of its application
        ReasonRole,    // a sentence behind the detail; else empty
        WindowKeyRole  // CaptureFilter::windowKey of the window, or of the one it belongs to; else empty
    };
    using Describe = std::function<QString(const ApplicationSnapshot&)>;

    using QAbstractListModel::QAbstractListModel;

    /// Null where nothing is under review. The draft stays until the next call. Applications are open where
    /// there are not too many windows, or as `open` says; `describe` gives their details, else their counts.
    void show(CaptureDraft* draft, const std::optional<std::set<std::string>>& open = {},
              const Describe& describe = {});
    /// What a row says beside its title, and the sentence behind that.
    struct Words {
        QString detail, reason;
        bool operator==(const Words&) const = default;
    };
    /// Asked for each row, with its texts as they are.
    struct Wording {
        Words leftAlone;  // of what is not ticked, or belongs to such
        std::function<Words(const std::string& application)> ofApplication;
        std::function<Words(const std::string& windowKey)> ofWindow;
        std::function<Words(const std::string& application, const std::string& address)> ofAddress;
    };
    /// Other details for the rows that there are; lists stay as they are.
    void reword(const Wording& wording);
    /// Identifiers of the applications that are open.
    std::set<std::string> openApps() const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    /// Ticks or unticks. What is faded is brought back, with all that it belongs to. A row that is not there
    /// is left alone.
    void toggle(int row);
    void setOpen(int row, bool open);
    /// The row of a window by its key, whose application is opened for it; -1 where it is not listed.
    int reveal(const QString& windowKey);
    /// The row of a window, else of its application, as they are; -1 where neither is listed.
    int rowOf(const QString& windowKey) const;
    /// Keys of all windows, in the order of the list.
    QStringList windowKeys() const;
    /// Of the windows that the row stands for.
    QStringList windowKeys(int row) const;

  private:
    static constexpr std::size_t none = static_cast<std::size_t>(-1);
    enum class Kind : std::uint8_t { app, window, folder, tab, more };
    struct Entry {
        Kind kind;
        std::size_t parent;  // in entries_; none for an application
        QString title, detail;
        std::string application;
        std::int64_t window;   // its index, or the number by which the draft knows the window of a location
        std::int64_t address;  // of a location: its place
        std::size_t end = 0;   // one past what is below it
        bool open = true;
        QString reason{};
    };

    void include(const Entry& entry, bool wanted);
    const Url* addressOf(const Entry& entry) const;

    void addApplication(const ApplicationSnapshot& application, QString detail, bool open);
    QString windowKey(std::size_t entry) const;
    std::size_t entryOf(const QString& windowKey) const;  // none where it is not listed
    void addWindow(const ApplicationSnapshot& application, const WindowSnapshot& window, std::size_t parent);
    void addLocations(const ApplicationSnapshot& application, std::size_t place, std::size_t parent);
    void addMore(std::size_t parent);
    bool takeRoom();  // for another row of the application; else it counts as left
    bool included(const Entry& entry) const;
    bool faded(const Entry& entry) const;
    bool reachable(std::size_t entry) const;  // everything above it is open
    bool last(std::size_t row) const;
    void tickChanged();

    CaptureDraft* draft_ = nullptr;
    std::int64_t room_ = 0, left_ = 0;  // of the application being added
    std::vector<Entry> entries_;        // each followed by what is below it
    std::vector<std::size_t> shown_;    // places in entries_
};

}  // namespace quillo
