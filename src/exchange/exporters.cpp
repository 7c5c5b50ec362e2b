#include "exporters.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>

#include "BinaryWriter.h"
#include "NumberWriter.h"
#include "SafeFile.h"
#include "TextScan.h"
#include "patch_text.h"
#include "read_record.h"
#include "tecplot_writer.h"
#include "written_names.h"
#include "zExceptions.h"
#include "zone_conversion.h"
#include "zone_files.h"

namespace velmora {

namespace {

/// Lengthens or shortens a vector to 1; one that has no length stays 0.
zVec<double> unitNormal(const zVec<double>& a, const zVec<double>& b, const zVec<double>& c) {
    const zVec<double> normal = cross(b - a, c - a);
    const double length = std::hypot(normal.x, normal.y, normal.z);
    return length > 0.0 && std::isfinite(length) ? normal * (1.0 / length) : zVec<double>();
}

/// Whether the file is in its place; what the old one had and the new one has not is told with it.
template <class Writer>
bool finish(Writer& out, SafeFile& file, WriteOutcome& outcome) {
    outcome.written = out.flush() && file.commit();
    outcome.notes = file.notes();
    return outcome.written;
}

void writeVector(NumberWriter& out, std::string_view keyword, const zVec<double>& v) {
    out.writeText(keyword);
    for (const double value : {v.x, v.y, v.z}) {
        out.writeChar(' ');
        out.writeDouble(value);
    }
    out.writeChar('\n');
}

void countTriangles(const ExportZones& zones, WriteOutcome& outcome) {
    countOf(outcome.record.counts, "points") += zones.points();
    countOf(outcome.record.counts, "faces") += zones.triangles();
    countOf(outcome.record.counts, "triangles") += zones.triangles();
}

/// What another writer made, but for the names that it has for it.
void take(const WriteOutcome& made, WriteOutcome& outcome) {
    outcome.written = made.written;
    outcome.problem = made.problem;
    outcome.notes = made.notes;
}

// ---- STL ------------------------------------------------------------------------------------------------------------

/// Calls `take` with the normal and the corners of each triangle.
template <class Take>
void forFacets(const zBlock_fe& zone, Take take) {
    const ZoneCoordinates nodes = coordinatesOf(zone.variables);
    for (std::size_t entry = 0; entry + 3 < zone.connectivity.size(); entry += 4) {
        const std::array<zVec<double>, 3> corners = {pointOf(nodes, zone.connectivity[entry]),
                                                     pointOf(nodes, zone.connectivity[entry + 1]),
                                                     pointOf(nodes, zone.connectivity[entry + 2])};
        take(unitNormal(corners[0], corners[1], corners[2]), corners);
    }
}

bool exportTextStl(SafeFile& file, WriteOutcome& outcome, const ExportZones& zones, int digits,
                   const ReportProgress& report) {
    NumberWriter out(file, digits, NumberNotation::General);
    out.reportTo(report, 12 * zones.triangles());
    std::size_t number = 0;
    for (const zBlock_fe* const zone : zones.zones()) {
        const std::string title = solidName(onOneLine(zone->title), ++number);
        out.writeText("solid " + title + '\n');
        forFacets(*zone, [&out](const zVec<double>& normal, const std::array<zVec<double>, 3>& corners) {
            writeVector(out, " facet normal", normal);
            out.writeText("  outer loop\n");
            for (const zVec<double>& corner : corners) {
                writeVector(out, "   vertex", corner);
            }
            out.writeText("  endloop\n endfacet\n");
        });
        out.writeText("endsolid " + title + '\n');
    }
    return finish(out, file, outcome);
}

/// Never begins with "solid": that is how text is told from binary.
std::string headerOf(const ExportZones& zones) {
    constexpr std::size_t size = 80;
    std::string header = zones.zones().empty() ? "" : onOneLine(zones.zones().front()->title);
    if (smallLetters(header).starts_with("solid")) {
        header = "zone " + header;
    }
    header.resize(size, ' ');
    return header;
}

bool exportBinaryStl(SafeFile& file, WriteOutcome& outcome, const ExportZones& zones, const ReportProgress& report) {
    constexpr std::int64_t reportStep = 1 << 17;
    BinaryWriter out(file);
    out.writeText(headerOf(zones));
    out.write(static_cast<std::uint32_t>(zones.triangles()));
    std::int64_t written = 0;
    for (const zBlock_fe* const zone : zones.zones()) {
        forFacets(*zone, [&](const zVec<double>& normal, const std::array<zVec<double>, 3>& corners) {
            for (const zVec<double>& v : {normal, corners[0], corners[1], corners[2]}) {
                out.writeReal(v.x, false);
                out.writeReal(v.y, false);
                out.writeReal(v.z, false);
            }
            out.write(std::uint16_t{0});
            if (report && ++written % reportStep == 0) {
                report(static_cast<double>(written) / static_cast<double>(zones.triangles()));
            }
        });
    }
    return finish(out, file, outcome);
}

// ---- VRML -----------------------------------------------------------------------------------------------------------

void writeShape(NumberWriter& out, const zBlock_fe& zone) {
    const std::string name = nodeName(zone.title);
    out.writeText(name.empty() ? "Shape {\n" : "DEF " + name + " Shape {\n");
    out.writeText("  appearance Appearance {\n"
                  "    material Material {}\n"
                  "  }\n"
                  "  geometry IndexedFaceSet {\n"
                  "    coord Coordinate {\n"
                  "      point [\n");
    const ZoneCoordinates nodes = coordinatesOf(zone.variables);
    for (std::int32_t node = 0; node < zone.nodeCount; ++node) {
        writePoint(out, pointOf(nodes, node));
    }
    out.writeText("      ]\n"
                  "    }\n"
                  "    coordIndex [\n");
    forTriangles(zone, [&out](const std::int32_t* corners) {
        for (int corner = 0; corner < 3; ++corner) {
            out.writeInt(corners[corner]);
            out.writeChar(' ');
        }
        out.writeText("-1\n");
    });
    out.writeText("    ]\n"
                  "  }\n"
                  "}\n");
}

// ---- PLOT3D ---------------------------------------------------------------------------------------------------------

constexpr std::array<double zVec<double>::*, 3> coordinateAxes = {&zVec<double>::x, &zVec<double>::y, &zVec<double>::z};

bool exportPlot3dText(SafeFile& file, WriteOutcome& outcome, const PatchList& patches, int digits,
                      const ReportProgress& report) {
    constexpr int numbersOnLine = 4;
    NumberWriter out(file, digits, NumberNotation::General);
    out.reportTo(report, 3 * pointTotal(patches));
    out.writeInt(countOf(patches));
    out.writeChar('\n');
    for (const Patch& patch : patches) {
        out.writeInt(countOf(patch.front()));
        out.writeChar(' ');
        out.writeInt(countOf(patch));
        out.writeText(" 1\n");
    }
    for (const Patch& patch : patches) {
        for (const auto axis : coordinateAxes) {
            int onLine = 0;
            for (const PointList& section : patch) {
                for (const zVec<double>& point : section) {
                    out.writeText(onLine == 0 ? "" : onLine % numbersOnLine == 0 ? "\n" : " ");
                    out.writeDouble(point.*axis);
                    ++onLine;
                }
            }
            out.writeChar('\n');
        }
    }
    return finish(out, file, outcome);
}

bool exportPlot3dBinary(SafeFile& file, WriteOutcome& outcome, const PatchList& patches, bool doublePrecision,
                        const ReportProgress& report) {
    const auto mark = [](std::int64_t bytes) { return static_cast<std::int32_t>(bytes); };
    BinaryWriter out(file);
    for (const std::int32_t value : {4, countOf(patches), 4, mark(12 * std::int64_t{countOf(patches)})}) {
        out.write(value);
    }
    for (const Patch& patch : patches) {
        for (const std::int32_t extent : {countOf(patch.front()), countOf(patch), 1}) {
            out.write(extent);
        }
    }
    out.write(mark(12 * std::int64_t{countOf(patches)}));
    double done = 0.0;
    for (const Patch& patch : patches) {
        const std::int64_t points = std::int64_t{countOf(patch)} * countOf(patch.front());
        const std::int32_t length = mark(3 * points * (doublePrecision ? 8 : 4));
        out.write(length);
        for (const auto axis : coordinateAxes) {
            for (const PointList& section : patch) {
                for (const zVec<double>& point : section) {
                    out.writeReal(point.*axis, doublePrecision);
                }
            }
        }
        out.write(length);
        if (report) {
            report(++done / static_cast<double>(patches.size()));
        }
    }
    return finish(out, file, outcome);
}

} // namespace

bool exportStl(const std::filesystem::path& path, const ExportZones& zones, const ExportOptions& options,
               WriteOutcome& outcome, const ReportProgress& report) {
    SafeFile file(path);
    outcome.record.format = options.binary ? "stl-binary" : "stl-text";
    countOf(outcome.record.counts, "facets") += zones.triangles();
    countOf(outcome.record.counts, "solids") += options.binary ? 1 : static_cast<std::int64_t>(zones.zones().size());
    countOf(outcome.record.counts, "triangles") += zones.triangles();
    return options.binary ? exportBinaryStl(file, outcome, zones, report)
                          : exportTextStl(file, outcome, zones, options.digits, report);
}

bool exportObj(const std::filesystem::path& path, const ExportZones& zones, const ExportOptions& options,
               WriteOutcome& outcome, const ReportProgress& report) {
    SafeFile file(path);
    NumberWriter out(file, options.digits, NumberNotation::General);
    out.reportTo(report, 3 * (zones.points() + zones.triangles()));
    outcome.record.format = "obj";
    countOf(outcome.record.counts, "zones") += static_cast<std::int64_t>(zones.zones().size());
    countTriangles(zones, outcome);
    std::int64_t before = 1; // points count from 1 through the whole file
    for (const zBlock_fe* const zone : zones.zones()) {
        const ZoneCoordinates nodes = coordinatesOf(zone->variables);
        out.writeText("o " + onOneLine(zone->title) + '\n');
        for (std::int32_t node = 0; node < zone->nodeCount; ++node) {
            writeVector(out, "v", pointOf(nodes, node));
        }
        forTriangles(*zone, [&out, before](const std::int32_t* corners) {
            out.writeChar('f');
            for (int corner = 0; corner < 3; ++corner) {
                out.writeChar(' ');
                out.writeInt(before + corners[corner]);
            }
            out.writeChar('\n');
        });
        before += zone->nodeCount;
    }
    return finish(out, file, outcome);
}

bool exportPly(const std::filesystem::path& path, const ExportZones& zones, const ExportOptions& options,
               WriteOutcome& outcome, const ReportProgress& report) {
    SafeFile file(path);
    outcome.record.format = "ply";
    countTriangles(zones, outcome);
    const bool single = options.binary && !options.doublePrecision;
    std::string header = "ply\nformat ";
    header += options.binary ? "binary_little_endian" : "ascii";
    header += " 1.0\nelement vertex " + std::to_string(zones.points()) + '\n';
    for (const char* const axis : {"x", "y", "z"}) {
        header += std::string("property ") + (single ? "float " : "double ") + axis + '\n';
    }
    header +=
        "element face " + std::to_string(zones.triangles()) + "\nproperty list uchar int vertex_indices\nend_header\n";
    NumberWriter text(file, options.digits, NumberNotation::General);
    BinaryWriter binary(file);
    text.reportTo(report, 3 * (zones.points() + zones.triangles()));
    options.binary ? binary.writeText(header) : text.writeText(header);
    for (const zBlock_fe* const zone : zones.zones()) {
        const ZoneCoordinates nodes = coordinatesOf(zone->variables);
        for (std::int32_t node = 0; node < zone->nodeCount; ++node) {
            const zVec<double> p = pointOf(nodes, node);
            if (options.binary) {
                binary.writeReal(p.x, !single);
                binary.writeReal(p.y, !single);
                binary.writeReal(p.z, !single);
            } else {
                writePoint(text, p);
            }
        }
    }
    std::int32_t before = 0;
    for (const zBlock_fe* const zone : zones.zones()) {
        forTriangles(*zone, [&](const std::int32_t* corners) {
            options.binary ? binary.write(std::uint8_t{3}) : text.writeChar('3');
            for (int corner = 0; corner < 3; ++corner) {
                if (options.binary) {
                    binary.write(before + corners[corner]);
                } else {
                    text.writeChar(' ');
                    text.writeInt(before + corners[corner]);
                }
            }
            if (!options.binary) {
                text.writeChar('\n');
            }
        });
        before += zone->nodeCount;
    }
    return options.binary ? finish(binary, file, outcome) : finish(text, file, outcome);
}

bool exportVrml(const std::filesystem::path& path, const ExportZones& zones, const ExportOptions& options,
                WriteOutcome& outcome, const ReportProgress& report) {
    SafeFile file(path);
    NumberWriter out(file, options.digits, NumberNotation::General);
    out.reportTo(report, 3 * (zones.points() + zones.triangles()));
    outcome.record.format = "vrml2";
    countOf(outcome.record.counts, "faceSets") += static_cast<std::int64_t>(zones.zones().size());
    countTriangles(zones, outcome);
    out.writeText("#VRML V2.0 utf8\n");
    for (const zBlock_fe* const zone : zones.zones()) {
        writeShape(out, *zone);
    }
    return finish(out, file, outcome);
}

bool exportPlot3d(const std::filesystem::path& path, const PatchList& patches, const ExportOptions& options,
                  WriteOutcome& outcome, const ReportProgress& report) {
    SafeFile file(path);
    outcome.record.format = "plot3d";
    countOf(outcome.record.counts, "zones") += countOf(patches);
    countOf(outcome.record.counts, "patches") += countOf(patches);
    std::int64_t sections = 0;
    for (const Patch& patch : patches) {
        sections += countOf(patch);
    }
    countOf(outcome.record.counts, "sections") += sections;
    countOf(outcome.record.counts, "points") += pointTotal(patches);
    return options.binary ? exportPlot3dBinary(file, outcome, patches, options.doublePrecision, report)
                          : exportPlot3dText(file, outcome, patches, options.digits, report);
}

bool exportTecplot(const std::filesystem::path& path, const ExchangeView& model, const ExportZones& zones,
                   const ExportOptions& options, WriteOutcome& outcome, const ReportProgress& report) {
    outcome.record.format = "tecplot";
    try {
        if (!model.patches.empty()) {
            zRegion region;
            patchesToZones(model.patches, region);
            for (std::size_t k = 0; k < region.blocks.size(); ++k) {
                region.blocks[k]->title = "Patch " + std::to_string(k + 1);
            }
            countOf(outcome.record.counts, "zones") += countOf(model.patches);
            countOf(outcome.record.counts, "points") += pointTotal(model.patches);
            countOf(outcome.record.counts, "variables") += 3;
            take(writeTecplot(path, region, options.digits, report), outcome);
            return outcome.written;
        }
        countOf(outcome.record.counts, "zones") += static_cast<std::int64_t>(zones.zones().size());
        countTriangles(zones, outcome);
        countOf(outcome.record.counts, "variables") +=
            static_cast<std::int64_t>(zones.zones().front()->variables.size());
        if (!options.merge) {
            take(writeTecplot(path, model.region, options.digits, report), outcome);
            return outcome.written;
        }
        zRegion_fe merged;
        merged.title = model.region.title;
        for (const zBlock_fe* const zone : zones.zones()) {
            merged.blocks.push_back(cloneZone(*zone));
        }
        take(writeTecplot(path, merged, options.digits, report), outcome);
    } catch (const GenericError& error) {
        outcome.problem = error.text();
    }
    return outcome.written;
}

} // namespace velmora
