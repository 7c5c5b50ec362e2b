#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace velmora::test {

/// A folder that is empty at the start and gone at the end.
class TemporaryFolder {
public:
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(std::string_view name) const { return path_ / name; }
    /// The names in the folder, in alphabetical order.
    std::vector<std::string> names() const;

private:
    std::filesystem::path path_;
};

/// The whole content of a file; empty when there is none.
std::string fileText(const std::filesystem::path& path);
/// Makes a file of that content, and gives its path back. An old one is removed and not cut, for which some file
/// systems wait for the disk.
std::filesystem::path writeFileText(const std::filesystem::path& path, std::string_view text);

} // namespace velmora::test
