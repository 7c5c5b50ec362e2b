#include "apt.h"

#include <algorithm>
#include <utility>

#include "patch_text.h"
#include "thinning.h"

namespace velmora {

namespace {

constexpr std::int32_t unread = -1;

struct AptHeader {
    std::int32_t sections = unread;
    std::int32_t points = unread; // per section

    // False when the stream has failed, be it that both numbers were taken.
    bool read(NumberReader& reader) { return reader.readInt(sections) && reader.readInt(points); }
    bool isEnd() const { return sections == unread || points == unread; }

    // The number of points, wrapping around as 32-bit integers do.
    std::uint32_t product() const { return static_cast<std::uint32_t>(sections) * static_cast<std::uint32_t>(points); }
};

// A header could not be read: either the file ends here, or a number was out of range.
void noteHeaderFailure(const AptHeader& header, std::int64_t compartment, int pass, AptReadResult& result) {
    result.endReached = header.isEnd();
    if (!result.endReached) {
        result.faults.push_back({FormatFaultKind::Header, compartment, pass});
    }
}

// The first pass. False when there is no second one.
bool countPoints(const std::filesystem::path& path, AptReadResult& result) {
    NumberReader reader(path);
    result.opened = reader.isOpen();
    if (!result.opened) {
        result.faults.push_back({FormatFaultKind::CannotOpen, 0, 1});
        return false;
    }
    std::uint32_t total = 0;
    std::int64_t compartment = 1;
    AptHeader header;
    for (; header.read(reader); header = AptHeader{}, ++compartment) {
        reader.skipLine();
        total += header.product();
        if (!reader.skipLines(static_cast<std::int32_t>(header.product()))) {
            result.faults.push_back({FormatFaultKind::Body, compartment, 1});
            return false;
        }
    }
    noteHeaderFailure(header, compartment, 1, result);
    result.firstPassEnded = result.endReached;
    result.pointsInFile = static_cast<std::int32_t>(total);
    return true;
}

class AptSecondPass {
public:
    AptSecondPass(const std::filesystem::path& path, AptReadResult& result)
        : reader_(path), result_(result),
          period_(thinningPeriod(thinningFactor(static_cast<std::int32_t>(result.pointsInFile)))) {}

    void run(PatchList& patches);

private:
    bool readPatch(const AptHeader& header, Patch& patch);
    bool readSection(std::int32_t points, ThinningPhase& phase);
    void noteFault(FormatFaultKind kind);

    NumberReader reader_;
    AptReadResult& result_;
    std::int32_t period_;
    std::int64_t compartment_ = 1;
    std::int64_t kept_ = 0;
    std::int64_t bareSections_ = 0; // those that headers ask for without any point
    PointList section_;             // the one in hand; a patch gets a copy of just its size
};

void AptSecondPass::noteFault(FormatFaultKind kind) {
    result_.endReached = false;
    result_.faults.push_back({kind, compartment_, 2});
}

void AptSecondPass::run(PatchList& patches) {
    if (!reader_.isOpen()) {
        result_.faults.push_back({FormatFaultKind::CannotOpen, 0, 2});
        return;
    }
    AptHeader header;
    for (; header.read(reader_); header = AptHeader{}, ++compartment_) {
        bareSections_ += header.points > 0 ? 0 : std::max(header.sections, 0);
        if (bareSections_ > keptPointLimit) {
            noteFault(FormatFaultKind::Header);
            return;
        }
        Patch patch;
        if (!readPatch(header, patch)) {
            noteFault(FormatFaultKind::Body);
            return;
        }
        patches.push_back(std::move(patch));
        result_.pointsKept = kept_;
    }
    noteHeaderFailure(header, compartment_, 2, result_);
    result_.textBehind = header.sections != unread || !reader_.endedAtEndOfFile();
}

// False when a point cannot be read. Ends early, with what it has, at the limit of kept points.
bool AptSecondPass::readPatch(const AptHeader& header, Patch& patch) {
    ThinningPhase pointPhase(period_);
    ThinningPhase sectionPhase(period_);
    for (std::int32_t i = 0; i < header.sections; ++i) {
        if (!readSection(header.points, pointPhase)) {
            return false;
        }
        if (sectionPhase.keeps(i, header.sections)) {
            patch.push_back(section_);
            kept_ += static_cast<std::int64_t>(section_.size());
        } else {
            result_.thinned = true;
        }
        if (kept_ >= keptPointLimit) {
            result_.cutAtLimit = result_.cutAtLimit || i + 1 < header.sections;
            break;
        }
    }
    return true;
}

bool AptSecondPass::readSection(std::int32_t points, ThinningPhase& phase) {
    section_.clear();
    zVec<double> point;
    for (std::int32_t j = 0; j < points; ++j) {
        if (!readPoint(reader_, point)) {
            return false;
        }
        if (phase.keeps(j, points)) {
            section_.push_back(point);
        } else {
            result_.thinned = true;
        }
    }
    return true;
}

bool isWritable(const Patch* patch) {
    return std::all_of(patch->begin(), patch->end(),
                       [patch](const PointList& section) { return section.size() >= patch->front().size(); });
}

void writeAptPatch(NumberWriter& writer, const Patch& patch) {
    const std::int32_t points = lineCount(patch);
    writer.writeInt(countOf(patch));
    writer.writeChar(' ');
    writer.writeInt(points);
    writer.writeChar('\n');
    for (const PointList& section : patch) {
        std::for_each_n(section.begin(), points, [&writer](const zVec<double>& point) { writePoint(writer, point); });
    }
}

bool writeSelection(const std::filesystem::path& path, const PatchSelection& selection, int precision) {
    return std::all_of(selection.begin(), selection.end(), isWritable) &&
           savePatches(path, selection, precision, writeAptPatch);
}

} // namespace

AptReadResult readApt(const std::filesystem::path& path, PatchList& patches) {
    AptReadResult result;
    if (countPoints(path, result)) {
        AptSecondPass(path, result).run(patches);
    }
    return result;
}

bool writeApt(const std::filesystem::path& path, const PatchList& patches, int precision) {
    return writeSelection(path, selectAll(patches), precision);
}

bool writeAptBlock(const std::filesystem::path& path, const PatchList& patches, std::span<const std::int32_t> blockList,
                   int precision) {
    return writeSelection(path, selectBlock(patches, blockList), precision);
}

std::string aptMessage(const FormatFault& fault) {
    return faultMessage(fault,
                        "Header of APT file is wrong. Compartment N= ", "Body of APT file is wrong. Compartment N= ");
}

} // namespace velmora
