#pragma once

// The texts of message boxes and questions, as users know them: wording, misprints and blanks belong to them.

#include <cstdint>
#include <string>

namespace velmora::message {

inline constexpr const char* removeGeometry = "Current geometry will be removed. Are you sure";
inline constexpr const char* saveBeforeExit = "Save data before exit";
inline constexpr const char* openCancelled = "Open procedure is canceled";
inline constexpr const char* fileTypeNotSupported = "This file's type is not supported by Sorvane";
inline constexpr const char* listModeRefused =
    "TechPlot-Dat format is not supported in the frame of List-Mode. Use Append menu item";
inline constexpr const char* datWritten = "DAT file is written";
inline constexpr const char* convertedToDat = "File is converted to DAT format and is written";
inline constexpr const char* structuredContainerEmpty = "Structured container is empty";
inline constexpr const char* wrongFormat = "Wrong file Format";
inline constexpr const char* wrongExtension = "Wrong file Extension";
inline constexpr const char* holdsMorePoints = "The file holds more points than were read. Overwrite it?";
inline constexpr const char* leaveAddRegime = "Regime Add Patch to Block will be canceled. Are you sure?";
inline constexpr const char* blockIsFull = "It is impossible to add one more zBlock";

inline constexpr const char* aptViolated = "APT format will be violated. Are you sure? ";
inline constexpr const char* endPointStays =
    " Procedure is canceled. It's impossible to delete the first (last) point ";
inline constexpr const char* twoPointsStay = " Procedure is canceled. Section must contain at least 2 points ";
inline constexpr const char* lastPointStays = " Procedure is canceled. It's impossible to delete the last point ";
inline constexpr const char* aptMayBeViolated = "APT format may be violated";
inline constexpr const char* bufferDoesNotFitLine =
    "Paste is impossible. Number of points is not equal to number of sections";
inline constexpr const char* clearBuffer = "All points from buffer will be deleted. Are you sure";
inline constexpr const char* twoSectionsStay = "Procedure canceled. Number of section must not be less than 2";
inline constexpr const char* twoLinesStay = "Procedure canceled. Number of lines must not be less than 2";
inline constexpr const char* matchingImpossible = "Matching is impossible";
inline constexpr const char* axisAbsent = "Axis is absent. Rotation is impossible";
inline constexpr const char* patchNotSelected = "Patch is not selected. Try again";
inline constexpr const char* patchNotRemoved = "Patch is not removed from zBlock. Try again";

inline constexpr const char* fitImpossible = "Regime FIT is impossible. Point is too close to the border";
inline constexpr const char* partsDoNotFit = "It is impossible to fit parts";
/// `line` counts from 1.
inline std::string zeroLengthLine(std::int32_t line) {
    return "Line  " + std::to_string(line) + "  is of zero length. APT may be violated";
}
inline constexpr const char* mergeImpossible = "APT format is violated. Merge is impossible";
inline constexpr const char* sectionsDiffer = "Merging is imposible. Patches contain different number of sections";
inline constexpr const char* fewSectionsToInterpolate =
    "Number of section in patch less than 3. Interpolation impossible";
inline constexpr const char* interpolationTooFar =
    "Correct interpolation is impossible. Target point is too far from line";
inline constexpr const char* interpolationDoubleLine = "Correct interpolation is impossible. Double line";
inline constexpr const char* correctionHasNoAction = "Correction of line has no action";

inline constexpr const char* markerCountsDiffer =
    "Number of Initial and Shifted Markers is Different.\n\noperation canceled";
inline constexpr const char* unknownShiftPlane = "S duba ruhnul?";
inline constexpr const char* markersIdentical = "It Seem's that Images are Identical. Try Different ones.";
inline constexpr const char* shiftMatrixNotPositive = "   ZMatrix AT*A is NOT positive.\n   Rank [A] < NumPar";
inline constexpr const char* shiftEquationsNotSolved =
    "Linear Equation Solution Failed. Try Another Parameters.\n\noperation canceled";
inline constexpr const char* shiftOfNoKind = "Ento setka ili avoska?";

inline constexpr const char* conversionWithoutResult = "The conversion gives no result. The model stays as it is.";
inline constexpr const char* resultNotFinite =
    "The result would hold numbers that are too large or no numbers. The model stays as it is.";
inline constexpr const char* notEnoughMemory = "There is not enough free memory for this model.";
inline constexpr const char* linesLeft = "Ne vse linii obrabotany";
/// `axis` is "X", "Y" or "Z".
inline std::string sectionOutOfBody(const std::string& axis) {
    return "Section " + axis + "=const is out of body";
}
inline std::string pointOutOfBody(const std::string& axis) {
    return "Warning: Point " + axis + " is out of body";
}
inline constexpr const char* normalAbsent = "Normal of plane is absent. Cut is impossible";
inline constexpr const char* partsAreSaved = "Parts are saved in dat format with indexes _1 and _2";
inline constexpr const char* visiblePartNotSelected = "Procedure is impossible. Visible part is not selected.";

inline constexpr const char* someLinesMiss = "Attention. Some initial vectors are not crossed with target surface";
inline constexpr const char* intersectionImpossible =
    "Intersection impossible. Not all lines from zBlock intersected with body";
inline constexpr const char* intersectionDoublePoint = "Intersection is impossible. Double point.";
/// `line` and `patch` count from 0.
inline std::string lineNotIntersected(std::int32_t line, std::int32_t patch) {
    return "Intersection with line " + std::to_string(line) + " from patch " + std::to_string(patch) + " is not found";
}
inline constexpr const char* cellNotFound = "Intersection with temporary container is not found";
inline constexpr const char* compartmentTooSmall =
    "The rest part of compartment is too small for rebreak. Procedure canceled";

} // namespace velmora::message
