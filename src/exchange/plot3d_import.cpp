#include "plot3d_import.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "TextScan.h"
#include "binary_numbers.h"
#include "grid_builder.h"
#include "read_record.h"

namespace velmora {

namespace {

/// More points than any file holds; sums of such counts have room.
constexpr std::int64_t mostPoints = std::int64_t{1} << 40;

using Extents = std::array<std::int64_t, 3>;

/// How the numbers of a file are to be read.
struct Layout {
    std::vector<Extents> blocks;
    std::size_t header = 0; ///< numbers before the coordinates
    int dimensions = 3;
    bool blanked = false;
    std::int64_t points = 0;
};

/// What stands at a place of the header; anything for a place behind the end.
using HeaderNumber = std::function<double(std::size_t)>;

/// Reads the counts, which must be whole numbers from 1, of `available` numbers at most.
std::optional<Layout> layoutOf(const HeaderNumber& number, std::size_t available, bool counted, int dimensions) {
    const auto isCount = [](double value) {
        return value >= 1.0 && value <= static_cast<double>(std::numeric_limits<std::int32_t>::max()) &&
               std::floor(value) == value;
    };
    Layout layout;
    layout.dimensions = dimensions;
    layout.header = counted ? 1 : 0;
    if (available == 0 || !isCount(number(0))) {
        return std::nullopt;
    }
    const std::size_t blocks = counted ? static_cast<std::size_t>(number(0)) : 1;
    const auto perBlock = static_cast<std::size_t>(dimensions);
    if (blocks > available / perBlock || layout.header + blocks * perBlock > available) {
        return std::nullopt;
    }
    for (std::size_t block = 0; block < blocks; ++block) {
        Extents extents = {1, 1, 1};
        for (std::size_t axis = 0; axis < perBlock; ++axis) {
            const double value = number(layout.header++);
            if (!isCount(value) ||
                static_cast<double>(extents[0] * extents[1]) * value > static_cast<double>(mostPoints)) {
                return std::nullopt;
            }
            extents.at(axis) = static_cast<std::int64_t>(value);
        }
        layout.blocks.push_back(extents);
        layout.points += extents[0] * extents[1] * extents[2];
        if (layout.points > mostPoints) {
            return std::nullopt;
        }
    }
    return layout;
}

std::int64_t pointsOf(const Extents& extents) {
    return extents[0] * extents[1] * extents[2];
}

/// All layouts whose counts can be read, the commonest first.
std::vector<Layout> layoutsOf(const HeaderNumber& number, std::size_t available) {
    std::vector<Layout> layouts;
    for (const int dimensions : {3, 2}) {
        for (const bool counted : {true, false}) {
            if (std::optional<Layout> layout = layoutOf(number, available, counted, dimensions)) {
                layouts.push_back(*layout);
                layout->blanked = true;
                layouts.push_back(std::move(*layout));
            }
        }
    }
    return layouts;
}

/// Takes the blocks one by one, from a source that hands out so many numbers as coordinates or as blanking.
class BlockTaker {
public:
    /// False when the file does not have so many any more; nothing is taken then.
    using TakeNumbers = std::function<bool(std::size_t count, bool blanking, std::vector<double>& numbers)>;

    BlockTaker(const ImportOptions& options, ExchangeModel& model, FileRead& record, const ReportProgress& report)
        : options_(options), model_(model), record_(record), report_(report) {}

    void take(const Layout& layout, const TakeNumbers& takeNumbers);

private:
    bool takeBlock(const Layout& layout, const Extents& extents, const TakeNumbers& takeNumbers);

