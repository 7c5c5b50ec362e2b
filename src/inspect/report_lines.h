#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "model_report.h"

namespace velmora {

/// A line of a report for people, with the point of the grid that it speaks of, if it speaks of one.
struct ReportLine {
    std::string text;
    std::optional<std::array<std::int32_t, 3>> place; ///< patch, section and point, from 0
};

/// The report as lines: the model as a whole, its gaps, then the worst places of each patch and the sizes of each zone.
/// What is as it should be (no repeated point, no folded cell) has no line.
std::vector<ReportLine> reportLines(const ModelReport& report);

/// Six significant digits, as a person reads a number, or another number of them.
std::string shortNumber(double value, int digits = 6);

} // namespace velmora
