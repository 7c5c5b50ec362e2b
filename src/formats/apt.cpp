#include "apt.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <limits>
#include <string>
#include <utility>

#include "NumberReader.h"
#include "PatchThinner.h"
#include "large_memory.h"
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

    // The number of points that it tells of.
    std::int64_t pointsTold() const { return std::int64_t{sections} * points; }
    // The same, wrapping around as 32-bit integers do.
    std::uint32_t product() const { return static_cast<std::uint32_t>(sections) * static_cast<std::uint32_t>(points); }
};

// A header could not be read: either the file ends here, or a number was out of range, or the disk failed.
void noteHeaderFailure(const AptHeader& header, NumberReader& reader, std::int64_t compartment, int pass,
                       AptReadResult& result) {
    const bool diskFailed = reader.stream().readFailed();
    result.endReached = header.isEnd() && !diskFailed;
    if (!result.endReached) {
        result.faults.push_back({diskFailed ? FormatFaultKind::Unread : FormatFaultKind::Header, compartment, pass});
    }
}

std::string patchText(std::int64_t compartment) {
    return "Patch " + std::to_string(compartment) + ": ";
}

// In the first pass a body is a number of lines.
void noteShortBody(const AptHeader& header, NumberReader& reader, std::int64_t compartment, AptReadResult& result) {
    const bool diskFailed = reader.stream().readFailed();
    result.faults.push_back({diskFailed ? FormatFaultKind::Unread : FormatFaultKind::Body, compartment, 1});
    const std::string place = lineText(reader.stream());
    result.record.losesGeometry(diskFailed ? unreadText(reader.stream())
                                           : patchText(compartment) + "its header tells of " +
                                                 std::to_string(header.pointsTold()) +
                                                 " lines of points, which end in " + place);
    result.record.losesGeometry("An .apt file that ends early is not read at all");
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
    beginRecord(result.record, path, reader.stream(), "apt", {"patches", "points"});
    std::uint32_t total = 0;
    std::int64_t compartment = 1;
    AptHeader header;
    for (; header.read(reader); header = AptHeader{}, ++compartment) {
        reader.skipLine();
        total += header.product();
        const bool whole = reader.skipLines(static_cast<std::int32_t>(header.product()));
        countOf(result.record.found, "patches") = compartment;
        countOf(result.record.found, "points") = reader.linesSkipped();
        if (!whole) {
            noteShortBody(header, reader, compartment, result);
            return false;
        }
    }
    noteHeaderFailure(header, reader, compartment, 1, result);
    if (reader.stream().readFailed()) {
        result.record.losesGeometry(unreadText(reader.stream()));
        return false;
    }
    result.firstPassEnded = result.endReached;
    result.pointsInFile = static_cast<std::int32_t>(total);
    return true;
}

/// The points of a patch, each in a line that holds x, y, z and nothing else.
class PointLines {
public:
    PointLines(TextStream& stream, std::int64_t points) : stream_(stream), left_(points) {}

    /// False when there is none, or another line.
    bool operator()(zVec<double>& point) {
        if (next_ == end_ && !fill()) {
            return false;
        }
        point = {values_[next_], values_[next_ + 1], values_[next_ + 2]};
        next_ += numbers;
        return true;
    }

private:
    static constexpr std::size_t numbers = 3;
    static constexpr std::size_t linesAtOnce = 64;

    bool fill() {
        const auto most = static_cast<std::size_t>(std::min<std::int64_t>(left_, linesAtOnce));
        std::size_t lines = stream_.takeLinesOfDoubles(values_.data(), numbers, most);
        if (lines == 0 && left_ > 0) {
            lines = stream_.readLineOfDoubles(values_.data(), numbers) ? 1 : 0;
        }
        left_ -= static_cast<std::int64_t>(lines);
        next_ = 0;
        end_ = lines * numbers;
        return lines > 0;
    }

    TextStream& stream_;
    std::int64_t left_;
    std::array<double, numbers * linesAtOnce> values_{};
    std::size_t next_ = 0;
    std::size_t end_ = 0;
};

