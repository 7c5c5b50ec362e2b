#include "skl.h"

#include <optional>
#include <string>
#include <utility>

#include "NumberReader.h"
#include "patch_text.h"
#include "thinning.h"

namespace velmora {

namespace {

class SklReader {
public:
    SklReader(const std::filesystem::path& path, SklReadResult& result, const ReportProgress& report)
        : reader_(path), result_(result) {
        reader_.reportTo(report);
    }

    bool isOpen() const { return reader_.isOpen(); }
    TextStream& stream() { return reader_.stream(); }
    void run(PatchList& patches);

private:
    std::optional<FormatFaultKind> readSections(std::int32_t count, Patch& patch);
    bool readPoints(std::int32_t count);
    void noteFault(FormatFaultKind kind);
    void noteBare(const char* what, std::int32_t count);
    void noteEnd();

    NumberReader reader_;
    SklReadResult& result_;
    BareSections bareSections_;
    std::int64_t compartment_ = 1;
    PointList section_; // the one in hand; a patch gets a copy of just its size
};

std::string placeOf(TextStream& stream, std::int64_t compartment) {
    return "Patch " + std::to_string(compartment) + ", " + lineText(stream) + ": ";
}

bool SklReader::readPoints(std::int32_t count) {
    section_.clear();
    zVec<double> point;
    for (std::int32_t j = 0; j < count; ++j) {
        if (!readPoint(reader_, point)) {
            return false;
        }
        section_.push_back(point);
    }
    return true;
}

// Reads the sections of one compartment; yields what is wrong with them, if anything is.
std::optional<FormatFaultKind> SklReader::readSections(std::int32_t count, Patch& patch) {
    for (std::int32_t i = 0; i < count; ++i) {
        std::int32_t points = 0;
        if (!reader_.readInt(points)) {
            return FormatFaultKind::Header;
        }
        countOf(result_.record.found, "sections") += 1;
        noteBare("a section", points);
        if (!bareSections_.accepts(1, points)) {
            return FormatFaultKind::Header;
        }
        const bool whole = readPoints(points);
        countOf(result_.record.found, "points") += countOf(section_);
        if (!whole) {
            return FormatFaultKind::Body;
        }
        patch.push_back(section_);
    }
    return std::nullopt;
}

std::int64_t pointsOf(const Patch& patch) {
    std::int64_t points = 0;
    for (const PointList& section : patch) {
        points += static_cast<std::int64_t>(section.size());
    }
    return points;
}

void writeSklPatch(NumberWriter& writer, const Patch& patch) {
    writer.writeInt(countOf(patch));
    writer.writeChar('\n');
    for (const PointList& section : patch) {
        writer.writeInt(countOf(section));
        writer.writeChar('\n');
        for (const zVec<double>& point : section) {
            writePoint(writer, point);
        }
    }
}

WriteOutcome writeSelection(const std::filesystem::path& path, const PatchList& patches,
                            const PatchSelection& selection, int precision, const ReportProgress& report) {
    WriteOutcome outcome = savePatches(path, patches, selection, precision, writeSklPatch, report);
    std::int64_t sections = 0;
    for (const Patch* patch : selection) {
        sections += countOf(*patch);
    }
    outcome.record.format = "skl";
    outcome.record.counts = {
        {"patches", countOf(selection)}, {"sections", sections}, {"points", pointCountOf(selection)}};
    return outcome;
}

void SklReader::noteFault(FormatFaultKind kind) {
    const bool diskFailed = stream().readFailed();
    result_.faults.push_back({diskFailed ? FormatFaultKind::Unread : kind, compartment_, 1});
    result_.record.losesGeometry(placeOf(stream(), compartment_) + (diskFailed ? "the system could not read on"
                                                                    : kind == FormatFaultKind::Header
                                                                        ? "no number of points can be read"
                                                                        : "no point can be read"));
}

// A count of 0 is an empty part; one below it was meant otherwise.
void SklReader::noteBare(const char* what, std::int32_t count) {
    if (count < 0) {
        result_.record.losesGeometry(placeOf(stream(), compartment_) + "the count " + std::to_string(count) +
                                     " gives " + what + " without points");
    }
}

void SklReader::noteEnd() {
    result_.endReached = !stream().readFailed();
    if (!result_.endReached) {
        noteFault(FormatFaultKind::Unread);
        return;
    }
    result_.textBehind = !reader_.endedAtEndOfFile();
    if (result_.textBehind) {
        result_.record.losesGeometry("No number of sections stands in " + lineText(stream()) +
                                     ": what follows there is not read");
    }
}

void SklReader::run(PatchList& patches) {
    FileRead& record = result_.record;
    std::int32_t sections = 0;
    for (; reader_.readInt(sections); ++compartment_) {
        countOf(record.found, "patches") = compartment_;
        noteBare("a patch", sections);
        Patch patch;
        auto fault = readSections(sections, patch);
        if (patch.empty() && !fault && !bareSections_.accepts(1, 0)) {
            fault = FormatFaultKind::Header;
        }
        if (fault) {
            noteFault(*fault);
            return;
        }
        result_.pointsRead += pointsOf(patch);
        countOf(record.kept, "sections") += countOf(patch);
        countOf(record.kept, "points") = result_.pointsRead;
        countOf(record.kept, "patches") = compartment_;
        patches.push_back(std::move(patch));
    }
    noteEnd();
}

} // namespace

SklReadResult readSkl(const std::filesystem::path& path, PatchList& patches, const ReportProgress& report) {
    SklReadResult result;
    SklReader reader(path, result, report);
    result.opened = reader.isOpen();
    if (!result.opened) {
        result.faults.push_back({FormatFaultKind::CannotOpen, 0, 1});
        return result;
    }
    beginRecord(result.record, path, reader.stream(), "skl", {"patches", "sections", "points"});
    reader.run(patches);
    noteJoinedNumbers(result.record, reader.stream());
    return result;
}

WriteOutcome writeSkl(const std::filesystem::path& path, const PatchList& patches, int precision,
                      const ReportProgress& report) {
    return writeSelection(path, patches, selectAll(patches), precision, report);
}

WriteOutcome writeSklBlock(const std::filesystem::path& path, const PatchList& patches,
                           std::span<const std::int32_t> blockList, int precision, const ReportProgress& report) {
    return writeSelection(path, patches, selectBlock(patches, blockList), precision, report);
}

// "SLK" is a misprint that is wanted: notes and scripts quote these texts.
std::string sklMessage(const FormatFault& fault) {
    return faultMessage(
        fault, "Line header of SLK file is wrong. Compartment N= ", "Body of SLK file is wrong. Compartment N= ");
}

} // namespace velmora