    const ImportOptions& options_;
    ExchangeModel& model_;
    FileRead& record_;
    const ReportProgress& report_;
    GridTally tally_;
    std::vector<double> blanking_;
    std::int64_t blankedPoints_ = 0;
    bool otherMarks_ = false; // blanking that tells more than "blanked" or not
};

void BlockTaker::take(const Layout& layout, const TakeNumbers& takeNumbers) {
    const auto blocks = static_cast<std::int64_t>(layout.blocks.size());
    record_.found = record_.kept = {{"zones", 0}, {"patches", 0}, {"sections", 0}, {"points", 0}};
    countOf(record_.found, "zones") += blocks;
    std::int64_t taken = 0;
    bool whole = true;
    for (const Extents& extents : layout.blocks) {
        GridBlock block;
        block.i = extents[0];
        block.j = extents[1];
        block.k = extents[2];
        countBlock(block, record_.found);
        whole = whole && takeBlock(layout, extents, takeNumbers);
        taken += whole ? 1 : 0;
        if (report_) {
            report_(std::lerp(0.7, 0.95, static_cast<double>(taken) / static_cast<double>(blocks)));
        }
    }
    tellMissing(record_, "Blocks that are not there or not whole", blocks - taken);
    tellGrids(tally_, options_, record_);
    tellChanged(record_, "Blanked points, which stay points", blankedPoints_);
    if (blankedPoints_ > 0 || otherMarks_) {
        record_.losesDetail("Blanking is not kept");
    }
}

bool BlockTaker::takeBlock(const Layout& layout, const Extents& extents, const TakeNumbers& takeNumbers) {
    const auto points = static_cast<std::size_t>(pointsOf(extents));
    GridBlock block;
    block.i = extents[0];
    block.j = extents[1];
    block.k = extents[2];
    if (!takeNumbers(points, false, block.x) || !takeNumbers(points, false, block.y) ||
        (layout.dimensions == 3 && !takeNumbers(points, false, block.z))) {
        return false;
    }
    block.z.resize(points); // a plane grid lies in z = 0
    if (layout.blanked) {
        if (!takeNumbers(points, true, blanking_)) {
            return false;
        }
        blankedPoints_ += std::count(blanking_.begin(), blanking_.end(), 0.0);
        otherMarks_ = otherMarks_ || std::any_of(blanking_.begin(), blanking_.end(),
                                                 [](double mark) { return mark != 0.0 && mark != 1.0; });
    }
    PatchList patches = patchesOf(block, options_, tally_);
    countPatches(patches, record_.kept);
    countOf(record_.kept, "zones") += patches.empty() ? 0 : 1;
    std::move(patches.begin(), patches.end(), std::back_inserter(model_.patches));
    return true;
}

// ---- Text -----------------------------------------------------------------------------------------------------------

/// All numbers of the text up to the first thing that is none; `3*0.5` is three. Fewer than the text has where a
/// repetition asks for more than a file of that size should.
std::vector<double> numbersIn(std::string_view text, const ReportProgress& report, bool& cut) {
    constexpr std::size_t reportStep = std::size_t{1} << 20;
    const std::size_t most = 1'000'000 + 4 * text.size();
    std::vector<double> numbers;
    numbers.reserve(text.size() / 16);
    TextScan scan(text);
    double value = 0.0;
    std::size_t nextReport = reportStep;
    while (scan.skipSeparators()) {
        if (!scan.takeNumber(value)) {
            cut = true;
            return numbers;
        }
        std::size_t copies = 1;
        if (scan.peek() == '*') {
            scan.advance();
            const double times = value;
            if (!(times >= 1.0 && times + static_cast<double>(numbers.size()) <= static_cast<double>(most)) ||
                !scan.takeNumber(value)) {
                cut = true;
                return numbers;
            }
            copies = static_cast<std::size_t>(times);
        }
        if (copies == 1) {
            numbers.push_back(value);
        } else {
            numbers.insert(numbers.end(), copies, value);
        }
        if (report && numbers.size() > nextReport) {
            nextReport += reportStep;
            report(std::lerp(0.2, 0.7, static_cast<double>(scan.tell()) / static_cast<double>(text.size())));
        }
    }
    return numbers;
}

std::size_t numbersNeeded(const Layout& layout) {
    return layout.header + static_cast<std::size_t>(layout.points) *
                               static_cast<std::size_t>(layout.dimensions + (layout.blanked ? 1 : 0));
}

/// Numbers such as blanking has: 0 and 1, seldom 2, and the numbers of neighbouring blocks below 0.
bool isMark(double number) {
    constexpr double leastMark = -1000.0;
    constexpr double mostMark = 2.0;
    return std::floor(number) == number && number >= leastMark && number <= mostMark;
}

/// Whether marks stand behind the first block's coordinates, as far as the file goes.
bool marksFollow(const Layout& layout, const std::vector<double>& numbers) {
    const auto points = static_cast<std::size_t>(pointsOf(layout.blocks.front()));
    const std::size_t begin = layout.header + points * static_cast<std::size_t>(layout.dimensions);
    const std::size_t end = std::min(begin + points, numbers.size());
    return begin < end && std::all_of(numbers.begin() + static_cast<std::ptrdiff_t>(begin),
                                      numbers.begin() + static_cast<std::ptrdiff_t>(end), isMark);
}

/// The layouts that may be meant by these numbers, the commonest first. A plane grid is none where the counts of
/// several blocks can be read: its counts are there by chance then.
std::vector<Layout> possibleLayouts(const std::vector<double>& numbers) {
    std::vector<Layout> layouts = layoutsOf([&numbers](std::size_t place) { return numbers[place]; }, numbers.size());
    const bool severalBlocks = !layouts.empty() && layouts.front().dimensions == 3 && layouts.front().blocks.size() > 1;
    std::erase_if(layouts, [&](const Layout& layout) {
        return (layout.dimensions == 2 && severalBlocks) || (layout.blanked && !marksFollow(layout, numbers));
    });
    return layouts;
}

/// The layout that takes all numbers, or, of a damaged file, that of which the least is missing; null when there is
/// none. What looks like marks behind the coordinates of a damaged file is taken for them.
const Layout* bestLayout(const std::vector<Layout>& layouts, const std::vector<double>& numbers) {
    const Layout* best = nullptr;
    for (const Layout& layout : layouts) {
        const std::size_t needed = numbersNeeded(layout);
        if (needed == numbers.size()) {
            return &layout;
        }
        const bool cut = needed > numbers.size();
        const bool possible = layout.dimensions == 3 && layout.blanked == marksFollow(layout, numbers);
        const bool better =
            best == nullptr || (cut && numbersNeeded(*best) < numbers.size()) || (cut && needed < numbersNeeded(*best));
        if (possible && better) {
            best = &layout;
        }
    }
    return best;
}

/// So little may be missing that a file is taken for a whole one of another layout: the end of the last point, or of
/// the last lines.
bool isCloseCall(std::size_t missing, std::size_t needed) {
    constexpr std::size_t lastNumbers = 3;
    constexpr std::size_t partOfFile = 20;
    return missing > 0 && (missing <= lastNumbers || missing <= needed / partOfFile);
}

bool sameCounts(const Layout& a, const Layout& b) {
    return a.header == b.header && a.dimensions == b.dimensions && a.blocks == b.blocks;
}

/// What speaks against the layout that takes all of a file: the count of points alone never tells which is meant.
class LayoutDoubt {
public:
    explicit LayoutDoubt(const Layout& taken) : taken_(taken) {}

