#include "CommandReport.h"

#include <algorithm>

#include "messages.h"

namespace velmora {

namespace {

bool isCancelled(const CommandReport::Question& question) {
    // To leave without saving is an answer like the other: the program goes on to end.
    return question.answer == Answer::None ||
           (question.answer == Answer::No && question.text != message::saveBeforeExit);
}

Outcome outcomeOf(const FileRead& read) {
    return keptNothing(read) ? Outcome::Failed : read.complete ? Outcome::Ok : Outcome::Partial;
}

Outcome outcomeOf(const std::vector<Message>& messages) {
    Outcome worst = Outcome::Ok;
    for (const Message& message : messages) {
        switch (message.severity) {
        case Severity::Info:
        case Severity::Warning:
            break;
        case Severity::NoModel:
            // A type that is not taken was told before, and is no failure of the file.
            if (worst == Outcome::Ok) {
                worst = Outcome::Failed;
            }
            break;
        case Severity::Refused:
            worst = std::max(worst, Outcome::Refused);
            break;
        case Severity::NotRead:
        case Severity::NotWritten:
            worst = Outcome::Failed;
            break;
        }
    }
    return worst;
}

} // namespace

const char* nameOf(Outcome outcome) {
    switch (outcome) {
    case Outcome::Ok:
        return "ok";
    case Outcome::Cancelled:
        return "cancelled";
    case Outcome::Partial:
        return "partial";
    case Outcome::Refused:
        return "refused";
    case Outcome::Failed:
        break;
    }
    return "failed";
}

bool keptNothing(const FileRead& read) {
    // Names of variables are no geometry.
    return std::all_of(read.kept.begin(), read.kept.end(),
                       [](const auto& count) { return count.second == 0 || count.first == "variables"; });
}

Outcome CommandReport::outcome() const {
    Outcome worst = std::max(outcomeOf(messages), off ? Outcome::Refused : Outcome::Ok);
    for (const FileRead& read : filesRead) {
        worst = std::max(worst, outcomeOf(read));
    }
    const bool cancelled =
        stopped || std::any_of(questions.begin(), questions.end(), isCancelled) ||
        std::any_of(dialogs.begin(), dialogs.end(), [](const Dialog& d) { return !d.ok; }) ||
        std::any_of(choosers.begin(), choosers.end(), [](const Chooser& c) { return c.paths.empty(); });
    if (cancelled) {
        worst = std::max(worst, Outcome::Cancelled);
    }
    // A save that was declined is an answer; any other one that did not come about is a failure.
    return stayed && worst != Outcome::Cancelled ? Outcome::Failed : worst;
}

bool CommandReport::writeFailed() const {
    return stayed || std::any_of(messages.begin(), messages.end(),
                                 [](const Message& m) { return m.severity == Severity::NotWritten; });
}

} // namespace velmora
