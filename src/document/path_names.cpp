#include "path_names.h"

#include <system_error>

namespace velmora {

std::string lowerCase(std::string_view text) {
    std::string lower(text);
    for (char& c : lower) {
        if (c >= 'A' && c <= 'Z') {
            c = static_cast<char>(c - 'A' + 'a');
        }
    }
    return lower;
}

std::string extensionOf(const std::filesystem::path& path) {
    const std::string extension = path.extension().string();
    return extension.empty() ? extension : lowerCase(extension.substr(1));
}

std::string stemOf(const std::filesystem::path& path) {
    return lowerCase(path.stem().string());
}

std::string directoryOf(const std::filesystem::path& path) {
    const std::filesystem::path parent = path.parent_path();
    // Joining with an empty name appends the separator, and none to a root that has it.
    return parent.empty() ? std::string() : lowerCase((parent / "").string());
}

// Behind a linked folder ".." is the parent of where the link leads, which striking out both names would miss: another
// file would be read and written.
std::filesystem::path fullPath(const std::filesystem::path& path) {
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(path, error);
    const std::filesystem::path& full = error ? path : absolute;
    const std::filesystem::path plain = full.lexically_normal();
    const std::filesystem::path folder = std::filesystem::canonical(full.parent_path(), error);
    if (error || std::filesystem::equivalent(folder, plain.parent_path(), error)) {
        return plain;
    }
    return folder / full.filename();
}

bool sameFile(const std::filesystem::path& a, const std::filesystem::path& b) {
    std::error_code error;
    return a == b || std::filesystem::equivalent(a, b, error);
}

} // namespace velmora
