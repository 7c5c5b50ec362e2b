#pragma once

#include <string>
#include <vector>

#include "FileRecord.h"

namespace velmora {

/// "Unit of length: inch"; empty for a file without one.
std::string unitText(const FileRead& read);

/// What reading a file came to, line by line, in words for the user: the file, how much it holds of each kind and how
/// much of that was kept, what was changed, what was lost, and what a save over it would do.
std::vector<std::string> reportLines(const FileRead& read);

/// The same of several files, with an empty line between two.
std::vector<std::string> reportLines(const std::vector<FileRead>& reads);

} // namespace velmora
