#include "ModelFiles.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string_view>

#include "CommandReport.h"

namespace velmora {

namespace {

/// A picture, a journal or a table may take the place of the one before.
bool holdsGeometry(const FileWritten& written) {
    constexpr std::string_view others[] = {"png", "svg", "script", "csv"};
    return std::find(std::begin(others), std::end(others), written.format) == std::end(others);
}

} // namespace

void ModelFiles::note(const CommandReport& report) {
    for (const FileRead& read : report.filesRead) {
        if (paths_.insert(read.path).second) {
            identities_.push_back(read.identity);
        }
    }
    for (const FileWritten& written : report.filesWritten) {
        if (holdsGeometry(written)) {
            paths_.insert(written.path);
        }
    }
}

// A number of the file system is given to another file once its own is gone: it tells a file only together with the
// state of that file, or as that of a path of today.
bool ModelFiles::contains(const std::filesystem::path& path) const {
    const std::optional<FileIdentity> wanted = FileIdentity::of(path);
    if (!wanted) {
        return false;
    }
    const auto standsAt = [&wanted](const std::filesystem::path& known) {
        const std::optional<FileIdentity> there = FileIdentity::of(known);
        return there && there->isSameFile(*wanted);
    };
    const auto isWanted = [&wanted](const FileIdentity& known) { return known.isSameState(*wanted); };
    return std::any_of(identities_.begin(), identities_.end(), isWanted) ||
           std::any_of(paths_.begin(), paths_.end(), standsAt);
}

} // namespace velmora
