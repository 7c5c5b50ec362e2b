#include "TextStream.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <type_traits>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "BlocksAhead.h"
#include "byte_steps.h"
#include "characters.h"
#include "parallel.h"
#include "plain_decimal.h"

namespace velmora {

namespace {

constexpr int endOfFile = -1;

/// What behind a number can only be another one.
constexpr bool beginsNumber(char c) {
    return isSign(c) || c == '.';
}

// Opening without blocking keeps a pipe that nobody writes to from holding up the program. What is no regular file is
// refused all the same: a device may never end.
int openForReading(const std::filesystem::path& path, std::int64_t& size, FileIdentity& identity) {
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0) {
        return descriptor;
    }
    struct stat status {};
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(descriptor);
        return -1;
    }
    size = status.st_size;
    identity = FileIdentity::of(status);
    return descriptor;
}

/// Whether a file of that size is read ahead.
bool isReadAhead(std::int64_t size) {
    return size >= aheadSizes().leastFile && threadCount() > 1;
}

/// A small file needs no large block.
std::size_t blockFor(std::int64_t size, std::size_t blockSize) {
    if (isReadAhead(size)) {
        return aheadSizes().block;
    }
    constexpr std::size_t least = 4096; // of a file whose size the system does not tell
    const std::size_t most = std::max<std::size_t>(blockSize, 1);
    return std::clamp(static_cast<std::size_t>(size), std::min(least, most), most);
}

} // namespace

TextStream::TextStream(const std::filesystem::path& path, std::size_t blockSize)
    : descriptor_(openForReading(path, size_, identity_)), blockSize_(blockFor(size_, blockSize)),
      block_(std::make_unique_for_overwrite<char[]>(blockSize_ + 1)), cursor_(block_.get()), end_(block_.get()) {
    block_[0] = '\0';
    fail_ = !isOpen();
    mayReadAhead_ = isOpen() && isReadAhead(size_);
}

TextStream::~TextStream() {
    ahead_.reset(); // it reads
    if (isOpen()) {
        ::close(descriptor_);
    }
}

// The next bytes of the file into the block; 0 at its end, where the block stays. A read error ends the stream as the
// end of the file does, but is remembered: what stands behind it is not known.
std::size_t TextStream::readBlock() {
    if (ahead_ != nullptr) {
        const std::size_t size = ahead_->next(block_);
        readFailed_ = readFailed_ || ahead_->readFailed();
        return size;
    }
    ssize_t count = 0;
    do {
        count = ::read(descriptor_, block_.get(), blockSize_);
    } while (count < 0 && errno == EINTR);
    readFailed_ = readFailed_ || (count < 0 && isOpen());
    return count > 0 ? static_cast<std::size_t>(count) : 0;
}

// Called with the block used up. At the end of the file the block stays, for what is sought back in it.
bool TextStream::refill() {
    const std::ptrdiff_t before = end_ - block_.get();
    const std::size_t count = readBlock();
    if (count == 0) {
        return false;
    }
    blockStart_ += before;
    block_[count] = '\0';
    cursor_ = block_.get();
    end_ = cursor_ + count;
    numbersTaken_ = 0;
    if (report_) {
        reportPosition();
    }
    return true;
}

/// The number that begins at `start`, if it was converted ahead. Reading ahead begins once so many numbers of a block
/// were taken one by one that more must follow: who counts lines takes few.
const NumberAhead* TextStream::numberAhead(const char* start) {
    if (ahead_ != nullptr) {
        return ahead_->at(static_cast<std::size_t>(start - block_.get()));
    }
    if (mayReadAhead_) {
        countTaken(1);
    }
    return nullptr;
}

void TextStream::countTaken(std::size_t numbers) {
    numbersTaken_ += numbers;
    if (numbersTaken_ > aheadSizes().numbersBefore) {
        beginAhead();
    }
}

