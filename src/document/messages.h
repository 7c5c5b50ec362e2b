#pragma once

// The texts of message boxes and questions, as users know them: wording, misprints and blanks belong to them. Each
// message tells what it means for the work: who shows it need not say.

#include <cstdint>
#include <string>

#include "Message.h"
#include "format_outcome.h"

namespace velmora::message {

inline constexpr const char* removeGeometry = "Current geometry will be removed. Are you sure";
inline constexpr const char* saveBeforeExit = "Save data before exit";
/// The question about a rescue copy; `path` is that of its model.
inline std::string bringBack(const std::string& path) {
    return "The program ended without saving " + path + ". Bring the changes back?";
}
inline Message rescueUnreadable(const std::string& path) {
    return {Severity::NotRead, "A rescue copy cannot be read: " + path};
}
/// An exception ended a command; `cause` is what it says of itself.
inline Message commandFailed(const std::string& cause) {
    return {Severity::Refused, "The command could not be carried out (" + cause + "). The model is as it was before."};
}
inline Message noSuchFile(const std::string& path) {
    return {Severity::NotRead, "There is no " + path};
}
inline constexpr MessageText openCancelled{Severity::NoModel, "Open procedure is canceled"};
inline constexpr MessageText cannotOpen{Severity::NotRead, cannotOpenMessage.data()};
inline constexpr MessageText readFailed{Severity::NotRead, readFailedMessage.data()};
inline constexpr MessageText cannotSave{Severity::NotWritten, cannotSaveMessage.data()};
inline constexpr MessageText fileTypeNotSupported{Severity::Refused, "This file's type is not supported by Sorvane"};
inline constexpr MessageText listModeRefused{
    Severity::Warning, "TechPlot-Dat format is not supported in the frame of List-Mode. Use Append menu item"};
inline constexpr MessageText datWritten{Severity::Info, "DAT file is written"};
inline constexpr MessageText convertedToDat{Severity::Info, "File is converted to DAT format and is written"};
inline constexpr MessageText structuredContainerEmpty{Severity::Refused, "Structured container is empty"};
inline constexpr MessageText wrongFormat{Severity::Refused, "Wrong file Format"};
inline constexpr MessageText wrongExtension{Severity::Refused, "Wrong file Extension"};
inline constexpr const char* holdsMorePoints = "The file holds more points than were read. Overwrite it?";
/// `name` is the file's, without its folder.
inline std::string holdsMore(const std::string& name) {
    return name + " holds more than was read. Overwrite it?";
}
inline std::string notOpenedHere(const std::string& name) {
    return name + " was not opened or saved here. Overwrite it?";
}
inline std::string changedElsewhere(const std::string& name) {
    return name + " was changed by another program. Overwrite it?";
}
/// `line` stands in the script under `number`; `cause` says why it was not carried out.
inline Message scriptStopped(std::int64_t number, const std::string& line, const std::string& cause) {
    return {Severity::Refused, "The script ended at line " + std::to_string(number) + ": " + line + "\n\n" + cause};
}
inline Message scriptNotRead(const std::string& path) {
    return {Severity::NotRead, "The script cannot be read: " + path};
}
inline constexpr MessageText pointNotCaptured{Severity::Refused, "This point cannot be captured now"};
// Where there is no window, its panels are told by lines of the script.
inline constexpr MessageText nothingToSave{Severity::Refused, "There is nothing to save"};
/// `extension` without its point; empty for a file without one.
inline Message cannotBeSavedAs(const std::string& extension) {
    return {Severity::Refused,
            "This model cannot be saved as " + (extension.empty() ? "a file without an extension" : extension)};
}
/// What is no model was to take the place of the file of one; `name` is the file's, without its folder.
inline Message holdsModel(const std::string& name) {
    return {Severity::NotWritten, name + " holds a model of this session and is not written over"};
}
/// A library gives numbers in single precision where their file may have more; `move` is how far that may be.
inline Message libraryMovesPoints(const std::string& move) {
    return {Severity::Warning, "This file was read in single precision: points move by up to " + move};
}
/// `extension` without its point; empty for a file without one.
inline Message cannotBeImported(const std::string& extension) {
    return {Severity::Refused, extension.empty() ? "Files without an extension cannot be imported"
                                                 : "Files of this type cannot be imported: " + extension};
}
inline constexpr MessageText noBlockToExport{Severity::Warning, "The zBlock is empty: the whole model is written"};
/// The question about a file that Open does not take, by its name.
inline std::string offerImport(const std::string& name) {
    return name + " is a file of another program. Import it?";
}
inline constexpr const char* workCancelled = "Cancelled: the model is as it was";
inline constexpr const char* stateNotKept = "The model as it was then is not kept any more";
inline constexpr MessageText noRoomInSinglePrecision{Severity::Refused,
                                                     "A coordinate is too large for single precision"};
/// `move` is the largest distance between a point and the point as written.
inline Message digitsMovePoints(int digits, const std::string& move) {
    return {Severity::Warning, "With " + std::to_string(digits) + " digits points move by up to " + move};
}
inline constexpr MessageText holdsTrianglesNow{Severity::Refused, "The model holds triangles now. Use Save As"};
/// `reason` is what was lost of the file; empty where there is none to tell.
inline Message noSurfaceToCompare(const std::string& reason) {
    return {Severity::Refused, "There is no surface to compare with" + (reason.empty() ? "" : ": " + reason)};
}
inline constexpr const char* leaveAddRegime = "Regime Add Patch to Block will be canceled. Are you sure?";
/// Lines have no surface: the model is shown as wires.
inline constexpr MessageText surfaceNotAllowed{Severity::Warning, "surface not allowed"};
inline constexpr MessageText notAvailable{Severity::Refused, "Not availabe"};
inline constexpr MessageText blockIsFull{Severity::Refused, "It is impossible to add one more zBlock"};

inline constexpr const char* aptViolated = "APT format will be violated. Are you sure? ";
inline constexpr MessageText endPointStays{Severity::Refused,
                                           " Procedure is canceled. It's impossible to delete the first (last) point "};
inline constexpr MessageText twoPointsStay{Severity::Refused,
                                           " Procedure is canceled. Section must contain at least 2 points "};
inline constexpr MessageText lastPointStays{Severity::Warning,
                                            " Procedure is canceled. It's impossible to delete the last point "};
inline constexpr MessageText aptMayBeViolated{Severity::Warning, "APT format may be violated"};
inline constexpr MessageText bufferDoesNotFitLine{
    Severity::Refused, "Paste is impossible. Number of points is not equal to number of sections"};
inline constexpr const char* clearBuffer = "All points from buffer will be deleted. Are you sure";
inline constexpr MessageText twoSectionsStay{Severity::Refused,
                                             "Procedure canceled. Number of section must not be less than 2"};
inline constexpr MessageText twoLinesStay{Severity::Refused,
                                          "Procedure canceled. Number of lines must not be less than 2"};
inline constexpr MessageText matchingImpossible{Severity::Refused, "Matching is impossible"};
inline constexpr MessageText axisAbsent{Severity::Refused, "Axis is absent. Rotation is impossible"};
inline constexpr MessageText patchNotSelected{Severity::Refused, "Patch is not selected. Try again"};
inline constexpr MessageText patchNotRemoved{Severity::Refused, "Patch is not removed from zBlock. Try again"};

inline constexpr MessageText fitImpossible{Severity::Refused,
                                           "Regime FIT is impossible. Point is too close to the border"};
inline constexpr MessageText partsDoNotFit{Severity::Warning, "It is impossible to fit parts"};
/// `line` counts from 1.
inline Message zeroLengthLine(std::int32_t line) {
    return {Severity::Warning, "Line  " + std::to_string(line) + "  is of zero length. APT may be violated"};
}
inline constexpr MessageText mergeImpossible{Severity::Refused, "APT format is violated. Merge is impossible"};
inline constexpr MessageText sectionsDiffer{Severity::Refused,
                                            "Merging is imposible. Patches contain different number of sections"};
inline constexpr MessageText fewSectionsToInterpolate{
    Severity::Refused, "Number of section in patch less than 3. Interpolation impossible"};
inline constexpr MessageText interpolationTooFar{
    Severity::Refused, "Correct interpolation is impossible. Target point is too far from line"};
inline constexpr MessageText interpolationDoubleLine{Severity::Refused,
                                                     "Correct interpolation is impossible. Double line"};
inline constexpr MessageText correctionHasNoAction{Severity::Refused, "Correction of line has no action"};

inline constexpr MessageText markerCountsDiffer{
    Severity::Refused, "Number of Initial and Shifted Markers is Different.\n\noperation canceled"};
inline constexpr MessageText unknownShiftPlane{Severity::Refused, "S duba ruhnul?"};
inline constexpr MessageText markersIdentical{Severity::Refused,
                                              "It Seem's that Images are Identical. Try Different ones."};
inline constexpr MessageText shiftMatrixNotPositive{Severity::Refused,
                                                    "   ZMatrix AT*A is NOT positive.\n   Rank [A] < NumPar"};
inline constexpr MessageText shiftEquationsNotSolved{
    Severity::Refused, "Linear Equation Solution Failed. Try Another Parameters.\n\noperation canceled"};
inline constexpr MessageText shiftOfNoKind{Severity::Refused, "Ento setka ili avoska?"};

inline constexpr MessageText conversionWithoutResult{Severity::Refused,
                                                     "The conversion gives no result. The model stays as it is."};
inline constexpr MessageText resultNotFinite{
    Severity::Refused, "The result would hold numbers that are too large or no numbers. The model stays as it is."};
inline constexpr MessageText notEnoughMemory{Severity::Refused, "There is not enough free memory for this model."};
inline constexpr MessageText linesLeft{Severity::Warning, "Ne vse linii obrabotany"};
/// `axis` is "X", "Y" or "Z".
inline Message sectionOutOfBody(const std::string& axis) {
    return {Severity::Refused, "Section " + axis + "=const is out of body"};
}
inline Message pointOutOfBody(const std::string& axis) {
    return {Severity::Warning, "Warning: Point " + axis + " is out of body"};
}
inline constexpr MessageText normalAbsent{Severity::Refused, "Normal of plane is absent. Cut is impossible"};
inline constexpr MessageText partsAreSaved{Severity::Info, "Parts are saved in dat format with indexes _1 and _2"};
inline constexpr MessageText visiblePartNotSelected{Severity::Refused,
                                                    "Procedure is impossible. Visible part is not selected."};

inline constexpr MessageText someLinesMiss{Severity::Warning,
                                           "Attention. Some initial vectors are not crossed with target surface"};
inline constexpr MessageText intersectionImpossible{
    Severity::Refused, "Intersection impossible. Not all lines from zBlock intersected with body"};
inline constexpr MessageText intersectionDoublePoint{Severity::Refused, "Intersection is impossible. Double point."};
/// `line` and `patch` count from 0, in the text from 1.
inline Message lineNotIntersected(std::int32_t line, std::int32_t patch) {
    return {Severity::Refused, "Intersection with line " + std::to_string(std::int64_t{line} + 1) + " from patch " +
                                   std::to_string(std::int64_t{patch} + 1) + " is not found"};
}
inline constexpr MessageText cellNotFound{Severity::Warning, "Intersection with temporary container is not found"};
inline constexpr MessageText compartmentTooSmall{
    Severity::Warning, "The rest part of compartment is too small for rebreak. Procedure canceled"};

inline constexpr MessageText clipboardOfTheWindow{Severity::Refused,
                                                  "The clipboard is the window's. A script has: picture FILE"};
inline constexpr MessageText pictureNotDrawn{Severity::Refused, "The picture cannot be drawn"};

/// `line` is what a script has in place of a panel.
inline Message panelOfTheWindow(const std::string& line) {
    return {Severity::Refused, "This is a panel of the window. A script has: " + line};
}

} // namespace velmora::message
