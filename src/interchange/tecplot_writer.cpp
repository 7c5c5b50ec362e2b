#include "tecplot_writer.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "NumberWriter.h"
#include "PatchList.h"
#include "SafeFile.h"
#include "characters.h"
#include "tecplot_unit.h"
#include "zExceptions.h"
#include "zone_files.h"

namespace velmora {

namespace {

void writeFileHeader(NumberWriter& out, const std::string& title, const ZoneVariables& variables) {
    out.writeText("TITLE = ");
    out.writeQuoted(title);
    out.writeText("\nVARIABLES =");
    for (const auto& variable : variables) {
        out.writeChar(' ');
        out.writeQuoted(writtenVariableName(variable->name));
    }
    out.writeChar('\n');
}

void writeCount(NumberWriter& out, const char* label, std::int32_t count) {
    out.writeText(label);
    out.writeInt(count);
}

void writeExtents(NumberWriter& out, const zBlock& zone) {
    out.writeText("ZONETYPE=ORDERED");
    writeCount(out, ", I=", zone.imax);
    writeCount(out, ", J=", zone.jmax);
    writeCount(out, ", K=", zone.kmax);
}

void writeExtents(NumberWriter& out, const zBlock_fe& zone) {
    out.writeText("ZONETYPE=FETRIANGLE");
    writeCount(out, ", NODES=", zone.nodeCount);
    writeCount(out, ", ELEMENTS=", zone.elementCount);
}

void writeDataTypes(NumberWriter& out, std::size_t count, std::int32_t precision) {
    constexpr std::int32_t digitsOfDouble = 15;
    out.writeText("DT=(");
    for (std::size_t i = 0; i < count; ++i) {
        out.writeText(i == 0 ? "" : ",");
        out.writeText(precision < digitsOfDouble ? "SINGLE" : "DOUBLE");
    }
    out.writeText(")\n");
}

void writeRows(NumberWriter& out, const ZoneVariables& variables, std::int32_t points) {
    auto rows = static_cast<std::size_t>(variables.empty() ? 0 : std::max(points, 0));
    for (const auto& variable : variables) {
        rows = std::min(rows, variable->data.size());
    }
    for (std::size_t row = 0; row < rows; ++row) {
        for (std::size_t column = 0; column < variables.size(); ++column) {
            if (column > 0) {
                out.writeChar(' ');
            }
            out.writeDouble(variables[column]->data[row]);
        }
        out.writeChar('\n');
    }
}

void writeData(NumberWriter& out, const zBlock& zone) {
    writeRows(out, zone.variables, zone.total);
}

void writeData(NumberWriter& out, const zBlock_fe& zone) {
    constexpr std::size_t entriesPerTriangle = 4;
    writeRows(out, zone.variables, zone.nodeCount);
    const std::size_t elements = std::min(static_cast<std::size_t>(std::max(zone.elementCount, 0)),
                                          zone.connectivity.size() / entriesPerTriangle);
    for (std::size_t element = 0; element < elements; ++element) {
        const std::int32_t* const entry = &zone.connectivity[element * entriesPerTriangle];
        out.writeInt(std::int64_t{entry[0]} + 1);
        out.writeChar(' ');
        out.writeInt(std::int64_t{entry[1]} + 1);
        out.writeChar(' ');
        out.writeInt(std::int64_t{entry[2]} + 1);
        out.writeChar('\n');
    }
}

std::int64_t elementNumbers(const zBlock&) {
    return 0;
}

std::int64_t elementNumbers(const zBlock_fe& zone) {
    return 3 * std::int64_t{zone.elementCount};
}

/// The numbers of a file of it.
template <class Region>
std::int64_t numbersOf(const Region& region) {
    std::int64_t numbers = 0;
    for (const auto& zone : region.blocks) {
        numbers += elementNumbers(*zone);
        for (const auto& variable : zone->variables) {
            numbers += static_cast<std::int64_t>(variable->data.size());
        }
    }
    return numbers;
}

std::int64_t pointsOf(const zBlock& zone) {
    return zone.total;
}

std::int64_t pointsOf(const zBlock_fe& zone) {
    return zone.nodeCount;
}

template <class Region>
Counts countsOf(const Region& region) {
    std::int64_t points = 0;
    for (const auto& zone : region.blocks) {
        points += pointsOf(*zone);
    }
    return {{"zones", countOf(region.blocks)},
            {"points", points},
            {"variables", region.blocks.empty() ? 0 : countOf(region.blocks.front()->variables)}};
}

// What a grid of the model holds and Open does not take from such a file.
std::vector<std::string> notTakenAgain(const zRegion& region) {
    constexpr double lowest = -1e8;
    constexpr std::size_t axes = 3;
    std::int64_t narrow = 0;
    std::int64_t low = 0;
    for (const auto& zone : region.blocks) {
        narrow += zone->imax < 2 || zone->jmax < 2 ? 1 : 0;
        for (std::size_t axis = 0; axis < std::min(axes, zone->variables.size()); ++axis) {
            const auto& values = zone->variables[axis]->data;
            low += std::count_if(values.begin(), values.end(), [](double value) { return value < lowest; });
        }
    }
    std::vector<std::string> notes;
    if (narrow > 0) {
        notes.push_back("Patches less than 2 points wide, which Open does not take from a .dat: " +
                        std::to_string(narrow));
    }
    if (low > 0) {
        notes.push_back("Coordinates below -1e8, which Open takes from a .dat as 0: " + std::to_string(low));
    }
    return notes;
}

std::vector<std::string> notTakenAgain(const zRegion_fe& /*region*/) {
    return {};
}

template <class Region>
WriteOutcome write(const std::filesystem::path& path, const Region& region, std::int32_t precision,
                   const ReportProgress& report) {
    requireFinite(region, tecplotUnit);
    SafeFile file(path);
    if (!file.isOpen()) {
        throw FileError(tecplotUnit, __LINE__);
    }
    NumberWriter out(file, precision, NumberNotation::General);
    out.reportTo(report, numbersOf(region));
    if (!region.blocks.empty()) {
        const ZoneVariables& named = region.blocks.front()->variables;
        writeFileHeader(out, region.title, named);
        std::size_t number = 0;
        for (const auto& zone : region.blocks) {
            out.writeText("ZONE T=");
            out.writeQuoted(zoneName(zone->title, ++number));
            out.writeChar('\n');
            writeExtents(out, *zone);
            out.writeText("\nDATAPACKING=POINT\n");
            writeDataTypes(out, named.size(), precision);
            writeData(out, *zone);
        }
    }
    out.flush();
    if (!file.commit()) {
        throw FileError(tecplotUnit, __LINE__);
    }
    WriteOutcome outcome = outcomeOf(file, path, "dat");
    outcome.record.counts = countsOf(region);
    const std::vector<std::string> notes = notTakenAgain(region);
    outcome.notes.insert(outcome.notes.end(), notes.begin(), notes.end());
    return outcome;
}

} // namespace

std::string writtenVariableName(std::string name) {
    const auto isOther = [](char c) {
        return !isLetter(c) && !isDigit(c) && std::string_view("_/~()-").find(c) == std::string_view::npos;
    };
    std::replace_if(name.begin(), name.end(), isOther, '_');
    return name.empty() ? "_" : name;
}

WriteOutcome writeTecplot(const std::filesystem::path& path, const zRegion& region, std::int32_t precision,
                          const ReportProgress& report) {
    return write(path, region, precision, report);
}

WriteOutcome writeTecplot(const std::filesystem::path& path, const zRegion_fe& region, std::int32_t precision,
                          const ReportProgress& report) {
    return write(path, region, precision, report);
}

} // namespace velmora
