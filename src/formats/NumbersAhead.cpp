#include "NumbersAhead.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <system_error>

#include "characters.h"
#include "parallel.h"

namespace velmora {

namespace {

using Number = NumbersAhead::Number;

/// Most whole numbers have few digits, and white space behind them.
bool convertFewDigits(const char* begin, const char* text, std::vector<Number>& numbers) {
    constexpr int mostDigits = 9;
    const bool negative = *begin == '-';
    const char* const firstDigit = begin + (isSign(*begin) ? 1 : 0);
    const char* p = firstDigit;
    std::int32_t magnitude = 0;
    for (; isDigit(*p) && p - firstDigit < mostDigits; ++p) {
        magnitude = 10 * magnitude + (*p - '0');
    }
    if (p == firstDigit || !isSpace(*p)) {
        return false;
    }
    const double value = negative ? -static_cast<double>(magnitude) : magnitude;
    numbers.push_back({value, static_cast<std::uint32_t>(begin - text), static_cast<std::uint16_t>(p - begin), true});
    return true;
}

/// A word that begins like a number.
void convertNumber(const char* begin, const char* text, const char* end, std::vector<Number>& numbers) {
    if (convertFewDigits(begin, text, numbers)) {
        return;
    }
    double value = 0.0;
    const auto [stop, error] = std::from_chars(begin + (*begin == '+' ? 1 : 0), end, value);
    // At the end of the block the token may go on; at an exponent mark it does go on, wrongly.
    if (error == std::errc{} && stop != end && !isExponentMark(*stop) &&
        stop - begin <= std::numeric_limits<std::uint16_t>::max()) {
        numbers.push_back(
            {value, static_cast<std::uint32_t>(begin - text), static_cast<std::uint16_t>(stop - begin), false});
    }
}

/// The numbers of the words that begin in a piece.
void convertPiece(const char* text, std::size_t size, std::size_t first, std::size_t last,
                  std::vector<Number>& numbers) {
    const char* const end = text + size;
    const char* const endOfPiece = text + last;
    const char* p = text + first;
    if (first > 0) {
        --p; // a word that began before belongs to the piece before
        while (p != endOfPiece && !isSpace(*p)) {
            ++p;
        }
    }
    while (true) {
        while (p != endOfPiece && isSpace(*p)) {
            ++p;
        }
        if (p == endOfPiece) {
            return;
        }
        const char* const firstDigit = p + (isSign(*p) ? 1 : 0);
        const std::size_t before = numbers.size();
        if (isDigit(*firstDigit) || *firstDigit == '.') {
            convertNumber(p, text, end, numbers);
        }
        p += numbers.size() > before ? numbers.back().length : 0;
        while (p < endOfPiece && !isSpace(*p)) {
            ++p;
        }
        if (p >= endOfPiece) {
            return; // its last number may reach into the next piece
        }
    }
}

} // namespace

AheadSizes& aheadSizes() {
    static AheadSizes sizes;
    return sizes;
}

void NumbersAhead::convert(const char* text, std::size_t size, std::size_t piece) {
    count_ = (size + piece - 1) / piece;
    if (pieces_.size() < std::max<std::size_t>(count_, 1)) {
        pieces_.resize(std::max<std::size_t>(count_, 1));
    }
    pieces_.front().clear();
    forEachChunk(size, piece, [&](std::size_t first, std::size_t last, std::size_t) {
        std::vector<Number>& numbers = pieces_[first / piece];
        numbers.clear();
        convertPiece(text, size, first, last, numbers);
        numbers.push_back({0.0, behindAll, 0, false});
    });
    if (count_ == 0) {
        pieces_.front().push_back({0.0, behindAll, 0, false});
    }
    piece_ = 0;
    next_ = pieces_.front().data();
    ready_ = true;
}

const NumbersAhead::Number* NumbersAhead::inNextPiece(std::size_t begin) {
    while (next_->begin == behindAll && piece_ + 1 < count_) {
        next_ = pieces_[++piece_].data();
        while (next_->begin < begin) {
            ++next_;
        }
    }
    return next_->begin == begin ? next_ : nullptr;
}

} // namespace velmora
