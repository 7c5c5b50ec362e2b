#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

namespace velmora {

/// Takes numbers and lines from a text file as a stream in the C locale takes them by `>>` and `getline`, at the
/// speed of std::from_chars and memchr. The file passes through one block; it is never held whole.
///
/// A token ends where the stream's would: "1.2.3" gives 1.2 and leaves ".3", "0x10" gives 0 and leaves "x10",
/// "1d5" gives 1; "1e", "1e+", ".", "-", "inf" and "nan" are no numbers. White space in front is passed over.
/// After the first failure everything fails, and nothing more is taken from the file.
class NumberReader {
public:
    static constexpr std::size_t defaultBlockSize = std::size_t{1} << 20;
    /// The longest line that is taken, line feed not counted.
    static constexpr std::size_t lineLimit = 254;

    /// Opens `path`. A folder or a file that may not be read leaves the reader closed, and then every read fails.
    /// `blockSize` is in bytes; it has no effect on what is read.
    explicit NumberReader(const std::filesystem::path& path, std::size_t blockSize = defaultBlockSize);
    ~NumberReader();
    NumberReader(const NumberReader&) = delete;
    NumberReader& operator=(const NumberReader&) = delete;

    bool isOpen() const { return descriptor_ >= 0; }
    bool failed() const { return failed_; }
    /// Whether a read failed for the only reason that nothing but white space was left in the file.
    bool endedAtEndOfFile() const { return endedAtEndOfFile_; }

    /// Takes a decimal integer. On a number out of range `value` becomes the limit and the read fails all the same;
    /// when there is no integer, `value` keeps what it had.
    bool readInt(std::int32_t& value);

    /// Takes a floating-point number, correctly rounded; one too small for a double gives a zero of its sign. On one
    /// too large `value` becomes the limit and the read fails; when there is no number, `value` keeps what it had.
    bool readDouble(double& value);

    /// Takes the rest of the line with its line feed; the text without it goes to `line`. The last line need not
    /// have a line feed. Fails when nothing is left in the file, and on a line of more than `lineLimit` characters,
    /// of which `line` then holds the first `lineLimit`.
    bool readLine(std::string& line);

    /// The same without keeping the text.
    bool skipLine();

    /// Passes over `count` lines; a count of zero or less always succeeds.
    bool skipLines(std::int64_t count);

private:
    bool fail();
    bool refill();
    int peek();
    bool skipSpace();
    void takeDigits();
    void collectDouble();
    bool readDoubleSlowly(double& value);
    bool takeLine(std::string* line);

    int descriptor_ = -1;
    std::size_t blockSize_;
    std::unique_ptr<char[]> block_; // blockSize_ bytes and a NUL behind the last one read
    const char* cursor_;
    const char* end_;
    bool exhausted_ = false;
    bool failed_ = false;
    bool endedAtEndOfFile_ = false;
    std::string token_;
};

} // namespace velmora