std::int32_t periodOf(std::int32_t totalPoints, AptDetail detail) {
    return detail == AptDetail::Whole ? 1 : thinningPeriod(thinningFactor(totalPoints));
}

PatchThinner thinnerFor(std::int32_t totalPoints, AptDetail detail) {
    return detail == AptDetail::Whole ? PatchThinner::keepingAll() : PatchThinner(totalPoints);
}

/// Reads a file as nearly all are: headers and points, each in a line of its own, and nothing else. Then the numbers
/// tell what the lines are counted for, and one pass will do. Of any other file it knows nothing.
class AptOnePass {
public:
    AptOnePass(const std::filesystem::path& path, AptDetail detail, const ReportProgress& report)
        : reader_(path), detail_(detail), thinner_(thinnerFor(0, detail)) {
        reader_.reportTo(report);
        result_.opened = reader_.isOpen();
        if (result_.opened) {
            beginRecord(result_.record, path, reader_.stream(), "apt", {"patches", "points"});
        }
    }

    /// False when the file is to be read in two passes.
    bool run();
    const AptReadResult& result() const { return result_; }
    PatchList& patches() { return patches_; }

private:
    bool takePatch(const AptHeader& header);
    bool fitThinning();
    std::int32_t expectedPoints();
    void makeRoomForRest();
    void noteUnread();

    NumberReader reader_;
    AptDetail detail_;
    AptReadResult result_;
    PatchList patches_;
    PatchThinner thinner_;
    std::int32_t period_ = 1;
    BareSections bareSections_;
    std::int64_t compartment_ = 1;
};

bool AptOnePass::run() {
    AptHeader header;
    for (; header.read(reader_); header = AptHeader{}, ++compartment_) {
        if (!takePatch(header)) {
            break;
        }
        if (compartment_ == 1) {
            makeRoomForRest(); // not before: what is read ahead would lie there too, and fills only parts of it
        }
    }
    if (reader_.stream().readFailed()) {
        noteUnread();
        return true;
    }
    const bool asExpected = periodOf(static_cast<std::int32_t>(result_.pointsInFile), detail_) == period_;
    if (!asExpected || !reader_.endedAtEndOfFile() || header.sections != unread) {
        return false;
    }
    result_.firstPassEnded = result_.endReached = true;
    result_.thinned = thinner_.thinned();
    noteThinning(result_.record, result_.thinned, false);
    return true;
}

// What is to be told of other headers, and of a model that is cut, is left to the second pass.
bool AptOnePass::takePatch(const AptHeader& header) {
    const bool bare = header.sections == 0 && header.points > 0;
    if (header.sections < 0 || header.points < 0 || bare || !reader_.stream().takeLineEnd() ||
        !bareSections_.accepts(header.sections, header.points)) {
        return false;
    }
    result_.pointsInFile += header.pointsTold();
    if (result_.pointsInFile > std::numeric_limits<std::int32_t>::max() || !fitThinning()) {
        return false;
    }
    PointLines nextPoint(reader_.stream(), header.pointsTold());
    Patch patch;
    thinner_.restartPhases();
    if (!thinner_.takePatch(header.sections, header.points, nextPoint, patch) || thinner_.cutAtLimit()) {
        return false;
    }
    patches_.push_back(std::move(patch));
    result_.pointsKept = thinner_.kept();
    countOf(result_.record.found, "patches") = compartment_;
    countOf(result_.record.found, "points") = result_.pointsInFile;
    countOf(result_.record.kept, "patches") = result_.pointsKept > 0 ? compartment_ : 0;
    countOf(result_.record.kept, "points") = result_.pointsKept;
    return true;
}

// The thinning goes by all points of the file, of which those of the headers so far are the least that there can be;
// once it has to begin, the size of the file tells about how many there will be. Patches that were kept whole are
// thinned then. False when that is too uncertain, or was wrong.
bool AptOnePass::fitThinning() {
    const auto total = static_cast<std::int32_t>(result_.pointsInFile);
    if (periodOf(total, detail_) <= period_) {
        return true;
    }
    constexpr double uncertain = 0.05;
    const std::int32_t expected = expectedPoints();
    const std::int32_t fewer = std::max(total, static_cast<std::int32_t>((1.0 - uncertain) * expected));
    const auto more = static_cast<std::int32_t>((1.0 + uncertain) * expected);
    if (period_ != 1 || periodOf(fewer, detail_) != periodOf(more, detail_)) {
        return false;
    }
    period_ = periodOf(more, detail_);
    thinner_ = PatchThinner(more);
    for (Patch& whole : patches_) {
        thinner_.restartPhases();
        whole = thinner_.thin(whole);
    }
    return true;
}

