#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "TextScan.h"
#include "progress.h"

namespace velmora {

/// What the elements of a zone are.
enum class TecplotShape { Ordered, Lines, Triangles, Quadrilaterals, Tetrahedra, Bricks, Polyhedra };

/// A zone as the file has it. Values that the file does not have whole are null; those of the cells are left out.
struct TecplotTextZone {
    std::string title;
    TecplotShape shape = TecplotShape::Ordered;
    std::int64_t i = 1; ///< of an ordered zone
    std::int64_t j = 1;
    std::int64_t k = 1;
    std::int64_t nodes = 0;
    std::int64_t elements = 0; ///< as the header says
    std::vector<std::shared_ptr<const std::vector<double>>> values;
    std::shared_ptr<const std::vector<std::int64_t>> connectivity; ///< nodes from 1, of whole elements
};

/// A file as a whole, and what could not be taken.
struct TecplotTextFile {
    std::vector<std::string> variables; ///< of the widest list
    std::vector<TecplotTextZone> zones;
    bool named = false;                     ///< there was a list of variables
    std::int64_t cellValues = 0;            ///< fields of values in cells
    std::int64_t passedOver = 0;            ///< text and geometry records
    std::set<std::string> valuesPassedOver; ///< in capitals: words of headers and records that tell other things
    std::int64_t cutZones = 0;              ///< zones whose numbers end early
    std::int64_t badCounts = 0;             ///< zones whose header cannot be used
    std::int64_t noRoom = 0;                ///< zones that share more than a file of this size should
    std::int64_t foreign = 0;               ///< words and numbers that belong to nothing
};

/// Nodes of an element; 0 for those of any number.
std::size_t nodesOfElement(TecplotShape shape);

/// Reads a Tecplot text as people write it: names and values in quotes or not, keywords in letters of either case and
/// in any order, counts as I, J, K or N and E, values shared between zones, repeated numbers, comments everywhere.
class TecplotTextReader {
public:
    static constexpr double endOfText = 0.6; ///< what it reports of the whole work when the text is read

    TecplotTextReader(std::string_view text, const ReportProgress& report);

    TecplotTextFile read();

private:
    struct Header;

    bool skipToContent();
    std::string_view takeIdentifier();
    std::string takeValue();
    void skipRecord();
    void takeTitle();
    void takeVariables();
    void takeZone();
    Header takeHeader();
    bool atNumber();
    bool takeHeaderEntry(Header& header);
    void takeHeaderValue(std::string_view key, const std::string& value, Header& header);
    bool planZone(const Header& header, TecplotTextZone& zone);
    void planValues(const Header& header, TecplotTextZone& zone);
    void takeData(const Header& header, TecplotTextZone& zone);
    void takePoints(TecplotTextZone& zone, bool& cut);
    void takeBlocks(TecplotTextZone& zone, bool& cut);
    void takeConnectivity(TecplotTextZone& zone, bool& cut);
    bool takeNumber(double& value);
    std::int64_t numbersOnLine();
    std::int64_t numbersLeft();
    bool affords(std::int64_t count);
    void reportPosition();

    TextScan scan_;
    std::size_t size_;
    const ReportProgress& report_;
    std::size_t reported_ = 0;
    TecplotTextFile file_;
    std::vector<std::string> names_;
    std::int64_t budget_; ///< values that may come from repetition and sharing
    double repeated_ = 0.0;
    std::int64_t repeats_ = 0; ///< of `repeated_`, still to be handed out

    // Of the zone at hand, for each variable.
    enum class Place { Nodes, Cells, None };
    std::vector<Place> places_;
};

} // namespace velmora
