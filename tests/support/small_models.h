#pragma once

#include <filesystem>
#include <string>

#include "PatchList.h"

namespace velmora::test {

/// A flat patch of `sections` by `points`, point (n, m) at (m, n, height).
inline Patch flatPatch(int sections, int points, double height = 0.0) {
    Patch patch;
    for (int n = 0; n < sections; ++n) {
        PointList section;
        for (int m = 0; m < points; ++m) {
            section.push_back({static_cast<double>(m), static_cast<double>(n), height});
        }
        patch.push_back(section);
    }
    return patch;
}

/// A folder that is empty at the start and gone at the end.
class TemporaryFolder {
public:
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

private:
    std::filesystem::path path_;
};

/// The whole content of a file; empty when there is none.
std::string fileText(const std::filesystem::path& path);
/// Writes a file of that content.
void writeFileText(const std::filesystem::path& path, const std::string& text);

} // namespace velmora::test
