#include "documents_folder.h"

#include <cstdlib>
#include <fstream>
#include <string_view>
#include <system_error>

namespace velmora {

namespace {

bool isFolder(const std::filesystem::path& path) {
    std::error_code error;
    return path.is_absolute() && std::filesystem::is_directory(path, error);
}

/// The value of the last line XDG_DOCUMENTS_DIR="..." of the desktop's settings; empty for none.
std::string folderInSettings(const std::filesystem::path& settings) {
    constexpr std::string_view start = "XDG_DOCUMENTS_DIR=\"";
    std::ifstream file(settings);
    std::string line;
    std::string value;
    while (std::getline(file, line)) {
        if (line.starts_with(start) && line.find('"', start.size()) != std::string::npos) {
            value = line.substr(start.size(), line.find('"', start.size()) - start.size());
        }
    }
    return value;
}

std::filesystem::path expandHome(const std::string& value, const std::string& home) {
    constexpr std::string_view variable = "$HOME";
    return value.starts_with(variable) ? home + value.substr(variable.size()) : value;
}

} // namespace

std::filesystem::path documentsFolder(const Environment& environment) {
    const std::string home = environment("HOME");
    std::filesystem::path configuration = environment("XDG_CONFIG_HOME");
    if (configuration.empty()) {
        configuration = std::filesystem::path(home) / ".config";
    }
    const std::filesystem::path candidates[] = {environment("XDG_DOCUMENTS_DIR"),
                                                expandHome(folderInSettings(configuration / "user-dirs.dirs"), home),
                                                std::filesystem::path(home) / "Documents"};
    for (const std::filesystem::path& candidate : candidates) {
        if (isFolder(candidate)) {
            return candidate;
        }
    }
    std::error_code error;
    return std::filesystem::current_path(error);
}

std::string processEnvironment(const char* name) {
    const char* value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): one thread
    return value != nullptr ? value : "";
}

} // namespace velmora
