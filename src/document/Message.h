#pragma once

#include <string>
#include <utility>

namespace velmora {

/// What a message tells of the work that it belongs to.
enum class Severity {
    Info,       ///< it is done, and nothing was lost
    Warning,    ///< it is done, with a loss or a limit
    Refused,    ///< it cannot be done; the model is as before
    NoModel,    ///< a file gave no model, for the reason told before, or because there is nothing in it
    NotRead,    ///< a file could not be opened or read
    NotWritten, ///< a file could not be written
};

/// "info", "warning", or "error" for all that was not done.
const char* nameOf(Severity severity);

/// A text that stands in the program, with what it tells.
struct MessageText {
    Severity severity;
    const char* text;
};

/// What a box with OK says.
struct Message {
    Severity severity;
    std::string text;

    Message(const MessageText& known) : severity(known.severity), text(known.text) {} // each MessageText is one
    Message(Severity what, std::string words) : severity(what), text(std::move(words)) {}
};

} // namespace velmora
