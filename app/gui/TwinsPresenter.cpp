#include "app/gui/TwinsPresenter.hpp"

#include "WindowEngine/support/Text.hpp"
#include "app/gui/Words.hpp"

namespace quillo {
namespace {

constexpr std::size_t labelCharacters = 80;
constexpr std::size_t mostApplications = 4;

QString named(const std::string& name) {
    return qt(text::shortenedInMiddle(text::printable(name), labelCharacters));
}

QString textOf(const TwinQuestion& question) {
    QStringList applications;
    for (const std::string& name : question.applications) {
        if (static_cast<std::size_t>(applications.size()) == mostApplications) {
            applications << "others";
            break;
        }
        applications << named(name);
    }
    const QString what =
        applications.isEmpty() ? "an empty screen" : "the windows of " + applications.join(", ");
    return QStringLiteral(
               "“%1” was saved with screens of one make, and nothing tells which is which now. Each shows a "
               "number: where should %2 go? You are asked only once.")
        .arg(named(question.workspace), what);
}

}  // namespace

TwinsPresenter::TwinsPresenter(AppModel& model, QObject* parent) : QObject(parent), model_(model) {
    connect(&model, &AppModel::twinQuestionChanged, this, &TwinsPresenter::follow);
    follow();
}

/// What was asked stays until something else is, so that a question that fades out keeps its words.
void TwinsPresenter::follow() {
    if (const std::optional<TwinQuestion>& question = model_.twinQuestion()) {
        ++serial_;
        text_ = textOf(*question);
        choices_.clear();
        for (std::size_t i = 1; i <= question->screens; ++i) choices_ << QStringLiteral("Screen %1").arg(i);
    }
    Q_EMIT changed();
}

void TwinsPresenter::answer(int choice) {
    if (choice >= 0) model_.answerTwin(static_cast<std::size_t>(choice));
}

void TwinsPresenter::cancel(int serial) {
    if (serial == serial_) model_.answerTwin(std::nullopt);
}

}  // namespace quillo
