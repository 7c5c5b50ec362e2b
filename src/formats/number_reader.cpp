#include "number_reader.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <string_view>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velmora {

namespace {

constexpr int endOfFile = -1;

bool isSpace(int c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool isDigit(int c) {
    return c >= '0' && c <= '9';
}

bool isSign(int c) {
    return c == '+' || c == '-';
}

bool isExponentMark(int c) {
    return c == 'e' || c == 'E';
}

// Opening without blocking keeps a pipe that nobody writes to from holding up the program; reading then waits again.
int openForReading(const std::filesystem::path& path) {
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0) {
        return descriptor;
    }
    struct stat status {};
    if (::fstat(descriptor, &status) != 0 || S_ISDIR(status.st_mode)) {
        ::close(descriptor);
        return -1;
    }
    if (!S_ISREG(status.st_mode)) {
        ::fcntl(descriptor, F_SETFL, ::fcntl(descriptor, F_GETFL) & ~O_NONBLOCK);
    }
    return descriptor;
}

// The power of ten of the first digit that counts in a well-formed number without sign; it tells a number that is
// too large from one that is too small.
std::int64_t leadingPower(std::string_view number) {
    const std::size_t mark = number.find_first_of("eE");
    const std::string_view mantissa = number.substr(0, mark);
    const std::size_t first = mantissa.find_first_of("123456789");
    const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
    if (first == std::string_view::npos) {
        return 0;
    }
    const std::int64_t power = static_cast<std::int64_t>(point) - static_cast<std::int64_t>(first);
    if (mark == std::string_view::npos) {
        return power;
    }
    std::string_view digits = number.substr(mark + 1);
    const bool negative = digits.starts_with('-');
    digits.remove_prefix(isSign(digits.front()) ? 1 : 0);
    std::int64_t exponent = std::numeric_limits<std::int64_t>::max() / 2; // stays so when the digits exceed 64 bits
    std::from_chars(digits.data(), digits.data() + digits.size(), exponent);
    exponent = std::min(exponent, std::numeric_limits<std::int64_t>::max() / 2);
    return power + (negative ? -exponent : exponent);
}

// False when the token is no number or too large a one.
bool convert(std::string_view token, double& value) {
    const bool negative = token.starts_with('-');
    token.remove_prefix(!token.empty() && isSign(token.front()) ? 1 : 0);
    if (token.empty()) {
        return false;
    }
    double magnitude = 0.0;
    const char* const end = token.data() + token.size();
    const auto [stop, error] = std::from_chars(token.data(), end, magnitude);
    if (error == std::errc::invalid_argument || stop != end) {
        return false;
    }
    bool tooLarge = std::isinf(magnitude);
    if (error == std::errc::result_out_of_range) {
        tooLarge = leadingPower(token) > 0;
        magnitude = 0.0;
    }
    if (tooLarge) {
        magnitude = std::numeric_limits<double>::max();
    }
    value = negative ? -magnitude : magnitude;
    return !tooLarge;
}

} // namespace

NumberReader::NumberReader(const std::filesystem::path& path, std::size_t blockSize)
    : descriptor_(openForReading(path)), blockSize_(std::max<std::size_t>(blockSize, 1)),
      block_(std::make_unique_for_overwrite<char[]>(blockSize_ + 1)), cursor_(block_.get()), end_(block_.get()) {
    block_[0] = '\0';
    failed_ = !isOpen();
}

NumberReader::~NumberReader() {
    if (isOpen()) {
        ::close(descriptor_);
    }
}

// An empty block sends every later read to its slow path, which looks at failed_ first.
bool NumberReader::fail() {
    failed_ = true;
    block_[0] = '\0';
    cursor_ = block_.get();
    end_ = cursor_;
    return false;
}

// Called with the block used up. A read error counts as the end of the file.
bool NumberReader::refill() {
    ssize_t count = 0;
    if (!exhausted_) {
        do {
            count = ::read(descriptor_, block_.get(), blockSize_);
        } while (count < 0 && errno == EINTR);
    }
    exhausted_ = count <= 0;
    const std::size_t size = exhausted_ ? 0 : static_cast<std::size_t>(count);
    block_[size] = '\0';
    cursor_ = block_.get();
    end_ = cursor_ + size;
    return size > 0;
}

int NumberReader::peek() {
    if (cursor_ == end_ && !refill()) {
        return endOfFile;
    }
    return static_cast<unsigned char>(*cursor_);
}

