#include "line_joiner.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <span>
#include <utility>

#include "ProgressCounter.h"
#include "parallel.h"
#include "vectors.h"

namespace velmora {

namespace {

/// With fewer lines in a plane a hash of their ends does not pay.
constexpr std::size_t fewLines = 64;

/// Which ends meet, in the order in which they are tried.
enum class Meeting { None, LastToFirst, LastToLast, FirstToFirst, FirstToLast };

/// The line that grows: lines that were taken, forward or backward. It is reversed by a flag.
class GrowingLine {
public:
    explicit GrowingLine(const SliceLines& lines) : lines_(lines) {}

    const SlicePoint& first() const { return reversed_ ? back_ : front_; }
    const SlicePoint& last() const { return reversed_ ? front_ : back_; }

    void startWith(std::size_t line) {
        pieces_.assign(1, {line, false});
        reversed_ = false;
        front_ = lines_[line].front();
        back_ = lines_[line].back();
        points_ = lines_[line].size();
    }

    void take(std::size_t line, Meeting meeting) {
        if (meeting == Meeting::FirstToFirst || meeting == Meeting::FirstToLast) {
            reversed_ = !reversed_;
        }
        const bool backward = meeting == Meeting::LastToLast || meeting == Meeting::FirstToLast;
        const SlicePoint& outer = backward ? lines_[line].front() : lines_[line].back();
        if (reversed_) {
            pieces_.push_front({line, !backward});
            front_ = outer;
        } else {
            pieces_.push_back({line, backward});
            back_ = outer;
        }
        points_ += lines_[line].size();
    }

    PointList points() const {
        PointList points;
        points.reserve(points_);
        if (reversed_) {
            std::for_each(pieces_.rbegin(), pieces_.rend(), [&](const Piece& piece) {
                append({piece.line, !piece.backward}, points);
            });
        } else {
            std::for_each(pieces_.begin(), pieces_.end(), [&](const Piece& piece) { append(piece, points); });
        }
        return points;
    }

private:
    struct Piece {
        std::size_t line;
        bool backward;
    };

    void append(const Piece& piece, PointList& points) const {
        const std::span<const SlicePoint> line = lines_[piece.line];
        const auto put = [&points](const SlicePoint& point) { points.push_back(vectorAt(point.data())); };
        if (piece.backward) {
            std::for_each(line.rbegin(), line.rend(), put);
        } else {
            std::for_each(line.begin(), line.end(), put);
        }
    }

    const SliceLines& lines_;
    std::deque<Piece> pieces_;
    SlicePoint front_{};
    SlicePoint back_{};
    std::size_t points_ = 0;
    bool reversed_ = false;
};

/// Lets lines grow, with one way to find the next line to take.
class Joiner {
public:
    Joiner(const SliceLines& lines, int axis, double precision, JoinedLines& joined)
        : lines_(lines), axis_(static_cast<std::size_t>(axis)), precision_(precision), joined_(joined),
          used_(lines.size(), false), growing_(lines) {}

    /// The rule itself, over the lines from `from` to before `to`.
    void joinPlainly(std::size_t from, std::size_t to);
    /// The same for lines of one plane.
    void joinByCells(std::size_t from, std::size_t to);
    bool isUsed(std::size_t line) const { return used_[line]; }

private:
    /// The line to take next, or with Meeting::None the one that grows next.
    struct Choice {
        std::size_t line;
        Meeting meeting;
    };
    class EndCells;

    void start(std::size_t line);
    void take(const Choice& choice);
    void finish() { joined_.sections.push_back(growing_.points()); }
    bool near(const SlicePoint& a, const SlicePoint& b) const;
    Meeting meetingWith(std::span<const SlicePoint> line) const;
    bool inPlaneOfGrowing(std::size_t line) const {
        return samePlane(lines_[line].front()[axis_], growing_.last()[axis_]);
    }
    Choice chosenPlainly(std::size_t from, std::size_t to) const;