    /// Weighs another layout, in the order of their commonness; the file has `there` numbers or bytes of `needed`.
    void weigh(const Layout& other, std::size_t needed, std::size_t there) {
        if (&other == &taken_) {
            commoner_ = false;
        } else if (!sameCounts(other, taken_)) {
            severalFit_ = severalFit_ || needed == there;
            cutFits_ = cutFits_ || (commoner_ && needed > there && isCloseCall(needed - there, needed));
        }
    }
    void tell(FileRead& record) const {
        if (severalFit_) {
            record.losesGeometry("More than one layout takes the whole file: the grid may be another one");
        }
        if (cutFits_) {
            record.losesGeometry("The counts are also those of a larger file whose end is missing: the grid may be "
                                 "another one");
        }
    }

private:
    const Layout& taken_;
    bool commoner_ = true;
    bool severalFit_ = false;
    bool cutFits_ = false;
};

bool importText(std::string_view text, BlockTaker& taker, FileRead& record, const ReportProgress& report) {
    bool cut = false;
    const std::vector<double> numbers = numbersIn(text, report, cut);
    const std::vector<Layout> layouts = possibleLayouts(numbers);
    const Layout* const layout = bestLayout(layouts, numbers);
    if (layout == nullptr) {
        return false;
    }
    std::size_t at = layout->header;
    taker.take(*layout, [&numbers, &at](std::size_t count, bool, std::vector<double>& taken) {
        if (count > numbers.size() - at) {
            return false;
        }
        const auto first = numbers.begin() + static_cast<std::ptrdiff_t>(at);
        taken.assign(first, first + static_cast<std::ptrdiff_t>(count));
        at += count;
        return true;
    });
    if (cut) {
        record.losesGeometry("Something that is no number ends the file early");
    } else if (numbersNeeded(*layout) < numbers.size()) {
        tellMissing(record, "Numbers behind the last block",
                    static_cast<std::int64_t>(numbers.size() - numbersNeeded(*layout)));
    } else if (numbersNeeded(*layout) == numbers.size()) {
        LayoutDoubt doubt(*layout);
        for (const Layout& other : layouts) {
            doubt.weigh(other, numbersNeeded(other), numbers.size());
        }
        doubt.tell(record);
    }
    return true;
}

// ---- Binary ---------------------------------------------------------------------------------------------------------

/// The bytes of the records without their marks.
struct Records {
    std::string bytes;
    std::size_t promised = 0;         ///< bytes by the marks, more than there are when the file is cut
    std::vector<std::size_t> lengths; ///< of the first records
};

/// Each record of a Fortran program stands between two marks of its length. Null when the file does not begin so.
std::optional<Records> recordsOf(std::string_view text, std::size_t markSize, bool highestFirst) {
    constexpr std::size_t firstLengths = 4;
    const auto mark = [&](std::size_t at) {
        return markSize == 4 ? std::int64_t{numberAt<std::int32_t>(text.data() + at, highestFirst)}
                             : numberAt<std::int64_t>(text.data() + at, highestFirst);
    };
    Records records;
    std::size_t at = 0;
    while (text.size() - at >= markSize) {
        const std::int64_t signedLength = mark(at);
        // A record of more than 2^31 bytes comes in parts; the mark of one that goes on is negative.
        const std::uint64_t length =
            static_cast<std::uint64_t>(signedLength < 0 && markSize == 4 ? -signedLength : signedLength);
        const std::size_t left = text.size() - at - markSize;
        const bool whole = length <= left && left - length >= markSize &&
                           std::abs(mark(at + markSize + length)) == static_cast<std::int64_t>(length);
        if (!whole && (at == 0 || length <= left || length > static_cast<std::uint64_t>(mostPoints))) {
            break;
        }
        records.promised += length;
        records.bytes.append(text.substr(at + markSize, std::min<std::uint64_t>(length, left)));
        if (records.lengths.size() < firstLengths) {
            records.lengths.push_back(length);
        }
        if (!whole) {
            break;
        }
        at += 2 * markSize + length;
    }
    return records.lengths.empty() ? std::nullopt : std::optional(std::move(records));
}

/// A layout of bytes: how the numbers are stored too.
struct ByteLayout {
    Layout layout;
    std::size_t realSize = 4;
    bool highestFirst = false;
};

constexpr std::size_t integerSize = 4;

std::size_t bytesNeeded(const ByteLayout& bytes) {
    const auto points = static_cast<std::size_t>(bytes.layout.points);
    return integerSize * bytes.layout.header +
           points * static_cast<std::size_t>(bytes.layout.dimensions) * bytes.realSize +
           (bytes.layout.blanked ? integerSize * points : 0);
}

std::vector<ByteLayout> byteLayoutsOf(std::string_view bytes, bool highestFirst) {
    const HeaderNumber number = [bytes, highestFirst](std::size_t place) {
        return static_cast<double>(numberAt<std::int32_t>(bytes.data() + integerSize * place, highestFirst));
    };
    std::vector<ByteLayout> result;
    for (const Layout& layout : layoutsOf(number, bytes.size() / integerSize)) {
        for (const std::size_t realSize : {std::size_t{4}, std::size_t{8}}) {
            result.push_back({layout, realSize, highestFirst});
        }
    }
    return result;
}

void takeBytes(std::string_view bytes, const ByteLayout& layout, BlockTaker& taker) {
    std::size_t at = integerSize * layout.layout.header;
    taker.take(layout.layout, [&](std::size_t count, bool blanking, std::vector<double>& numbers) {
        const std::size_t size = blanking ? integerSize : layout.realSize;
        if (count > (bytes.size() - at) / size) {
            return false;
        }
        numbers.resize(count);
        for (double& number : numbers) {
            number = blanking ? numberAt<std::int32_t>(bytes.data() + at, layout.highestFirst)
                              : realAt(bytes.data() + at, size, layout.highestFirst);
            at += size;
        }
        return true;
    });
}

/// Coordinates that somebody may have meant: the wrong size or order gives some beyond all measure, and counts that are
/// taken for coordinates some next to nothing. Rounding leaves small ones too, but never so small, and never most of
/// them.
bool plausibleCoordinates(std::string_view bytes, const ByteLayout& layout, std::size_t count) {
    const std::size_t begin = integerSize * layout.layout.header;
    const double least =
        layout.realSize == sizeof(float) ? std::numeric_limits<float>::min() : std::numeric_limits<double>::min();
    std::size_t small = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const double value =
            std::abs(realAt(bytes.data() + begin + i * layout.realSize, layout.realSize, layout.highestFirst));
        if (value != 0.0 && !(value >= least && value < 1e20)) {
            return false;
        }
        small += value != 0.0 && value < 1e-20 ? 1 : 0;
    }
    return 2 * small <= count;
}

/// The same of the coordinates and marks of the first block, as far as they are there.
bool plausible(std::string_view bytes, const ByteLayout& layout) {
    constexpr std::size_t enough = 300;
    const std::size_t begin = integerSize * layout.layout.header;
    const auto points = static_cast<std::size_t>(pointsOf(layout.layout.blocks.front()));
    const std::size_t count = std::min(enough, points);
    if (begin + count * layout.realSize > bytes.size() || !plausibleCoordinates(bytes, layout, count)) {
        return false;
    }
    const std::size_t marks = begin + points * static_cast<std::size_t>(layout.layout.dimensions) * layout.realSize;
    for (std::size_t i = 0; layout.layout.blanked && i < count; ++i) {
        const std::size_t at = marks + i * integerSize;
        if (at + integerSize <= bytes.size() &&
            !isMark(numberAt<std::int32_t>(bytes.data() + at, layout.highestFirst))) {
            return false;
        }
    }
    return true;
}

/// Whether what is there of the first block looks like halves of larger numbers: every second one is 0, as of round
/// numbers, or more than a few are beyond all measure or next to nothing.
bool looksLikeHalves(std::string_view bytes, const ByteLayout& layout) {
    constexpr std::size_t few = 100; // one of so many
    const std::size_t begin = integerSize * layout.layout.header;
    const std::size_t count =
        std::min(static_cast<std::size_t>(pointsOf(layout.layout.blocks.front()) * layout.layout.dimensions),
                 (bytes.size() - begin) / layout.realSize);
    std::array<std::size_t, 2> numbers = {0, 0}; // that are not 0, at even and odd places
    std::size_t wild = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const double value =
            std::abs(realAt(bytes.data() + begin + i * layout.realSize, layout.realSize, layout.highestFirst));
        numbers.at(i % 2) += value != 0.0 ? 1 : 0;
        wild += value != 0.0 && !(value >= 1e-20 && value < 1e20) ? 1 : 0;
    }
    return (numbers[0] == 0) != (numbers[1] == 0) || few * wild > count;
}

