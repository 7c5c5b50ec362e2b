#include "TecplotText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <functional>
#include <limits>
#include <utility>

#include "letter_case.h"
#include "name_list.h"

namespace velmora {

namespace {

constexpr std::int64_t unset = -1;
/// Counts above this are in no file; products of two of them have room.
constexpr std::int64_t mostCount = std::int64_t{1} << 31;

bool isRecordKeyword(std::string_view word) {
    static constexpr std::array<std::string_view, 10> keywords = {
        "zone",         "title",          "variables",  "text",     "geometry",
        "customlabels", "datasetauxdata", "varauxdata", "filetype", "function"};
    return std::any_of(keywords.begin(), keywords.end(), [word](std::string_view key) { return sameWord(word, key); });
}

bool beginsNumber(char c) {
    return isDigit(c) || isSign(c) || c == '.';
}

std::int64_t countIn(const std::string& value) {
    TextScan scan(value);
    std::int64_t number = unset;
    return scan.takeInteger(number) && number >= 0 && number <= mostCount ? number : unset;
}

TecplotShape shapeNamed(const std::string& value) {
    std::string name = smallLetters(value);
    name = name.substr(name.starts_with("fe") ? 2 : 0);
    return name == "ordered"         ? TecplotShape::Ordered
           : name == "lineseg"       ? TecplotShape::Lines
           : name == "triangle"      ? TecplotShape::Triangles
           : name == "quadrilateral" ? TecplotShape::Quadrilaterals
           : name == "tetrahedron"   ? TecplotShape::Tetrahedra
           : name == "brick"         ? TecplotShape::Bricks
                                     : TecplotShape::Polyhedra;
}

/// Calls `take` for every index, from 0, of a list such as "[1,3-5]", and for what stands behind its "=", until so many
/// steps are made that the list is no honest one.
using TakeIndex = std::function<void(std::size_t index, std::string_view behind)>;
void forEachIndex(const std::string& value, std::size_t count, const TakeIndex& take) {
    std::size_t steps = 16 * (count + value.size());
    for (std::size_t open = value.find('['); open != std::string::npos; open = value.find('[', open + 1)) {
        const std::size_t close = std::min(value.find(']', open), value.size());
        const std::string list = value.substr(open + 1, close - open - 1);
        std::size_t stop = std::min(close + 1, value.size());
        while (stop < value.size() && isSpace(value[stop])) {
            ++stop;
        }
        std::string behind;
        if (stop < value.size() && value[stop] == '=') {
            behind = value.substr(stop + 1, value.find_first_of(",)[", stop) - stop - 1);
        }
        TextScan scan(list);
        std::int64_t first = 0;
        while (scan.skipSeparators() && scan.takeInteger(first)) {
            std::int64_t last = first;
            scan.skipSpace();
            if (scan.peek() == '-') {
                scan.advance();
                scan.skipSpace();
                if (!scan.takeInteger(last)) {
                    break;
                }
            }
            first = std::max<std::int64_t>(first, 1);
            last = std::min(last, static_cast<std::int64_t>(count));
            for (std::int64_t index = first; index <= last && steps > 0; ++index, --steps) {
                take(static_cast<std::size_t>(index - 1), trimmed(behind));
            }
        }
    }
}

} // namespace

std::size_t nodesOfElement(TecplotShape shape) {
    switch (shape) {
    case TecplotShape::Lines:
        return 2;
    case TecplotShape::Triangles:
        return 3;
    case TecplotShape::Quadrilaterals:
    case TecplotShape::Tetrahedra:
        return 4;
    case TecplotShape::Bricks:
        return 8;
    default:
        return 0;
    }
}

/// The values of a zone record before its data.
struct TecplotTextReader::Header {
    std::string title;
    std::int64_t i = unset;
    std::int64_t j = unset;
    std::int64_t k = unset;
    std::int64_t nodes = unset;
    std::int64_t elements = unset;
    bool block = false;
    bool finiteElements = false;
    bool shapeKnown = false;
    TecplotShape shape = TecplotShape::Ordered;
    std::string locations;
    std::string shared;
    std::string passive;
    std::string repeatedFromLast; ///< the older way to share: variables of the zone before
    std::int64_t connectivityFrom = unset;
    bool neighbours = false; ///< a list of neighbouring faces stands behind the elements
    bool badCount = false;
};

TecplotTextReader::TecplotTextReader(std::string_view text, const ReportProgress& report)
    : scan_(text), size_(text.size()), report_(report),
      budget_(1'000'000 + 8 * static_cast<std::int64_t>(text.size())) {}

TecplotTextFile TecplotTextReader::read() {
    while (skipToContent()) {
        if (beginsNumber(scan_.peek())) {
            if (file_.named && file_.zones.empty() && file_.badCounts == 0) {
                takeZone(); // numbers behind variables, without a zone record, are a line of points
            } else {
                double ignored = 0.0;
                if (!scan_.takeNumber(ignored)) {
                    scan_.takeWord();
                }
                file_.foreign += 1;
            }
            continue;
        }
        const std::string_view word = takeIdentifier();
        if (sameWord(word, "zone")) {
            takeZone();
        } else if (sameWord(word, "variables")) {
            takeVariables();
        } else if (sameWord(word, "title")) {
            takeTitle();
        } else if (sameWord(word, "text") || sameWord(word, "geometry")) {
            ++file_.passedOver;
            skipRecord();
        } else if (isRecordKeyword(word)) {
            if (!sameWord(word, "filetype")) {
                rememberName(file_.valuesPassedOver, upperCase(word));
            }
            skipRecord();
        } else {
            ++file_.foreign;
            if (word.empty()) {
                scan_.takeWord();
            }
        }
        reportPosition();
    }
    return std::move(file_);
}

void TecplotTextReader::reportPosition() {
    constexpr std::size_t step = std::size_t{1} << 21;
    if (report_ && scan_.tell() - reported_ > step) {
        reported_ = scan_.tell();
        report_(std::lerp(0.2, endOfText, static_cast<double>(reported_) / static_cast<double>(size_)));
    }
}

// White space, commas and comments count for nothing.
bool TecplotTextReader::skipToContent() {
    while (scan_.skipSeparators()) {
        if (scan_.peek() != '#') {
            return true;
        }
        scan_.takeLine();
    }
    return false;
}

std::string_view TecplotTextReader::takeIdentifier() {
    const std::string_view rest = scan_.rest();
    std::size_t size = 0;
    while (size < rest.size() && (isLetter(rest[size]) || (size > 0 && (isDigit(rest[size]) || rest[size] == '_')))) {
        ++size;
    }
    scan_.seek(scan_.tell() + size);
    return rest.substr(0, size);
}

// A text in quotes, a list in brackets with its brackets, or characters up to white space or a comma. What is not
// closed goes on to the end of its line, or of the file for a list.
std::string TecplotTextReader::takeValue() {
    const std::string_view rest = scan_.rest();
    if (rest.empty()) {
        return {};
    }
    std::size_t size = 0;
    if (rest[0] == '"' || rest[0] == '\'') {
        const std::size_t close = rest.find(rest[0], 1);
        const std::size_t lineEnd = std::min(rest.find_first_of("\r\n"), rest.size());
        const bool closed = close < lineEnd;
        size = closed ? close : lineEnd;
        scan_.seek(scan_.tell() + size + (closed ? 1 : 0));
        return std::string(rest.substr(1, size - 1));
    }
    if (rest[0] == '(' || rest[0] == '[') {
        int depth = 0;
        do {
            depth += rest[size] == '(' || rest[size] == '[' ? 1 : 0;
            depth -= rest[size] == ')' || rest[size] == ']' ? 1 : 0;
            ++size;
        } while (depth > 0 && size < rest.size());
    } else {
        while (size < rest.size() && !isSpace(rest[size]) && rest[size] != ',') {
            ++size;
        }
    }
    scan_.seek(scan_.tell() + size);
    return std::string(rest.substr(0, size));
}

// To the next record, past texts in quotes, whatever stands in them.
void TecplotTextReader::skipRecord() {
    while (skipToContent()) {
        const std::size_t here = scan_.tell();
        if (isLetter(scan_.peek())) {
            if (isRecordKeyword(takeIdentifier())) {
                scan_.seek(here);
                return;
            }
        } else if (scan_.peek() == '"' || scan_.peek() == '\'') {
            takeValue();
        } else {
            scan_.advance();
        }
    }
}

// Of no use here, and it may hold any words.
void TecplotTextReader::takeTitle() {
    scan_.skipSpace();
    if (scan_.peek() == '=') {
        scan_.advance();
    }
    scan_.skipBlanks();
    scan_.peek() == '"' ? static_cast<void>(takeValue()) : static_cast<void>(scan_.takeLine());
}

// Names in quotes or bare, up to the next record or number.
void TecplotTextReader::takeVariables() {
    names_.clear();
    file_.named = true;
    scan_.skipSpace();
    if (scan_.peek() == '=') {
        scan_.advance();
    }
    while (skipToContent() && !beginsNumber(scan_.peek())) {
        const std::size_t here = scan_.tell();
        const bool quoted = scan_.peek() == '"' || scan_.peek() == '\'';
        if (!quoted && isRecordKeyword(takeIdentifier())) {
            scan_.seek(here);
            break;
        }
        scan_.seek(here);
        names_.emplace_back(trimmed(takeValue()));
    }
    if (names_.size() > file_.variables.size()) {
        file_.variables = names_;
    }
}

TecplotTextReader::Header TecplotTextReader::takeHeader() {
    Header header;
    while (skipToContent() && !atNumber() && takeHeaderEntry(header)) {
    }
    return header;
}

// "nan" is one too.
bool TecplotTextReader::atNumber() {
    const std::size_t here = scan_.tell();
    double ignored = 0.0;
    const bool number = beginsNumber(scan_.peek()) || scan_.takeNumber(ignored);
    scan_.seek(here);
    return number;
}

// False at the next record.
bool TecplotTextReader::takeHeaderEntry(Header& header) {
    if (!isLetter(scan_.peek())) {
        scan_.peek() == '"' || scan_.peek() == '(' || scan_.peek() == '[' ? static_cast<void>(takeValue())
                                                                          : scan_.advance();
        return true;
    }
    const std::size_t here = scan_.tell();
    const std::string key = smallLetters(takeIdentifier());
    scan_.skipSpace();
    if (scan_.peek() != '=') {
        if (isRecordKeyword(key)) {
            scan_.seek(here);
            return false;
        }
        return true;
    }
    if (key == "variables" || key == "title") {
        scan_.seek(here);
        return false;
    }
    scan_.advance();
    scan_.skipSpace();
    takeHeaderValue(key, takeValue(), header);
    return true;
}

void TecplotTextReader::takeHeaderValue(std::string_view key, const std::string& value, Header& header) {
    const auto takeCount = [&](std::int64_t& count) {
        count = countIn(value);
        header.badCount = header.badCount || count == unset;
    };
    if (key == "t") {
        header.title = trimmed(value);
    } else if (key == "i") {
        takeCount(header.i);
    } else if (key == "j") {
        takeCount(header.j);
    } else if (key == "k") {
        takeCount(header.k);
    } else if (key == "n" || key == "nodes") {
        takeCount(header.nodes);
    } else if (key == "e" || key == "elements") {
        takeCount(header.elements);
    } else if (key == "f" || key == "datapacking") {
        const std::string packing = smallLetters(value);
        header.block = packing.find("block") != std::string::npos;
        header.finiteElements = header.finiteElements || packing.starts_with("fe");
    } else if (key == "et" || key == "zonetype") {
        header.shape = shapeNamed(value);
        header.shapeKnown = true;
    } else if (key == "varlocation") {
        header.locations = value;
    } else if (key == "varsharelist") {
        header.shared = value;
    } else if (key == "passivevarlist") {
        header.passive = value;
    } else if (key == "d") {
        header.repeatedFromLast = value;
    } else if (key == "connectivitysharezone") {
        takeCount(header.connectivityFrom);
    } else if (key == "faceneighborconnections") {
        header.neighbours = true;
    } else if (key != "dt") { // which tells digits
        rememberName(file_.valuesPassedOver, upperCase(key));
    }
}

void TecplotTextReader::takeZone() {
    const Header header = takeHeader();
    repeats_ = 0;
    if (!file_.named || names_.empty()) {
        const std::int64_t columns = header.block ? 3 : std::max<std::int64_t>(numbersOnLine(), 3);
        names_.assign(static_cast<std::size_t>(columns), "");
        const std::array<const char*, 3> first = {"x", "y", "z"};
        std::copy(first.begin(), first.end(), names_.begin());
        if (names_.size() > file_.variables.size()) {
            file_.variables = names_;
        }
    }
    TecplotTextZone zone;
    zone.title = header.title;
    if (!planZone(header, zone)) {
        ++file_.badCounts;
        skipRecord();
        return;
    }
    if (!affords(static_cast<std::int64_t>(names_.size()))) {
        ++file_.noRoom;
        skipRecord();
        return;
    }
    planValues(header, zone);
    takeData(header, zone);
    file_.zones.push_back(std::move(zone));
    if (skipToContent() && beginsNumber(scan_.peek())) {
        file_.foreign += header.shape == TecplotShape::Polyhedra || header.neighbours ? 0 : 1;
        skipRecord();
    }
}

// False when the counts cannot be used.
bool TecplotTextReader::planZone(const Header& header, TecplotTextZone& zone) {
    if (header.badCount) {
        return false;
    }
    const bool elements = header.finiteElements || (header.shapeKnown && header.shape != TecplotShape::Ordered) ||
                          header.nodes != unset || header.elements != unset;
    zone.shape = header.shape;
    if (elements) {
        // Some write the numbers of nodes and elements as I and J.
        zone.nodes = header.nodes != unset ? header.nodes : header.i;
        zone.elements = header.elements != unset ? header.elements : header.j;
        if (!header.shapeKnown || header.shape == TecplotShape::Ordered) {
            zone.shape = TecplotShape::Quadrilaterals; // until the first element is seen
        }
        return zone.nodes > 0 && zone.elements >= 0;
    }
    const auto extent = [](std::int64_t count) { return std::max<std::int64_t>(count, 1); };
    zone.i = header.i;
    zone.j = extent(header.j);
    zone.k = extent(header.k);
    if (header.i == unset) {
        zone.i = numbersLeft() / std::max<std::int64_t>(static_cast<std::int64_t>(names_.size()), 1);
        zone.i /= zone.j * zone.k;
    }
    if (zone.i <= 0 || zone.i * zone.j > mostCount || zone.i * zone.j * zone.k > mostCount) {
        return false;
    }
    zone.nodes = zone.i * zone.j * zone.k;
    return true;
}

// Where the values of each variable stand, and those that other zones have already.
void TecplotTextReader::planValues(const Header& header, TecplotTextZone& zone) {
    places_.assign(names_.size(), Place::Nodes);
    zone.values.resize(names_.size());
    if (header.locations.find('[') == std::string::npos) {
        std::size_t index = 0;
        std::string words = header.locations;
        std::replace_if(
            words.begin(), words.end(), [](char c) { return c == '(' || c == ')' || c == ','; }, ' ');
        for (TextScan scan(words); scan.skipSpace() && index < places_.size(); ++index) {
            places_[index] = sameWord(scan.takeWord(), "cellcentered") ? Place::Cells : Place::Nodes;
        }
    }
    forEachIndex(header.locations, places_.size(), [this](std::size_t index, std::string_view where) {
        places_[index] = sameWord(where, "cellcentered") ? Place::Cells : Place::Nodes;
    });
    file_.cellValues += std::count(places_.begin(), places_.end(), Place::Cells);
    forEachIndex(header.passive, places_.size(),
                 [this](std::size_t index, std::string_view) { places_[index] = Place::None; });
    const auto share = [&](std::size_t index, std::int64_t from) {
        const bool there = from >= 1 && from <= static_cast<std::int64_t>(file_.zones.size());
        const bool nodal = places_[index] == Place::Nodes;
        places_[index] = Place::None;
        if (!there || !nodal || !affords(zone.nodes)) {
            return;
        }
        const TecplotTextZone& source = file_.zones[static_cast<std::size_t>(from - 1)];
        if (index < source.values.size() && source.values[index] != nullptr &&
            static_cast<std::int64_t>(source.values[index]->size()) == zone.nodes) {
            zone.values[index] = source.values[index];
        }
    };
    const auto last = static_cast<std::int64_t>(file_.zones.size());
    forEachIndex(header.shared, places_.size(), [&](std::size_t index, std::string_view from) {
        share(index, from.empty() ? last : countIn(std::string(from)));
    });
    std::string list = header.repeatedFromLast;
    std::replace_if(
        list.begin(), list.end(), [](char c) { return c == '(' || c == ')'; }, ' ');
    TextScan scan(list);
    std::int64_t number = 0;
    while (scan.skipSeparators() && scan.takeInteger(number)) {
        if (number >= 1 && number <= static_cast<std::int64_t>(places_.size())) {
            share(static_cast<std::size_t>(number - 1), last);
        }
    }
}

void TecplotTextReader::takeData(const Header& header, TecplotTextZone& zone) {
    bool cut = false;
    const bool allElsewhere =
        std::all_of(places_.begin(), places_.end(), [](Place place) { return place == Place::None; });
    const bool anyCells = std::find(places_.begin(), places_.end(), Place::Cells) != places_.end();
    if (!allElsewhere) {
        header.block || anyCells ? takeBlocks(zone, cut) : takePoints(zone, cut);
    }
    if (zone.shape != TecplotShape::Ordered && !cut) {
        const bool lastOnes = smallLetters(header.repeatedFromLast).find("feconnect") != std::string::npos;
        const std::int64_t from = lastOnes ? static_cast<std::int64_t>(file_.zones.size()) : header.connectivityFrom;
        if (from == unset) {
            if (!header.shapeKnown) {
                const std::int64_t corners = numbersOnLine();
                zone.shape = corners == 3   ? TecplotShape::Triangles
                             : corners == 8 ? TecplotShape::Bricks
                             : corners == 2 ? TecplotShape::Lines
                                            : TecplotShape::Quadrilaterals;
            }
            takeConnectivity(zone, cut);
        } else if (from >= 1 && from <= static_cast<std::int64_t>(file_.zones.size()) && affords(zone.elements)) {
            const TecplotTextZone& source = file_.zones[static_cast<std::size_t>(from - 1)];
            zone.connectivity = source.connectivity;
            zone.shape = source.shape;
        }
    }
    file_.cutZones += cut ? 1 : 0;
}

// A row of all variables for each node.
void TecplotTextReader::takePoints(TecplotTextZone& zone, bool& cut) {
    std::vector<std::size_t> columns;
    for (std::size_t index = 0; index < places_.size(); ++index) {
        if (places_[index] == Place::Nodes) {
            columns.push_back(index);
        }
    }
    std::vector<std::vector<double>> values(columns.size());
    const std::size_t likely =
        std::min(static_cast<std::size_t>(zone.nodes), scan_.rest().size() / (2 * columns.size()));
    for (std::vector<double>& column : values) {
        column.reserve(likely);
    }
    double value = 0.0;
    for (std::int64_t node = 0; node < zone.nodes; ++node) {
        for (std::vector<double>& column : values) {
            if (!takeNumber(value)) {
                cut = true;
                return;
            }
            column.push_back(value);
        }
    }
    for (std::size_t column = 0; column < columns.size(); ++column) {
        zone.values[columns[column]] = std::make_shared<const std::vector<double>>(std::move(values[column]));
    }
}

// All values of a variable, then all of the next one. Of a file that is cut the variables before are whole.
void TecplotTextReader::takeBlocks(TecplotTextZone& zone, bool& cut) {
    const auto cells = [](std::int64_t extent) { return std::max<std::int64_t>(extent - 1, 1); };
    const std::int64_t cellCount =
        zone.shape == TecplotShape::Ordered ? cells(zone.i) * cells(zone.j) * cells(zone.k) : zone.elements;
    double value = 0.0;
    for (std::size_t index = 0; index < places_.size(); ++index) {
        if (places_[index] == Place::None) {
            continue;
        }
        const bool nodal = places_[index] == Place::Nodes;
        std::vector<double> values;
        values.reserve(nodal ? std::min(static_cast<std::size_t>(zone.nodes), scan_.rest().size() / 2) : 0);
        for (std::int64_t taken = 0; taken < (nodal ? zone.nodes : cellCount); ++taken) {
            if (!takeNumber(value)) {
                cut = true;
                return;
            }
            if (nodal) {
                values.push_back(value);
            }
        }
        if (nodal) {
            zone.values[index] = std::make_shared<const std::vector<double>>(std::move(values));
        }
    }
}

void TecplotTextReader::takeConnectivity(TecplotTextZone& zone, bool& cut) {
    const std::size_t corners = nodesOfElement(zone.shape);
    if (corners == 0) {
        return; // polygons and polyhedra; what stands there is skipped
    }
    std::vector<std::int64_t> nodes;
    nodes.reserve(std::min(static_cast<std::size_t>(zone.elements), scan_.rest().size() / (2 * corners)) * corners);
    for (std::int64_t element = 0; element < zone.elements && !cut; ++element) {
        for (std::size_t corner = 0; corner < corners && !cut; ++corner) {
            std::int64_t node = 0;
            cut = !skipToContent() || !scan_.takeInteger(node);
            if (!cut) {
                nodes.push_back(node);
            }
        }
    }
    nodes.resize(nodes.size() / corners * corners);
    zone.connectivity = std::make_shared<const std::vector<std::int64_t>>(std::move(nodes));
}

// A number of the data; "3*0.5" hands it out three times.
bool TecplotTextReader::takeNumber(double& value) {
    if (repeats_ > 0) {
        --repeats_;
        value = repeated_;
        return true;
    }
    if (!skipToContent() || !scan_.takeNumber(value)) {
        return false;
    }
    if (scan_.peek() == '*') {
        const double times = value;
        scan_.advance();
        if (!(times >= 1.0 && times <= static_cast<double>(mostCount)) || !scan_.takeNumber(value) ||
            !affords(static_cast<std::int64_t>(times))) {
            return false;
        }
        repeated_ = value;
        repeats_ = static_cast<std::int64_t>(times) - 1;
    }
    reportPosition();
    return true;
}

// What a file of some bytes may ask for beyond what it has: else a line of text could fill the memory.
bool TecplotTextReader::affords(std::int64_t count) {
    budget_ -= std::min(count, budget_ + 1);
    return budget_ >= 0;
}

// How many numbers stand on the line that comes next; the position stays.
std::int64_t TecplotTextReader::numbersOnLine() {
    const std::size_t here = scan_.tell();
    std::int64_t count = 0;
    double value = 0.0;
    skipToContent();
    while (scan_.skipBlanks() && (scan_.peek() == ',' || scan_.takeNumber(value))) {
        if (scan_.peek() == ',') {
            scan_.advance();
        } else {
            ++count;
        }
    }
    scan_.seek(here);
    return count;
}

// How many numbers come before the next thing that is none; the position stays.
std::int64_t TecplotTextReader::numbersLeft() {
    const std::size_t here = scan_.tell();
    std::int64_t count = 0;
    double value = 0.0;
    while (skipToContent() && scan_.takeNumber(value)) {
        ++count;
    }
    scan_.seek(here);
    return count;
}

} // namespace velmora
