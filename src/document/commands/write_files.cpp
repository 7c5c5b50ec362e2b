#include "write_files.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string>
#include <vector>

#include "SafeFile.h"
#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "apt.h"
#include "export_zones.h"
#include "interchange.h"
#include "messages.h"
#include "path_names.h"
#include "skl.h"

namespace velmora {

namespace {

/// What is asked about a file; empty when there is nothing to ask.
std::string questionAbout(const std::filesystem::path& path, OverwriteDoubt doubt) {
    const std::string name = path.filename().string();
    switch (doubt) {
    case OverwriteDoubt::None:
        return {};
    case OverwriteDoubt::HoldsMorePoints:
        return message::holdsMorePoints;
    case OverwriteDoubt::HoldsMore:
        return message::holdsMore(name);
    case OverwriteDoubt::Foreign:
        return message::notOpenedHere(name);
    case OverwriteDoubt::Changed:
        return message::changedElsewhere(name);
    }
    return {};
}

} // namespace

// The user's data win: whatever is not known to be in the model, or to have come from here, is lost only after a yes.
bool mayOverwrite(VelmoraDoc& doc, const std::filesystem::path& path, TargetFrom from, FileContent content,
                  std::int64_t leftOut) {
    const OverwriteDoubt doubt = doc.modelFile.memory.doubtAbout(path, content, leftOut);
    const std::string question = questionAbout(path, doubt);
    if (doubt == OverwriteDoubt::Foreign && from == TargetFrom::Chooser && doc.ui().chooserAsksToOverwrite()) {
        doc.ui().tellAgreed(question);
        return true;
    }
    return question.empty() || doc.ui().ask(question);
}

bool holdsNothingToSave(const VelmoraDoc& doc) {
    return pointTotal(doc.patches) == 0 && std::all_of(doc.feRegion.blocks.begin(), doc.feRegion.blocks.end(),
                                                       [](const auto& zone) { return zone->nodeCount <= 0; });
}

namespace {

void noteWritten(VelmoraDoc& doc, const WriteOutcome& outcome, FileContent content) {
    doc.modelFile.memory.noteWritten(outcome.record.path, content, outcome.leftOut);
    doc.ui().tellFileWritten(outcome.record);
}

} // namespace

void finishWriting(VelmoraDoc& doc, const WriteOutcome& outcome, FileContent content) {
    if (outcome) {
        noteWritten(doc, outcome, content);
        return;
    }
    doc.ui().showMessage(message::cannotSave);
    if (!outcome.problem.empty()) {
        doc.ShowStatus(outcome.problem);
    }
}

WriteOutcome writeStructured(VelmoraDoc& doc, const std::filesystem::path& path, FileKind kind) {
    WriteOutcome outcome;
    {
        const BusyScope busy(doc.ui());
        outcome = kind == FileKind::Apt ? writeApt(path, doc.patches, outputPrecision, progressTo(doc.ui()))
                                        : writeSkl(path, doc.patches, outputPrecision, progressTo(doc.ui()));
    }
    finishWriting(doc, outcome);
    return outcome;
}

namespace {

/// How far the digits of a file may move a point without a word.
double worthTelling(const VelmoraDoc& doc) {
    constexpr double partOfRadius = 1e-5;
    return partOfRadius * doc.modelRadius;
}

/// What is not finite is not written, which is told in its own words.
bool isWorthTelling(const VelmoraDoc& doc, double move) {
    return move > worthTelling(doc) && std::isfinite(move);
}

/// What a warning of the digits says.
Message moveWarning(int digits, double move) {
    return message::digitsMovePoints(digits, shortLength(move));
}

int digitsOf(const std::filesystem::path& path) {
    constexpr int shortDigits = 6; // of VRML and STL
    const std::string extension = extensionOf(path);
    return extension == "wrl" || extension == "stl" ? shortDigits : outputPrecision;
}

/// The digits of the file at `path` move points. Where one is there, what it has of them is gone once it is written:
/// who can be asked may keep it.
bool mayMovePoints(VelmoraDoc& doc, const std::filesystem::path& path, double move) {
    std::error_code error;
    if (isWorthTelling(doc, move) && std::filesystem::exists(path, error)) {
        return doc.ui().warn(moveWarning(digitsOf(path), move));
    }
    tellMove(doc, digitsOf(path), move);
    return true;
}

} // namespace

bool canBeWritten(const std::filesystem::path& path) {
    return SafeFile(path).isOpen();
}

WriteOutcome writeZones(VelmoraDoc& doc, const std::filesystem::path& path, const zRegion& structured,
                        const zRegion_fe& unstructured, FileContent content) {
    if (!mayMovePoints(doc, path, largestMove(structured, unstructured, digitsOf(path), worthTelling(doc)))) {
        return {};
    }
    std::vector<std::string> told;
    WriteOutcome outcome;
    {
        const BusyScope busy(doc.ui());
        writeGeometry(
            path, outputPrecision, structured, unstructured, [&told](const std::string& text) { told.push_back(text); },
            progressTo(doc.ui()), &outcome);
    }
    for (const std::string& text : told) {
        doc.ui().showMessage({Severity::NotWritten, text});
    }
    if (outcome) {
        noteWritten(doc, outcome, content);
    } else {
        tellNotWritten(doc, path); // the messages name a place in the program
    }
    return outcome;
}

void tellNotWritten(VelmoraDoc& doc, const std::filesystem::path& path) {
    doc.ShowStatus(path.filename().string() + " was not written");
}

std::string shortLength(double length) {
    constexpr int shortForm = 6; // significant digits
    std::array<char, 32> text{};
    return {text.begin(), std::to_chars(text.begin(), text.end(), length, std::chars_format::general, shortForm).ptr};
}

void tellMove(VelmoraDoc& doc, int digits, double move) {
    if (isWorthTelling(doc, move)) {
        doc.ui().showMessage(moveWarning(digits, move));
    }
}

void tellSaved(VelmoraDoc& doc, const WriteOutcome& outcome) {
    std::string text;
    for (const std::string& note : outcome.notes) {
        text += note + ". ";
    }
    text += doc.saveTargetText();
    if (!text.empty()) {
        doc.ShowStatus(text);
    }
}

} // namespace velmora
