#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velmora {

/// Converts what a stream in the C locale has collected for a floating-point number: correctly rounded; one too
/// small for a double gives a zero of its sign. False when the token as a whole is no number, `value` then keeps
/// what it had, and when it is too large, `value` then becomes the limit.
bool convertDouble(std::string_view token, double& value);

/// A floating-point number that is taken character by character, however many it has: of its digits those are held that
/// decide which double is the nearest, of its exponent the value.
class DecimalText {
public:
    void clear() { *this = {}; }
    void takeSign(char sign) { negative_ = sign == '-'; }
    /// A digit in front of the exponent.
    void takeDigit(char digit);
    void takePoint() { behindPoint_ = true; }
    bool hasDigits() const { return hasDigits_; }
    void takeExponentMark() { hasExponent_ = true; }
    void takeExponentSign(char sign) { exponentNegative_ = sign == '-'; }
    void takeExponentDigit(char digit);

    /// What convertDouble makes of the whole text.
    bool convert(double& value) const;

private:
    std::string digits_;        ///< those that count, from the first that is not 0
    bool cutNonZero_ = false;   ///< one behind those held is not 0
    std::int64_t exponent_ = 0; ///< of the last digit held, without what is written
    std::int64_t written_ = 0;  ///< the exponent's digits
    bool negative_ = false;
    bool hasDigits_ = false;
    bool behindPoint_ = false;
    bool hasExponent_ = false;
    bool hasExponentDigits_ = false;
    bool exponentNegative_ = false;
};

} // namespace velmora
