#include "stl_import.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

#include "TextScan.h"
#include "binary_numbers.h"
#include "mesh_builder.h"
#include "read_record.h"
#include "triangulate_polygon.h"

namespace velmora {

namespace {

constexpr std::size_t headerSize = 80;
constexpr std::size_t firstFacet = headerSize + 4;
constexpr std::size_t facetSize = 50;

/// The corners of a solid's facets, three for each.
struct Solid {
    std::string title;
    std::array<std::vector<double>, 3> corners;
};

/// Makes the zones and keeps the counts that both forms share.
class SolidTaker {
public:
    SolidTaker(const ImportOptions& options, ExchangeModel& model, FileRead& record)
        : options_(options), model_(model), record_(record) {}

    void take(Solid&& solid);
    void tell();
    /// A coordinate of the file as the model has it.
    double scaled(double value) const { return value * options_.scale; }

    std::int64_t foundFacets = 0;
    std::int64_t keptFacets = 0;
    std::int64_t foundTriangles = 0;
    std::int64_t notFinite = 0;
    std::int64_t damaged = 0;
    std::int64_t split = 0;

private:
    const ImportOptions& options_;
    ExchangeModel& model_;
    FileRead& record_;
    std::int64_t keptTriangles_ = 0;
    std::int64_t solids_ = 0;
    std::int64_t keptSolids_ = 0;
    std::int64_t degenerate_ = 0;
    std::int64_t merged_ = 0;
};

void SolidTaker::take(Solid&& solid) {
    ++solids_;
    auto& [x, y, z] = solid.corners;
    if (x.empty()) {
        return;
    }
    ++keptSolids_;
    keptTriangles_ += static_cast<std::int64_t>(x.size() / 3);
    for (std::size_t i = 0; i + 2 < x.size(); i += 3) {
        degenerate_ += hasNoArea({x[i], y[i], z[i]}, {x[i + 1], y[i + 1], z[i + 1]}, {x[i + 2], y[i + 2], z[i + 2]});
    }
    std::vector<std::int32_t> corners(x.size());
    if (options_.merge) {
        EqualPoints equal = findEqualPoints(x, y, z);
        merged_ += static_cast<std::int64_t>(x.size()) - equal.count;
        for (std::vector<double>& axis : solid.corners) {
            std::int32_t kept = 0;
            for (std::size_t i = 0; i < axis.size(); ++i) {
                if (equal.place[i] == kept) {
                    axis[static_cast<std::size_t>(kept++)] = axis[i];
                }
            }
            axis.resize(static_cast<std::size_t>(equal.count));
        }
        corners = std::move(equal.place);
    } else {
        std::iota(corners.begin(), corners.end(), 0);
    }
    model_.region.blocks.push_back(makeZone(solid.title, std::move(solid.corners), corners));
}

void SolidTaker::tell() {
    record_.found = {{"facets", foundFacets}, {"solids", solids_}, {"triangles", foundTriangles}};
    record_.kept = {{"facets", keptFacets}, {"solids", keptSolids_}, {"triangles", keptTriangles_}};
    tellMissing(record_, "Facets that are damaged", damaged);
    tellMissing(record_, "Facets with coordinates that are not finite", notFinite);
    tellAltered(record_, "Facets of more than three corners, made triangles", split);
    tellChanged(record_, "Degenerate triangles", degenerate_);
    tellAltered(record_, "Points merged", merged_);
    tellScale(options_, record_);
}

// ---- Binary ---------------------------------------------------------------------------------------------------------

std::size_t countInHeader(std::string_view text) {
    return numberAt<std::uint32_t>(text.data() + headerSize, false);
}

/// The text of the header, as far as it is text; some write the word of the text form before the name.
std::string titleInHeader(std::string_view text) {
    constexpr std::string_view keyword = "solid ";
    std::string_view header = text.substr(0, headerSize);
    const auto stop =
        std::find_if(header.begin(), header.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; });
    header = trimmed(header.substr(0, static_cast<std::size_t>(stop - header.begin())));
    return std::string(header.substr(header.starts_with(keyword) ? keyword.size() : 0));
}

/// The solids of a file: some programs write them one behind the other, each with a header and a count of its own. Only
/// where the counts lead to the very end there are several.
std::vector<std::string_view> binarySolids(std::string_view text) {
    std::vector<std::string_view> solids;
    std::string_view rest = text;
    while (rest.size() >= firstFacet) {
        const std::size_t count = countInHeader(rest);
        if (count == 0 || count > (rest.size() - firstFacet) / facetSize) {
            break;
        }
        const std::size_t length = firstFacet + count * facetSize;
        solids.push_back(rest.substr(0, length));
        rest.remove_prefix(length);
    }
    return rest.empty() && solids.size() > 1 ? solids : std::vector<std::string_view>{text};
}

/// How many facets there are, and what is to be said of the count in the header. A count that does not fit is
/// overruled by a size of whole facets; otherwise as many are taken as both allow.
std::size_t facetsOf(std::string_view solid, SolidTaker& taker, FileRead& record) {
    const std::size_t told = countInHeader(solid);
    const std::size_t bytes = solid.size() - firstFacet;
    const std::size_t whole = bytes / facetSize;
    const auto found = [&taker](std::size_t facets) { taker.foundFacets += static_cast<std::int64_t>(facets); };
    if (bytes % facetSize == 0) {
        found(whole);
        if (told != whole) {
            record.changed.push_back("Count of facets by the size: " + std::to_string(whole) + " instead of " +
                                     std::to_string(told));
        }
        return whole;
    }
    if (told > whole) {
        found(told);
        record.losesGeometry("The file ends within a facet");
        return whole;
    }
    found(told);
    const std::size_t behind = bytes - told * facetSize;
    if (told == whole) {
        record.losesDetail("Bytes behind the last facet: " + std::to_string(behind)); // less than a facet
    } else {
        tellMissing(record, "Bytes behind the last facet", static_cast<std::int64_t>(behind));
    }
    return told;
}

/// True when some of the facets have an attribute.
bool readBinarySolid(std::string_view text, std::string_view whole, SolidTaker& taker, FileRead& record,
                     const ReportProgress& report) {
    constexpr std::size_t reportStep = 1 << 17;
    const std::size_t facets = facetsOf(text, taker, record);
    Solid solid;
    solid.title = titleInHeader(text);
    auto& [x, y, z] = solid.corners;
    x.resize(3 * facets);
    y.resize(3 * facets);
    z.resize(3 * facets);
    std::size_t corner = 0;
    bool attributes = false;
    const char* facet = text.data() + firstFacet;
    for (std::size_t i = 0; i < facets; ++i, facet += facetSize) {
        std::array<float, 9> values{};
        std::memcpy(values.data(), facet + 12, sizeof values);
        bool finite = true;
        for (std::size_t k = 0; k < 3; ++k) {
            x[corner + k] = taker.scaled(static_cast<double>(values.at(3 * k)));
            y[corner + k] = taker.scaled(static_cast<double>(values.at(3 * k + 1)));
            z[corner + k] = taker.scaled(static_cast<double>(values.at(3 * k + 2)));
            finite =
                finite && std::isfinite(x[corner + k]) && std::isfinite(y[corner + k]) && std::isfinite(z[corner + k]);
        }
        if (!finite) {
            ++taker.notFinite;
            continue;
        }
        corner += 3;
        attributes = attributes || facet[48] != 0 || facet[49] != 0;
        if (report && i % reportStep == 0) {
            report(std::lerp(0.2, 0.8, static_cast<double>(facet - whole.data()) / static_cast<double>(whole.size())));
        }
    }
    for (std::vector<double>* axis : {&x, &y, &z}) {
        axis->resize(corner);
    }
    taker.keptFacets += static_cast<std::int64_t>(corner / 3);
    taker.take(std::move(solid));
    return attributes;
}

void readBinary(std::string_view text, SolidTaker& taker, FileRead& record, const ReportProgress& report) {
    record.format = "stl-binary";
    bool attributes = false;
    for (const std::string_view solid : binarySolids(text)) {
        attributes = readBinarySolid(solid, text, taker, record, report) || attributes;
    }
    taker.foundTriangles = taker.foundFacets;
    if (attributes) {
        record.losesDetail("The attributes of facets (colours) are not kept");
    }
}

// ---- Text -----------------------------------------------------------------------------------------------------------

/// Takes keyword by keyword: what opens or closes a facet is enough to know where one ends.
class TextReader {
public:
    TextReader(std::string_view text, SolidTaker& taker, FileRead& record, const ReportProgress& report)
        : scan_(text), taker_(taker), record_(record), report_(report) {}

