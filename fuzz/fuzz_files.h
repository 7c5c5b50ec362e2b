#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <sys/mman.h>
#include <unistd.h>

namespace velmora::fuzz {

/// A file in memory that holds the input and can be opened by its path.
class InputFile {
public:
    InputFile(const std::uint8_t* data, std::size_t size) : descriptor_(memfd_create("input", MFD_CLOEXEC)) {
        if (descriptor_ < 0 || write(descriptor_, data, size) != static_cast<ssize_t>(size)) {
            std::abort();
        }
    }
    ~InputFile() { close(descriptor_); }
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    std::filesystem::path path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

private:
    int descriptor_;
};

/// A folder for what a target saves, removed at the end of the run. It lies in memory where that can be: each file that
/// is saved waits for its disk, thousands of times the time that the input takes.
class OutputFolder {
public:
    OutputFolder() {
        std::string name = (parent() / "velmora_fuzz_XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) {
            std::abort();
        }
        path_ = name;
    }
    ~OutputFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    OutputFolder(const OutputFolder&) = delete;
    OutputFolder& operator=(const OutputFolder&) = delete;

    std::filesystem::path operator/(const char* name) const { return path_ / name; }

private:
    static std::filesystem::path parent() {
        const char* const memory = "/dev/shm";
        return access(memory, W_OK) == 0 ? memory : std::filesystem::temp_directory_path();
    }

    std::filesystem::path path_;
};

/// Stops the run when `claim` does not hold.
inline void require(bool claim) {
    if (!claim) {
        std::abort();
    }
}

} // namespace velmora::fuzz