bool NumberReader::skipSpace() {
    int c = peek();
    while (isSpace(c)) {
        ++cursor_;
        c = peek();
    }
    return c != endOfFile;
}

bool NumberReader::readInt(std::int32_t& value) {
    if (failed_) {
        return false;
    }
    if (!skipSpace()) {
        endedAtEndOfFile_ = true;
        return fail();
    }
    const bool negative = peek() == '-';
    cursor_ += isSign(peek()) ? 1 : 0;
    if (!isDigit(peek())) {
        return fail();
    }
    std::int64_t magnitude = 0;
    for (int c = peek(); isDigit(c); c = peek()) {
        // Far above the range the number only has to stay there.
        magnitude = magnitude < 1'000'000'000'000 ? magnitude * 10 + (c - '0') : magnitude;
        ++cursor_;
    }
    using Limits = std::numeric_limits<std::int32_t>;
    const std::int64_t exact = negative ? -magnitude : magnitude;
    value = static_cast<std::int32_t>(std::clamp<std::int64_t>(exact, Limits::min(), Limits::max()));
    return value == exact || fail();
}

bool NumberReader::readDouble(double& value) {
    const char* start = cursor_;
    while (isSpace(*start)) { // the NUL behind the block stops it
        ++start;
    }
    const char* const firstDigit = start + (isSign(*start) ? 1 : 0);
    if (isDigit(*firstDigit) || *firstDigit == '.') {
        double number = 0.0;
        const auto [stop, error] = std::from_chars(start + (*start == '+' ? 1 : 0), end_, number);
        // At the end of the block the token may go on; at an exponent mark it does go on, wrongly.
        if (error == std::errc{} && stop != end_ && !isExponentMark(*stop)) {
            cursor_ = stop;
            value = number;
            return true;
        }
    }
    return readDoubleSlowly(value);
}

bool NumberReader::readDoubleSlowly(double& value) {
    if (failed_ || !skipSpace()) {
        return fail();
    }
    collectDouble();
    return convert(token_, value) || fail();
}

void NumberReader::takeDigits() {
    for (int c = peek(); isDigit(c); c = peek()) {
        token_ += static_cast<char>(c);
        ++cursor_;
    }
}

// Moves to token_ what a stream takes for a floating-point number, whether it is one or not.
void NumberReader::collectDouble() {
    const auto takeIf = [this](bool wanted) {
        if (wanted) {
            token_ += static_cast<char>(peek());
            ++cursor_;
        }
    };
    token_.clear();
    takeIf(isSign(peek()));
    const std::size_t mantissa = token_.size();
    takeDigits();
    const bool wholeDigits = token_.size() > mantissa;
    takeIf(peek() == '.');
    const std::size_t fraction = token_.size();
    takeDigits();
    if ((wholeDigits || token_.size() > fraction) && isExponentMark(peek())) {
        takeIf(true);
        takeIf(isSign(peek()));
        takeDigits();
    }
}

bool NumberReader::readLine(std::string& line) {
    line.clear();
    return takeLine(&line);
}

bool NumberReader::skipLine() {
    return takeLine(nullptr);
}

bool NumberReader::takeLine(std::string* line) {
    if (failed_) {
        return false;
    }
    std::size_t length = 0;
    while (length <= lineLimit) {
        if (cursor_ == end_ && !refill()) {
            return length > 0 || fail();
        }
        const std::size_t window = std::min(static_cast<std::size_t>(end_ - cursor_), lineLimit + 1 - length);
        const auto* const feed = static_cast<const char*>(std::memchr(cursor_, '\n', window));
        const std::size_t taken = feed == nullptr ? window : static_cast<std::size_t>(feed - cursor_);
        if (line != nullptr) {
            line->append(cursor_, std::min(taken, lineLimit - length));
        }
        length += taken;
        cursor_ += taken;
        if (feed != nullptr) {
            ++cursor_;
            return true;
        }
    }
    return fail();
}

bool NumberReader::skipLines(std::int64_t count) {
    for (; count > 0; --count) {
        // A line that lies in the block whole, as nearly all do.
        const std::size_t window = std::min(static_cast<std::size_t>(end_ - cursor_), lineLimit + 1);
        const auto* const feed = static_cast<const char*>(std::memchr(cursor_, '\n', window));
        if (feed != nullptr) {
            cursor_ = feed + 1;
        } else if (!skipLine()) {
            return false;
        }
    }
    return true;
}

} // namespace velmora
