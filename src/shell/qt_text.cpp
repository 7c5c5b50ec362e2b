#include "qt_text.h"

#include <QFile>

namespace velmora {

QString qtText(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::string plainBytes(const QString& text) {
    return text.toUtf8().toStdString();
}

QString qtPath(const std::filesystem::path& path) {
    return QFile::decodeName(path.string().c_str());
}

std::filesystem::path filePath(const QString& path) {
    return {QFile::encodeName(path).toStdString()};
}

QString withoutAccessKeys(QString text) {
    return text.replace(QLatin1Char('&'), QLatin1String("&&"));
}

} // namespace velmora
