#include "BatchUserInterface.h"

#include <algorithm>

#include "file_events.h"
#include "table_actions.h"

namespace velmora {

namespace {

/// A refusal as a clause: it is followed by the remedy.
std::string withoutFullStop(std::string text) {
    if (!text.empty() && text.back() == '.') {
        text.pop_back();
    }
    return text;
}

bool canBeSet(const DialogField& field) {
    return field.on && !field.readOnly;
}

bool asksToOverwrite(const std::string& question) {
    return question.ends_with("Overwrite it?");
}

std::string remedyFor(const DialogForm& form, const std::string& name) {
    const DialogField* field = form.find(name);
    if (field != nullptr && canBeSet(*field)) {
        return "give another value, or leave the field out";
    }
    std::string names;
    for (const DialogField& live : form.fields) {
        if (canBeSet(live)) {
            names += ' ' + live.key;
        }
    }
    return names.empty() ? "no field can be set here" : "the fields that can be set here:" + names;
}

} // namespace

void BatchUserInterface::beginLine(CommandInput input) {
    input_ = std::move(input);
    failure_.reset();
    refused_ = false;
    talking_ = true;
}

MaybeFailure BatchUserInterface::endLine() const {
    if (failure_) {
        return failure_;
    }
    if (refused_ && input_.answers.empty() && input_.cancelledDialogs == 0) {
        return std::nullopt; // a command that refuses asks for no more: what it was given beyond does not matter
    }
    std::string what;
    const bool agreesAlready = overwrites_ && input_.answers == std::deque<bool>{true};
    if (!input_.answers.empty() && !agreesAlready) {
        what = input_.answers.front() ? "answer=yes" : "answer=no";
    } else if (!input_.files.empty()) {
        what = input_.files.front() ? "file=" + input_.files.front()->string() : "cancel=file";
    } else if (!input_.fields.empty()) {
        what = input_.fields.front().name + '=' + input_.fields.front().value;
    } else if (input_.cancelledDialogs > 0) {
        what = "cancel=dialog";
    } else {
        return std::nullopt;
    }
    return ScriptFailure{"nothing asked for " + inQuotes(what), "leave it out"};
}

void BatchUserInterface::say(const Json& event) {
    if (talking_) {
        printer_.print(event);
    }
}

void BatchUserInterface::sayText(const char* kind, const std::string& text) {
    say({{"event", kind}, {"text", text}});
}

void BatchUserInterface::fail(std::string cause, std::string remedy) {
    if (!failure_) {
        failure_ = ScriptFailure{std::move(cause), std::move(remedy)};
        talking_ = false;
    }
}

void BatchUserInterface::showMessage(const Message& message) {
    refused_ = refused_ || message.severity == Severity::Refused;
    say({{"event", "message"}, {"text", message.text}, {"severity", nameOf(message.severity)}});
}

void BatchUserInterface::showStatus(const std::string& text) {
    sayText("status", text);
}

void BatchUserInterface::showTitle(const std::string& title) {
    sayText("title", title);
}

void BatchUserInterface::addRecentFile(const std::filesystem::path& path) {
    say({{"event", "recent"}, {"path", path.string()}});
}

void BatchUserInterface::tellFileRead(const FileRead& read) {
    say(readEvent(read));
}

void BatchUserInterface::tellFileWritten(const FileWritten& written) {
    say(writtenEvent(written));
}

void BatchUserInterface::showProgress(double fraction) {
    if (listener_.progress) {
        listener_.progress(fraction);
    }
}

std::optional<bool> BatchUserInterface::takeAnswer(const std::string& question) {
    if (!input_.answers.empty()) {
        const bool yes = input_.answers.front();
        input_.answers.pop_front();
        return yes;
    }
    if (overwrites_ && asksToOverwrite(question)) {
        return true;
    }
    return listener_.answer ? std::optional(listener_.answer(question)) : std::nullopt;
}

bool BatchUserInterface::ask(const std::string& text) {
    const std::optional<bool> yes = failure_ ? std::nullopt : takeAnswer(text);
    if (!yes) {
        fail("the question " + inQuotes(text) + " has no answer", "give answer=yes or answer=no");
        return false;
    }
    say({{"event", "question"}, {"text", text}, {"answer", *yes ? "yes" : "no"}});
    return *yes;
}

std::vector<std::filesystem::path> BatchUserInterface::takeFiles(bool multiple) {
    std::vector<std::filesystem::path> paths;
    if (!input_.files.front()) {
        input_.files.pop_front();
        return paths;
    }
    do {
        // A chooser gives no file twice.
        if (std::find(paths.begin(), paths.end(), *input_.files.front()) == paths.end()) {
            paths.push_back(*input_.files.front());
        }
        input_.files.pop_front();
    } while (multiple && !input_.files.empty() && input_.files.front());
    return paths;
}

std::vector<std::filesystem::path> BatchUserInterface::chooseFiles(const FileRequest& request) {
    if (failure_ || input_.files.empty()) {
        fail(std::string("the chooser ") + inQuotes(captionOf(request.mode)) + " has no file",
             "give file=PATH, or cancel=file to cancel it");
        return {};
    }
    std::vector<std::filesystem::path> paths = takeFiles(request.multiple);
    Json extensions = Json::array();
    for (const FileType& type : request.types) {
        extensions.push_back(type.extension);
    }
    Json chosen = Json::array();
    for (const std::filesystem::path& path : paths) {
        chosen.push_back(path.string());
    }
    say({{"event", "chooser"},
         {"mode", captionOf(request.mode)},
         {"extensions", extensions},
         {"proposed", request.proposed.string()},
         {"paths", chosen}});
    return paths;
}

bool BatchUserInterface::setFields(DialogForm& form) {
    for (; !input_.fields.empty(); input_.fields.pop_front()) {
        const Assignment& field = input_.fields.front();
        if (const auto refusal = setField(form, field.name, field.value)) {
            fail("the dialog " + inQuotes(form.name) + " refuses " + inQuotes(field.name + '=' + field.value) + ": " +
                     withoutFullStop(refusal->message),
                 remedyFor(form, field.name));
            return false;
        }
    }
    return true;
}

void BatchUserInterface::sayDialog(const DialogForm& form, const char* result) {
    say({{"event", "dialog"},
         {"name", form.name},
         {"title", form.title},
         {"result", result},
         {"fields", fieldsValue(form)}});
}

bool BatchUserInterface::cancelsDialog(const DialogForm& form) {
    if (input_.cancelledDialogs == 0) {
        return false;
    }
    --input_.cancelledDialogs;
    sayDialog(form, "cancel");
    return true;
}

bool BatchUserInterface::showDialog(DialogForm& form) {
    if (failure_ || !setFields(form)) {
        return false;
    }
    if (cancelsDialog(form)) {
        return false;
    }
    if (const auto refusal = acceptDialog(form)) {
        if (!refusal->message.empty()) {
            showMessage({Severity::Refused, refusal->message});
        }
        fail("the dialog " + inQuotes(form.name) + " stays open after OK",
             refusal->key.empty() ? "change its fields"
                                  : "give the field " + inQuotes(refusal->key) + " another value");
        return false;
    }
    sayDialog(form, "ok");
    return true;
}

bool BatchUserInterface::performActions(CRegularInput& table) {
    for (; !input_.fields.empty(); input_.fields.pop_front()) {
        const Assignment& field = input_.fields.front();
        if (field.name != "do") {
            fail("the dialog \"CRegularInput\" has no field " + inQuotes(field.name), "give its actions as do=ACTION");
            return false;
        }
        if (const auto failure = performTableAction(table, field.value)) {
            fail(failure->cause, failure->remedy);
            return false;
        }
    }
    return true;
}

bool BatchUserInterface::showRegularInput(CRegularInput& table) {
    if (failure_ || !performActions(table)) {
        return false;
    }
    const DialogForm form = describe(table);
    if (cancelsDialog(form)) {
        return false;
    }
    sayDialog(form, "ok");
    return true;
}

} // namespace velmora
