#include "TextStream.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "BlocksAhead.h"
#include "characters.h"
#include "number_token.h"
#include "parallel.h"

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
    if (mayReadAhead_ && ++numbersTaken_ > aheadSizes().numbersBefore) {
        beginAhead();
    }
    return nullptr;
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
        ++start;
    }
    const char* stop = start;
    while (static_cast<unsigned char>(*stop) > ' ') {
        ++stop;
    }
    // At the end of the block, and at a control character, the word may go on.
    if (stop != start && isSpace(*stop) && good()) {
        word = std::string_view(start, static_cast<std::size_t>(stop - start));
        cursor_ = stop;
        return true;
    }
    return readWordSlowly(word);
}

bool TextStream::readWordSlowly(std::string_view& word) {
    if (!beginToken()) {
        return false;
    }
    token_.clear();
    do {
        const char* const stop = std::find_if(cursor_, end_, [](char c) { return isSpace(c); });
        token_.append(cursor_, stop);
        cursor_ = stop;
        eof_ = stop == end_ && !refill();
    } while (cursor_ != end_ && !isSpace(*cursor_));
    word = token_;
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
    start += *start == '+' && isDigit(start[1]) ? 1 : 0;
    std::int32_t number = 0;
    const auto [stop, error] = std::from_chars(start, end_, number);
    // At the end of the block the number may go on.
    if (error == std::errc{} && stop != end_ && good()) {
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
    const char* const firstDigit = start + (isSign(*start) ? 1 : 0);
    if (isDigit(*firstDigit) || *firstDigit == '.') {
        double number = 0.0;
        const auto [stop, error] = std::from_chars(start + (*start == '+' ? 1 : 0), end_, number);
        // At the end of the block the token may go on; at an exponent mark it does go on, wrongly.
        if (error == std::errc{} && stop != end_ && !isExponentMark(*stop) && good()) {
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

bool TextStream::readDoubleSlowly(double& value) {
    if (!beginToken()) {
        return false;
    }
    collectDouble();
    if (!convertDouble(token_, value)) {
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

void TextStream::takeIntoToken() {
    token_ += *cursor_;
    ++cursor_;
}

void TextStream::takeDigits() {
    while (isDigit(nextOfToken())) {
        takeIntoToken();
    }
}

// The next byte, NUL at the end of the file: neither goes on with a number.
char TextStream::nextOfToken() {
    if (cursor_ == end_ && !eof_) {
        eof_ = !refill();
    }
    return *cursor_;
}

// Moves to token_ what a stream takes for a floating-point number, whether it is one or not.
void TextStream::collectDouble() {
    const auto takeIf = [this](bool wanted) {
        if (wanted) {
            takeIntoToken();
        }
    };
    token_.clear();
    takeIf(isSign(nextOfToken()));
    const std::size_t mantissa = token_.size();
    takeDigits();
    const bool wholeDigits = token_.size() > mantissa;
    takeIf(nextOfToken() == '.');
    const std::size_t fraction = token_.size();
    takeDigits();
    if ((wholeDigits || token_.size() > fraction) && isExponentMark(nextOfToken())) {
        takeIf(true);
        takeIf(isSign(nextOfToken()));
        takeDigits();
    }
}

bool TextStream::getline(std::string& line, std::size_t limit) {
    line.clear();
    return takeLine(&line, limit);
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
