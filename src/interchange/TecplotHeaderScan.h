#pragma once

#include <cstdint>
#include <string>

#include "TextStream.h"

namespace velmora {

/// Cuts header texts out of a Tecplot file, character by character and with no notion of keywords. A header ends where
/// three numbers in a row stand outside of brackets and quotes; there its zone's data begins. Runs of white space
/// become their first character, a comment becomes a line feed.
class TecplotHeaderScan {
public:
    /// `stream` must outlive the scan.
    explicit TecplotHeaderScan(TextStream& stream) : stream_(stream) {}

    /// Takes the next header text and leaves the stream at the first of the three numbers or, when there are none, at
    /// the end of the file. Numbers before the first word are passed over. Linear in what is taken. Raises ParseError
    /// when it is longer than any header.
    const std::string& next();

    /// Where the first word of the last header stands in the file: the first line of its line count. Numbers that were
    /// passed over put it right behind them.
    std::int64_t zoneStart() const { return zoneStart_; }

private:
    void takeBlank(char c);
    void takeUpTo(char open, char close);
    void takeOther(char c);
    bool dataBegins();
    void passLeftOverData();
    int takeToken();

    TextStream& stream_;
    std::string text_;
    std::string token_;
    std::int64_t zoneStart_ = 0;
    bool lastWasBlank_ = true;
    bool seenWord_ = false;
};

/// Goes to the next word "ZONE" that begins with an upper-case "Z" (which may stand within a longer word: "ARZONE " has
/// one) and is delimited by white space behind. Without one the stream ends up in the state `eof`.
void skipToTecplotZone(TextStream& stream);

} // namespace velmora
