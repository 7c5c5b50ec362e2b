#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>

#include "FileRecord.h"

namespace velmora {

/// Looks at what the lines of a field file say that its reader does not follow. The reader takes the numbers of one
/// point after the other and the first three of them for x, y and z; of a zone's header it knows the counts alone, and
/// a save writes a header of its own.
class FieldLosses {
public:
    /// The line that lists the names.
    void takeVariables(std::string_view line);
    /// The header line of a zone.
    void takeZone(std::string_view line);

    /// Tells of numbers that are another thing than what they were taken for.
    void noteGeometry(FileRead& record) const;
    /// Tells what else a save would not write.
    void noteDetails(FileRead& record) const;

private:
    void takeEntry(const std::string& keyword, std::string_view value);

    bool otherVariables_ = false;
    std::int64_t misread_ = 0;        // zones whose numbers stand in another order
    std::set<std::string> misreadBy_; // the words that say so
    std::int64_t titles_ = 0;         // of zones, which no patch has
    std::set<std::string> passedOver_;
};

} // namespace velmora
