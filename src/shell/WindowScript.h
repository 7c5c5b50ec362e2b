#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace velmora {

class Session;
class UserInterface;

/// Where a script ended that could not go on.
struct ScriptStop {
    std::int64_t number = 0; ///< of the line, from 1; 0 when the script could not be read
    std::string line;
    std::string cause; ///< and what to do about it
};

/// How a script in the window ended.
struct WindowScriptEnd {
    std::optional<ScriptStop> stop; ///< none when all lines were carried out
    bool leaves = false;            ///< the program is to end: what there was to ask was asked
};

/// Runs a script on the session of the window: its lines answer in place of `person`, whom only status, title and
/// progress go to. It ends at the first line that cannot be carried out, and at one that leaves the program.
WindowScriptEnd runWindowScript(Session& session, UserInterface& person, const std::filesystem::path& script);

} // namespace velmora