// As many as the rest of the file has room for when it is like what was read. All of that was kept so far.
std::int32_t AptOnePass::expectedPoints() {
    constexpr std::int64_t enoughToTell = 1000;
    constexpr double most = 1e9;
    const auto total = static_cast<double>(result_.pointsInFile);
    const TextStream& stream = reader_.stream();
    const double read = static_cast<double>(stream.tell()) / static_cast<double>(stream.size());
    const double expected =
        thinner_.kept() < enoughToTell ? total : std::max(total, static_cast<double>(thinner_.kept()) / read);
    return static_cast<std::int32_t>(std::min(expected, most));
}

void AptOnePass::makeRoomForRest() {
    constexpr std::int64_t bytesOfNumber = 2; // at least
    const std::int64_t left = reader_.stream().size() - reader_.stream().tell();
    makeRoomForPieces(static_cast<std::size_t>(left / bytesOfNumber) * sizeof(double));
}

void AptOnePass::noteUnread() {
    patches_.clear();
    result_.pointsKept = 0;
    for (const char* const kind : {"patches", "points"}) {
        countOf(result_.record.kept, kind) = 0;
    }
    result_.faults.push_back({FormatFaultKind::Unread, compartment_, 1});
    result_.record.losesGeometry(unreadText(reader_.stream()));
}

class AptSecondPass {
public:
    AptSecondPass(const std::filesystem::path& path, AptDetail detail, AptReadResult& result,
                  const ReportProgress& report)
        : reader_(path), result_(result), thinner_(thinnerFor(static_cast<std::int32_t>(result.pointsInFile), detail)) {
        reader_.reportTo(report, endOfFirstPass, 1.0);
    }

    void run(PatchList& patches);

private:
    void readPatches(PatchList& patches);
    void noteFault(FormatFaultKind kind, const std::string& reason);
    void noteBareHeader(const AptHeader& header);
    void noteEnd(const AptHeader& header);

    NumberReader reader_;
    AptReadResult& result_;
    PatchThinner thinner_;
    BareSections bareSections_;
    std::int64_t compartment_ = 1;
};

void AptSecondPass::noteFault(FormatFaultKind kind, const std::string& reason) {
    const bool diskFailed = reader_.stream().readFailed();
    result_.endReached = false;
    result_.faults.push_back({diskFailed ? FormatFaultKind::Unread : kind, compartment_, 2});
    if (thinner_.cutAtLimit() && !diskFailed) {
        return; // behind the limit the file is not read as it stands, and that is told
    }
    result_.record.losesGeometry(diskFailed ? unreadText(reader_.stream()) : patchText(compartment_) + reason);
}

// A patch without points is written as "0 0", or with sections as "2 0". Another header without points was meant
// otherwise; it is taken as it is.
void AptSecondPass::noteBareHeader(const AptHeader& header) {
    const bool wrong = header.sections < 0 || header.points < 0; // what it counts is not known
    if (wrong || (header.sections == 0 && header.points > 0)) {
        std::string reason = patchText(compartment_) + "the header " + std::to_string(header.sections) + ' ' +
                             std::to_string(header.points) + " in " + lineText(reader_.stream()) + " gives no points";
        wrong ? result_.record.losesGeometry(std::move(reason)) : result_.record.losesDetail(std::move(reason));
    }
}

void AptSecondPass::noteEnd(const AptHeader& header) {
    if (!result_.endReached) {
        result_.record.losesGeometry(reader_.stream().readFailed()
                                         ? unreadText(reader_.stream())
                                         : patchText(compartment_) + "the counts in " + lineText(reader_.stream()) +
                                               " are out of range");
        return;
    }
    result_.textBehind = header.sections != unread || !reader_.endedAtEndOfFile();
    if (result_.textBehind && !thinner_.cutAtLimit()) {
        result_.record.losesGeometry("No header stands in " + lineText(reader_.stream()) +
                                     ": what follows there is not read");
    }
}

