#pragma once

#include <filesystem>
#include <set>
#include <vector>

#include "FileIdentity.h"

namespace velmora {

struct CommandReport;

/// The files that a session read geometry from or wrote it to. What else it writes, pictures and journals, does not
/// take their place.
class ModelFiles {
public:
    /// Takes the files that were read and written by a piece of work.
    void note(const CommandReport& report);

    /// Whether the file at `path` is one of them, by any name; never of a file that is not there.
    bool contains(const std::filesystem::path& path) const;

private:
    std::set<std::filesystem::path> paths_;
    /// As they stood when they were read, for those that were given another name since.
    std::vector<FileIdentity> identities_;
};

} // namespace velmora
