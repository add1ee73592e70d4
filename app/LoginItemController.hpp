// "Open Quillo at login": on by itself once, for a fresh installation, and never against the person's choice.
#pragma once
#include <QObject>
#include <functional>
#include <optional>
#include <string>

#include "platform/services/LoginItemService.hpp"
#include "platform/services/UserDefaults.hpp"

namespace quillo {

class LoginItemController final : public QObject {
    Q_OBJECT

  public:
    struct Operations {
        std::function<LoginItemStatus()> readStatus;
        std::function<Result<void>()> registerItem;
        std::function<Result<void>()> unregisterItem;
    };
    static Operations operations(LoginItemService& service);

    /// Reads the status at once.
    LoginItemController(UserDefaults& defaults, Operations operations, QObject* parent = nullptr);

    LoginItemStatus status() const { return status_; }
    /// The last failure, for the person; absent after a success.
    const std::optional<std::string>& errorMessage() const { return errorMessage_; }

    /// At every start. Switches the item on where this is the first start of a fresh installation.
    void configureDefault();
    void setEnabled(bool on);

  Q_SIGNALS:
    void changed();

  private:
    UserDefaults& defaults_;
    Operations operations_;
    LoginItemStatus status_;
    std::optional<std::string> errorMessage_;
};

}  // namespace quillo
