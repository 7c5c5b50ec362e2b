#pragma once

#include <cstdint>
#include <string>

#include "zVec.h"

namespace velmora {

/// A number as "%f" writes it in the C locale.
std::string fixedText(double value);

/// What a status text names beside the patch: K, N and M from 0; the texts show them from 1.
struct PointAddress {
    std::int32_t patch;
    std::int32_t curve;
    std::int32_t point;
};

/// "Captured point: (Patch K=%d, Section N=%d, Point M=%d) X=%f, Y=%f, Z=%f", or with "Line N=%d".
std::string capturedPointText(bool line, const PointAddress& address, const zVec<double>& position);
/// "Captured section: Patch K=%d, Section N=%d, Points M=%d"; `points` is a count.
std::string capturedSectionText(std::int32_t patch, std::int32_t section, std::int32_t points);
/// "Captured line: Patch K=%d, Line N=%d, Points M=%d "; `points` is a count.
std::string capturedLineText(std::int32_t patch, std::int32_t line, std::int32_t points);
/// "Captured line: Patch K=%d, Line N=%d  // Press right button to continue ", of a line taken by number.
std::string inputtedLineText(std::int32_t patch, std::int32_t line);
/// "Captured patch: Patch K=%d // Press right button to continue ".
std::string capturedPatchText(std::int32_t patch);

/// What follows the text of a captured point.
inline constexpr const char* pointContinueClause = " // Press right button to continue ";
/// What follows the text of a captured section.
inline constexpr const char* curveContinueClause = "  // Press right button to continue ";

} // namespace velmora
