// Where every producer of a restore run puts its items: into the report, then to the caller, in one order.
#pragma once
#include <optional>
#include <utility>

#include "WindowEngine/restore/Restore.hpp"

namespace quillo::Restore {

class ItemSink {
  public:
    ItemSink(RestoreReport& report, OnItem onItem) : report_(report), onItem_(std::move(onItem)) {}

    /// A listener that throws is not told again; the report is complete without it.
    void add(RestoreReport::Item item) const {
        report_.items.push_back(std::move(item));
        if (!onItem_) return;
        try {
            onItem_(report_.items.back());
        } catch (...) {
            onItem_ = nullptr;
            throw;
        }
    }

    /// About an application as a whole.
    void add(const ApplicationSnapshot& application, RestoreReport::Status status) const {
        add({.app = application.name,
             .bundleIdentifier = application.bundleIdentifier,
             .title = std::nullopt,
             .status = std::move(status)});
    }

    /// About one saved window of it; `change` of one that is back.
    void add(const ApplicationSnapshot& application, std::int64_t savedIndex, RestoreReport::Status status,
             std::optional<WindowChange> change = std::nullopt) const {
        add({.app = application.name,
             .bundleIdentifier = application.bundleIdentifier,
             .title = application.windows[static_cast<std::size_t>(savedIndex)].title,
             .status = std::move(status),
             .savedIndex = savedIndex,
             .change = change});
    }

    /// About what a window of it showed; it does not stand for the window, which has an item of its own.
    void addAbout(const ApplicationSnapshot& application, const std::optional<std::string>& title,
                  RestoreReport::Status status) const {
        add({.app = application.name,
             .bundleIdentifier = application.bundleIdentifier,
             .title = title,
             .status = std::move(status)});
    }

    /// About the run.
    void add(RestoreReport::Status status) const {
        add({.app = std::string(ownName),
             .bundleIdentifier = std::string(ownBundleIdentifier),
             .title = std::nullopt,
             .status = std::move(status)});
    }

  private:
    RestoreReport& report_;
    mutable OnItem onItem_;
};

}  // namespace quillo::Restore
