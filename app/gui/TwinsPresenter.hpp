// Which of several identical displays is meant, as the person is asked.
#pragma once
#include <QObject>
#include <QStringList>

#include "app/AppModel.hpp"

namespace quillo {

class TwinsPresenter final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool shown READ shown NOTIFY changed)
    Q_PROPERTY(int serial READ serial NOTIFY changed)  // of the question, another for each
    Q_PROPERTY(QString text READ text NOTIFY changed)
    Q_PROPERTY(QStringList choices READ choices NOTIFY changed)

  public:
    /// The model must outlive it.
    explicit TwinsPresenter(AppModel& model, QObject* parent = nullptr);

    bool shown() const { return model_.twinQuestion().has_value(); }
    int serial() const { return serial_; }
    QString text() const { return text_; }
    QStringList choices() const { return choices_; }

    Q_INVOKABLE void answer(int choice);
    /// Of the question with this serial; a later one stays.
    Q_INVOKABLE void cancel(int serial);

  Q_SIGNALS:
    void changed();

  private:
    void follow();

    AppModel& model_;
    int serial_ = 0;
    QString text_;
    QStringList choices_;
};

}  // namespace quillo
