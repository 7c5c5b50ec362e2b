#include "TecplotHeaderScan.h"

#include <locale>
#include <sstream>

#include "characters.h"
#include "letter_case.h"
#include "tecplot_unit.h"
#include "zExceptions.h"

namespace velmora {

namespace {

constexpr int endOfFile = -1;

bool beginsNumber(int c) {
    return isDigit(c) || isSign(c) || c == '.';
}

// A token that only begins with a number converts too.
bool convertsToNumber(const std::string& token) {
    if (token.empty() || !beginsNumber(static_cast<unsigned char>(token.front()))) {
        return false;
    }
    std::istringstream stream(token);
    stream.imbue(std::locale::classic());
    double value = 0.0;
    return !(stream >> value).fail();
}

// A file of one endless line must not fill the memory; no header comes near this.
void keepWithinHeader(const std::string& text) {
    constexpr std::size_t longest = std::size_t{1} << 22;
    if (text.size() > longest) {
        throw ParseError(tecplotUnit, __LINE__, "a header of more than 4 million characters");
    }
}

// Takes a word; true when it is "ZONE" in letters of either case. However long, it is not kept.
bool takeZoneWord(TextStream& stream) {
    constexpr std::size_t enough = 5;
    std::string start;
    for (int c = stream.peek(); c != endOfFile && !isSpace(c); c = stream.peek()) {
        stream.get();
        if (start.size() < enough) {
            start += static_cast<char>(c);
        }
    }
    return upperCase(start) == "ZONE";
}

} // namespace

const std::string& TecplotHeaderScan::next() {
    text_.clear();
    text_.reserve(2000);
    lastWasBlank_ = true;
    seenWord_ = false;
    for (int c = stream_.get(); c != endOfFile; c = stream_.get()) {
        if (c == ' ' || c == '\t' || c == '\n' || c == '\r') {
            takeBlank(static_cast<char>(c));
        } else if (beginsNumber(c)) {
            stream_.seek(stream_.tell() - 1);
            if (!seenWord_) {
                passLeftOverData();
            } else if (dataBegins()) {
                break;
            }
        } else if (c == '#') {
            stream_.skipLine();
            text_ += '\n';
            lastWasBlank_ = true;
        } else if (c == '[') {
            takeUpTo('[', ']');
        } else if (c == '"') {
            takeUpTo('"', '"');
        } else {
            takeOther(static_cast<char>(c));
        }
    }
    return text_;
}

void TecplotHeaderScan::takeBlank(char c) {
    if (!lastWasBlank_) {
        text_ += c;
        lastWasBlank_ = true;
    }
}

// Lists in brackets and texts in quotes are copied whole, numbers and white space included; they count as no word.
// What is not closed runs to the end of the file.
void TecplotHeaderScan::takeUpTo(char open, char close) {
    text_ += open;
    lastWasBlank_ = false;
    for (int c = stream_.get(); c != endOfFile; c = stream_.get()) {
        text_ += static_cast<char>(c);
        if (c == close) {
            return;
        }
        keepWithinHeader(text_);
    }
}

void TecplotHeaderScan::takeOther(char c) {
    text_ += c;
    keepWithinHeader(text_);
    lastWasBlank_ = false;
    if (!seenWord_) {
        seenWord_ = true;
        zoneStart_ = stream_.tell();
    }
}

// Whether the next three tokens are numbers; the stream then stays in front of them. Otherwise the tokens up to the
// one that is no number go to the header text.
bool TecplotHeaderScan::dataBegins() {
    constexpr int wanted = 3;
    const std::int64_t start = stream_.tell();
    std::string taken;
    for (int count = 0; count < wanted; ++count) {
        const int delimiter = takeToken();
        taken += token_;
        if (delimiter != endOfFile) {
            taken += static_cast<char>(delimiter);
        }
        if (!convertsToNumber(token_)) {
            text_ += taken;
            keepWithinHeader(text_);
            lastWasBlank_ = true;
            return false;
        }
    }
    stream_.clear(); // the third number may be the last thing in the file
    stream_.seek(start);
    return true;
}

// The rest of a zone whose header asked for less than the file has. It counts as the word that a header begins with.
void TecplotHeaderScan::passLeftOverData() {
    std::int64_t behindNumber = stream_.tell();
    for (double ignored = 0.0; stream_.readDouble(ignored);) {
        behindNumber = stream_.tell();
    }
    stream_.clear();
    stream_.seek(behindNumber);
    seenWord_ = true;
    zoneStart_ = behindNumber;
}

// Takes a token into token_ up to a comma, to white space with at least one character before it, or to a comment,
// which is passed over. The delimiter is taken too and is the result; at the end of the file there is none.
int TecplotHeaderScan::takeToken() {
    token_.clear();
    for (int c = stream_.get(); c != endOfFile; c = stream_.get()) {
        if (c == '#') {
            stream_.skipLine();
            return c;
        }
        if (c == ',' || (isSpace(c) && !token_.empty())) {
            return c;
        }
        if (!isSpace(c)) {
            token_ += static_cast<char>(c);
            keepWithinHeader(token_);
        }
    }
    return endOfFile;
}

void skipToTecplotZone(TextStream& stream) {
    while (stream.skipTo('Z')) {
        const std::int64_t start = stream.tell();
        if (takeZoneWord(stream)) {
            stream.seek(start);
            return;
        }
    }
}

} // namespace velmora
