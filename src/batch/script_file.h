#pragma once

#include <cstdint>
#include <filesystem>
#include <iosfwd>
#include <string>

namespace velmora {

/// The next line of a script, which has this number; a byte-order mark in front of the first is none of it. False at
/// the end.
bool readScriptLine(std::istream& script, std::int64_t number, std::string& line);

/// Whether the system could not read the script on, which is no end of it.
bool readingFailed(const std::istream& script);

/// Whether a script can come from there: from files, pipes and terminals, and from the device that is always empty.
/// Other devices give bytes without an end or a line.
bool canHoldScript(const std::filesystem::path& path);
/// The same of a file that is open under this number.
bool canHoldScript(int descriptor);

} // namespace velmora
