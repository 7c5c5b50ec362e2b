#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <memory>
#include <string>
#include <string_view>

#include "FileIdentity.h"
#include "number_line.h"
#include "number_token.h"
#include "progress.h"

namespace velmora {

class BlocksAhead;
struct NumberAhead;

/// A text file that is read as an input file stream in the C locale reads it, at the speed of std::from_chars and
/// memchr. The file passes through one block; it is never held whole, whatever the length of its lines, words and
/// numbers. The blocks of a large file are read, and their
/// numbers converted, by other threads ahead of the reader, which changes nothing but the time.
///
/// The states are a stream's: `eof` once a read has run into the end of the file, also a successful one that ended
/// there; `fail` once a read did not get what it wanted. A read on a stream that is not good takes nothing and fails.
class TextStream {
public:
    static constexpr std::size_t defaultBlockSize = std::size_t{1} << 20;
    static constexpr std::size_t noLimit = std::numeric_limits<std::size_t>::max();
    /// The characters of a word that are held; no word that anybody means is as long.
    static constexpr std::size_t longestWord = std::size_t{1} << 22;
    /// The characters of a line that skipShortLines passes over.
    static constexpr std::size_t shortLine = longestNumberLine;

    /// Opens `path`. What is no regular file (a folder, a pipe, a device: they may never end) and a file that may not
    /// be read leave the stream closed and failed. `blockSize` is in bytes; it has no effect on what is read.
    explicit TextStream(const std::filesystem::path& path, std::size_t blockSize = defaultBlockSize);
    ~TextStream();
    TextStream(const TextStream&) = delete;
    TextStream& operator=(const TextStream&) = delete;

    bool isOpen() const { return descriptor_ >= 0; }
    bool eof() const { return eof_; }
    bool fail() const { return fail_; }
    bool good() const { return !eof_ && !fail_; }
    /// Makes the stream good again; the position stays.
    void clear() { eof_ = fail_ = false; }

    /// The bytes of the file as it was when opened.
    std::int64_t size() const { return size_; }
    /// Which file it is, and in which state it was when opened.
    const FileIdentity& identity() const { return identity_; }
    /// Whether the system failed to read the file. The stream then ends there as at the end of the file; what the file
    /// holds is not known.
    bool readFailed() const { return readFailed_; }
    /// How many numbers ran into the next one ("1.5-104", "1.2.3"): a stream takes each for two, and all that follows
    /// is shifted.
    std::int64_t joinedNumbers() const { return joinedNumbers_; }
    /// Behind which byte the first of them was cut.
    std::int64_t firstJoinedNumber() const { return firstJoinedNumber_; }
    /// The number of the line, from 1, in which a byte stands. Reads the file from its start; states and position stay.
    std::int64_t lineOf(std::int64_t position);
    /// From now on reports the progress of reading with each block, scaled to `from`..`to`. What is read again reports
    /// nothing.
    void reportTo(ReportProgress report, double from = 0.0, double to = 1.0);
    /// Where the next byte stands, from 0; in any state.
    std::int64_t tell() const { return blockStart_ + (cursor_ - block_.get()); }
    /// Takes `eof` away and goes to a byte from 0, which may lie behind the end. A failed stream stays where it is;
    /// a position below 0 fails. Free of cost within the block in hand.
    void seek(std::int64_t position);

    /// Takes the next byte, 0 to 255. At the end of the file -1, and the read has failed.
    int get() { return cursor_ != end_ && good() ? static_cast<unsigned char>(*cursor_++) : getSlowly(); }
    /// The next byte without taking it. At the end of the file -1 and `eof`, but no failure.
    int peek() { return cursor_ != end_ && good() ? static_cast<unsigned char>(*cursor_) : peekSlowly(); }

    /// Passes over white space. False, and `eof`, when nothing else is left; false too on a stream that is not good.
    /// Never a failure by itself.
    bool skipSpace();
    /// Goes to the next byte `c`, the one at the position included. False, and `eof`, when there is none; false too
    /// on a stream that is not good. Never a failure by itself.
    bool skipTo(char c);

    /// Takes the next characters up to white space; of more than `longestWord` the first of them are given. Fails, with
    /// `word` as it was, when nothing but white space is left.
    bool readWord(std::string& word);
    /// The same without a copy: `word` is good up to the next call of anything but the states above.
    bool readWord(std::string_view& word);
    /// Whether the word that was taken last was longer than it was given.
    bool wordWasCut() const { return wordWasCut_; }

