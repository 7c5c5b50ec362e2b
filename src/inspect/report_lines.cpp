#include "report_lines.h"

#include <charconv>

namespace velmora {

namespace {

std::string pointText(const zVec<double>& point) {
    return shortNumber(point.x) + ", " + shortNumber(point.y) + ", " + shortNumber(point.z);
}

std::string counted(std::int64_t count, const char* what) {
    return std::to_string(count) + ' ' + what;
}

class Lines {
public:
    void add(std::string text) { lines_.push_back({std::move(text), std::nullopt}); }

    void addPlace(const std::string& text, std::size_t patch, const std::optional<PatchPlace>& at) {
        ReportLine line{"    " + text, std::nullopt};
        if (at) {
            line.text += " at section " + std::to_string(at->section + 1) + ", point " + std::to_string(at->point + 1);
            line.place = {static_cast<std::int32_t>(patch), at->section, at->point};
        }
        lines_.push_back(std::move(line));
    }

    void addWorst(const char* name, std::size_t patch, const WorstValue& worst) {
        if (worst.value) {
            addPlace(name + (' ' + shortNumber(*worst.value)), patch, worst.at);
        }
    }

    void addFound(const char* name, std::size_t patch, const FoundPlaces& found) {
        if (found.count > 0) {
            addPlace(counted(found.count, name) + ", the first", patch, found.at);
        }
    }

    std::vector<ReportLine> take() { return std::move(lines_); }

private:
    std::vector<ReportLine> lines_;
};

void addModel(Lines& lines, const ModelReport& report) {
    if (!report.box) {
        lines.add("There is no model");
        return;
    }
    lines.add("From " + pointText((*report.box)[0]) + " to " + pointText((*report.box)[1]));
    if (!report.patches.empty()) {
        lines.add("Patches: " + std::to_string(report.patches.size()) + "; " + counted(report.sections, "sections") +
                  ", " + counted(report.points, "points") + ", " + counted(report.cells, "cells"));
    }
    if (!report.zones.empty()) {
        lines.add("Zones: " + std::to_string(report.zones.size()) + "; " + counted(report.nodes, "nodes") + ", " +
                  counted(report.triangles, "triangles"));
    }
    lines.add("Area " + shortNumber(report.area));
    const SurfaceBody& body = report.body;
    lines.add(body.volume ? "Closed, volume " + shortNumber(*body.volume)
                          : "Not closed: open edges of length " + shortNumber(body.openBorder));
    lines.add("Parts that hang together: " + std::to_string(body.components));
    if (body.badEdges > 0) {
        lines.add("Edges of more than two cells or triangles: " + std::to_string(body.badEdges));
    }
    for (const BorderGap& gap : report.gaps) {
        lines.add("Gap between patches " + std::to_string(gap.patch + 1) + " and " + std::to_string(gap.other + 1) +
                  ": " + shortNumber(gap.largest));
    }
}

void addPatch(Lines& lines, std::size_t number, const PatchQuality& quality) {
    lines.add("Patch " + std::to_string(number + 1) + ", area " + shortNumber(quality.area));
    lines.addWorst("smallest step", number, quality.smallestStep);
    lines.addWorst("largest step", number, quality.largestStep);
    lines.addWorst("growth", number, quality.growth);
    lines.addWorst("aspect", number, quality.aspect);
    lines.addWorst("skew", number, quality.skew);
    lines.addWorst("warp", number, quality.warp);
    lines.addFound("repeated points", number, quality.repeatedPoints);
    lines.addFound("collapsed cells", number, quality.collapsedCells);
    lines.addFound("folded cells", number, quality.foldedCells);
}

void addZone(Lines& lines, std::size_t number, const ZoneReport& zone) {
    std::string text = "Zone " + std::to_string(number + 1) + (zone.title.empty() ? "" : " " + zone.title) + ": " +
                       counted(zone.nodes, "nodes") + ", " + counted(zone.triangles, "triangles") + ", area " +
                       shortNumber(zone.area);
    text += zone.degenerate > 0 ? ", " + counted(zone.degenerate, "of them without an area") : "";
    lines.add(std::move(text));
}

} // namespace

std::string shortNumber(double value, int digits) {
    std::array<char, 32> text{};
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::general, digits).ptr;
    return {text.data(), end};
}

std::vector<ReportLine> reportLines(const ModelReport& report) {
    Lines lines;
    addModel(lines, report);
    for (std::size_t k = 0; k < report.patches.size(); ++k) {
        addPatch(lines, k, report.patches[k]);
    }
    for (std::size_t k = 0; k < report.zones.size(); ++k) {
        addZone(lines, k, report.zones[k]);
    }
    return lines.take();
}

} // namespace velmora
