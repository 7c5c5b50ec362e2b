#pragma once

#include <deque>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <variant>

#include "ScriptFailure.h"
#include "script_line.h"

namespace velmora {

/// What a script line gives to the questions, choosers and dialogs of its command, each in the order of asking.
struct CommandInput {
    std::deque<bool> answers;
    std::deque<std::optional<std::filesystem::path>> files; ///< none: Cancel is pressed in a chooser
    std::deque<Assignment> fields;                          ///< set in the dialog that comes up
    int cancelledDialogs = 0;                               ///< in how many dialogs Cancel is pressed
};

/// True for a text that can name a file: not empty, no zero byte.
bool isPath(const std::string& text);

/// Reads the words behind a command: `answer=`, `file=`, `cancel=`, and any other NAME=VALUE as a field.
std::variant<CommandInput, ScriptFailure> parseCommandInput(std::span<const std::string> words);

} // namespace velmora
