#include "apt.h"

#include <algorithm>
#include <utility>

#include "NumberReader.h"
#include "PatchThinner.h"
#include "patch_text.h"

namespace velmora {

namespace {

constexpr std::int32_t unread = -1;
/// Counting lines is the smaller part of the work.
constexpr double endOfFirstPass = 0.2;

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
bool countPoints(const std::filesystem::path& path, AptReadResult& result, const ReportProgress& report) {
    NumberReader reader(path);
    reader.reportTo(report, 0.0, endOfFirstPass);
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
    AptSecondPass(const std::filesystem::path& path, AptReadResult& result, const ReportProgress& report)
        : reader_(path), result_(result), thinner_(static_cast<std::int32_t>(result.pointsInFile)) {
        reader_.reportTo(report, endOfFirstPass, 1.0);
    }

    void run(PatchList& patches);

private:
    void readPatches(PatchList& patches);
    void noteFault(FormatFaultKind kind);

    NumberReader reader_;
    AptReadResult& result_;
    PatchThinner thinner_;
    BareSections bareSections_;
    std::int64_t compartment_ = 1;
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
    readPatches(patches);
    result_.thinned = thinner_.thinned();
    result_.cutAtLimit = thinner_.cutAtLimit();
}

void AptSecondPass::readPatches(PatchList& patches) {
    AptHeader header;
    for (; header.read(reader_); header = AptHeader{}, ++compartment_) {
        if (!bareSections_.accepts(header.sections, header.points)) {
            noteFault(FormatFaultKind::Header);
            return;
        }
        Patch patch;
        thinner_.restartPhases();
        if (!thinner_.takePatch(
                header.sections, header.points, [this](zVec<double>& point) { return readPoint(reader_, point); },
                patch)) {
            noteFault(FormatFaultKind::Body);
            return;
        }
        patches.push_back(std::move(patch));
        result_.pointsKept = thinner_.kept();
    }
    noteHeaderFailure(header, compartment_, 2, result_);
    result_.textBehind = header.sections != unread || !reader_.endedAtEndOfFile();
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

bool writeSelection(const std::filesystem::path& path, const PatchSelection& selection, int precision,
                    const ReportProgress& report) {
    return std::all_of(selection.begin(), selection.end(), [](const Patch* patch) { return holdsGrid(*patch); }) &&
           savePatches(path, selection, precision, writeAptPatch, report);
}

} // namespace

AptReadResult readApt(const std::filesystem::path& path, PatchList& patches, const ReportProgress& report) {
    AptReadResult result;
    if (countPoints(path, result, report)) {
        AptSecondPass(path, result, report).run(patches);
    }
    return result;
}

bool writeApt(const std::filesystem::path& path, const PatchList& patches, int precision,
              const ReportProgress& report) {
    return writeSelection(path, selectAll(patches), precision, report);
}

bool writeAptBlock(const std::filesystem::path& path, const PatchList& patches, std::span<const std::int32_t> blockList,
                   int precision, const ReportProgress& report) {
    return writeSelection(path, selectBlock(patches, blockList), precision, report);
}

std::string aptMessage(const FormatFault& fault) {
    return faultMessage(fault,
                        "Header of APT file is wrong. Compartment N= ", "Body of APT file is wrong. Compartment N= ");
}

} // namespace velmora