/// The bytes of one point in the first block, by the first records; 0 when they do not tell.
std::size_t bytesOfPoint(const ByteLayout& layout, const std::vector<std::size_t>& lengths) {
    const auto points = static_cast<std::size_t>(pointsOf(layout.layout.blocks.front()));
    std::size_t header = integerSize * layout.layout.header;
    for (const std::size_t length : lengths) {
        if (header > 0) {
            header -= std::min(header, length);
        } else {
            return length % points == 0 ? length / points : 0;
        }
    }
    return 0;
}

/// Whether the numbers of the header end where a record does, as every writer has it.
bool headerEndsRecord(const ByteLayout& layout, const Records& records) {
    const std::size_t header = integerSize * layout.layout.header;
    std::size_t end = 0;
    return std::any_of(records.lengths.begin(), records.lengths.end(), [&](std::size_t length) {
        end += length;
        return end == header;
    });
}

/// The layout that takes all bytes that the marks promise, or one whose first block has records of its length.
const ByteLayout* layoutOfRecords(const std::vector<ByteLayout>& layouts, const Records& records) {
    const auto takesAll = [&records](const ByteLayout& layout) {
        return bytesNeeded(layout) == records.promised && headerEndsRecord(layout, records);
    };
    const auto fitsFirstBlock = [&records](const ByteLayout& layout) {
        const std::size_t perPoint = static_cast<std::size_t>(layout.layout.dimensions) * layout.realSize +
                                     (layout.layout.blanked ? integerSize : 0);
        return bytesOfPoint(layout, records.lengths) == perPoint;
    };
    auto found = std::find_if(layouts.begin(), layouts.end(), takesAll);
    if (found == layouts.end()) {
        found = std::find_if(layouts.begin(), layouts.end(), fitsFirstBlock);
    }
    return found != layouts.end() ? &*found : nullptr;
}

