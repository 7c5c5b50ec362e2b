#include "script_words.h"

#include "FileRecord.h"
#include "SafeFile.h"
#include "UserInterface.h"
#include "path_names.h"

namespace velmora {

namespace {

std::string quoted(std::string_view text) {
    std::string result = "\"";
    for (const char letter : text) {
        if (letter == '"' || letter == '\\') {
            result += '\\';
        }
        result += letter;
    }
    return result + '"';
}

bool needsQuotes(std::string_view text) {
    return text.empty() || text.find_first_of(" \t\r\"") != std::string_view::npos;
}

} // namespace

std::string scriptWord(std::string_view word) {
    return needsQuotes(word) || word.front() == '#' ? quoted(word) : std::string(word);
}

std::string scriptSetting(std::string_view name, std::string_view value) {
    return std::string(name) + '=' + (needsQuotes(value) ? quoted(value) : std::string(value));
}

void tellWritten(UserInterface& person, const std::filesystem::path& path, const std::string& format) {
    FileWritten written;
    written.path = fullPath(path);
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    written.bytes = error ? 0 : size; // a device has none
    written.format = format;
    person.tellFileWritten(written);
}

bool writeText(const std::filesystem::path& path, const std::string& text) {
    SafeFile file(path);
    return file.isOpen() && file.write(text) && file.commit();
}

bool writeScript(const std::filesystem::path& path, const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text += line + '\n';
    }
    return writeText(path, text);
}

} // namespace velmora