void TextStream::beginAhead() {
    constexpr std::size_t mostHelpers = 7; // more than one reader can follow
    mayReadAhead_ = false;
    ahead_ = std::make_unique<BlocksAhead>(descriptor_, blockSize_, std::min(threadCount() - 1, mostHelpers));
    if (!ahead_->hasHelpers()) {
        ahead_.reset();
    }
}

void TextStream::reportTo(ReportProgress report, double from, double to) {
    report_ = std::move(report);
    reportFrom_ = from;
    reportTo_ = to;
    reported_ = 0;
}

// A large file has more blocks than progress reports are worth.
void TextStream::reportPosition() {
    constexpr std::int64_t steps = 200;
    if (size_ > 0 && blockStart_ > reported_ && (blockStart_ - reported_) * steps >= size_) {
        reported_ = blockStart_;
        const double part = std::min(1.0, static_cast<double>(blockStart_) / static_cast<double>(size_));
        report_(reportFrom_ + (reportTo_ - reportFrom_) * part);
    }
}

/// The file goes elsewhere; what was read ahead is of no use there, and nothing is read ahead from then on.
bool TextStream::seekFile(std::int64_t position) {
    ahead_.reset();
    mayReadAhead_ = false;
    return ::lseek(descriptor_, position, SEEK_SET) == position;
}

void TextStream::seek(std::int64_t position) {
    eof_ = false;
    if (fail_) {
        return;
    }
    const std::int64_t inBlock = position - blockStart_;
    if (inBlock >= 0 && inBlock <= end_ - block_.get()) {
        cursor_ = block_.get() + inBlock;
    } else if (position >= 0 && seekFile(position)) {
        blockStart_ = position;
        cursor_ = end_ = block_.get();
        block_[0] = '\0';
    } else {
        fail_ = true;
    }
}

std::int64_t TextStream::lineOf(std::int64_t position) {
    const std::int64_t place = tell();
    const bool atEnd = eof_;
    const bool failed = fail_;
    const auto report = std::exchange(report_, nullptr);
    clear();
    seek(0);
    std::int64_t line = 1;
    while (skipTo('\n') && tell() < position) {
        get();
        ++line;
    }
    clear();
    seek(place);
    eof_ = atEnd;
    fail_ = failed;
    report_ = report;
    return line;
}

int TextStream::peekSlowly() {
    if (!good()) {
        fail_ = true;
        return endOfFile;
    }
    if (!refill()) {
        eof_ = true;
        return endOfFile;
    }
    return static_cast<unsigned char>(*cursor_);
}

int TextStream::getSlowly() {
    const int c = peekSlowly();
    if (c == endOfFile) {
        fail_ = true;
    } else {
        ++cursor_;
    }
    return c;
}

bool TextStream::skipSpace() {
    while (good()) {
        while (isSpace(*cursor_)) { // the NUL behind the block stops it
            ++cursor_;
        }
        if (cursor_ != end_) {
            return true;
        }
        eof_ = !refill();
    }
    return false;
}

bool TextStream::skipTo(char c) {
    while (good()) {
        const auto* const found =
            static_cast<const char*>(std::memchr(cursor_, c, static_cast<std::size_t>(end_ - cursor_)));
        cursor_ = found == nullptr ? end_ : found;
        if (found != nullptr) {
            return true;
        }
        eof_ = !refill();
    }
    return false;
}

// What comes before every token: white space in front is passed over, and something must be left.
bool TextStream::beginToken() {
    return skipSpace() || failToken();
}

bool TextStream::failToken() {
    fail_ = true;
    return false;
}

bool TextStream::readWord(std::string& word) {
    std::string_view text;
    if (!readWord(text)) {
        return false;
    }
    word = text;
    return true;
}

bool TextStream::readWord(std::string_view& word) {
    const char* start = cursor_;
    while (isSpace(*start)) { // the NUL behind the block stops it
        start = skipSpaces(start + 1, end_);
    }
    const char* const stop = skipWord(start, end_);
    // At the end of the block, and at a control character, the word may go on.
    if (stop != start && isSpace(*stop) && good()) {
        word = std::string_view(start, static_cast<std::size_t>(stop - start));
        wordWasCut_ = false;
        cursor_ = stop;
        return true;
    }
    return readWordSlowly(word);
}