    const SliceLines& lines_;
    std::size_t axis_;
    double precision_;
    JoinedLines& joined_;
    std::vector<bool> used_;
    GrowingLine growing_;
};

void Joiner::start(std::size_t line) {
    growing_.startWith(line);
    used_[line] = true;
}

void Joiner::take(const Choice& choice) {
    if (choice.meeting == Meeting::None) {
        finish();
        start(choice.line);
    } else {
        growing_.take(choice.line, choice.meeting);
        used_[choice.line] = true;
    }
}

bool Joiner::near(const SlicePoint& a, const SlicePoint& b) const {
    const double dx = a[0] - b[0];
    const double dy = a[1] - b[1];
    const double dz = a[2] - b[2];
    return dx * dx + dy * dy + dz * dz <= precision_ * precision_;
}

Meeting Joiner::meetingWith(std::span<const SlicePoint> line) const {
    if (near(growing_.last(), line.front())) {
        return Meeting::LastToFirst;
    }
    if (near(growing_.last(), line.back())) {
        return Meeting::LastToLast;
    }
    if (near(growing_.first(), line.front())) {
        return Meeting::FirstToFirst;
    }
    return near(growing_.first(), line.back()) ? Meeting::FirstToLast : Meeting::None;
}

/// `from` must not be used.
Joiner::Choice Joiner::chosenPlainly(std::size_t from, std::size_t to) const {
    std::size_t line = from;
    while (inPlaneOfGrowing(line)) {
        if (const Meeting meeting = meetingWith(lines_[line]); meeting != Meeting::None) {
            return {line, meeting};
        }
        std::size_t next = line + 1;
        while (next < to && used_[next]) {
            ++next;
        }
        std::size_t inPlane = next;
        while (inPlane < to && (used_[inPlane] || !inPlaneOfGrowing(inPlane))) {
            ++inPlane;
        }
        if (inPlane == to) {
            break;
        }
        line = next;
    }
    return {line, Meeting::None};
}

void Joiner::joinPlainly(std::size_t from, std::size_t to) {
    start(from);
    for (std::size_t first = from + 1; first < to;) {
        if (used_[first]) {
            ++first;
        } else {
            take(chosenPlainly(first, to));
        }
    }
    finish();
}

/// The ends of the lines of one plane, in square cells of twice the precision.
class Joiner::EndCells {
public:
    EndCells(const Joiner& joiner, std::size_t from, std::size_t to)
        : joiner_(joiner), u_(joiner.axis_ == 0 ? 1 : 0), v_(joiner.axis_ == 2 ? 1 : 2), from_(from),
          heads_(std::bit_ceil(4 * (to - from)), -1), next_(2 * (to - from)) {
        for (std::size_t line = to; line-- > from;) {
            put(joiner.lines_[line].back(), 2 * (line - from) + 1);
            put(joiner.lines_[line].front(), 2 * (line - from));
        }
    }

    /// The first line that meets the growing one and has an end near `point`, if it comes before `best`.
    void findNear(const SlicePoint& point, std::optional<Choice>& best) {
        const auto [us, vs] = std::pair(cellsAround(point[u_]), cellsAround(point[v_]));
        for (const double u : us) {
            for (const double v : vs) {
                lookInto(heads_[bucketOf(u, v)], point, best);
            }
        }
    }

private:
    double cell(double coordinate) const { return std::floor(coordinate / (2.0 * joiner_.precision_)); }

    /// The cells of all coordinates within the precision. Where cells are finer than numbers, those are the same.
    std::array<double, 4> cellsAround(double coordinate) const {
        const double margin = 1.01 * joiner_.precision_;
        const double lowest = cell(coordinate - margin);
        return {lowest, lowest + 1.0, cell(coordinate), cell(coordinate + margin)};
    }

    std::size_t bucketOf(double u, double v) const {
        const auto bits = [](double number) { return std::bit_cast<std::uint64_t>(number + 0.0); };
        constexpr std::uint64_t factor = 0x9e3779b97f4a7c15U;
        return (((bits(u) * factor) ^ (bits(u) >> 29)) + bits(v)) * factor >> 20 & (heads_.size() - 1);
    }

    void put(const SlicePoint& point, std::size_t end) {
        std::int64_t& head = heads_[bucketOf(cell(point[u_]), cell(point[v_]))];
        next_[end] = head;
        head = static_cast<std::int64_t>(end);
    }

