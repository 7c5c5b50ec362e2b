#include "number_token.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

#include "characters.h"

namespace velmora {

namespace {

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

} // namespace

bool convertDouble(std::string_view token, double& value) {
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

// ---- DecimalText ----------------------------------------------------------------------------------------------------

void DecimalText::takeDigit(char digit) {
    // What lies in the middle between two doubles has up to 767 digits. Of those behind them it only matters whether
    // one is not 0.
    constexpr std::size_t mostDigits = 800;
    hasDigits_ = true;
    const bool leads = digits_.empty() && digit == '0';
    if (!leads && digits_.size() == mostDigits) {
        cutNonZero_ = cutNonZero_ || digit != '0';
        exponent_ += behindPoint_ ? 0 : 1;
        return;
    }
    exponent_ -= behindPoint_ ? 1 : 0;
    if (!leads) {
        digits_ += digit;
    }
}

void DecimalText::takeExponentDigit(char digit) {
    constexpr std::int64_t enough = 100'000'000'000'000'000; // no file has digits that make up for more
    hasExponentDigits_ = true;
    written_ = written_ < enough ? 10 * written_ + (digit - '0') : written_;
}

bool DecimalText::convert(double& value) const {
    if (!hasDigits_ || (hasExponent_ && !hasExponentDigits_)) {
        return false;
    }
    std::string text = negative_ ? "-" : "";
    text += digits_.empty() ? "0" : digits_;
    text += cutNonZero_ ? "1" : "";
    const std::int64_t exponent = exponent_ - (cutNonZero_ ? 1 : 0) + (exponentNegative_ ? -written_ : written_);
    return convertDouble(text + 'e' + std::to_string(exponent), value);
}

} // namespace velmora