bool TextStream::readWordSlowly(std::string_view& word) {
    if (!beginToken()) {
        return false;
    }
    word_.clear();
    wordWasCut_ = false;
    do {
        const char* const stop = std::find_if(cursor_, end_, [](char c) { return isSpace(c); });
        const auto length = static_cast<std::size_t>(stop - cursor_);
        const std::size_t held = std::min(length, longestWord - word_.size());
        word_.append(cursor_, held);
        wordWasCut_ = wordWasCut_ || held < length;
        cursor_ = stop;
        eof_ = stop == end_ && !refill();
    } while (cursor_ != end_ && !isSpace(*cursor_));
    word = word_;
    return true;
}

bool TextStream::readInt(std::int32_t& value) {
    const char* start = cursor_;
    while (isSpace(*start)) { // the NUL behind the block stops it
        ++start;
    }
    if (const NumberAhead* const found = numberAhead(start); found != nullptr && found->whole && good()) {
        cursor_ = start + found->length;
        value = static_cast<std::int32_t>(found->value);
        return true;
    }
    std::int32_t number = 0;
    if (const char* const stop = convertFewDigits(start, number); stop != nullptr && good()) {
        cursor_ = stop;
        value = number;
        return true;
    }
    return readIntSlowly(value);
}

bool TextStream::readIntSlowly(std::int32_t& value) {
    if (!beginToken()) {
        return false;
    }
    const char sign = nextOfToken();
    cursor_ += isSign(sign) ? 1 : 0;
    if (!isDigit(nextOfToken())) {
        return failToken();
    }
    std::int64_t magnitude = 0;
    for (char c = nextOfToken(); isDigit(c); c = nextOfToken()) {
        // Far above the range the number only has to stay there.
        magnitude = magnitude < 1'000'000'000'000 ? magnitude * 10 + (c - '0') : magnitude;
        ++cursor_;
    }
    using Limits = std::numeric_limits<std::int32_t>;
    const std::int64_t exact = sign == '-' ? -magnitude : magnitude;
    value = static_cast<std::int32_t>(std::clamp<std::int64_t>(exact, Limits::min(), Limits::max()));
    return value == exact || failToken();
}

bool TextStream::readDouble(double& value) {
    const char* start = cursor_;
    while (isSpace(*start)) { // the NUL behind the block stops it
        ++start;
    }
    if (const NumberAhead* const found = numberAhead(start); found != nullptr && good()) {
        cursor_ = start + found->length;
        if (*cursor_ > ' ' && beginsNumber(*cursor_)) {
            noteJoined();
        }
        value = found->value;
        return true;
    }
    const char* const firstDigit = start + static_cast<int>(isSign(*start));
    if (isDigit(*firstDigit) || *firstDigit == '.') {
        double number = 0.0;
        const char* const stop = convertDecimal(start + static_cast<int>(*start == '+'), end_, number);
        if (stop != nullptr && good()) {
            cursor_ = stop;
            if (*stop > ' ' && beginsNumber(*stop)) {
                noteJoined();
            }
            value = number;
            return true;
        }
    }
    return readDoubleSlowly(value);
}

// As long as numbers are plain and white space follows each of them, nothing else is to be looked at.
std::size_t TextStream::readPlainDoubles(double* values, std::size_t count) {
    const char* p = cursor_;
    std::size_t taken = 0;
    for (; taken < count; ++taken) {
        while (isSpace(*p)) { // the NUL behind the block stops it
            ++p;
        }
        double number = 0.0;
        const char* const stop = convertPlainDecimal(p, end_, number);
        if (stop == nullptr || !isSpace(*stop)) {
            break;
        }
        values[taken] = number;
        p = stop;
    }
    cursor_ = p;
    return taken;
}

