#pragma once

#include <algorithm>
#include <cstdint>

#include "progress.h"

namespace velmora {

/// Counts the parts of a piece of work that are done, and reports at each thousandth part of them.
class ProgressCounter {
public:
    /// `report` must outlive the object.
    ProgressCounter(const ReportProgress& report, std::int64_t total)
        : report_(report), total_(std::max<std::int64_t>(total, 1)), step_(std::max<std::int64_t>(total / reports, 1)) {
    }

    void advance(std::int64_t parts = 1) {
        done_ += parts;
        if (done_ >= reported_ + step_ && report_) {
            reported_ = done_;
            report_(static_cast<double>(std::min(done_, total_)) / static_cast<double>(total_));
        }
    }

private:
    static constexpr std::int64_t reports = 1000;

    const ReportProgress& report_;
    std::int64_t total_;
    std::int64_t step_;
    std::int64_t done_ = 0;
    std::int64_t reported_ = 0;
};

/// Hands on what the work of one part of several tells: the whole goes from `from` to `to` meanwhile. `report` must
/// outlive it.
inline ReportProgress partOfProgress(const ReportProgress& report, double from, double to) {
    return [&report, from, to](double fraction) {
        if (report) {
            report(from + (to - from) * fraction);
        }
    };
}

/// Parts of a piece of work, one behind the other, which take of the whole what their sizes are of the total.
class ProgressOfParts {
public:
    /// `report` must outlive the object and what it gives.
    ProgressOfParts(const ReportProgress& report, std::int64_t total)
        : report_(report), total_(static_cast<double>(std::max<std::int64_t>(total, 1))) {}

    /// Takes what the next part tells of itself.
    ReportProgress next(std::int64_t size) {
        const double from = static_cast<double>(done_) / total_;
        done_ += size;
        return partOfProgress(report_, from, static_cast<double>(done_) / total_);
    }

private:
    const ReportProgress& report_;
    double total_;
    std::int64_t done_ = 0;
};

} // namespace velmora
