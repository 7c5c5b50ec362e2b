#include "command_input.h"

namespace velmora {

namespace {

MaybeFailure takeAnswer(const std::string& value, CommandInput& input) {
    if (value != "yes" && value != "no") {
        return ScriptFailure{"an answer cannot be " + inQuotes(value), "give answer=yes or answer=no"};
    }
    input.answers.push_back(value == "yes");
    return std::nullopt;
}

MaybeFailure takeFile(const std::string& value, CommandInput& input) {
    if (!isPath(value)) {
        return ScriptFailure{inQuotes(value) + " is no path", "give file=PATH, or cancel=file to cancel the chooser"};
    }
    input.files.emplace_back(value);
    return std::nullopt;
}

MaybeFailure takeCancel(const std::string& value, CommandInput& input) {
    if (value == "file") {
        input.files.emplace_back(std::nullopt);
    } else if (value == "dialog") {
        ++input.cancelledDialogs;
    } else {
        return ScriptFailure{inQuotes(value) + " cannot be cancelled", "give cancel=file or cancel=dialog"};
    }
    return std::nullopt;
}

MaybeFailure takeWord(const std::string& word, CommandInput& input) {
    auto assignment = asAssignment(word);
    if (!assignment) {
        return ScriptFailure{inQuotes(word) + " gives no value", "write NAME=VALUE behind the command"};
    }
    if (assignment->name == "answer") {
        return takeAnswer(assignment->value, input);
    }
    if (assignment->name == "file") {
        return takeFile(assignment->value, input);
    }
    if (assignment->name == "cancel") {
        return takeCancel(assignment->value, input);
    }
    input.fields.push_back(std::move(*assignment));
    return std::nullopt;
}

} // namespace

bool isPath(const std::string& text) {
    return !text.empty() && text.find('\0') == std::string::npos;
}

std::variant<CommandInput, ScriptFailure> parseCommandInput(std::span<const std::string> words) {
    CommandInput input;
    for (const std::string& word : words) {
        if (auto failure = takeWord(word, input)) {
            return *failure;
        }
    }
    return input;
}

} // namespace velmora
