#include "app/gui/QuestionPresenter.hpp"

#include "WindowEngine/restore/ConsequenceWords.hpp"
#include "WindowEngine/restore/RestoreScope.hpp"
#include "WindowEngine/support/Text.hpp"
#include "app/gui/Words.hpp"

namespace quillo {
namespace {

constexpr std::size_t nameCharacters = 80;

QString titleOf(const ResumeQuestion& question) {
    QString name = qt(text::shortenedInMiddle(text::printable(question.name), nameCharacters));
    if (!question.reason) return "Resume “" + name + "”?";
    switch (*question.reason) {
        case ReasonToAsk::notSavedHere:
            return "“" + name + "” was not saved on this computer";
        case ReasonToAsk::beyondLimits:
            return "“" + name + "” is unusually large";
    }
    return name;
}

/// Empty where the person asks.
QString askerOf(const ResumeQuestion& question) {
    switch (question.asker) {
        case Asker::person:
            return {};
        case Asker::link:
            return QStringLiteral("A link that was opened asks for it. ");
        case Asker::program:
            return QStringLiteral("Another program asks for it. ");
        case Asker::itself:
            return QStringLiteral("It is set to come back by itself. ");
    }
    return {};
}

QString textOf(const ResumeQuestion& question, bool changesNothing) {
    if (!question.reason)
        return changesNothing ? QStringLiteral("Resuming it only moves windows that are open.")
                              : QStringLiteral("Resuming it does what is listed here, and moves windows.");
    switch (*question.reason) {
        case ReasonToAsk::notSavedHere:
            return changesNothing ? QStringLiteral(
                                        "Its file comes from elsewhere, or was changed. Resuming it only "
                                        "moves windows that are open.")
                                  : QStringLiteral(
                                        "Its file comes from elsewhere, or was changed. Resuming it does "
                                        "what is listed here, and moves windows. Resume it only if you "
                                        "trust where it comes from.");
        case ReasonToAsk::beyondLimits:
            return QStringLiteral(
                       "It holds more than %1 windows and documents of one application, or more than %2 "
                       "in all. Resuming it does all that is listed here.")
                .arg(Restore::mostOfOneApplication)
                .arg(Restore::mostInAll);
    }
    return {};
}

QVariantList groupsOf(const Consequences& consequences) {
    QVariantList all;
    for (const ConsequenceGroup& group : consequenceGroups(consequences)) {
        QStringList lines;
        for (const std::string& line : group.lines) lines << qt(line);
        if (group.more > 0) lines << "and " + number(static_cast<std::int64_t>(group.more)) + " more";
        all << QVariantMap{{"heading", qt(group.heading)}, {"lines", lines}};
    }
    return all;
}

}  // namespace

QuestionPresenter::QuestionPresenter(AppModel& model, QObject* parent) : QObject(parent), model_(model) {
    connect(&model, &AppModel::questionChanged, this, &QuestionPresenter::follow);
    follow();
}

/// What was asked stays until something else is, so that a question that fades out keeps its words.
void QuestionPresenter::follow() {
    if (const std::optional<ResumeQuestion>& question = model_.question()) {
        title_ = titleOf(*question);
        groups_ = groupsOf(question->consequences);
        text_ = askerOf(*question) + textOf(*question, groups_.isEmpty());
        strange_ = question->reason.has_value();
    }
    Q_EMIT changed();
}

}  // namespace quillo
