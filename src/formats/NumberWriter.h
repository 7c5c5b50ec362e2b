#pragma once

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "SafeFile.h"
#include "progress.h"

namespace velmora {

class NumberPortions;

/// How a stream writes floating-point numbers.
enum class NumberNotation {
    Scientific, ///< with the flag `scientific`: the precision counts digits behind the point
    General,    ///< with no flag: the precision counts significant digits
};

/// Writes numbers as a stream in the C locale with the given notation and precision writes them, in blocks. What a
/// failed block leaves unwritten is lost; the file knows of the failure and flush() tells it. Behind the first block of
/// a long text several threads write the numbers, which changes nothing but the time.
class NumberWriter {
public:
    static constexpr std::size_t defaultBlockSize = std::size_t{1} << 20;
    /// More digits than any double has; a greater precision is cut to this one.
    static constexpr int maxPrecision = 800;

    /// A negative precision means 6, and with General 0 means 1. `file` must outlive the writer.
    NumberWriter(SafeFile& file, int precision, NumberNotation notation = NumberNotation::Scientific,
                 std::size_t blockSize = defaultBlockSize);
    ~NumberWriter();
    NumberWriter(const NumberWriter&) = delete;
    NumberWriter& operator=(const NumberWriter&) = delete;

    /// From now on reports progress with each block: the part of about `numbers` numbers that has been written, 0 to 1.
    void reportTo(ReportProgress report, std::int64_t numbers);

    void writeDouble(double value);
    void writeInt(std::int64_t value);
    void writeChar(char value);
    void writeText(std::string_view text);
    /// The text between double quotes; a double quote in it becomes a single one, as readers end the text there.
    void writeQuoted(std::string_view text);

    /// Hands the last block to the file; to be called once, when all is written. False when any write failed.
    bool flush();

private:
    void makeRoom(std::size_t size);
    void blockIsFull();
    void beginPortions();
    void reportWritten();

    SafeFile& file_;
    int precision_;
    std::chars_format format_;
    std::unique_ptr<char[]> block_;
    char* cursor_;
    char* end_;
    std::unique_ptr<NumberPortions> portions_; ///< once several threads write; the block is empty then
    bool mayUseThreads_ = true;
    std::size_t written_ = 0; ///< bytes, by one thread
    ReportProgress report_;
    std::int64_t numbersExpected_ = 0;
    std::int64_t numbersWritten_ = 0;
    std::int64_t numbersReported_ = 0;
};

} // namespace velmora
