#include "cgns_export.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <system_error>

#include "BinaryWriter.h"
#include "FileBytes.h"
#include "SafeFile.h"
#include "grid_builder.h"
#include "reading_child.h"
#include "zone_conversion.h"

namespace velmora {

namespace {

/// A folder of ours alone, gone with the object.
class PrivateFolder {
public:
    PrivateFolder() {
        std::error_code error;
        std::string name = (std::filesystem::temp_directory_path(error) / "velmora_XXXXXX").string();
        if (!error && ::mkdtemp(name.data()) != nullptr) {
            path_ = name;
        }
    }
    PrivateFolder(const PrivateFolder&) = delete;
    PrivateFolder& operator=(const PrivateFolder&) = delete;
    ~PrivateFolder() {
        std::error_code ignored;
        if (!path_.empty()) {
            std::filesystem::remove_all(path_, ignored);
        }
    }

    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

/// Numbers of one width, as many readers have zones by the order of their names.
std::string titleOf(std::int64_t number, std::size_t count) {
    const std::string digits = std::to_string(number);
    return "Patch " + std::string(std::to_string(count).size() - digits.size(), '0') + digits;
}

void writeGrids(const PatchList& patches, ForeignWriter& out) {
    std::int64_t number = 0;
    for (const Patch& patch : patches) {
        ForeignGrid grid;
        grid.title = titleOf(++number, patches.size());
        grid.block.i = countOf(patch.front());
        grid.block.j = countOf(patch);
        for (const PointList& section : patch) {
            for (const zVec<double>& point : section) {
                grid.block.x.push_back(point.x);
                grid.block.y.push_back(point.y);
                grid.block.z.push_back(point.z);
            }
        }
        out.add(grid);
    }
}

void writeZones(const ExportZones& zones, ForeignWriter& out) {
    for (const zBlock_fe* const zone : zones.zones()) {
        const ZoneCoordinates nodes = coordinatesOf(zone->variables);
        FileMesh mesh;
        mesh.zones = {zone->title};
        for (std::int32_t node = 0; node < zone->nodeCount; ++node) {
            const zVec<double> p = pointOf(nodes, node);
            mesh.addPoint(p.x, p.y, p.z);
        }
        forTriangles(*zone, [&mesh](const std::int32_t* corners) {
            mesh.addPolygon({corners[0], corners[1], corners[2]});
        });
        out.add(mesh);
    }
}

void count(const ExchangeView& model, const ExportZones& zones, Counts& counts) {
    countOf(counts, "zones") += static_cast<std::int64_t>(model.patches.size() + zones.zones().size());
    if (model.patches.empty()) {
        countOf(counts, "points") += zones.points();
        countOf(counts, "faces") += zones.triangles();
        countOf(counts, "triangles") += zones.triangles();
    } else {
        countPatches(model.patches, counts);
    }
}

} // namespace

// The library writes where nobody else looks; the whole file then takes its place as any other does.
bool exportCgns(const std::filesystem::path& path, const ExchangeView& model, const ExportZones& zones,
                const ExportOptions& options, WriteOutcome& outcome, const ReportProgress& report) {
    outcome.record.format = "cgns";
    count(model, zones, outcome.record.counts);
    const PrivateFolder folder;
    const std::filesystem::path made = folder.path() / "model.cgns";
    const std::string format = "cgns";
    const std::filesystem::path program = readerProgram(format);
    const ChildEnd end =
        folder.path().empty() ? ChildEnd::Died : writeInChild(program, format, made, [&](ForeignWriter& out) {
            if (!options.doublePrecision) {
                out.singlePrecision();
            }
            writeGrids(model.patches, out);
            writeZones(zones, out);
        });
    if (end != ChildEnd::Whole) {
        outcome.problem =
            end == ChildEnd::NoProgram ? missingReader(format) : "The writer of such files failed at this model";
        return false;
    }
    const FileBytes bytes(made, report);
    if (!bytes.isOpen() || bytes.tooLarge()) {
        return false;
    }
    SafeFile file(path);
    BinaryWriter out(file);
    out.writeText(bytes.text());
    outcome.written = out.flush() && file.commit();
    outcome.notes = file.notes();
    return outcome.written;
}

} // namespace velmora
