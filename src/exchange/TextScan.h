#pragma once

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "characters.h"

namespace velmora {

/// Walks over a text that is held whole, with a NUL behind its last character, token by token. Line ends are LF, CR LF
/// or CR alone.
class TextScan {
public:
    explicit TextScan(std::string_view text) : begin_(text.data()), at_(begin_), end_(begin_ + text.size()) {}

    bool atEnd() const { return at_ == end_; }
    /// The character at the position; NUL at the end.
    char peek() const { return *at_; }
    void advance() { at_ += at_ == end_ ? 0 : 1; }
    std::size_t tell() const { return static_cast<std::size_t>(at_ - begin_); }
    void seek(std::size_t position) { at_ = begin_ + position; }
    /// Whether nothing goes on with what was taken last: white space, a comment or the end stands here.
    bool atWordEnd() const { return at_ == end_ || isSpace(*at_) || *at_ == '#'; }
    /// What is left of the text.
    std::string_view rest() const { return {at_, static_cast<std::size_t>(end_ - at_)}; }

    /// Passes over white space, line ends included. False when nothing else is left.
    bool skipSpace() {
        while (isSpace(*at_)) { // the NUL behind the text stops it
            ++at_;
        }
        return at_ != end_;
    }
    /// The same, over commas too.
    bool skipSeparators() {
        while (isSpace(*at_) || *at_ == ',') {
            ++at_;
        }
        return at_ != end_;
    }
    /// Passes over blanks and tabs; false at the end of the line.
    bool skipBlanks();
    /// Takes the rest of the line with its end; the text is without it.
    std::string_view takeLine();
    /// Passes over white space and, from `mark` to the end of its line, comments. False when nothing else is left.
    bool skipComments(char mark);
    /// Takes the characters up to white space.
    std::string_view takeWord();

    /// Takes a number where the position is at one, white space not passed over: correctly rounded, one too small a
    /// zero. Exponents are as in C or in Fortran (`1D5`, `1.5-104`). "nan", "inf", `1.#QNAN` and one too large for a
    /// double are numbers too, and not finite. False, with nothing taken, at anything else.
    bool takeNumber(double& value) {
        double number = 0.0;
        const auto [stop, error] = std::from_chars(at_, end_, number);
        if (error == std::errc{} && !continuesNumber(*stop)) {
            at_ = stop;
            value = number;
            return true;
        }
        return takeNumberSlowly(value);
    }
    /// Takes a decimal integer with or without sign; false, with nothing taken, at anything else or one that has no
    /// room in 64 bits.
    bool takeInteger(std::int64_t& value);

private:
    static bool continuesNumber(char c) { return isLetter(c) || isSign(c) || c == '#'; }
    bool takeNumberSlowly(double& value);

    const char* begin_;
    const char* at_;
    const char* end_;
};

/// The letters "A" to "Z" made small.
std::string smallLetters(std::string_view text);
/// Whether two texts are the same but for the case of letters.
bool sameWord(std::string_view a, std::string_view b);
/// Without the white space at both ends.
std::string_view trimmed(std::string_view text);

} // namespace velmora
