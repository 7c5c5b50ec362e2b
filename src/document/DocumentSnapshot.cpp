#include "DocumentSnapshot.h"

#include <algorithm>
#include <array>
#include <optional>
#include <tuple>
#include <utility>

#include "DialogValues.h"
#include "DocumentView.h"
#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "same_bits.h"

namespace velmora {

namespace {

// ---- Equal to the bit -----------------------------------------------------------------------------------------------

bool sameComparison(const Comparison& a, const Comparison& b) {
    return sameBits(a.largest, b.largest) && sameBits(a.mean, b.mean) && sameBits(a.rms, b.rms) &&
           a.chosen == b.chosen && sameBits(a.values, b.values);
}

// ---- Copies that are counted ----------------------------------------------------------------------------------------

std::uint64_t bytesOf(const Patch& patch) {
    std::uint64_t bytes = sizeof(Patch);
    for (const PointList& section : patch) {
        bytes += sizeof(PointList) + section.size() * sizeof(zVec<double>);
    }
    return bytes;
}

std::uint64_t bytesOf(const zBlock_fe& zone) {
    std::uint64_t bytes = sizeof(zBlock_fe) + zone.connectivity.size() * sizeof(std::int32_t);
    for (const auto& variable : zone.variables) {
        bytes += sizeof(zArray<double>) + variable->data.size() * sizeof(double);
    }
    return bytes;
}

std::uint64_t bytesOf(const Comparison& comparison) {
    return sizeof(Comparison) + comparison.values.size() * sizeof(double);
}

template <class Item>
std::shared_ptr<const Item> counted(std::unique_ptr<const Item> item, const HeldBytes& held) {
    const std::uint64_t bytes = bytesOf(*item);
    std::shared_ptr<const Item> shared(item.release(), [held, bytes](const Item* gone) {
        *held -= bytes;
        std::default_delete<const Item>()(gone);
    });
    *held += bytes;
    return shared;
}

/// Finds equal items of the moments before. What was put in or taken out shifts those behind it all alike: the place of
/// the last find tells where the next one is. In a list of the same length each is looked for in its own place alone.
template <class Item>
class EarlierItems {
public:
    using Shared = std::shared_ptr<const Item>;

    explicit EarlierItems(std::size_t count) : count_(count) {}

    void add(const std::vector<Shared>& items) { lists_.push_back({&items, 0}); }

    Shared find(const Item& wanted, std::size_t index) {
        for (List& list : lists_) {
            const auto next = static_cast<std::ptrdiff_t>(index) + list.shift;
            if (next >= 0 && holds(list, static_cast<std::size_t>(next), wanted)) {
                return (*list.items)[static_cast<std::size_t>(next)];
            }
        }
        for (List& list : lists_) {
            for (std::size_t i = 0; i < list.items->size() && list.items->size() != count_; ++i) {
                if (holds(list, i, wanted)) {
                    list.shift = static_cast<std::ptrdiff_t>(i) - static_cast<std::ptrdiff_t>(index);
                    return (*list.items)[i];
                }
            }
        }
        return nullptr;
    }

private:
    struct List {
        const std::vector<Shared>* items;
        std::ptrdiff_t shift;
    };

    static bool holds(const List& list, std::size_t i, const Item& wanted) {
        return i < list.items->size() && sameBits(*(*list.items)[i], wanted);
    }

