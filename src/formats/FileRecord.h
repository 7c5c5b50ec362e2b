#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "FileIdentity.h"

namespace velmora {

/// How many of each kind: {"facets", 522}, in the order in which they are told. Every kind that a format can hold is
/// there, with 0 where there is none.
using Counts = std::vector<std::pair<std::string, std::int64_t>>;

/// The count of that kind, made behind the others when it is not there.
std::int64_t& countOf(Counts& counts, std::string_view kind);
/// The count of that kind, 0 when it is not there.
std::int64_t countOf(const Counts& counts, std::string_view kind);

/// A kind in words: "faceSets" is "Face sets".
std::string kindInWords(std::string_view kind);
/// "Facets in the file: 522, kept: 521".
std::string keptText(std::string_view kind, std::int64_t found, std::int64_t kept);

/// What reading one file came to: what it holds, what became of it, and why the rest did not.
struct FileRead {
    std::filesystem::path path;
    FileIdentity identity; ///< of the file as it was when it was opened
    std::uintmax_t bytes = 0;
    std::string format; ///< the extension in small letters; "field" for a field file
    std::string unit;   ///< of its lengths, where a file has one
    /// All its geometry is in the model, in its place and size.
    bool complete = true;
    /// A save of the model over the file would lose nothing: geometry, values, colours, places and names. Comments,
    /// normals, layout and digits do not count.
    bool lossless = true;
    /// Points were left out to thin the model, or because the limit of points was reached. It is complete for all that.
    bool thinned = false;
    Counts found;
    Counts kept;
    std::vector<std::string> changed; ///< what was altered on the way: "Degenerate triangles: 3"
    std::vector<std::string> reasons; ///< what was lost and why: "Zones: 24, only the first layer of each is a surface"

    /// Every kind with 0, found and kept.
    void countFromZero(const std::vector<std::string>& kinds);
    /// Geometry of the file is not in the model; `reason` tells which and why. Of a great many reasons the first are
    /// told.
    void losesGeometry(std::string reason);
    /// Something other than geometry is lost.
    void losesDetail(std::string reason);
    /// Something was altered so that a save would not bring it back as it was.
    void alters(std::string change);
    /// What a save over the file would lose, and why: the reasons; where there is none and it is not lossless, what was
    /// altered.
    std::vector<std::string> losses() const;
    /// Whether anything became part of a model.
    bool keptAnything() const;

private:
    std::vector<std::string> altered_; // of `changed`, what a save would not bring back
};

/// One file that was written.
struct FileWritten {
    std::filesystem::path path;
    std::uintmax_t bytes = 0;
    std::string format;
    Counts counts; ///< the kinds of FileRead::kept
};

/// What writing one file came to.
struct WriteOutcome {
    bool written = false;
    std::string problem;            ///< why it was not written, where there is more to tell than that it cannot be
    std::vector<std::string> notes; ///< what the file that was there before had and the new one has not
    std::int64_t leftOut = 0;       ///< triangles of the model that the file has no room for
    FileWritten record;

    explicit operator bool() const { return written; }
};

} // namespace velmora
