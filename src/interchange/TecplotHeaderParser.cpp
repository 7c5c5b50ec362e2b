#include "TecplotHeaderParser.h"

#include <algorithm>
#include <iterator>
#include <locale>
#include <numeric>
#include <optional>
#include <unordered_map>

#include "letter_case.h"
#include "number_text.h"
#include "tecplot_unit.h"
#include "zExceptions.h"

namespace velmora {

namespace {

constexpr boost::regex::flag_type posix = boost::regex::extended | boost::regex::collate;

boost::regex compile(const std::string& expression, boost::regex::flag_type flags) {
    boost::regex result;
    result.imbue(std::locale::classic());
    result.assign(expression, flags);
    return result;
}

// What follows a keyword. The class of a list takes white space too, so none needs to be taken in front of it; taking
// it twice would make a long run of it costly.
constexpr const char* variablesValue = "[[:space:]]*=[[:space:]]*(\"[[:word:]/~()-]+\",?[[:space:]]*)+";
constexpr const char* titleValue = "[[:space:]]*=[[:space:]]*\"([^\"\n\r]*)\"";
constexpr const char* integerValue = "[[:space:]]*=[[:space:]]*(\\<[[:digit:]]+\\>)";
constexpr const char* wordValue = "[[:space:]]*=[[:space:]]*(\\<[[:alpha:]]+\\>)";
constexpr const char* stringValue = "[[:space:]]*=[[:space:]]*\"([^\"\n\r]+)\"";
constexpr const char* listValue = "[[:space:]]*=[[:space:]]*\\[([[:space:][:digit:],-]+)\\]";

const boost::regex& wordExpression() {
    static const boost::regex expression = compile("(\\<[[:alpha:]]+\\>)", posix);
    return expression;
}

const boost::regex& quotedNameExpression() {
    static const boost::regex expression = compile("\"([^\"\n\r]+)\"", boost::regex::perl);
    return expression;
}

const boost::regex& listItemExpression() {
    static const boost::regex expression = compile("([[:digit:]]+)[[:space:],]*", boost::regex::perl);
    return expression;
}

std::optional<TecplotZoneType> zoneTypeNamed(const std::string& word) {
    static const std::unordered_map<std::string, TecplotZoneType> types = {
        {"ORDERED", TecplotZoneType::Ordered},
        {"FELINESEG", TecplotZoneType::LineSegments},
        {"LINESEG", TecplotZoneType::LineSegments},
        {"FETRIANGLE", TecplotZoneType::Triangles},
        {"TRIANGLE", TecplotZoneType::Triangles},
        {"FEQUADRILATERAL", TecplotZoneType::Quadrilaterals},
        {"QUADRILATERAL", TecplotZoneType::Quadrilaterals},
        {"FETETRAHEDRON", TecplotZoneType::Tetrahedra},
        {"TETRAHEDRON", TecplotZoneType::Tetrahedra},
        {"FEBRICK", TecplotZoneType::Bricks},
        {"BRICK", TecplotZoneType::Bricks}};
    const auto found = types.find(word);
    return found == types.end() ? std::nullopt : std::optional(found->second);
}

// Where ranges lie, by their steps: 1 up at the first index of each, 1 down behind its last. So a list that names a
// wide range any number of times costs no more than its length.
std::vector<bool> covered(const std::vector<std::int64_t>& steps) {
    std::vector<bool> result(steps.size() - 1);
    std::int64_t depth = 0;
    for (std::size_t index = 0; index < result.size(); ++index) {
        depth += steps[index];
        result[index] = depth > 0;
    }
    return result;
}

} // namespace

std::string missingCoordinates(const std::array<bool, 3>& found) {
    constexpr std::array<const char*, 3> names = {" 'x'", " 'y'", " 'z'"};
    std::string message = "missing coordinate(s): ";
    for (std::size_t axis = 0; axis < names.size(); ++axis) {
        message += found.at(axis) ? "" : names.at(axis);
    }
    return message;
}

bool TecplotHeaderParser::parse(const std::string& text) {
    place_ = text.begin();
    end_ = text.end();
    while (findWord()) {
        const std::string keyword = upperCase(word_);
        if (keyword == "ZONE") {
            place_ = wordEnd_;
            parseZoneHeader(); // to the end of the text: a second ZONE in it is a word like any other
            return true;
        }
        const bool ofFile = keyword == "VARIABLES" || keyword == "TITLE" || keyword == "FILETYPE";
        if (ofFile && !header_.fileHeaderRead) {
            header_.fileHeaderRead = true;
            parseFileHeader();
        } else {
            passOver(keyword);
        }
    }
    return false;
}

// The next word from place_ on.
bool TecplotHeaderParser::findWord() {
    boost::smatch match;
    if (!boost::regex_search(place_, end_, match, wordExpression())) {
        return false;
    }
    word_ = match[1].str();
    wordBegin_ = match[1].first;
    wordEnd_ = match[1].second;
    return true;
}

// Searches for the keyword as it is written with a value of that kind behind it, from the keyword on, and goes to the
// end of what is found.
boost::smatch TecplotHeaderParser::find(Value kind) {
    static constexpr std::array<const char*, 6> values = {variablesValue, titleValue,  integerValue,
                                                          wordValue,      stringValue, listValue};
    boost::regex& expression = expressions_[{kind, word_}];
    if (expression.empty()) {
        expression = compile(word_ + values.at(static_cast<std::size_t>(kind)), posix);
    }
    boost::smatch match;
    if (!boost::regex_search(wordBegin_, end_, match, expression)) {
        throw ParseError(tecplotUnit, __LINE__, report(word_));
    }
    place_ = match[0].second;
    return match;
}

std::string TecplotHeaderParser::takeText(Value kind) {
    return find(kind)[1].str();
}

std::int32_t TecplotHeaderParser::takeInteger() {
    return fromString<std::int32_t>(takeText(Value::Integer));
}

// Ends in front of the first word that is none of the file's keywords.
void TecplotHeaderParser::parseFileHeader() {
    while (findWord()) {
        const std::string keyword = upperCase(word_);
        if (keyword == "VARIABLES") {
            takeVariables();
        } else if (keyword == "TITLE") {
            header_.title = takeText(Value::Title);
        } else if (keyword == "FILETYPE") {
            place_ = wordEnd_; // so its value is a word that ends the file header
        } else {
            return;
        }
    }
}

void TecplotHeaderParser::takeVariables() {
    const boost::smatch list = find(Value::Variables);
    Position place = list[0].first;
    boost::smatch name;
    while (boost::regex_search(place, list[0].second, name, quotedNameExpression())) {
        header_.variables.push_back(name[1].str());
        place = name[0].second;
    }
    indexVariables();
    findCoordinates();
}

void TecplotHeaderParser::indexVariables() {
    std::unordered_map<std::string, std::size_t> first;
    header_.firstOfName.clear();
    for (const std::string& name : header_.variables) {
        header_.firstOfName.push_back(first.emplace(upperCase(name), header_.firstOfName.size()).first->second);
    }
}

// Of several variables of one name the last one counts.
void TecplotHeaderParser::findCoordinates() {
    constexpr std::string_view names = "XYZ";
    std::array<bool, 3> found{};
    for (std::size_t index = 0; index < header_.variables.size(); ++index) {
        const std::string name = upperCase(header_.variables[index]);
        const std::size_t axis = name.size() == 1 ? names.find(name) : std::string_view::npos;
        if (axis != std::string_view::npos) {
            found.at(axis) = true;
            header_.coordinates.at(axis) = index;
        }
    }
    if (std::find(found.begin(), found.end(), false) != found.end()) {
        throw ParseError(tecplotUnit, __LINE__, missingCoordinates(found));
    }
}

void TecplotHeaderParser::parseZoneHeader() {
    header_.zone = TecplotZoneHeader();
    header_.zone.activeVariables.resize(header_.variables.size());
    std::iota(header_.zone.activeVariables.begin(), header_.zone.activeVariables.end(), 0);
    while (findWord()) {
        takeZoneValue(upperCase(word_));
    }
}

void TecplotHeaderParser::takeZoneValue(std::string_view keyword) {
    TecplotZoneHeader& zone = header_.zone;
    if (keyword == "T") {
        zone.title = takeText(Value::String);
    } else if (keyword == "ZONETYPE" || keyword == "ET") {
        takeZoneType();
    } else if (keyword == "I") {
        zone.i = takeInteger();
    } else if (keyword == "J") {
        zone.j = takeInteger();
    } else if (keyword == "K") {
        zone.k = takeInteger();
    } else if (keyword == "NODES" || keyword == "N") {
        zone.nodes = takeInteger();
    } else if (keyword == "ELEMENTS" || keyword == "E") {
        zone.elements = takeInteger();
    } else if (keyword == "DATAPACKING" || keyword == "F") {
        takePacking();
    } else if (keyword == "PASSIVEVARLIST") {
        takePassiveVariables();
    } else {
        passOver(keyword);
    }
}

void TecplotHeaderParser::passOver(std::string_view keyword) {
    static constexpr std::array<std::string_view, 6> values = {"STRANDID", "SOLUTIONTIME",   "PARENTZONE",
                                                               "AUXDATA",  "DATASETAUXDATA", "VARAUXDATA"};
    // In small letters they are words of a text like any other.
    static constexpr std::array<std::string_view, 3> records = {"TEXT", "GEOMETRY", "C"};
    if (std::find(values.begin(), values.end(), keyword) != values.end() ||
        std::find(records.begin(), records.end(), word_) != records.end()) {
        header_.passedOver.emplace(keyword);
    }
    place_ = wordEnd_;
}

void TecplotHeaderParser::takeZoneType() {
    const std::optional<TecplotZoneType> type = zoneTypeNamed(upperCase(takeText(Value::Word)));
    if (!type) {
        throw ParseError(tecplotUnit, __LINE__, report(word_));
    }
    header_.zone.type = *type;
}

void TecplotHeaderParser::takePacking() {
    const std::string value = upperCase(takeText(Value::Word));
    if (value == "BLOCK" || value == "FEBLOCK") {
        header_.zone.packing = TecplotPacking::Block;
    } else if (value == "POINT" || value == "FEPOINT") {
        header_.zone.packing = TecplotPacking::Point;
    } else {
        throw ParseError(tecplotUnit, __LINE__, report(word_ + ' ' + value));
    }
}

void TecplotHeaderParser::takePassiveVariables() {
    const boost::smatch list = find(Value::List);
    const std::vector<bool> passive = passiveVariables(list[1].first, list[1].second);
    std::erase_if(header_.zone.activeVariables,
                  [&passive](std::int32_t index) { return passive[static_cast<std::size_t>(index)]; });
}

// Numbers from 1 and ranges of them. A range begins behind the last number that stood by itself, so "2-4-6" is 2 to 6.
std::vector<bool> TecplotHeaderParser::passiveVariables(Position begin, Position end) const {
    const std::size_t count = header_.variables.size();
    std::vector<std::int64_t> steps(count + 1, 0);
    std::size_t previous = count;
    bool inRange = false;
    for (Position place = begin;;) {
        boost::smatch item;
        if (!boost::regex_search(place, end, item, listItemExpression())) {
            throw ParseError(tecplotUnit, __LINE__, report(word_));
        }
        const auto number = static_cast<std::size_t>(fromString<std::int32_t>(item[1].str()));
        if (number < 1 || number > count) {
            throw ParseError(tecplotUnit, __LINE__, report(word_));
        }
        const std::size_t first = inRange ? previous + 1 : number - 1;
        if (first < number) {
            ++steps[first];
            --steps[number];
        }
        previous = inRange ? previous : number - 1;
        inRange = false;
        place = item[0].second;
        if (place == end) {
            return covered(steps);
        }
        if (*place == '-') {
            inRange = true;
            ++place;
        }
    }
}

std::string TecplotHeaderParser::report(const std::string& keyword) const {
    std::string text = "at the header of the zone\nZone No: " + std::to_string(header_.zoneNumber) +
                       "\nZone Title: " + header_.zone.title;
    if (!keyword.empty()) {
        text += "\nKeyword: " + keyword;
    }
    return text;
}

} // namespace velmora