    void run();

private:
    void takeKeyword(std::string_view word);
    void openSolid();
    void closeSolid();
    void closeFacet(bool whole);
    void takeVertex();
    std::string_view takeName(bool ofEnd);

    TextScan scan_;
    SolidTaker& taker_;
    FileRead& record_;
    const ReportProgress& report_;
    Solid solid_;
    std::vector<zVec<double>> corners_; // of the facet at hand
    std::vector<std::array<std::int32_t, 3>> triangles_;
    bool inSolid_ = false;
    bool inFacet_ = false;
    bool finite_ = true;
    bool readable_ = true;
    std::int64_t foreignWords_ = 0;
};

void TextReader::run() {
    std::size_t reported = 0;
    record_.format = "stl-text";
    while (scan_.skipSpace()) {
        takeKeyword(scan_.takeWord());
        if (report_ && scan_.tell() - reported > (std::size_t{1} << 22)) {
            reported = scan_.tell();
            report_(std::lerp(0.2, 0.8,
                              static_cast<double>(reported) / static_cast<double>(reported + scan_.rest().size())));
        }
    }
    const bool open = inSolid_;
    closeFacet(false);
    if (open) {
        closeSolid();
        record_.losesGeometry("The file ends before its last solid does");
    }
    if (foreignWords_ > 0) {
        record_.losesDetail("Words that are not known: " + std::to_string(foreignWords_));
    }
}

void TextReader::takeKeyword(std::string_view word) {
    if (sameWord(word, "vertex")) {
        takeVertex();
    } else if (sameWord(word, "facet")) {
        closeFacet(true);
        inSolid_ = inFacet_ = true;
    } else if (sameWord(word, "endfacet") || sameWord(word, "endloop")) {
        closeFacet(true);
    } else if (sameWord(word, "solid")) {
        closeFacet(true);
        openSolid();
    } else if (sameWord(word, "endsolid")) {
        closeFacet(true);
        takeName(true);
        closeSolid();
    } else if (sameWord(word, "end")) {
        const std::size_t here = scan_.tell();
        scan_.skipSpace();
        const std::string whole = "end" + smallLetters(scan_.takeWord()); // "end facet"
        if (whole == "endfacet" || whole == "endloop" || whole == "endsolid") {
            takeKeyword(whole);
        } else {
            scan_.seek(here);
            ++foreignWords_;
            readable_ = false;
        }
    } else if (sameWord(word, "normal")) {
        double ignored = 0.0;
        for (int i = 0; i < 3 && scan_.skipBlanks(); ++i) {
            if (!scan_.takeNumber(ignored)) {
                scan_.takeWord(); // a normal counts for nothing, whatever it is
            }
        }
    } else if (!sameWord(word, "outer") && !sameWord(word, "loop") && !sameWord(word, "outerloop")) {
        ++foreignWords_;
        readable_ = false;
    }
}

// The rest of the line, or as far as the next facet or solid if that stands in it.
std::string_view TextReader::takeName(bool ofEnd) {
    const std::size_t start = scan_.tell();
    const std::string_view line = scan_.takeLine();
    const std::string small = smallLetters(line);
    std::size_t stop = std::min(small.find("facet normal"), small.find("endsolid"));
    if (ofEnd && stop != std::string::npos) {
        stop = std::min(stop, small.find("solid "));
    }
    if (stop == std::string::npos || (stop > 0 && !isSpace(line[stop - 1]))) {
        return trimmed(line);
    }
    scan_.seek(start + stop);
    return trimmed(line.substr(0, stop));
}

void TextReader::openSolid() {
    if (inSolid_) {
        closeSolid();
    }
    inSolid_ = true;
    solid_.title = takeName(false);
}

void TextReader::closeSolid() {
    if (inSolid_) {
        taker_.take(std::move(solid_));
    }
    solid_ = {};
    inSolid_ = false;
}

void TextReader::takeVertex() {
    std::array<double, 3> values{};
    inSolid_ = inFacet_ = true;
    for (double& value : values) {
        if (!scan_.skipSeparators() || !scan_.takeNumber(value)) {
            readable_ = false;
            return;
        }
        value = taker_.scaled(value);
        finite_ = finite_ && std::isfinite(value);
    }
    corners_.emplace_back(values[0], values[1], values[2]);
}

// A facet that the file ends in may lack the end of its last number.
void TextReader::closeFacet(bool whole) {
    if (inFacet_) {
        ++taker_.foundFacets;
        taker_.foundTriangles += std::max<std::int64_t>(static_cast<std::int64_t>(corners_.size()) - 2, 0);
        if (!whole || !readable_ || corners_.size() < 3) {
            ++taker_.damaged;
        } else if (!finite_) {
            ++taker_.notFinite;
        } else {
            ++taker_.keptFacets;
            taker_.split += corners_.size() > 3 ? 1 : 0;
            triangles_.clear();
            triangulatePolygon(corners_, triangles_);
            for (const auto& triangle : triangles_) {
                for (const std::int32_t corner : triangle) {
                    const zVec<double>& point = corners_[static_cast<std::size_t>(corner)];
                    solid_.corners[0].push_back(point.x);
                    solid_.corners[1].push_back(point.y);
                    solid_.corners[2].push_back(point.z);
                }
            }
        }
        inFacet_ = false;
    }
    corners_.clear();
    finite_ = readable_ = true;
}

bool isText(std::string_view text) {
    constexpr std::size_t enough = 4096;
    text = text.substr(0, enough);
    return std::none_of(text.begin(), text.end(),
                        [](char c) { return c != '\t' && static_cast<unsigned char>(c) < '\n'; });
}

/// Text begins with the word "solid", and what follows is text too, or holds the words of a facet.
bool looksLikeSolid(std::string_view text) {
    constexpr std::size_t enough = 4096;
    TextScan scan(text);
    scan.skipSpace();
    const std::string_view word = scan.rest().substr(0, 5);
    if (!sameWord(word, "solid") && !sameWord(word, "facet")) {
        return false;
    }
    const std::string start = smallLetters(text.substr(0, enough));
    return isText(text) || (start.find("facet") != std::string::npos && start.find("vertex") != std::string::npos);
}

/// Whether the first facets are such as somebody may have meant: other bytes give coordinates beyond all measure or
/// next to nothing in nearly every one. Facets of nothing but 0 say nothing.
bool looksLikeFacets(std::string_view text) {
    constexpr std::size_t enough = 100;
    const auto isMeant = [](float value) {
        const float size = std::abs(value);
        return value == 0.0F || (size > 1e-20F && size < 1e20F);
    };
    std::size_t meant = 0;
    std::size_t others = 0;
    const std::size_t whole = std::min(enough, (text.size() - firstFacet) / facetSize);
    for (std::size_t i = 0; i < whole; ++i) {
        std::array<float, 12> values{};
        std::memcpy(values.data(), text.data() + firstFacet + i * facetSize, sizeof values);
        if (std::any_of(values.begin(), values.end(), [](float value) { return value != 0.0F; })) {
            ++(std::all_of(values.begin() + 3, values.end(), isMeant) ? meant : others);
        }
    }
    return whole == 0 || meant > others;
}

/// A binary file whose count is that of its size, or whose facets can be believed in.
bool looksBinary(std::string_view text) {
    return text.size() >= firstFacet && (text.size() - firstFacet == facetSize * countInHeader(text) ||
                                         (!isText(text) && !looksLikeSolid(text) && looksLikeFacets(text)));
}

} // namespace

void importStl(std::string_view text, const ImportOptions& options, ExchangeModel& model, FileRead& record,
               const ReportProgress& report) {
    SolidTaker taker(options, model, record);
    if (looksBinary(text)) {
        readBinary(text, taker, record, report);
    } else if (looksLikeSolid(text)) {
        TextReader(text, taker, record, report).run();
    } else {
        record.format = "stl-text";
        if (!text.empty()) {
            record.losesGeometry("This is no STL file");
        }
    }
    taker.tell();
}

} // namespace velmora
