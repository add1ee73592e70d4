// What a person is asked before a workspace is brought back that was not saved on this computer, or that
// somebody else asks for.
#pragma once
#include <QObject>
#include <QStringList>
#include <QVariantList>

#include "app/AppModel.hpp"

namespace quillo {

class QuestionPresenter final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool shown READ shown NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString text READ text NOTIFY changed)
    /// Whether there is more to be wary of than who asks.
    Q_PROPERTY(bool strange READ strange NOTIFY changed)
    /// One for each kind of consequence, the most harmful first: heading, lines.
    Q_PROPERTY(QVariantList groups READ groups NOTIFY changed)

  public:
    /// The model must outlive it.
    explicit QuestionPresenter(AppModel& model, QObject* parent = nullptr);

    bool shown() const { return model_.question().has_value(); }
    QString title() const { return title_; }
    QString text() const { return text_; }
    bool strange() const { return strange_; }
    QVariantList groups() const { return groups_; }

    Q_INVOKABLE void answer(bool resume) { model_.answerQuestion(resume); }

  Q_SIGNALS:
    void changed();

  private:
    void follow();

    AppModel& model_;
    QString title_, text_;
    bool strange_ = true;
    QVariantList groups_;
};

}  // namespace quillo
