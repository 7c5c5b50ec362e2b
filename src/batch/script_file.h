#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>

namespace velmora {

/// The next line of a script, which has this number; a byte-order mark in front of the first is none of it. False at
/// the end.
bool readScriptLine(std::istream& script, std::int64_t number, std::string& line);

} // namespace velmora
