#include "volumes.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>

namespace velmora {

namespace {

bool isOctal(char c) {
    return c >= '0' && c <= '7';
}

/// The table writes blanks and the like of a name as a backslash and three octal digits.
std::string unescaped(std::string_view word) {
    std::string text;
    for (std::size_t i = 0; i < word.size(); ++i) {
        const bool escaped = word[i] == '\\' && i + 3 < word.size() && word[i + 1] <= '3' && isOctal(word[i + 1]) &&
                             isOctal(word[i + 2]) && isOctal(word[i + 3]);
        if (escaped) {
            text += static_cast<char>((word[i + 1] - '0') * 64 + (word[i + 2] - '0') * 8 + (word[i + 3] - '0'));
            i += 3;
        } else {
            text += word[i];
        }
    }
    return text;
}

bool startsWithAny(std::string_view text, std::initializer_list<std::string_view> starts) {
    return std::any_of(starts.begin(), starts.end(),
                       [text](std::string_view start) { return text.starts_with(start); });
}

/// A disk, or a share of another machine; not what the system shows of itself or packs programs in.
bool holdsFiles(std::string_view device, std::string_view folder, std::string_view type) {
    const bool stored = (device.starts_with("/dev/") && type != "squashfs") ||
                        startsWithAny(type, {"nfs", "cifs", "smb", "fuse.sshfs", "9p", "virtiofs"});
    return stored && !startsWithAny(folder, {"/boot", "/etc/", "/proc", "/sys", "/dev", "/snap/", "/run/credentials"});
}

} // namespace

std::vector<std::filesystem::path> volumesOf(std::istream& mounts) {
    std::vector<std::filesystem::path> volumes = {"/"};
    for (std::string line; std::getline(mounts, line);) {
        std::istringstream words(line);
        std::string device;
        std::string folder;
        std::string type;
        if (!(words >> device >> folder >> type) || !holdsFiles(device, folder, type)) {
            continue;
        }
        const std::filesystem::path path = unescaped(folder);
        if (std::find(volumes.begin(), volumes.end(), path) == volumes.end()) {
            volumes.push_back(path);
        }
    }
    return volumes;
}

std::vector<std::filesystem::path> mountedVolumes() {
    std::ifstream mounts("/proc/self/mounts");
    std::vector<std::filesystem::path> volumes = volumesOf(mounts);
    // A single file can be mounted too.
    std::erase_if(volumes, [](const std::filesystem::path& path) {
        std::error_code error;
        return !std::filesystem::is_directory(path, error);
    });
    return volumes;
}

} // namespace velmora
