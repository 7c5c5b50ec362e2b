#include "TextScan.h"

#include <algorithm>
#include <limits>

#include "number_token.h"

namespace velmora {

namespace {

bool isLineEnd(char c) {
    return c == '\n' || c == '\r';
}

char smallLetter(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool isFortranMark(char c) {
    return c == 'd' || c == 'D' || c == 'q' || c == 'Q';
}

} // namespace

bool TextScan::skipBlanks() {
    while (isSpace(*at_) && !isLineEnd(*at_)) {
        ++at_;
    }
    return at_ != end_ && !isLineEnd(*at_);
}

std::string_view TextScan::takeLine() {
    const char* const start = at_;
    at_ = std::find_if(at_, end_, isLineEnd);
    const std::string_view line(start, static_cast<std::size_t>(at_ - start));
    const bool pair = at_ != end_ && *at_ == '\r' && at_[1] == '\n';
    at_ += at_ == end_ ? 0 : pair ? 2 : 1;
    return line;
}

bool TextScan::skipComments(char mark) {
    while (skipSpace() && *at_ == mark) {
        takeLine();
    }
    return at_ != end_;
}

std::string_view TextScan::takeWord() {
    const char* const start = at_;
    at_ = std::find_if(at_, end_, [](char c) { return isSpace(c); });
    return {start, static_cast<std::size_t>(at_ - start)};
}

// Digits with a point, and an exponent in either language, put together as std::from_chars takes them.
bool TextScan::takeNumberSlowly(double& value) {
    constexpr std::size_t mostDigits = 4000; // more are no number that anybody writes
    const char* at = at_;
    std::string token;
    const bool negative = *at == '-';
    at += isSign(*at) ? 1 : 0;
    const auto takeDigits = [&] {
        const char* const start = at;
        while (isDigit(*at)) {
            ++at;
        }
        token.append(start, std::min(static_cast<std::size_t>(at - start), mostDigits));
        return at - start;
    };
    if (isLetter(*at)) {
        double number = 0.0; // "nan" or "inf"
        const auto [stop, error] = std::from_chars(at, end_, number);
        if (error != std::errc{} || isLetter(*stop) || isDigit(*stop)) {
            return false;
        }
        at_ = stop;
        value = negative ? -number : number;
        return true;
    }
    auto digits = takeDigits();
    if (*at == '.') {
        token += *at++;
        digits += takeDigits();
    }
    if (digits == 0) {
        return false;
    }
    if (*at == '#') {
        at_ = std::find_if(at, end_, [](char c) { return isSpace(c) || c == ','; });
        value = std::numeric_limits<double>::quiet_NaN();
        return true;
    }
    const char* const mark = at;
    const std::size_t mantissa = token.size();
    at += isExponentMark(*at) || isFortranMark(*at) ? 1 : 0;
    token += 'e';
    if (isSign(*at)) {
        token += *at++;
    }
    if (takeDigits() == 0) {
        at = mark;
        token.resize(mantissa);
    }
    if (isLetter(*at) || *at == '#') {
        return false;
    }
    double magnitude = 0.0;
    if (!convertDouble(token, magnitude)) {
        magnitude = std::numeric_limits<double>::infinity();
    }
    value = negative ? -magnitude : magnitude;
    at_ = at;
    return true;
}

bool TextScan::takeInteger(std::int64_t& value) {
    const char* const start = at_ + (*at_ == '+' && isDigit(at_[1]) ? 1 : 0);
    std::int64_t number = 0;
    const auto [stop, error] = std::from_chars(start, end_, number);
    if (error != std::errc{}) {
        return false;
    }
    at_ = stop;
    value = number;
    return true;
}

std::string smallLetters(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), smallLetter);
    return result;
}

bool sameWord(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char p, char q) { return smallLetter(p) == smallLetter(q); });
}

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isSpace(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isSpace(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

} // namespace velmora
