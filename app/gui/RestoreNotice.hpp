// Tells of a restore that has come to its end while nobody sees a window of Quillo's.
#pragma once
#include <QObject>
#include <functional>

#include "app/AppModel.hpp"

namespace quillo {

class RestoreNotice final : public QObject {
    Q_OBJECT

  public:
    /// `windowOpen`: whether the person can read the outcome in a window anyway. All must outlive it.
    RestoreNotice(AppModel& model, Shell& shell, std::function<bool()> windowOpen, QObject* parent = nullptr);

  private:
    void tell();

    AppModel& model_;
    Shell& shell_;
    std::function<bool()> windowOpen_;
    bool told_ = false;  // of the present run
};

}  // namespace quillo
