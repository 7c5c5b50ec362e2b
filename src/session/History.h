#pragma once

#include <cstdint>
#include <functional>
#include <memory>

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
    /// Goes there; false, and all stays, when no way leads there.
    bool goTo(std::size_t line, VelmoraDoc& document, VelmoraView& view, Journal& journal) const;
    /// The lines from this one on are others than those of the snapshots.
    void dropFrom(std::size_t line) { row_.dropFrom(line); }
    /// The model was written to its file: what stands in the snapshots before may be in none any more.
    void noteWritten() { ++written_; }
    std::uint64_t heldBytes() const { return *held_; }

private:
    struct Step {
        DocumentSnapshot document;
        Journal::Tracking tracking;
        MouseMode mode;
        std::uint64_t written; ///< how often the model was written before
    };

    HeldBytes held_ = std::make_shared<std::uint64_t>(0);
    SnapshotRow<Step> row_;
    std::uint64_t written_ = 0;
};

} // namespace velmora
