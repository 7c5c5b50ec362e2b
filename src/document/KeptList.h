#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "PatchList.h"
#include "zRegion.h"

namespace velmora {

/// The parts of a model, patches or zones, as they were at one moment. Lists that are kept one behind the other share
/// the parts that are equal to the bit. All memory that giving back takes is there from the moment of keeping on.
template <class Part>
class KeptList {
public:
    using List = std::vector<Part>;

    KeptList() = default;
    KeptList(KeptList&&) noexcept = default;
    KeptList& operator=(KeptList&&) noexcept = default;
    KeptList(const KeptList&) = delete;
    KeptList& operator=(const KeptList&) = delete;
    ~KeptList() = default;

    /// Keeps `list`. What stands in one of `earlier`, among which may be this list, is shared with it.
    void keep(const List& list, std::span<const KeptList* const> earlier);
    /// Keeps the parts of `list` themselves.
    static KeptList of(List&& list);

    /// What is kept is `list`, to the bit.
    bool isSameAs(const List& list) const;

    bool empty() const { return parts_.empty(); }
    std::size_t size() const { return parts_.size(); }
    const Part& operator[](std::size_t k) const { return *parts_[k]; }
    List copy() const;
    void clear() noexcept;
    void swap(KeptList& other) noexcept;

    /// `list` becomes what was kept, of which nothing is left here; its parts that are equal stay where they are. Where
    /// there is no memory for the copy of a part that others share, the part is taken away from them: true then, and
    /// no list that was kept before may be used any more.
    bool giveBack(List& list) noexcept;

    /// What is here once `list` and what is kept have taken each other's places. Needs memory, which `exchange` does
    /// not, and leaves both as they are.
    KeptList prepareExchange(const List& list);
    /// `going` was prepared for `list` just before.
    void exchange(List& list, KeptList&& going) noexcept;

private:
    using Shared = std::shared_ptr<Part>;
    static constexpr std::ptrdiff_t nowhere = -1;

    explicit KeptList(std::size_t count) : parts_(count), room_(count), places_(count, nowhere) {}
    void findStanding(const List& list) noexcept;
    void takeStanding(List& list) noexcept;

    std::vector<Shared> parts_;
    List room_;                          ///< as many parts without anything in them, to become the list
    std::vector<std::ptrdiff_t> places_; ///< where each part stands in the list that is to become the one kept
};

using KeptPatches = KeptList<Patch>;
using KeptZones = KeptList<std::unique_ptr<zBlock_fe>>;

extern template class KeptList<Patch>;
extern template class KeptList<std::unique_ptr<zBlock_fe>>;

/// Zones under their title.
struct KeptRegion {
    std::string title;
    KeptZones blocks;
    std::array<double, 3> words{};
};

} // namespace velmora