// The same of numbers that were converted ahead. What stands between them is known; the text is only looked at where it
// is not.
template <class Number>
std::size_t TextStream::readNumbersAhead(Number* values, std::size_t count) {
    const char* const block = block_.get();
    const NumberAhead* number = ahead_->behind(static_cast<std::size_t>(cursor_ - block));
    if (number == nullptr) {
        while (isSpace(*cursor_)) {
            ++cursor_;
        }
        number = ahead_->at(static_cast<std::size_t>(cursor_ - block));
    }
    std::size_t taken = 0;
    while (taken < count && number != nullptr) {
        const char* const stop = block + number->end();
        const NumberAhead* const next = number + 1;
        const bool whiteSpaceFollows = next->follows;
        if ((!whiteSpaceFollows && !isSpace(*stop)) || (std::is_integral_v<Number> && !number->whole)) {
            break;
        }
        values[taken++] = static_cast<Number>(number->value);
        cursor_ = stop;
        number = whiteSpaceFollows ? next : nullptr;
    }
    return taken;
}

bool TextStream::readDoubles(double* values, std::size_t count) {
    std::size_t taken = 0;
    if (good() && ahead_ != nullptr) {
        ahead_->askForNumbers();
        taken = readNumbersAhead(values, count);
    } else if (good() && !mayReadAhead_) {
        taken = readPlainDoubles(values, count);
    }
    while (taken < count && readDouble(values[taken])) {
        ++taken;
    }
    return taken == count;
}

template <class Number>
std::size_t TextStream::takeLines(Number* values, std::size_t numbers, std::size_t most) {
    if (!good()) {
        return 0;
    }
    if (mayReadAhead_) {
        countTaken(numbers * most);
    }
    if (ahead_ != nullptr && ahead_->holdsLines({static_cast<std::uint32_t>(numbers), std::is_integral_v<Number>})) {
        const auto lines = ahead_->linesAt(static_cast<std::size_t>(cursor_ - block_.get()), most);
        std::transform(lines.values, lines.values + lines.count * numbers, values,
                       [](double value) { return static_cast<Number>(value); });
        cursor_ = lines.count > 0 ? block_.get() + lines.end : cursor_;
        return lines.count;
    }
    std::size_t taken = 0;
    while (taken < most) {
        const char* const behind = convertLine<Number>(cursor_, end_, values + taken * numbers, numbers);
        if (behind == nullptr) {
            break;
        }
        cursor_ = behind;
        ++taken;
    }
    return taken;
}

std::size_t TextStream::takeLinesOfDoubles(double* values, std::size_t numbers, std::size_t most) {
    return takeLines(values, numbers, most);
}

std::size_t TextStream::takeLinesOfInts(std::int32_t* values, std::size_t numbers, std::size_t most) {
    return takeLines(values, numbers, most);
}

// Passes over white space up to the end of the line. False, and `eof`, when the file ends before.
bool TextStream::skipBlanks() {
    while (good() && isSpace(peek()) && peek() != '\n') {
        get();
    }
    return good();
}

bool TextStream::readLineSlowly(double* values, std::size_t count) {
    const std::int64_t begin = tell();
    for (std::size_t taken = 0; taken < count; ++taken) {
        if (!skipBlanks() || peek() == '\n' || !readDouble(values[taken])) {
            return false;
        }
        if (const int behind = good() ? peek() : endOfFile; behind != endOfFile && !isSpace(behind)) {
            return false;
        }
    }
    const bool lineEnds = !skipBlanks() || peek() == '\n';
    if (!lineEnds || tell() - begin > static_cast<std::int64_t>(shortLine)) {
        return false;
    }
    if (good()) {
        get();
    }
    return true;
}

bool TextStream::readLineOfDoubles(double* values, std::size_t count) {
    return takeLines(values, count, 1) == 1 || readLineSlowly(values, count);
}

bool TextStream::takeLineEnd() {
    return readLineSlowly(nullptr, 0);
}

