#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <boost/regex.hpp>

namespace velmora {

/// What the words behind ZONETYPE stand for.
enum class TecplotZoneType : std::int32_t {
    Ordered = 0,
    LineSegments = 1,
    Triangles = 2,
    Quadrilaterals = 3,
    Tetrahedra = 4,
    Bricks = 5
};

/// The order of a zone's numbers: variable after variable, or point after point.
enum class TecplotPacking : std::int32_t { Block = 0, Point = 1 };

/// What the header of one zone says; nothing carries over from the zone before. K too is 0 when it is not given.
struct TecplotZoneHeader {
    std::string title = "zone";
    TecplotZoneType type = TecplotZoneType::Ordered;
    std::int32_t i = 0;
    std::int32_t j = 0;
    std::int32_t k = 0;
    std::int32_t nodes = 0;
    std::int32_t elements = 0;
    TecplotPacking packing = TecplotPacking::Block;
    std::vector<std::int32_t> activeVariables; ///< indices of the variables that have numbers in the file, ascending
};

/// What has been read of the headers of a file.
struct TecplotHeader {
    bool fileHeaderRead = false; ///< TITLE and VARIABLES are read once
    std::string title = "Untitled";
    std::vector<std::string> variables; ///< in file order
    /// For each variable the index of the first one of its name, letters of either case being equal.
    std::vector<std::size_t> firstOfName;
    std::array<std::size_t, 3> coordinates{}; ///< indices of x, y, z; of no meaning without variables
    std::int32_t zoneNumber = 1;
    TecplotZoneHeader zone;
    std::set<std::string> passedOver; ///< keywords that say something which no model keeps
};

/// The message of the error for a file in which not all of x, y, z were found.
std::string missingCoordinates(const std::array<bool, 3>& found);

/// Finds the keywords in a header text and their values, with regular expressions (POSIX extended, collating). A value
/// is searched for from its keyword on and not only behind it: a keyword without a value takes that of the next place
/// where the same letters stand before one.
class TecplotHeaderParser {
public:
    /// `header` must outlive the parser; what is found goes there.
    explicit TecplotHeaderParser(TecplotHeader& header) : header_(header) {}

    /// True when the text holds a zone header. Raises a ParseError with a report on the header for a keyword without a
    /// fit value, a ParseError for coordinates that no variable holds, and a ValueError for an integer that has no
    /// room in 32 bits.
    bool parse(const std::string& text);

private:
    using Position = std::string::const_iterator;
    enum class Value { Variables, Title, Integer, Word, String, List };

    bool findWord();
    boost::smatch find(Value kind);
    std::string takeText(Value kind);
    std::int32_t takeInteger();
    void parseFileHeader();
    void takeVariables();
    void indexVariables();
    void findCoordinates();
    void parseZoneHeader();
    void takeZoneValue(std::string_view keyword);
    void passOver(std::string_view keyword);
    void takeZoneType();
    void takePacking();
    void takePassiveVariables();
    std::vector<bool> passiveVariables(Position begin, Position end) const;
    std::string report(const std::string& keyword) const;

    TecplotHeader& header_;
    Position place_;
    Position end_;
    std::string word_; // the keyword as it stands in the file; it begins at wordBegin_
    Position wordBegin_;
    Position wordEnd_;
    std::map<std::pair<Value, std::string>, boost::regex> expressions_;
};

} // namespace velmora