    /// Takes a floating-point number, correctly rounded; one too small for a double gives a zero of its sign. On one
    /// too large `value` becomes the limit and the read fails; when there is no number, `value` keeps what it had.
    ///
    /// A token ends where a stream's would: "1.2.3" gives 1.2 and leaves ".3", "0x10" gives 0 and leaves "x10", "1d5"
    /// gives 1. "1e", "1e+", ".", "-" are no numbers, and are taken all the same; "inf" and "nan" are none and stay.
    bool readDouble(double& value);
    /// The same for `count` numbers one behind the other, which takes less time. The read that fails is the last one.
    bool readDoubles(double* values, std::size_t count);
    /// The same for what is left of a line when that is `count` numbers, white space around them and nothing else, of
    /// at most `shortLine` characters; taken with its line feed, which the last line need not have. False when it is
    /// something else; the stream then stands somewhere in it.
    bool readLineOfDoubles(double* values, std::size_t count);
    /// Takes lines of that kind one behind the other, `most` of them at most, and gives how many: those that are known
    /// without another look at the file, none when the next one is not. Never a failure by itself.
    std::size_t takeLinesOfDoubles(double* values, std::size_t numbers, std::size_t most);
    /// The same for lines of integers.
    std::size_t takeLinesOfInts(std::int32_t* values, std::size_t numbers, std::size_t most);
    /// Takes the rest of a line with its line feed if it is white space of at most `shortLine` characters. False when
    /// it is not; the stream then stands somewhere in it.
    bool takeLineEnd();

    /// Takes a decimal integer. On a number out of range `value` becomes the limit and the read fails; when there is
    /// no integer, `value` keeps what it had.
    bool readInt(std::int32_t& value);
    /// The same for `count` integers one behind the other, which takes less time. The read that fails is the last one.
    bool readInts(std::int32_t* values, std::size_t count);

    /// Takes the rest of the line with its line feed; the text without it goes to `line`. The last line need not have
    /// a line feed. Fails, with `line` empty, when nothing is left. A line of more than `limit` characters fails behind
    /// so many.
    bool getline(std::string& line, std::size_t limit = noLimit);
    /// The same without keeping the text.
    bool skipLine(std::size_t limit = noLimit);
    /// Passes over lines of at most `shortLine` characters, all at once, and gives how many: `most` or fewer, perhaps
    /// none, where others stand or the block ends.
    std::int64_t skipShortLines(std::int64_t most);

private:
    int getSlowly();
    int peekSlowly();
    bool refill();
    std::size_t readBlock();
    bool seekFile(std::int64_t position);
    const NumberAhead* numberAhead(const char* start);
    void beginAhead();
    void reportPosition();
    bool beginToken();
    bool failToken();
    char nextOfToken();
    bool readWordSlowly(std::string_view& word);
    std::size_t readPlainDoubles(double* values, std::size_t count);
    template <class Number>
    std::size_t readNumbersAhead(Number* values, std::size_t count);
    template <class Number>
    std::size_t takeLines(Number* values, std::size_t numbers, std::size_t most);
    void countTaken(std::size_t numbers);
    bool readLineSlowly(double* values, std::size_t count);
    bool skipBlanks();
    bool readDoubleSlowly(double& value);
    bool readIntSlowly(std::int32_t& value);
    void takeDigits(void (DecimalText::*take)(char));
    void takeSign(void (DecimalText::*take)(char));
    void collectDouble();
    void noteJoined();
    bool takeLine(std::string* line, std::size_t limit);

    std::int64_t size_ = 0; // before descriptor_, as opening sets both
    FileIdentity identity_;
    int descriptor_ = -1;
    std::size_t blockSize_;
    std::unique_ptr<char[]> block_; // blockSize_ bytes and a NUL behind the last one read
    const char* cursor_;
    const char* end_;
    std::int64_t blockStart_ = 0; // position of the block's first byte in the file
    bool eof_ = false;
    bool fail_ = false;
    bool readFailed_ = false;
    std::int64_t joinedNumbers_ = 0;
    std::int64_t firstJoinedNumber_ = 0;
    std::string word_;
    bool wordWasCut_ = false;
    DecimalText decimal_;
    std::unique_ptr<BlocksAhead> ahead_;
    bool mayReadAhead_ = false;
    std::size_t numbersTaken_ = 0; ///< of the block, or asked for
    ReportProgress report_;
    double reportFrom_ = 0.0;
    double reportTo_ = 1.0;
    std::int64_t reported_ = 0; ///< the position told last
};

} // namespace velmora
