#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "PatchList.h"
#include "zRegion.h"

namespace velmora {

class VelmoraDoc;
struct Comparison;

/// The bytes that snapshots hold together: what several of them share counts once.
using HeldBytes = std::shared_ptr<std::uint64_t>;

/// Patches of which each may be shared with other snapshots.
using SharedPatches = std::vector<std::shared_ptr<const Patch>>;
/// Zones of one region in the same way.
struct SharedRegion {
    std::string title;
    std::array<double, 3> words{};
    std::vector<std::shared_ptr<const zBlock_fe>> zones;
};

/// All that a document holds at one moment, to go back to. What is equal to the bit in the snapshot before is shared
/// with it, patch by patch and zone by zone.
class DocumentSnapshot {
public:
    /// `before` is the snapshot to share with, null for none. What is held is counted in `held`.
    DocumentSnapshot(const VelmoraDoc& doc, const DocumentSnapshot* before, const HeldBytes& held);
    DocumentSnapshot(DocumentSnapshot&&) noexcept;
    DocumentSnapshot& operator=(DocumentSnapshot&&) noexcept;
    ~DocumentSnapshot();

    /// The document is as it was; views and title follow. What is known of files on the disk stays as long as the model
    /// has the same file, as the disk does not go back.
    void putBack(VelmoraDoc& doc) const;

private:
    struct Small;

    void keepLists(const VelmoraDoc& doc, const DocumentSnapshot* before, const HeldBytes& held);
    void keepRegions(const VelmoraDoc& doc, const DocumentSnapshot* before, const HeldBytes& held);
    void putListsBack(VelmoraDoc& doc) const;
    void keepComparison(const VelmoraDoc& doc, const DocumentSnapshot* before, const HeldBytes& held);
    static void tellViews(VelmoraDoc& doc, bool otherBox);

    std::vector<SharedPatches> lists_;
    std::vector<SharedRegion> regions_;
    std::shared_ptr<const Comparison> comparison_;
    std::unique_ptr<const Small> small_;
    std::uint64_t revision_ = 0; ///< of the geometry
};

} // namespace velmora