    /// Lines rise within a bucket; those that are used go for good. A line that meets the growing one with another end
    /// is found beside that one.
    void lookInto(std::int64_t& head, const SlicePoint& point, std::optional<Choice>& best) {
        for (std::int64_t* link = &head; *link >= 0;) {
            const auto end = static_cast<std::size_t>(*link);
            const std::size_t line = from_ + end / 2;
            if (joiner_.used_[line]) {
                *link = next_[end];
                continue;
            }
            if (best && line >= best->line) {
                return;
            }
            const std::span<const SlicePoint> points = joiner_.lines_[line];
            if (joiner_.near(point, end % 2 == 0 ? points.front() : points.back())) {
                best = Choice{line, joiner_.meetingWith(points)};
                return;
            }
            link = &next_[end];
        }
    }

    const Joiner& joiner_;
    std::size_t u_;
    std::size_t v_;
    std::size_t from_;
    std::vector<std::int64_t> heads_;
    std::vector<std::int64_t> next_;
};

void Joiner::joinByCells(std::size_t from, std::size_t to) {
    EndCells ends(*this, from, to);
    start(from);
    for (std::size_t last = to - 1; last > from;) {
        if (used_[last]) {
            --last;
            continue;
        }
        std::optional<Choice> choice;
        ends.findNear(growing_.last(), choice);
        ends.findNear(growing_.first(), choice);
        take(choice.value_or(Choice{last, Meeting::None}));
    }
    finish();
}

/// The lines of one plane, from `begin` to before `end`.
struct PlaneRun {
    double plane;
    std::size_t begin;
    std::size_t end;
};

std::vector<PlaneRun> planeRuns(const SliceLines& lines, std::size_t axis) {
    std::vector<PlaneRun> runs;
    for (std::size_t line = 0; line < lines.size(); ++line) {
        const double plane = lines[line].front()[axis];
        if (runs.empty() || runs.back().plane != plane) {
            runs.push_back({plane, line, line});
        }
        runs.back().end = line + 1;
    }
    return runs;
}

/// Whether no two runs count as one plane: neighbours by coordinate then decide.
bool apart(std::vector<PlaneRun> runs) {
    std::sort(runs.begin(), runs.end(), [](const PlaneRun& a, const PlaneRun& b) { return a.plane < b.plane; });
    return std::adjacent_find(runs.begin(), runs.end(), [](const PlaneRun& a, const PlaneRun& b) {
               return samePlane(a.plane, b.plane);
           }) == runs.end();
}

} // namespace

JoinedLines joinLines(const SliceLines& lines, int axis, double precision, const ReportProgress& report) {
    JoinedLines joined;
    Joiner joiner(lines, axis, precision, joined);
    if (lines.size() < 2) {
        if (lines.size() == 1) {
            joiner.joinPlainly(0, 1);
        }
        return joined;
    }
    const std::vector<PlaneRun> runs = planeRuns(lines, static_cast<std::size_t>(axis));
    if (!apart(runs)) {
        joiner.joinPlainly(0, lines.size());
    } else {
        ProgressCounter progress(report, static_cast<std::int64_t>(lines.size()));
        for (const PlaneRun& run : runs) {
            run.end - run.begin < fewLines ? joiner.joinPlainly(run.begin, run.end)
                                           : joiner.joinByCells(run.begin, run.end);
            progress.advance(static_cast<std::int64_t>(run.end - run.begin));
        }
    }
    for (std::size_t line = 0; line < lines.size(); ++line) {
        joined.left += joiner.isUsed(line) ? 0 : 1;
    }
    return joined;
}

void orientLines(Patch& sections) {
    constexpr std::size_t sectionsOfChunk = 16;
    std::vector<std::uint8_t> turned(sections.size(), 0);
    for (std::size_t i = 1; i < sections.size(); ++i) {
        const PointList& before = sections[i - 1];
        const PointList& section = sections[i];
        if (before.size() < 2 || section.size() < 2) {
            continue;
        }
        const bool wasTurned = turned[i - 1] != 0;
        const zVec<double> forward = section[1] - section[0];
        const zVec<double> backward = section[section.size() - 2] - section.back();
        const zVec<double> direction = wasTurned ? before[before.size() - 2] - before.back() : before[1] - before[0];
        turned[i] = cosine(direction, backward) > cosine(direction, forward) ? 1 : 0;
    }
    forEachChunk(sections.size(), sectionsOfChunk, [&](std::size_t first, std::size_t last, std::size_t) {
        for (std::size_t i = first; i < last; ++i) {
            if (turned[i] != 0) {
                std::reverse(sections[i].begin(), sections[i].end());
            }
        }
    });
}

} // namespace velmora
