#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "slice_points.h"

namespace velmora {

/// Finds, among points of one plane, those that `samePoint` may accept for a point. A spatial hash: points lie in cells
/// whose width goes with the points' largest coordinate, as the tolerance does, and cells are hashed to buckets.
/// Numbers rise within a bucket if they were put in from the last to the first.
class PointCells {
public:
    /// Where a search that passes over some numbers of a bucket for good goes on; -1 for none.
    struct Search {
        std::int32_t head = -1;
        std::uint32_t search = 0; ///< the search that `head` belongs to
    };
    /// The buckets that hold every point that `samePoint` accepts for one point, and others.
    struct Buckets {
        std::uint32_t bucket[8];
        int count = 0;
    };

    /// `axis` is the one across the plane.
    explicit PointCells(int axis);

    /// Empties the cells for about `points` different points, numbered from 0 to less than `numbers`.
    void reset(std::size_t points, std::size_t numbers);
    /// Puts a point in front of those of its bucket. One that is never the same as any point is left out.
    void put(const SlicePoint& point, std::int32_t number);
    /// The same for a bucket of a point that is known.
    void put(std::uint32_t bucket, std::int32_t number) {
        next_[static_cast<std::size_t>(number)] = heads_[bucket];
        heads_[bucket] = number;
    }
    /// The bucket of a point, if that alone is near to it for certain. So it is with most points.
    std::optional<std::uint32_t> soleBucket(const SlicePoint& point) const;
    Buckets near(const SlicePoint& point) const;

    /// The first number of a bucket; -1 for none.
    std::int32_t head(std::uint32_t bucket) const { return heads_[bucket]; }
    /// Of searches since the last reset.
    Search& searchIn(std::uint32_t bucket) {
        if (searches_.empty()) {
            searches_.resize(heads_.size());
        }
        return searches_[bucket];
    }
    /// The number behind another one in its bucket; -1 for none.
    std::int32_t next(std::int32_t number) const { return next_[static_cast<std::size_t>(number)]; }

private:
    std::size_t u_;
    std::size_t v_;
    std::vector<std::int32_t> heads_;
    std::vector<Search> searches_; ///< few surfaces need them
    std::vector<std::int32_t> next_;
};

/// Chains the segments of one plane after the other to lines.
class SegmentChainer {
public:
    /// `axis` is the one across the planes.
    explicit SegmentChainer(int axis);

    /// Appends the lines of one plane, in the order of their making.
    ///
    /// A line starts at the first segment of some length that touches no earlier line; of segments without length alone
    /// the first one makes a line. It runs on, from its end, over the first segment in order that does not lead back,
    /// has a length and was not walked since the line turned; it stops when its ends meet. Then the same is done from
    /// its start. No segment starts two lines. The plane is finished when the lines have as many steps as the plane has
    /// segments, or no start is left. Without these rules a T-junction, a figure eight or a coordinate that is not
    /// finite would keep the chaining going for ever.
    void chain(std::span<const SliceSegment> segments, SliceLines& lines);

private:
    struct Step {
        std::size_t segment;
        bool toSecond;
    };
    /// The line that grows: the points of `points` from `begin` on.
    struct Growing {
        std::vector<SlicePoint>& points;
        std::size_t begin;

        std::size_t size() const { return points.size() - begin; }
    };

    void arrange();
    void findSoleBuckets();
    void putEnd(std::int32_t end);
    void meetEnds(std::uint32_t bucket, std::int32_t end);
    bool areSame(std::int32_t end, std::int32_t other) const;
    std::optional<std::size_t> nextStart();
    bool touchesLine(const SlicePoint& point) const;
    bool touchesLine(const PointCells& cells, const SlicePoint& point) const;
    void extend(const Growing& line);
    std::optional<Step> nextStep(const Growing& line);
    void tryMates(std::optional<Step>& best) const;
    void tryCells(const Growing& line, std::optional<Step>& best);
    void tryBucket(std::uint32_t bucket, const Growing& line, std::optional<Step>& best);
    void tryDots(const SlicePoint& at, std::optional<Step>& best) const;
    const SlicePoint& pointOfEnd(std::int32_t end) const {
        const SliceSegment& segment = segments_[static_cast<std::size_t>(end / 2)];
        return end % 2 == 0 ? segment.first : segment.second;
    }

    std::span<const SliceSegment> segments_;
    PointCells ends_;                                 ///< end e of segment s has the number 2 s + e
    std::vector<std::optional<std::uint32_t>> soles_; ///< for each end, `soleBucket` in `ends_`
    PointCells dots_;                                 ///< the same for segments without length
    bool hasDots_ = false;
    /// For each end the only other one in `ends_` that is the same; `noMate` for none, `looksAround` when there are
    /// more, or it is not known. Most surfaces are such that two triangles meet at an edge.
    std::vector<std::int32_t> mates_;
    bool crowded_ = false;              ///< too many ends in a bucket to look for mates
    std::vector<std::int32_t> path_;    ///< the ends whose points the growing line has
    std::vector<std::uint32_t> walked_; ///< for each segment, the last pass that walked it
    std::vector<bool> onLine_;          ///< for each end, whether a line has a point there
    std::uint32_t pass_ = 0;
    std::size_t cursor_ = 0; ///< all segments before it can start no line any more
};

} // namespace velmora
