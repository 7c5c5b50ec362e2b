#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <iterator>
#include <optional>
#include <utility>

namespace velmora {

/// How many bytes snapshots may hold: a quarter of the memory that would be free without them.
constexpr std::uint64_t snapshotRoom(std::uint64_t free, std::uint64_t held) {
    return free / 4 + held / 4;
}

/// Snapshots in the order of the lines of a journal behind which they were taken, each behind another line. Where they
/// hold too much together the oldest go first.
template <class Snapshot>
class SnapshotRow {
public:
    /// Takes the snapshot behind `line`; those behind it or later lines were of what is no more to be done.
    void keep(std::size_t line, Snapshot snapshot) {
        dropFrom(line);
        entries_.push_back({line, std::move(snapshot)});
    }
    void dropFrom(std::size_t line) {
        while (!entries_.empty() && entries_.back().line >= line) {
            entries_.pop_back();
        }
    }
    /// `free()` tells the free memory in bytes, `held()` what the snapshots hold; what two share goes with the last.
    template <class Free, class Held>
    void fitInto(const Free& free, const Held& held) {
        const std::uint64_t room = snapshotRoom(free(), held());
        while (!entries_.empty() && held() > room) {
            entries_.pop_front();
        }
    }
    void clear() { entries_.clear(); }

    /// The snapshot behind the line; null when there is none, or none any more.
    const Snapshot* at(std::size_t line) const {
        const auto found = firstFrom(line);
        return found == entries_.end() || found->line != line ? nullptr : &found->snapshot;
    }
    /// The first line from this one on that has a snapshot; none where the snapshots before it are gone, or where none
    /// comes.
    std::optional<std::size_t> nextFrom(std::size_t line) const {
        const auto found = firstFrom(line);
        const bool known = found != entries_.end() && entries_.front().line <= line;
        return known ? std::optional(found->line) : std::nullopt;
    }
    /// The last one behind a line that stands before `line`; null for none.
    const Snapshot* before(std::size_t line) const {
        const auto found = firstFrom(line);
        return found == entries_.begin() ? nullptr : &std::prev(found)->snapshot;
    }
    std::size_t size() const { return entries_.size(); }

private:
    struct Entry {
        std::size_t line;
        Snapshot snapshot;
    };

    auto firstFrom(std::size_t line) const {
        return std::lower_bound(entries_.begin(), entries_.end(), line,
                                [](const Entry& entry, std::size_t wanted) { return entry.line < wanted; });
    }

    std::deque<Entry> entries_;
};

} // namespace velmora
