#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "SafeFile.h"

namespace velmora {

/// Writes numbers as a stream in the C locale with the flag `scientific` and the given precision writes them, in
/// blocks. What a failed block leaves unwritten is lost; the file knows of the failure and flush() tells it.
class NumberWriter {
public:
    static constexpr std::size_t defaultBlockSize = std::size_t{1} << 20;
    /// More digits than any double has; a greater precision is cut to this one.
    static constexpr int maxPrecision = 800;

    /// `precision` is the number of digits behind the point; a negative one means 6. `file` must outlive the writer.
    NumberWriter(SafeFile& file, int precision, std::size_t blockSize = defaultBlockSize);

    void writeDouble(double value);
    void writeInt(std::int64_t value);
    void writeChar(char value);
    void writeText(std::string_view text);

    /// Hands the last block to the file; to be called once, when all is written. False when any write failed.
    bool flush();

private:
    void makeRoom(std::size_t size);

    SafeFile& file_;
    int precision_;
    std::unique_ptr<char[]> block_;
    char* cursor_;
    char* end_;
};

} // namespace velmora