/// Bytes that the layout asks for and the file does not have, or has beside.
void tellBytesLeft(const ByteLayout& layout, std::size_t there, FileRead& record) {
    const std::size_t needed = bytesNeeded(layout);
    tellMissing(record, "Bytes behind the last block", there > needed ? static_cast<std::int64_t>(there - needed) : 0);
}

bool importRecords(std::string_view text, BlockTaker& taker, FileRead& record) {
    for (const std::size_t markSize : {std::size_t{4}, std::size_t{8}}) {
        for (const bool highestFirst : {false, true}) {
            const std::optional<Records> records = recordsOf(text, markSize, highestFirst);
            if (!records) {
                continue;
            }
            const std::vector<ByteLayout> layouts = byteLayoutsOf(records->bytes, highestFirst);
            if (const ByteLayout* const layout = layoutOfRecords(layouts, *records)) {
                takeBytes(records->bytes, *layout, taker);
                tellBytesLeft(*layout, records->promised, record);
                return true;
            }
        }
    }
    return false;
}

/// The layout of bytes without marks of records: one that takes all of them, if its numbers are such as somebody may
/// have meant. Before one with others stands a layout of which hardly anything is missing.
const ByteLayout* layoutOfBytes(const std::vector<ByteLayout>& layouts, std::string_view text) {
    const auto takesAll = [text](const ByteLayout& layout) { return bytesNeeded(layout) == text.size(); };
    const auto isMeant = [text](const ByteLayout& layout) { return plausible(text, layout); };
    const auto lacksLittle = [text](const ByteLayout& layout) {
        const std::size_t needed = bytesNeeded(layout);
        const std::size_t missing = needed - std::min(needed, text.size());
        return isCloseCall((missing + layout.realSize - 1) / layout.realSize, needed / layout.realSize);
    };
    using Test = std::function<bool(const ByteLayout&)>;
    const std::array<Test, 4> tests = {
        Test([&](const ByteLayout& layout) { return takesAll(layout) && isMeant(layout); }),
        Test([&](const ByteLayout& layout) { return lacksLittle(layout) && isMeant(layout); }),
        Test(takesAll),
        Test([&](const ByteLayout& layout) {
            return layout.layout.dimensions == 3 && isMeant(layout) &&
                   (layout.realSize != sizeof(float) || !looksLikeHalves(text, layout));
        }),
    };
    for (const Test& test : tests) {
        const auto found = std::find_if(layouts.begin(), layouts.end(), test);
        if (found != layouts.end()) {
            return &*found;
        }
    }
    return nullptr;
}

