#pragma once

#include <filesystem>
#include <string>

#include "FileMemory.h"
#include "FileRecord.h"
#include "kinds.h"

namespace velmora {

class VelmoraDoc;
class zRegion;
class zRegion_fe;

// Whatever a command writes goes to the writer of its kind, and what the file then holds is known.

/// Where the name of the file to write comes from: a chooser of the window has asked already about one that is there.
enum class TargetFrom { Model, Chooser };

/// False when there is a doubt about the regular file at `path` (see OverwriteDoubt), which is to hold `content`
/// but for triangles that will be `leftOut`, and the user wants to keep it.
bool mayOverwrite(VelmoraDoc& doc, const std::filesystem::path& path, TargetFrom from,
                  FileContent content = FileContent::Model, std::int64_t leftOut = 0);

/// A file could be written at `path`, in the place of the one that may be there. Nothing is changed by asking.
bool canBeWritten(const std::filesystem::path& path);

/// No part of the model has a point: a file of it would be empty.
bool holdsNothingToSave(const VelmoraDoc& doc);

// Each of the three remembers the file and tells of it; of one that could not be written it says so.

/// The patches of the model: a grid as one, else its lines.
WriteOutcome writeStructured(VelmoraDoc& doc, const std::filesystem::path& path, FileKind kind);

/// Zones in the format that the extension of `path` names. Where its digits move points, the user can keep the file
/// that is there.
WriteOutcome writeZones(VelmoraDoc& doc, const std::filesystem::path& path, const zRegion& structured,
                        const zRegion_fe& unstructured, FileContent content = FileContent::Model);

/// The status line names the file that could not be written.
void tellNotWritten(VelmoraDoc& doc, const std::filesystem::path& path);

/// What another writer made.
void finishWriting(VelmoraDoc& doc, const WriteOutcome& outcome, FileContent content = FileContent::Model);

/// A length as messages have it, of six significant digits.
std::string shortLength(double length);

/// Warns before a file is written when its digits move a point by more than 1e-5 of the model's radius.
void tellMove(VelmoraDoc& doc, int digits, double move);

/// The status line after a save: what the old file had and the new one has not, and where Save goes from now on, if
/// that is not the file that was opened.
void tellSaved(VelmoraDoc& doc, const WriteOutcome& outcome);

} // namespace velmora
