// Links that the system hands to the running application as events, as a Mac does, rather than as arguments.
#pragma once
#include <QObject>
#include <functional>

#include "app/gui/SingleInstance.hpp"

namespace quillo {

class OpenedAddresses final : public QObject {
    Q_OBJECT

  public:
    /// `opened` is called for each as long as this lives; other things that are opened go their usual way.
    OpenedAddresses(QObject& application, std::function<void(const Launch&)> opened);

  private:
    bool eventFilter(QObject* watched, QEvent* event) override;

    std::function<void(const Launch&)> opened_;
};

}  // namespace quillo
