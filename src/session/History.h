#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>

#include "DocumentSnapshot.h"
#include "Journal.h"
#include "MouseMode.h"
#include "SnapshotRow.h"

namespace velmora {

class VelmoraDoc;
class VelmoraView;

/// The way back and forth along the journal: a snapshot of the document behind each of its lines, as far as memory
/// goes.
class History {
public:
    /// Keeps the document as it is behind the last line that was done. Where memory runs out nothing is kept any more.
    void keep(const VelmoraDoc& document, const VelmoraView& view, const Journal& journal);
    /// There is a way to the state behind the first `line` lines.
    bool leadsTo(std::size_t line) const { return row_.at(line) != nullptr; }
    /// The first line from this one on to which a way leads: one piece of work may have several lines. None when what
    /// was kept of it is gone.
    std::optional<std::size_t> nextFrom(std::size_t line) const { return row_.nextFrom(line); }
    /// Goes there; false, and all stays, when no way leads there.
    bool goTo(std::size_t line, VelmoraDoc& document, VelmoraView& view, Journal& journal) const;
    /// The lines from this one on are others than those of the snapshots.
    void dropFrom(std::size_t line) { row_.dropFrom(line); }
    /// The file was written; it holds the model that is there now if it is the model's own. Snapshots before may stand
    /// in no file any more, or stand in this one now.
    void noteWritten(const std::filesystem::path& file, const VelmoraDoc& document);
    std::uint64_t heldBytes() const { return *held_; }

private:
    struct Step {
        DocumentSnapshot document;
        Journal::Tracking tracking;
        MouseMode mode;
        std::uint64_t written; ///< how many files were written before
    };
    struct WrittenFile {
        std::uint64_t number = 0;           ///< the how many-th that was written
        std::optional<std::uint64_t> model; ///< the digest of the model in it; none when it holds something else
    };

    void judgeModified(VelmoraDoc& document, const Step& step) const;

    HeldBytes held_ = std::make_shared<std::uint64_t>(0);
    SnapshotRow<Step> row_;
    std::uint64_t written_ = 0;
    std::map<std::filesystem::path, WrittenFile> files_;
};

} // namespace velmora
