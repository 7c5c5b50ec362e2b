#include "VrmlParser.h"

#include <algorithm>
#include <cstdint>
#include <locale>
#include <stdexcept>
#include <string_view>

#include <boost/regex.hpp>

#include "characters.h"
#include "number_text.h"
#include "zExceptions.h"

namespace velmora {

namespace {

constexpr const char* unitName = "zVRMLReader";
constexpr std::string_view brackets = "()[]{}";
/// Characters that are held of a line or a word; none that anybody means is as long.
constexpr std::size_t mostHeld = TextStream::longestWord;

// Versions 1 and 2 have the same words.
const VrmlKeywords* keywordsOf(int version) {
    static constexpr VrmlKeywords words{"IndexedFaceSet", "coord", "Coordinate", "point", "coordIndex"};
    return version == 1 || version == 2 ? &words : nullptr;
}

// A text made to be hard for the expression counts as one that does not match.
/// Cuts every run of digits to a length that is out of range all the same: the expression takes time by the square of
/// a run's length.
void shortenDigits(std::string& line) {
    constexpr int longest = 20;
    int run = 0;
    const auto surplus = [&run](char c) {
        run = c >= '0' && c <= '9' ? run + 1 : 0;
        return run > longest;
    };
    line.erase(std::remove_if(line.begin(), line.end(), surplus), line.end());
}

bool matchHeader(const std::string& line, boost::smatch& match) {
    boost::regex expression;
    expression.imbue(std::locale::classic());
    expression.assign("#VRML V([[:digit:]]+).[[:digit:]]+ .*[[:space:]]", boost::regex::extended | boost::regex::icase);
    try {
        return boost::regex_match(line, match, expression);
    } catch (const std::runtime_error&) {
        return false;
    }
}

bool isBracket(int c) {
    return c >= 0 && brackets.find(static_cast<char>(c)) != std::string_view::npos;
}

bool isOpeningBracket(const std::string& word) {
    return word == "(" || word == "[" || word == "{";
}

bool isName(const std::string& word) {
    return std::all_of(word.begin(), word.end(), [](char c) { return isLetter(c); });
}

bool isNumber(const std::string& word) {
    try {
        fromString<double>(word);
        return true;
    } catch (const ValueError&) {
        return false;
    }
}

char closingBracket(char opening) {
    switch (opening) {
    case '(':
        return ')';
    case '[':
        return ']';
    case '{':
        return '}';
    default:
        throw AlgoError(unitName, __LINE__);
    }
}

} // namespace

void VrmlParser::readHeader() {
    std::string line;
    if (!input_.getline(line, mostHeld) && !line.empty()) {
        input_.clear(); // the rest of so long a line is passed over: only its beginning tells anything
        input_.skipLine();
    }
    line += '\n';
    shortenDigits(line);
    boost::smatch match;
    if (!matchHeader(line, match)) {
        throw ParseError(unitName, __LINE__, "Is not a valid VRML file");
    }
    keywords_ = keywordsOf(fromString<int>(match[1].str()));
    if (keywords_ == nullptr) {
        throw FileError(unitName, __LINE__, "Unsupported version of VRML file");
    }
}

// A bracket is a word of its own; any other word ends before the next one. Takes a word, or as much of one as is held;
// true when it goes on.
bool VrmlParser::takeOfWord() {
    word_.clear();
    int c = input_.peek();
    bool goesOn = false;
    do {
        word_ += static_cast<char>(input_.get());
        goesOn = !isBracket(c) && (c = input_.peek()) >= 0 && !isSpace(c) && !isBracket(c);
    } while (goesOn && word_.size() < mostHeld);
    return goesOn;
}

void VrmlParser::readWord() {
    if (!input_.skipSpace()) {
        throw EOFError(unitName, __LINE__);
    }
    if (takeOfWord()) {
        throw ParseError(unitName, __LINE__, "a word of more than " + std::to_string(mostHeld) + " characters");
    }
}

void VrmlParser::expectWord(const char* wanted) {
    readWord();
    if (word_ != wanted) {
        throw ParseError(unitName, __LINE__);
    }
}

void VrmlParser::findNode() {
    do {
        if (!passToFaceSet()) {
            throw EOFError(unitName, __LINE__);
        }
    } while (!takeFaceSet());
}

// Takes a word; one that is not the face set's name may place, colour or name what comes.
bool VrmlParser::takeFaceSet() {
    bool goesOn = takeOfWord();
    if (!goesOn && word_ == keywords_->faceSet) {
        return true;
    }
    scene_.take(word_);
    while (goesOn) {
        goesOn = takeOfWord();
        scene_.take(word_);
    }
    return false;
}

// Goes to the next letter with which the face set's name begins, wherever it stands. What is passed over may place,
// colour or name what comes.
bool VrmlParser::passToFaceSet() {
    int c = input_.peek();
    while (c >= 0 && c != keywords_->faceSet[0]) {
        scene_.take(static_cast<char>(c));
        input_.get();
        c = input_.peek();
    }
    return c >= 0;
}

void VrmlParser::parseNode(VertexList& points, PolygonList& polygons) {
    metComma_ = metReference_ = metPartOfPoint_ = false;
    scene_.endNode();
    expectWord("{");
    for (readWord(); word_ != "}"; readWord()) {
        scene_.takeFieldOfFaces(word_);
        if (word_ == keywords_->indexField) {
            readIndices(polygons);
        } else if (word_ == keywords_->coordinateField) {
            readCoordinates(points);
        } else if (isName(word_)) {
            skipField();
        } else {
            throw ParseError(unitName, __LINE__);
        }
    }
}

// What is no coordinate node (a reference to one by its name) is passed over.
void VrmlParser::readCoordinates(VertexList& points) {
    readWord();
    if (word_ != keywords_->coordinateNode) {
        metReference_ = true;
        return;
    }
    expectWord("{");
    for (readWord(); word_ != "}"; readWord()) {
        if (word_ == keywords_->pointField) {
            readPoints(points);
        }
    }
}

void VrmlParser::readPoints(VertexList& points) {
    expectWord("[");
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    while (input_.readDouble(x)) {
        if (!input_.readDouble(y) || !input_.readDouble(z)) {
            metPartOfPoint_ = true;
            break;
        }
        points.append(x, y, z);
    }
    input_.clear();
    noteComma();
    expectWord("]");
}

void VrmlParser::noteComma() {
    metComma_ = metComma_ || (input_.skipSpace() && input_.peek() == ',');
}

// An end mark behind an end mark is taken for a corner: wanted.
void VrmlParser::readIndices(PolygonList& polygons) {
    expectWord("[");
    std::int32_t index = 0;
    while (input_.readInt(index)) {
        if (index != -1 || polygons.isOpenEmpty()) {
            polygons.addCorner(index);
        } else {
            polygons.close();
        }
    }
    input_.clear();
    noteComma();
    expectWord("]");
    if (!polygons.isOpenEmpty()) {
        polygons.close();
    }
}

void VrmlParser::skipField() {
    readWord();
    if (word_ == "NULL" || word_ == "TRUE" || word_ == "FALSE") {
        return;
    }
    if (isOpeningBracket(word_)) {
        skipBrackets(word_[0]);
        return;
    }
    if (isNumber(word_)) {
        return;
    }
    if (!isName(word_)) {
        throw ParseError(unitName, __LINE__);
    }
    readWord(); // behind a node's type
    if (!isOpeningBracket(word_)) {
        throw ParseError(unitName, __LINE__);
    }
    skipBrackets(word_[0]);
}

// Called behind the opening bracket. Only brackets of its own kind count, and none within a string.
void VrmlParser::skipBrackets(char opening) {
    const char closing = closingBracket(opening);
    for (std::int64_t depth = 1; depth > 0;) {
        const int c = takeInBrackets();
        if (c == '"') {
            skipString();
        } else if (c == opening) {
            ++depth;
        } else if (c == closing) {
            --depth;
        }
    }
}

void VrmlParser::skipString() {
    for (int c = takeInBrackets(); c != '"'; c = takeInBrackets()) {
        if (c == '\\') {
            takeInBrackets();
        }
    }
}

int VrmlParser::takeInBrackets() {
    const int c = input_.get();
    if (c < 0) {
        throw IOError(unitName, __LINE__, "Unexpected EOF: find_appropriate_close_brace():");
    }
    return c;
}

} // namespace velmora
