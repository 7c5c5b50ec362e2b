#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "temporary_folder.h"
#include "zExceptions.h"
#include "zTecplotReader.h"

namespace velmora::test {

/// What reading a file gave: the regions, and what was raised.
struct TecplotOutcome {
    zRegion structured;
    zRegion_fe unstructured;
    std::optional<GenericError> error;
};

/// The error that `action` raises, as far as it is of the family.
inline std::optional<GenericError> errorOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const GenericError& error) {
        return error;
    }
    return std::nullopt;
}

inline TecplotOutcome readTecplot(const std::filesystem::path& path, bool coordinatesOnly = true) {
    TecplotOutcome outcome;
    outcome.error =
        errorOf([&] { zTecplotReader().read(path, outcome.structured, outcome.unstructured, coordinatesOnly); });
    return outcome;
}

/// The same from a text.
inline TecplotOutcome readTecplotText(std::string_view text, bool coordinatesOnly = true) {
    const TemporaryFolder folder;
    return readTecplot(writeFileText(folder / "a.dat", text), coordinatesOnly);
}

/// Name and message of what was raised: "Value Error: ..."; empty for nothing.
inline std::string errorText(const TecplotOutcome& outcome) {
    return outcome.error ? outcome.error->name() + ": " + outcome.error->text() : std::string();
}

inline std::string headerReport(int zone, const std::string& title, const std::string& keyword) {
    return "Parsing Error: at the header of the zone\nZone No: " + std::to_string(zone) + "\nZone Title: " + title +
           "\nKeyword: " + keyword;
}

inline std::string dataReport(int zone, const std::string& title, int line) {
    return "Value Error: invalid data\nZone No: " + std::to_string(zone) + "\nZone Title: " + title +
           "\nLine Shift: " + std::to_string(line) + "\n";
}

/// The names of a zone's fields in order.
template <class Zone>
std::vector<std::string> fieldNames(const Zone& zone) {
    std::vector<std::string> names;
    for (const auto& variable : zone.variables) {
        names.push_back(variable->name);
    }
    return names;
}

} // namespace velmora::test