bool importRaw(std::string_view text, BlockTaker& taker, FileRead& record) {
    std::vector<ByteLayout> layouts = byteLayoutsOf(text, false);
    std::vector<ByteLayout> others = byteLayoutsOf(text, true);
    std::move(others.begin(), others.end(), std::back_inserter(layouts));
    const ByteLayout* const layout = layoutOfBytes(layouts, text);
    if (layout == nullptr) {
        return false;
    }
    takeBytes(text, *layout, taker);
    tellBytesLeft(*layout, text.size(), record);
    if (bytesNeeded(*layout) == text.size()) {
        if (!plausible(text, *layout)) {
            record.losesGeometry("The only layout that takes the whole file gives numbers that are hardly coordinates");
        }
        LayoutDoubt doubt(layout->layout);
        for (const ByteLayout& other : layouts) {
            if (&other == layout || plausible(text, other)) {
                doubt.weigh(other.layout, bytesNeeded(other) / integerSize, text.size() / integerSize);
            }
        }
        doubt.tell(record);
    }
    return true;
}

bool looksLikeText(std::string_view text) {
    constexpr std::size_t enough = 4096;
    const std::string_view start = text.substr(0, enough);
    return std::all_of(start.begin(), start.end(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return isSpace(byte) || (byte >= ' ' && byte < 0x7F);
    });
}

} // namespace

void importPlot3d(std::string_view text, const ImportOptions& options, ExchangeModel& model, FileRead& record,
                  const ReportProgress& report) {
    record.format = "plot3d";
    BlockTaker taker(options, model, record, report);
    const bool recognised = looksLikeText(text) ? importText(text, taker, record, report)
                                                : importRecords(text, taker, record) || importRaw(text, taker, record);
    if (!recognised) {
        record.found = record.kept = {{"zones", 0}, {"patches", 0}, {"sections", 0}, {"points", 0}};
        if (!trimmed(text).empty()) {
            record.losesGeometry("No layout of PLOT3D fits the file");
        }
    }
}

} // namespace velmora
