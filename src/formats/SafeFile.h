#pragma once

#include <filesystem>
#include <string_view>

namespace velmora {

/// A file being saved. What is written goes to a new file of a random name in the same folder, and only commit()
/// puts it in the place of the old one; until then, and after any failure, the old file stands as it was.
///
/// An old file's permissions pass to the new one; an old file that may not be written is not replaced. Through a
/// symbolic link the file that it leads to is replaced, and the link stays. Something that is no regular file (a
/// device, a pipe with a reader) is written in place, and a folder is refused.
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

private:
    void openBeside();
    void openInPlace();
    bool close();
    void discard();

    std::filesystem::path target_;
    std::filesystem::path temporary_; // empty when the target is written in place
    int descriptor_ = -1;
    bool failed_ = false;
};

} // namespace velmora
