#pragma once

#include <QString>
#include <filesystem>
#include <string>
#include <string_view>

namespace velmora {

/// Texts of the document are UTF-8; bytes that are not show as replacement marks.
QString qtText(std::string_view text);
std::string plainBytes(const QString& text);

/// Paths keep their bytes: a path given to the toolkit and taken back names the same file.
QString qtPath(const std::filesystem::path& path);
std::filesystem::path filePath(const QString& path);

/// The text with every "&" doubled, for a menu that shows it as it stands.
QString withoutAccessKeys(QString text);

} // namespace velmora