    std::size_t count_;
    std::vector<List> lists_;
};

// ---- What is kept of a document -------------------------------------------------------------------------------------

/// The model first: what was the model before is what Undo holds now.
constexpr std::array<PatchList DocumentState::*, 6> patchLists = {
    &DocumentState::patches,          &DocumentState::dragPatches,  &DocumentState::blockClipboard,
    &DocumentState::referencePatches, &DocumentState::fieldPatches, &DocumentState::interPatches,
};
constexpr std::array<KeptPatches DocumentState::*, 2> keptLists = {&DocumentState::undoPatches,
                                                                   &DocumentState::pointUndoPatches};
constexpr std::array<KeptField DocumentState::*, 2> fields = {&DocumentState::undoField,
                                                              &DocumentState::pointUndoField};
constexpr std::array<zRegion_fe DocumentState::*, 2> regions = {&DocumentState::feRegion,
                                                                &DocumentState::referenceRegion};
constexpr std::array<KeptRegion DocumentState::*, 2> keptRegions = {&DocumentState::undoRegion,
                                                                    &DocumentState::pointUndoRegion};
constexpr std::array<PointList DocumentState::*, 8> pointLists = {
    &DocumentState::lineBuffer,        &DocumentState::interLine,    &DocumentState::beforeIntersection,
    &DocumentState::afterIntersection, &DocumentState::cylinderLine, &DocumentState::sftPoints,
    &DocumentState::sftTargets,        &DocumentState::markers,
};

constexpr std::tuple smallMembers = {
    &DocumentState::undoPath,
    &DocumentState::undoModified,
    &DocumentState::markerShift,
    &DocumentState::structureKind,
    &DocumentState::fileKind,
    &DocumentState::secondKind,
    &DocumentState::blockKind,
    &DocumentState::modelFile,
    &DocumentState::fieldTitleLine,
    &DocumentState::fieldVariablesLine,
    &DocumentState::fieldCount,
    &DocumentState::capture,
    &DocumentState::blockList,
    &DocumentState::blockCount,
    &DocumentState::pointClipboard,
    &DocumentState::undoNode,
    &DocumentState::dragStart,
    &DocumentState::documentModified,
    &DocumentState::pointUndoReady,
    &DocumentState::patchUndoReady,
    &DocumentState::pointUndoIsNewer,
    &DocumentState::rebuildOnUndo,
    &DocumentState::surfaceMode,
    &DocumentState::pointClipboardFull,
    &DocumentState::lineBufferFull,
    &DocumentState::blockClipboardFull,
    &DocumentState::showBlockOnly,
    &DocumentState::showFirstPoints,
    &DocumentState::showDoublePoints,
    &DocumentState::showBuffer,
    &DocumentState::showZBlockMarkers,
    &DocumentState::partBefore,
    &DocumentState::partAfter,
    &DocumentState::sftOpen,
    &DocumentState::markersOpen,
    &DocumentState::cbcAppended,
    &DocumentState::gridNamed,
    &DocumentState::fieldLoaded,
    &DocumentState::fieldMode,
    &DocumentState::fieldOpening,
    &DocumentState::boxMin,
    &DocumentState::boxMax,
    &DocumentState::modelCenter,
    &DocumentState::modelRadius,
    &DocumentState::intersectionTolerance,
    &DocumentState::status,
    &DocumentState::comparedDigest,
};

/// The point table begins anew each time, and the project list is no part of a model.
constexpr std::tuple dialogMembers = {
    &DialogValues::duplicate,    &DialogValues::rebreak,    &DialogValues::rebreakPart,   &DialogValues::inputPatch,
    &DialogValues::inputSection, &DialogValues::inputLine,  &DialogValues::features,      &DialogValues::beforeAfter,
    &DialogValues::editPoint,    &DialogValues::viewing,    &DialogValues::regularFind,   &DialogValues::scaling,
    &DialogValues::move,         &DialogValues::rotate,     &DialogValues::flip,          &DialogValues::symmetric,
    &DialogValues::lastFirst,    &DialogValues::firstPoint, &DialogValues::extrapolation, &DialogValues::prescribe,
    &DialogValues::merge,        &DialogValues::smooth,     &DialogValues::interpolate,   &DialogValues::correctLine,
    &DialogValues::toSkl,        &DialogValues::toApt,      &DialogValues::knife,         &DialogValues::intersection,
    &DialogValues::compare,      &DialogValues::colours,    &DialogValues::importing,     &DialogValues::exporting,
};

template <class Owner, class... Member>
std::tuple<Member...> copyOf(const Owner& owner, const std::tuple<Member Owner::*...>& members) {
    return std::apply([&](auto... member) { return std::tuple<Member...>(owner.*member...); }, members);
}

template <class Owner, class... Member>
void putInto(Owner& owner, const std::tuple<Member Owner::*...>& members, const std::tuple<Member...>& values) {
    [&]<std::size_t... i>(std::index_sequence<i...>) {
        ((owner.*std::get<i>(members) = std::get<i>(values)), ...);
    }
    (std::index_sequence_for<Member...>());
}

template <class Owner, class... Member>
auto tupleOf(const std::tuple<Member Owner::*...>&) -> std::tuple<Member...>;

} // namespace

struct DocumentSnapshot::Small {
    decltype(tupleOf(smallMembers)) state;
    decltype(tupleOf(dialogMembers)) dialogs;
    std::array<FieldWords, fields.size()> fieldWords;
    std::optional<VelmoraDoc::Bend> lastBend;
    std::string coveredStatus;
    VelmoraDoc::CaptureText coveredText = nullptr;
    std::string extentStatus;
};

DocumentSnapshot::DocumentSnapshot(DocumentSnapshot&&) noexcept = default;
DocumentSnapshot& DocumentSnapshot::operator=(DocumentSnapshot&&) noexcept = default;
DocumentSnapshot::~DocumentSnapshot() = default;

DocumentSnapshot::DocumentSnapshot(const VelmoraDoc& doc, const DocumentSnapshot* before, const HeldBytes& held)
    : revision_(doc.geometryRevision()) {
    keepLists(doc, before, held);
    keepComparison(doc, before, held);
    auto small = std::make_unique<Small>(Small{copyOf<DocumentState>(doc, smallMembers),
                                               copyOf(*doc.dialogs, dialogMembers),
                                               {},
                                               doc.lastBend_,
                                               doc.coveredStatus_,
                                               doc.coveredText_,
                                               doc.extentStatus_});
    for (std::size_t i = 0; i < fields.size(); ++i) {
        small->fieldWords[i] = (doc.*fields[i]).words;
    }
    small_ = std::move(small);
}

// ---- Keeping --------------------------------------------------------------------------------------------------------

namespace {

/// Patches or zones where they stand in the document.
template <class Item>
using Items = std::vector<const Item*>;

template <class Patches>
Items<Patch> patchesOf(const Patches& list) {
    Items<Patch> items;
    for (std::size_t k = 0; k < list.size(); ++k) {
        items.push_back(&list[k]);
    }
    return items;
}

template <class Region>
Items<zBlock_fe> zonesOf(const Region& region) {
    Items<zBlock_fe> items;
    for (std::size_t k = 0; k < region.blocks.size(); ++k) {
        items.push_back(region.blocks[k].get());
    }
    return items;
}

std::unique_ptr<const Patch> copyOf(const Patch& patch) {
    return std::make_unique<const Patch>(patch);
}

std::unique_ptr<const zBlock_fe> copyOf(const zBlock_fe& zone) {
    return cloneZone(zone);
}

template <class Item>
std::vector<std::shared_ptr<const Item>> shared(const Items<Item>& items, EarlierItems<Item>& earlier,
                                                const HeldBytes& held) {
    std::vector<std::shared_ptr<const Item>> kept;
    kept.reserve(items.size());
    for (std::size_t k = 0; k < items.size(); ++k) {
        auto found = earlier.find(*items[k], k);
        kept.push_back(found ? std::move(found) : counted(copyOf(*items[k]), held));
    }
    return kept;
}

PatchList unshared(const SharedPatches& patches) {
    PatchList list;
    list.reserve(patches.size());
    for (const auto& patch : patches) {
        list.push_back(*patch);
    }
    return list;
}

zRegion_fe unshared(const SharedRegion& kept) {
    zRegion_fe region;
    region.title = kept.title;
    region.words = kept.words;
    for (const auto& zone : kept.zones) {
        region.blocks.push_back(cloneZone(*zone));
    }
    return region;
}

KeptRegion keptAgain(const SharedRegion& kept) {
    zRegion_fe region = unshared(kept);
    return {std::move(region.title), KeptZones::of(std::move(region.blocks)), region.words};
}

} // namespace

/// Each list may share with itself and with the model of the moment before, and those behind the model with the model
/// of this moment. A model of the same revision is the same one.
void DocumentSnapshot::keepLists(const VelmoraDoc& doc, const DocumentSnapshot* before, const HeldBytes& held) {
    std::vector<Items<Patch>> lists;
    lists.reserve(patchLists.size() + keptLists.size() + fields.size() + 1);
    for (const auto member : patchLists) {
        lists.push_back(patchesOf(doc.*member));
    }
    for (const auto member : keptLists) {
        lists.push_back(patchesOf(doc.*member));
    }
    for (const auto member : fields) {
        lists.push_back(patchesOf((doc.*member).patches));
    }
    Patch curves; // the lists of points are the sections of a patch
    for (const auto member : pointLists) {
        curves.push_back(doc.*member);
    }
    lists.push_back({&curves});
    const bool sameModel = before != nullptr && before->revision_ == revision_;
    lists_.reserve(lists.size());
    for (std::size_t i = 0; i < lists.size(); ++i) {
        if (i == 0 && sameModel) {
            lists_.push_back(before->lists_[0]);
            continue;
        }
        EarlierItems<Patch> earlier(lists[i].size());
        if (before != nullptr) {
            earlier.add(before->lists_[i]);
            earlier.add(before->lists_[0]);
        }
        if (i > 0) {
            earlier.add(lists_[0]);
        }
        lists_.push_back(shared(lists[i], earlier, held));
    }
    keepRegions(doc, before, held);
}

void DocumentSnapshot::keepRegions(const VelmoraDoc& doc, const DocumentSnapshot* before, const HeldBytes& held) {
    const bool sameModel = before != nullptr && before->revision_ == revision_;
    regions_.reserve(regions.size() + keptRegions.size());
    const auto keep = [&](const auto& region) {
        const std::size_t i = regions_.size();
        if (i == 0 && sameModel) {
            regions_.push_back(before->regions_[0]);
            return;
        }
        EarlierItems<zBlock_fe> earlier(region.blocks.size());
        if (before != nullptr) {
            earlier.add(before->regions_[i].zones);
            earlier.add(before->regions_[0].zones);
        }
        if (i > 0) {
            earlier.add(regions_[0].zones);
        }
        regions_.push_back({region.title, region.words, shared(zonesOf(region), earlier, held)});
    };
    for (const auto member : regions) {
        keep(doc.*member);
    }
    for (const auto member : keptRegions) {
        keep(doc.*member);
    }
}

void DocumentSnapshot::keepComparison(const VelmoraDoc& doc, const DocumentSnapshot* before, const HeldBytes& held) {
    if (!doc.foundComparison) {
        return;
    }
    const bool known =
        before != nullptr && before->comparison_ && sameComparison(*before->comparison_, *doc.foundComparison);
    comparison_ = known ? before->comparison_ : counted(std::make_unique<const Comparison>(*doc.foundComparison), held);
}

// ---- Putting back ---------------------------------------------------------------------------------------------------

/// The copies are made first: where there is no memory for them the document stays as it is.
void DocumentSnapshot::putListsBack(VelmoraDoc& doc) const {
    std::vector<PatchList> lists;
    std::vector<KeptPatches> kept;
    for (std::size_t i = 0; i < lists_.size(); ++i) {
        PatchList list = unshared(lists_[i]);
        if (i >= patchLists.size() && i + 1 < lists_.size()) {
            kept.push_back(KeptPatches::of(std::move(list)));
        } else {
            lists.push_back(std::move(list));
        }
    }
    std::vector<zRegion_fe> zones;
    std::vector<KeptRegion> keptZones;
    for (std::size_t i = 0; i < regions_.size(); ++i) {
        if (i < regions.size()) {
            zones.push_back(unshared(regions_[i]));
        } else {
            keptZones.push_back(keptAgain(regions_[i]));
        }
    }
    for (std::size_t i = 0; i < patchLists.size(); ++i) {
        doc.*patchLists[i] = std::move(lists[i]);
    }
    for (std::size_t i = 0; i < keptLists.size(); ++i) {
        doc.*keptLists[i] = std::move(kept[i]);
    }
    for (std::size_t i = 0; i < fields.size(); ++i) {
        doc.*fields[i] = {std::move(kept[keptLists.size() + i]), small_->fieldWords[i]};
    }
    for (std::size_t i = 0; i < pointLists.size(); ++i) {
        doc.*pointLists[i] = std::move(lists.back().front()[i]);
    }
    for (std::size_t i = 0; i < regions.size(); ++i) {
        doc.*regions[i] = std::move(zones[i]);
    }
    for (std::size_t i = 0; i < keptRegions.size(); ++i) {
        doc.*keptRegions[i] = std::move(keptZones[i]);
    }
}

void DocumentSnapshot::putBack(VelmoraDoc& doc) const {
    const std::string title = doc.modelFile.documentTitle;
    const std::filesystem::path path = doc.modelFile.chosenPath;
    const FileMemory memory = doc.modelFile.memory;
    const zVec<double> lower = doc.boxMin;
    const zVec<double> upper = doc.boxMax;
    putListsBack(doc);
    putInto<DocumentState>(doc, smallMembers, small_->state);
    putInto(*doc.dialogs, dialogMembers, small_->dialogs);
    doc.foundComparison = comparison_ ? std::optional(*comparison_) : std::nullopt;
    doc.lastBend_ = small_->lastBend;
    doc.extentStatus_ = small_->extentStatus;
    if (doc.modelFile.chosenPath == path) {
        doc.modelFile.memory = memory;
    }
    // Whoever keeps marks of the snapshots for Undo finds others.
    ++doc.snapshotCounts.patchBegun;
    ++doc.snapshotCounts.patchTaken;
    ++doc.snapshotCounts.pointBegun;
    ++doc.snapshotCounts.pointTaken;
    const std::string status = doc.status;
    if (doc.modelFile.documentTitle != title) {
        doc.ui().showTitle(doc.modelFile.documentTitle);
    }
    tellViews(doc, !(sameBits(doc.boxMin, lower) && sameBits(doc.boxMax, upper)));
    doc.ShowStatus(status);
    doc.coveredStatus_ = small_->coveredStatus;
    doc.coveredText_ = small_->coveredText;
}

/// Only a model of another size is fitted into the view.
void DocumentSnapshot::tellViews(VelmoraDoc& doc, bool otherBox) {
    ++doc.geometryRevision_;
    for (DocumentView* view : doc.views_) {
        if (otherBox) {
            view->onBoundsChanged();
        } else {
            view->onGeometryChanged();
        }
    }
}

} // namespace velmora
