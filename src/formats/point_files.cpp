#include "point_files.h"

#include <string>

#include "TextStream.h"
#include "format_outcome.h"
#include "patch_text.h"

namespace velmora {

namespace {

/// Reads numbers one by one and counts those of the record in hand.
class NumberCount {
public:
    explicit NumberCount(TextStream& stream) : stream_(stream) {}

    bool read(double& value) {
        // A word that is no number, or one beyond all numbers, is passed over: at the end of the file nothing else
        // tells that it was there.
        word_ = stream_.skipSpace();
        const bool number = stream_.readDouble(value);
        count_ += number ? 1 : 0;
        return number;
    }
    void beginRecord() { count_ = 0; }
    int count() const { return count_; }
    bool metWord() const { return word_; } ///< something stood where the last number was looked for

private:
    TextStream& stream_;
    int count_ = 0;
    bool word_ = false;
};

/// Tells why the reading ended where it did: at the end of the file, or before it. `wanted` numbers make a record.
void noteEnd(TextStream& stream, const NumberCount& count, int wanted, FileRead& record, bool& readFailed) {
    readFailed = stream.readFailed();
    const bool atEnd = stream.eof() && !count.metWord();
    const int numbers = count.count();
    const std::string place = lineText(stream);
    if (readFailed) {
        record.losesGeometry(unreadText(stream));
    } else if (!atEnd) {
        record.losesGeometry("No number stands in " + place + ": what follows there is not read");
    } else if (numbers > 0) {
        record.losesGeometry("The last point in " + place + " has " + std::to_string(numbers) + " of its " +
                             std::to_string(wanted) + " numbers");
    }
    if (numbers > 0) {
        countOf(record.found, "points") += 1;
    }
    noteJoinedNumbers(record, stream);
}

} // namespace

PointFileResult readPointFile(const std::filesystem::path& path, std::string_view format) {
    TextStream stream(path);
    PointFileResult result;
    result.opened = stream.isOpen();
    if (!result.opened) {
        return result;
    }
    beginRecord(result.record, path, stream, format, {"points"});
    NumberCount numbers(stream);
    for (zVec<double> point; numbers.read(point.x) && numbers.read(point.y) && numbers.read(point.z);
         numbers.beginRecord()) {
        result.points.push_back(point);
    }
    countOf(result.record.found, "points") = countOf(result.record.kept, "points") = countOf(result.points);
    noteEnd(stream, numbers, 3, result.record, result.readFailed);
    return result;
}

SftResult readSft(const std::filesystem::path& path) {
    constexpr int headerLines = 7;
    constexpr int numbersEach = 7;
    TextStream stream(path);
    SftResult result;
    result.opened = stream.isOpen();
    if (!result.opened) {
        return result;
    }
    beginRecord(result.record, path, stream, "sft", {"points"});
    for (int line = 0; line < headerLines; ++line) {
        stream.skipLine();
    }
    if (stream.fail() && stream.size() > 0) {
        result.record.losesDetail("The file ends within the seven lines of text that come before the points");
    }
    double values[numbersEach] = {};
    NumberCount numbers(stream);
    while (numbers.read(values[numbers.count()])) {
        if (numbers.count() == numbersEach) {
            const zVec<double> point(values[0], values[1], values[2]);
            result.points.push_back(point);
            result.targets.push_back(point + zVec<double>(values[3], values[4], values[5]));
            numbers.beginRecord();
        }
    }
    countOf(result.record.found, "points") = countOf(result.record.kept, "points") = countOf(result.points);
    noteEnd(stream, numbers, numbersEach, result.record, result.readFailed);
    if (result.points.empty() && result.record.bytes > 0 && result.record.reasons.empty()) {
        result.record.losesGeometry("No points stand in the file");
    }
    return result;
}

WriteOutcome writeLineBuffer(const std::filesystem::path& path, const PointList& line, int precision) {
    const PatchList whole{{line}};
    const std::string place = placeNotFinite(whole, selectAll(whole));
    if (!place.empty()) {
        return refuseNotFinite(place.substr(place.rfind(',') + 2));
    }
    WriteOutcome outcome = saveText(path, precision, [&line](NumberWriter& writer) {
        for (const zVec<double>& point : line) {
            writePoint(writer, point);
        }
    });
    outcome.record.format = "ext";
    outcome.record.counts = {{"points", countOf(line)}};
    return outcome;
}

} // namespace velmora
