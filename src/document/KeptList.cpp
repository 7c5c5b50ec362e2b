#include "KeptList.h"

#include <algorithm>
#include <new>
#include <unordered_set>
#include <utility>

#include "same_bits.h"

namespace velmora {

namespace {

Patch copyOf(const Patch& patch) {
    return patch;
}

std::unique_ptr<zBlock_fe> copyOf(const std::unique_ptr<zBlock_fe>& zone) {
    return cloneZone(*zone);
}

/// Where part `k` of `count` is looked for among `among` parts: in its own place, and in its place from the end, as
/// what was put in or taken out shifts those behind it.
std::array<std::ptrdiff_t, 2> likelyPlaces(std::size_t k, std::size_t count, std::size_t among) {
    const auto place = static_cast<std::ptrdiff_t>(k);
    const std::ptrdiff_t shift = static_cast<std::ptrdiff_t>(among) - static_cast<std::ptrdiff_t>(count);
    return {place, shift == 0 ? -1 : place + shift};
}

bool isIn(std::ptrdiff_t place, std::size_t count) {
    return place >= 0 && static_cast<std::size_t>(place) < count;
}

} // namespace

// ---- Keeping --------------------------------------------------------------------------------------------------------

/// No part stands twice in one list: each can be given back for itself.
template <class Part>
void KeptList<Part>::keep(const List& list, std::span<const KeptList* const> earlier) {
    KeptList kept(list.size());
    std::unordered_set<const Part*> taken;
    const auto sharedPart = [&](std::size_t k) -> Shared {
        for (const KeptList* const before : earlier) {
            for (const std::ptrdiff_t place : likelyPlaces(k, list.size(), before->size())) {
                if (!isIn(place, before->size())) {
                    continue;
                }
                const Shared& part = before->parts_[static_cast<std::size_t>(place)];
                if (taken.count(part.get()) == 0 && sameBits(*part, list[k])) {
                    return part;
                }
            }
        }
        return std::make_shared<Part>(copyOf(list[k]));
    };
    for (std::size_t k = 0; k < list.size(); ++k) {
        kept.parts_[k] = sharedPart(k);
        taken.insert(kept.parts_[k].get());
    }
    swap(kept);
}

template <class Part>
KeptList<Part> KeptList<Part>::of(List&& list) {
    KeptList kept(list.size());
    for (std::size_t k = 0; k < list.size(); ++k) {
        kept.parts_[k] = std::make_shared<Part>(std::move(list[k]));
    }
    return kept;
}

template <class Part>
typename KeptList<Part>::List KeptList<Part>::copy() const {
    List list;
    list.reserve(size());
    for (const Shared& part : parts_) {
        list.push_back(copyOf(*part));
    }
    return list;
}

template <class Part>
bool KeptList<Part>::isSameAs(const List& list) const {
    return std::equal(parts_.begin(), parts_.end(), list.begin(), list.end(),
                      [](const Shared& kept, const Part& part) { return sameBits(*kept, part); });
}

template <class Part>
void KeptList<Part>::clear() noexcept {
    KeptList().swap(*this);
}

template <class Part>
void KeptList<Part>::swap(KeptList& other) noexcept {
    parts_.swap(other.parts_);
    room_.swap(other.room_);
    places_.swap(other.places_);
}

// ---- Giving back ----------------------------------------------------------------------------------------------------

/// Places only grow, so that no part of `list` is found twice.
template <class Part>
void KeptList<Part>::findStanding(const List& list) noexcept {
    std::ptrdiff_t next = 0;
    for (std::size_t k = 0; k < size(); ++k) {
        places_[k] = nowhere;
        for (const std::ptrdiff_t place : likelyPlaces(k, size(), list.size())) {
            if (place >= next && isIn(place, list.size()) &&
                sameBits(list[static_cast<std::size_t>(place)], *parts_[k])) {
                places_[k] = place;
                next = place + 1;
                break;
            }
        }
    }
}

template <class Part>
void KeptList<Part>::takeStanding(List& list) noexcept {
    for (std::size_t k = 0; k < size(); ++k) {
        if (places_[k] != nowhere) {
            room_[k] = std::move(list[static_cast<std::size_t>(places_[k])]);
        }
    }
}

/// What goes leaves its memory before anything is copied.
template <class Part>
bool KeptList<Part>::giveBack(List& list) noexcept {
    bool takenAway = false;
    findStanding(list);
    takeStanding(list);
    list.clear();
    for (std::size_t k = 0; k < size(); ++k) {
        if (places_[k] != nowhere) {
            continue;
        }
        try {
            room_[k] = parts_[k].use_count() == 1 ? std::move(*parts_[k]) : copyOf(*parts_[k]);
        } catch (const std::bad_alloc&) {
            room_[k] = std::move(*parts_[k]);
            takenAway = true;
        }
    }
    list.swap(room_);
    clear();
    return takenAway;
}

template <class Part>
KeptList<Part> KeptList<Part>::prepareExchange(const List& list) {
    KeptList going(list.size());
    findStanding(list);
    for (std::size_t k = 0; k < size(); ++k) {
        if (places_[k] != nowhere) {
            going.parts_[static_cast<std::size_t>(places_[k])] = parts_[k];
        } else if (parts_[k].use_count() > 1) {
            parts_[k] = std::make_shared<Part>(copyOf(*parts_[k]));
        }
    }
    for (Shared& part : going.parts_) {
        if (!part) {
            part = std::make_shared<Part>();
        }
    }
    return going;
}

/// Of the parts that go, those that nobody shares wait for what is in the list.
template <class Part>
void KeptList<Part>::exchange(List& list, KeptList&& going) noexcept {
    for (std::size_t i = 0; i < list.size(); ++i) {
        if (going.parts_[i].use_count() == 1) {
            *going.parts_[i] = std::move(list[i]);
        }
    }
    takeStanding(list);
    for (std::size_t k = 0; k < size(); ++k) {
        if (places_[k] == nowhere) {
            room_[k] = std::move(*parts_[k]);
        }
    }
    list.swap(room_);
    *this = std::move(going);
}

template class KeptList<Patch>;
template class KeptList<std::unique_ptr<zBlock_fe>>;

} // namespace velmora
