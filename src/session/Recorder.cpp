#include "Recorder.h"

#include <algorithm>
#include <iterator>
#include <type_traits>

#include "CRegularInput.h"
#include "DialogForm.h"

namespace velmora {

namespace {

std::vector<CommandReport::Field::Value> valuesOf(const DialogForm& form) {
    std::vector<CommandReport::Field::Value> values;
    for (const DialogField& field : form.fields) {
        values.push_back(
            std::visit([](const auto* value) { return CommandReport::Field::Value(*value); }, field.value));
    }
    return values;
}

std::map<std::string, std::string> textsOf(const DialogForm& form) {
    std::map<std::string, std::string> texts;
    for (const DialogField& field : form.fields) {
        texts[field.key] = fieldText(field);
    }
    return texts;
}

CommandReport::Dialog dialogOf(const DialogForm& form, const std::vector<CommandReport::Field::Value>& shown, bool ok) {
    CommandReport::Dialog dialog{form.name, ok, {}, {}};
    const auto taken = valuesOf(form);
    for (std::size_t i = 0; i < form.fields.size(); ++i) {
        dialog.fields.push_back({form.fields[i].key, shown[i], taken[i]});
    }
    for (const FieldChange& change : form.changes) {
        dialog.settings.push_back({change.key, change.text});
    }
    return dialog;
}

void putValues(DialogForm& form, const std::vector<CommandReport::Field::Value>& values) {
    for (std::size_t i = 0; i < form.fields.size(); ++i) {
        std::visit([&](auto* value) { *value = std::get<std::remove_pointer_t<decltype(value)>>(values[i]); },
                   form.fields[i].value);
    }
}

/// Brings each field to its value of `wanted` that can be set as the others stand.
void setWhatCanBe(DialogForm& form, const std::vector<std::string>& wanted) {
    for (std::size_t i = 0; i < form.fields.size(); ++i) {
        if (fieldText(form.fields[i]) != wanted[i]) {
            setField(form, form.fields[i].key, wanted[i]);
        }
    }
}

/// The steps that bring a dialog to what was taken, from fields that stand otherwise: those of the person, then what is
/// left. One field can turn another one on, so what is left is gone through as often as that may help.
void noteStepsFrom(const std::map<std::string, std::string>& start, const DialogForm& taken, DialogForm shown,
                   const std::vector<CommandReport::Field::Value>& shownValues, CommandReport::Dialog& dialog) {
    constexpr int rounds = 3;
    const auto takenValues = valuesOf(taken);
    std::vector<std::string> wanted;
    std::transform(taken.fields.begin(), taken.fields.end(), std::back_inserter(wanted), fieldText);
    putValues(shown, shownValues);
    for (const auto& [key, text] : start) {
        putFieldText(*shown.find(key), text);
    }
    shown.changes.clear();
    openDialog(shown);
    for (const FieldChange& change : taken.changes) {
        setField(shown, change.key, change.text);
    }
    for (int round = 0; round < rounds; ++round) {
        setWhatCanBe(shown, wanted);
    }
    dialog.settings.clear();
    for (const FieldChange& change : shown.changes) {
        dialog.settings.push_back({change.key, change.text});
    }
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        if (fieldText(shown.fields[i]) != wanted[i] && !shown.fields[i].readOnly) {
            dialog.unreached.push_back({shown.fields[i].key, fieldText(shown.fields[i])});
        }
    }
    putValues(shown, takenValues);
}

} // namespace

template <class Entry>
void Recorder::note(std::vector<Entry> CommandReport::*list, const Entry& entry) {
    for (CommandReport* report : open_) {
        (report->*list).push_back(entry);
    }
}

void Recorder::note(bool CommandReport::*flag) {
    for (CommandReport* report : open_) {
        report->*flag = true;
    }
}

bool Recorder::gaveUp() const {
    if (open_.empty()) {
        return false;
    }
    const Outcome outcome = open_.back()->outcome();
    return outcome == Outcome::Cancelled || outcome == Outcome::Failed;
}

// What only tells is noted first, what asks once the answer is there: the window may do other work meanwhile.

void Recorder::showMessage(const Message& message) {
    note(&CommandReport::messages, message);
    person_->showMessage(message);
}

// It is no question: a script that does the same again is not asked.
bool Recorder::warn(const Message& message) {
    const bool goesOn = person_->warn(message);
    note(&CommandReport::messages, message);
    if (!goesOn) {
        note(&CommandReport::stopped);
    }
    return goesOn;
}

bool Recorder::ask(const std::string& text) {
    const bool yes = person_->ask(text);
    note(&CommandReport::questions, {text, yes ? Answer::Yes : Answer::No});
    return yes;
}

Answer Recorder::askOrNone(const std::string& text) {
    const Answer answer = person_->askOrNone(text);
    note(&CommandReport::questions, {text, answer});
    return answer;
}

void Recorder::showStatus(const std::string& text) {
    note(&CommandReport::statuses, text);
    person_->showStatus(text);
}

void Recorder::showTitle(const std::string& title) {
    note(&CommandReport::titles, title);
    person_->showTitle(title);
}

bool Recorder::showDialog(DialogForm& form) {
    const auto shown = valuesOf(form);
    const auto start = otherStart_ ? otherStart_(form) : std::map<std::string, std::string>();
    const DialogForm opened = form;
    const auto shownTexts = textsOf(form);
    const bool ok = person_->showDialog(form);
    CommandReport::Dialog dialog = dialogOf(form, shown, ok);
    dialog.shownTexts = shownTexts;
    dialog.takenTexts = textsOf(form);
    if (ok && !start.empty()) {
        noteStepsFrom(start, form, opened, shown, dialog);
    }
    note(&CommandReport::dialogs, dialog);
    return ok;
}

bool Recorder::showRegularInput(CRegularInput& table) {
    const bool ok = person_->showRegularInput(table);
    CommandReport::Dialog dialog{"CRegularInput", ok, {}, {}};
    for (const std::string& action : table.actions) {
        dialog.settings.push_back({"do", action});
    }
    note(&CommandReport::dialogs, dialog);
    return ok;
}

std::vector<std::filesystem::path> Recorder::chooseFiles(const FileRequest& request) {
    auto paths = person_->chooseFiles(request);
    note(&CommandReport::choosers, {request.command, request.mode, paths});
    return paths;
}

bool Recorder::wantsToStop() {
    const bool stop = person_->wantsToStop();
    if (stop) {
        note(&CommandReport::stopped);
    }
    return stop;
}

void Recorder::tellFileRead(const FileRead& read) {
    note(&CommandReport::filesRead, read);
    person_->tellFileRead(read);
}

void Recorder::tellAgreed(const std::string& text) {
    note(&CommandReport::questions, {text, Answer::Yes});
    person_->tellAgreed(text);
}

void Recorder::tellAct(const Act& act) {
    if (onAct_) {
        onAct_(act);
    }
    person_->tellAct(act);
}

void Recorder::tellFileWritten(const FileWritten& written) {
    note(&CommandReport::filesWritten, written);
    person_->tellFileWritten(written);
}

} // namespace velmora
