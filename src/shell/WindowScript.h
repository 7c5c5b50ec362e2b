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

/// Runs a script on the session of the window: its lines answer in place of `person`, whom only status, title and
/// progress go to. It ends at the first line that cannot be carried out; none when all were.
std::optional<ScriptStop> runWindowScript(Session& session, UserInterface& person, const std::filesystem::path& script);

} // namespace velmora
