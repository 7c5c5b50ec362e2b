#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <utility>

#include "TextStream.h"

namespace velmora {

/// Takes numbers and lines from a text file as a stream does, for formats in which the first failure is the end:
/// after it everything fails, and nothing more is taken from the file.
class NumberReader {
public:
    static constexpr std::size_t defaultBlockSize = TextStream::defaultBlockSize;
    /// The longest line that is taken, line feed not counted.
    static constexpr std::size_t lineLimit = TextStream::shortLine;

    /// Opens `path`, see TextStream.
    explicit NumberReader(const std::filesystem::path& path, std::size_t blockSize = defaultBlockSize)
        : stream_(path, blockSize) {}

    /// Reports the progress of reading, see TextStream.
    void reportTo(ReportProgress report, double from = 0.0, double to = 1.0) {
        stream_.reportTo(std::move(report), from, to);
    }

    bool isOpen() const { return stream_.isOpen(); }
    bool failed() const { return stream_.fail(); }
    /// Whether the reading of an integer failed for the only reason that nothing but white space was left.
    bool endedAtEndOfFile() const { return endedAtEndOfFile_; }

    /// Takes a decimal integer, see TextStream.
    bool readInt(std::int32_t& value) {
        stream_.skipSpace();
        endedAtEndOfFile_ = endedAtEndOfFile_ || (stream_.eof() && !stream_.fail());
        return stream_.readInt(value);
    }

    /// Takes a floating-point number, see TextStream.
    bool readDouble(double& value) { return stream_.readDouble(value); }
    bool readDoubles(double* values, std::size_t count) { return stream_.readDoubles(values, count); }

    /// Takes the rest of the line with its line feed; the text without it goes to `line`. The last line need not
    /// have a line feed. Fails when nothing is left in the file, and on a line of more than `lineLimit` characters,
    /// of which `line` then holds the first `lineLimit`. No format keeps the text of a line today: this is the form
    /// whose rule skipLine follows.
    bool readLine(std::string& line) { return stream_.getline(line, lineLimit); }

    /// The same without keeping the text.
    bool skipLine() { return stream_.skipLine(lineLimit); }

    /// Passes over `count` lines; a count of zero or less always succeeds.
    bool skipLines(std::int64_t count) {
        bool whole = true;
        while (count > 0 && whole) {
            const std::int64_t atOnce = stream_.skipShortLines(count);
            whole = atOnce > 0 || skipLine();
            const std::int64_t lines = atOnce > 0 ? atOnce : static_cast<std::int64_t>(whole);
            count -= lines;
            linesSkipped_ += lines;
        }
        return count <= 0;
    }
    /// The lines that skipLines passed over in all.
    std::int64_t linesSkipped() const { return linesSkipped_; }

    /// What the numbers are taken from, to ask where it stands and how its reading went.
    TextStream& stream() { return stream_; }

private:
    TextStream stream_;
    bool endedAtEndOfFile_ = false;
    std::int64_t linesSkipped_ = 0;
};

} // namespace velmora
