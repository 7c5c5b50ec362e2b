#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace velmora::test {

/// A fresh folder to run a script in; it goes with the object.
class ScriptFolder {
public:
    ScriptFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "velmora-scenario-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) {
            throw std::runtime_error("no temporary folder");
        }
        path_ = std::filesystem::canonical(pattern);
    }
    ScriptFolder(const ScriptFolder&) = delete;
    ScriptFolder& operator=(const ScriptFolder&) = delete;
    ~ScriptFolder() {
        std::error_code error;
        std::filesystem::remove_all(path_, error);
    }

    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

inline std::string textOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// Copies the files of a folder that the script names.
inline void copyNamedFiles(const std::filesystem::path& from, const std::string& script,
                           const std::filesystem::path& to) {
    if (!std::filesystem::is_directory(from)) {
        return;
    }
    for (const std::filesystem::directory_entry& entry : std::filesystem::directory_iterator(from)) {
        const std::string name = entry.path().filename().string();
        if (entry.is_regular_file() && script.find(name) != std::string::npos) {
            std::filesystem::copy_file(entry.path(), to / name, std::filesystem::copy_options::overwrite_existing);
        }
    }
}

inline std::string replaced(std::string text, const std::string& what, const std::string& by) {
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size())) {
        text.replace(at, what.size(), by);
    }
    return text;
}

} // namespace velmora::test
