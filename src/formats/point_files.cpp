#include "point_files.h"

#include "TextStream.h"
#include "patch_text.h"

namespace velmora {

PointFileResult readPointFile(const std::filesystem::path& path) {
    TextStream stream(path);
    PointFileResult result{stream.isOpen(), {}};
    for (zVec<double> point; readPoint(stream, point);) {
        result.points.push_back(point);
    }
    return result;
}

SftResult readSft(const std::filesystem::path& path) {
    constexpr int headerLines = 7;
    TextStream stream(path);
    SftResult result{stream.isOpen(), {}, {}};
    for (int line = 0; line < headerLines; ++line) {
        stream.skipLine();
    }
    zVec<double> point;
    zVec<double> shift;
    double unused = 0.0;
    while (readPoint(stream, point) && readPoint(stream, shift) && stream.readDouble(unused)) {
        result.points.push_back(point);
        result.targets.push_back(point + shift);
    }
    return result;
}

bool writeLineBuffer(const std::filesystem::path& path, const PointList& line, int precision) {
    return saveText(path, precision, [&line](NumberWriter& writer) {
        for (const zVec<double>& point : line) {
            writePoint(writer, point);
        }
    });
}

} // namespace velmora
