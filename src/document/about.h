#pragma once

#include <string>

namespace velmora {

/// The program's version: "0.1.0".
const char* programVersion();

/// What the About box says: the program's name and version, an empty line, and three lines of the machine's state:
/// "Physical memory:", "Available memory:" and "Free disk space:" (of the root folder's disk), each in whole
/// mebibytes with the label "MB". A number that the system does not tell is shown as 0.
std::string aboutText();

} // namespace velmora
