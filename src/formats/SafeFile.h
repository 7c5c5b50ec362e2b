#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

struct stat;

namespace velmora {

/// A file being saved. What is written goes to a new file without a name in the same folder, and only commit() puts it
/// in the place of the old one; until then, and after any failure, the old file stands as it was. Where a folder has no
/// room for files without a name, the new one has a hidden, random one; those that a killed program left are removed
/// when the next file of their folder is saved.
///
/// An old file's permissions and extended attributes pass to the new one; an old file that may not be written is not
/// replaced. Through a symbolic link the file that it leads to is replaced, and the link stays. What is no regular file
/// (a folder, a device, a pipe) is refused. What of the old file could not pass on is told by notes().
class SafeFile {
public:
    explicit SafeFile(const std::filesystem::path& path);
    /// Without commit() the new file is removed.
    ~SafeFile();
    SafeFile(const SafeFile&) = delete;
    SafeFile& operator=(const SafeFile&) = delete;

    bool isOpen() const { return descriptor_ >= 0; }

    /// False when this or an earlier write failed.
    bool write(std::string_view bytes);

    /// Brings all to the disk and puts it in place. False when that or anything before failed; the new file is then
    /// removed. The file is closed in either case.
    bool commit();

    /// The bytes written so far.
    std::uintmax_t size() const { return size_; }
    /// What the file that is replaced has and the new one has not, as sentences; known once it is open.
    const std::vector<std::string>& notes() const { return notes_; }

private:
    void openBeside();
    bool openHidden(unsigned mode);
    bool takeOver(const struct stat& old);
    bool takeName();
    bool close();
    void discard();
    void removeHidden();

    std::filesystem::path target_;
    std::filesystem::path temporary_; // empty as long as the new file has no name
    int descriptor_ = -1;
    std::uintmax_t size_ = 0;
    bool failed_ = false;
    std::vector<std::string> notes_;
};

} // namespace velmora