void AptSecondPass::run(PatchList& patches) {
    if (!reader_.isOpen()) {
        result_.faults.push_back({FormatFaultKind::CannotOpen, 0, 2});
        return;
    }
    readPatches(patches);
    result_.thinned = thinner_.thinned();
    result_.cutAtLimit = thinner_.cutAtLimit();
    noteJoinedNumbers(result_.record, reader_.stream());
    noteThinning(result_.record, result_.thinned, result_.cutAtLimit);
}

void AptSecondPass::readPatches(PatchList& patches) {
    AptHeader header;
    for (; header.read(reader_); header = AptHeader{}, ++compartment_) {
        if (!bareSections_.accepts(header.sections, header.points)) {
            noteFault(FormatFaultKind::Header,
                      "the header in " + lineText(reader_.stream()) + " asks for too many sections without points");
            return;
        }
        noteBareHeader(header);
        Patch patch;
        thinner_.restartPhases();
        if (!thinner_.takePatch(
                header.sections, header.points, [this](zVec<double>& point) { return readPoint(reader_, point); },
                patch)) {
            noteFault(FormatFaultKind::Body, "no point can be read in " + lineText(reader_.stream()));
            return;
        }
        patches.push_back(std::move(patch));
        result_.pointsKept = thinner_.kept();
        countOf(result_.record.kept, "patches") = result_.pointsKept > 0 ? compartment_ : 0; // else it gives no model
        countOf(result_.record.kept, "points") = result_.pointsKept;
    }
    noteHeaderFailure(header, reader_, compartment_, 2, result_);
    noteEnd(header);
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

// What a file of grids holds of it.
std::int64_t gridPointCountOf(const PatchSelection& selection) {
    std::int64_t points = 0;
    for (const Patch* patch : selection) {
        points += std::int64_t{countOf(*patch)} * lineCount(*patch);
    }
    return points;
}

WriteOutcome writeSelection(const std::filesystem::path& path, const PatchList& patches,
                            const PatchSelection& selection, int precision, const ReportProgress& report) {
    if (!std::all_of(selection.begin(), selection.end(), [](const Patch* patch) { return holdsGrid(*patch); })) {
        return {};
    }
    WriteOutcome outcome = savePatches(path, patches, selection, precision, writeAptPatch, report);
    outcome.record.format = "apt";
    outcome.record.counts = {{"patches", countOf(selection)}, {"points", gridPointCountOf(selection)}};
    return outcome;
}

} // namespace

AptReadResult readApt(const std::filesystem::path& path, PatchList& patches, const ReportProgress& report,
                      AptDetail detail) {
    double told = 0.0; // what is read anew goes on from where it stood
    const ReportProgress rising = [&](double part) {
        told = std::max(told, part);
        report(told);
    };
    const ReportProgress progress = report ? rising : ReportProgress{};
    AptOnePass pass(path, detail, progress);
    if (pass.run()) {
        std::move(pass.patches().begin(), pass.patches().end(), std::back_inserter(patches));
        return pass.result();
    }
    AptReadResult result;
    if (countPoints(path, result, progress)) {
        AptSecondPass(path, detail, result, progress).run(patches);
    }
    return result;
}

WriteOutcome writeApt(const std::filesystem::path& path, const PatchList& patches, int precision,
                      const ReportProgress& report) {
    return writeSelection(path, patches, selectAll(patches), precision, report);
}

WriteOutcome writeAptBlock(const std::filesystem::path& path, const PatchList& patches,
                           std::span<const std::int32_t> blockList, int precision, const ReportProgress& report) {
    return writeSelection(path, patches, selectBlock(patches, blockList), precision, report);
}

std::string aptMessage(const FormatFault& fault) {
    return faultMessage(fault,
                        "Header of APT file is wrong. Compartment N= ", "Body of APT file is wrong. Compartment N= ");
}

} // namespace velmora
