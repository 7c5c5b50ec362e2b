#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

class UserInterface;

/// A word of a script line, in quotation marks where it needs them.
std::string scriptWord(std::string_view word);

/// NAME=VALUE, the value in quotation marks where it needs them.
std::string scriptSetting(std::string_view name, std::string_view value);

/// Tells that a file which holds no model was written, as `format`.
void tellWritten(UserInterface& person, const std::filesystem::path& path, const std::string& format);

/// Writes a text to a file; false when that failed, and a file that was there is as it was.
bool writeText(const std::filesystem::path& path, const std::string& text);

/// Writes the lines to a script; false when that failed, and a file that was there is as it was.
bool writeScript(const std::filesystem::path& path, const std::vector<std::string>& lines);

} // namespace velmora