bool TextStream::readInts(std::int32_t* values, std::size_t count) {
    std::size_t taken = 0;
    if (good() && ahead_ != nullptr) {
        ahead_->askForNumbers();
        taken = readNumbersAhead(values, count);
    }
    while (taken < count && readInt(values[taken])) {
        ++taken;
    }
    return taken == count;
}

bool TextStream::readDoubleSlowly(double& value) {
    if (!beginToken()) {
        return false;
    }
    collectDouble();
    if (!decimal_.convert(value)) {
        return failToken();
    }
    if (beginsNumber(nextOfToken())) {
        noteJoined();
    }
    return true;
}

void TextStream::noteJoined() {
    if (++joinedNumbers_ == 1) {
        firstJoinedNumber_ = tell();
    }
}

void TextStream::takeSign(void (DecimalText::*take)(char)) {
    if (const char c = nextOfToken(); isSign(c)) {
        (decimal_.*take)(c);
        ++cursor_;
    }
}

void TextStream::takeDigits(void (DecimalText::*take)(char)) {
    for (char c = nextOfToken(); isDigit(c); c = nextOfToken()) {
        (decimal_.*take)(c);
        ++cursor_;
    }
}

// The next byte, NUL at the end of the file: neither goes on with a number.
char TextStream::nextOfToken() {
    if (cursor_ == end_ && !eof_) {
        eof_ = !refill();
    }
    return *cursor_;
}

// Moves to decimal_ what a stream takes for a floating-point number, whether it is one or not.
void TextStream::collectDouble() {
    decimal_.clear();
    takeSign(&DecimalText::takeSign);
    takeDigits(&DecimalText::takeDigit);
    if (nextOfToken() == '.') {
        decimal_.takePoint();
        ++cursor_;
    }
    takeDigits(&DecimalText::takeDigit);
    if (decimal_.hasDigits() && isExponentMark(nextOfToken())) {
        decimal_.takeExponentMark();
        ++cursor_;
        takeSign(&DecimalText::takeExponentSign);
        takeDigits(&DecimalText::takeExponentDigit);
    }
}

bool TextStream::getline(std::string& line, std::size_t limit) {
    line.clear();
    return takeLine(&line, limit);
}

std::int64_t TextStream::skipShortLines(std::int64_t most) {
    // Where a line feed stands in each of such pieces, no line is longer than two of them less two characters.
    constexpr std::ptrdiff_t piece = shortLine / 2 + 1;
    std::int64_t lines = 0;
    const char* p = cursor_;
    while (good() && end_ - p >= piece) {
        std::uint8_t feeds = 0;
        for (std::ptrdiff_t i = 0; i < piece; ++i) {
            feeds = static_cast<std::uint8_t>(feeds + (p[i] == '\n' ? 1 : 0));
        }
        if (feeds == 0 || feeds > most - lines) {
            break;
        }
        lines += feeds;
        p += piece;
    }
    while (p != cursor_ && p[-1] != '\n') {
        --p;
    }
    cursor_ = p;
    return lines;
}

bool TextStream::skipLine(std::size_t limit) {
    return takeLine(nullptr, limit);
}

bool TextStream::takeLine(std::string* line, std::size_t limit) {
    if (!good()) {
        return failToken();
    }
    std::size_t length = 0;
    while (true) {
        // One more than may be taken, as that could be the line feed.
        const std::size_t left = limit == noLimit ? noLimit : limit - length + 1;
        const std::size_t window = std::min(static_cast<std::size_t>(end_ - cursor_), left);
        const auto* const feed = static_cast<const char*>(std::memchr(cursor_, '\n', window));
        const std::size_t text = feed == nullptr ? window : static_cast<std::size_t>(feed - cursor_);
        const std::size_t taken = std::min(text, limit - length);
        if (line != nullptr) {
            line->append(cursor_, taken);
        }
        length += taken;
        cursor_ += taken;
        if (feed != nullptr) {
            ++cursor_;
            return true;
        }
        if (taken < text) {
            return failToken();
        }
        if (!refill()) {
            eof_ = true;
            return length > 0 || failToken();
        }
    }
}

} // namespace velmora
