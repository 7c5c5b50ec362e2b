#include "tecplot_import.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "TecplotText.h"
#include "axis_name.h"
#include "grid_builder.h"
#include "mesh_builder.h"
#include "name_list.h"
#include "outer_faces.h"
#include "read_record.h"

namespace velmora {

namespace {

/// Where x, y and z stand among the variables; `missing` for an axis that is not there.
constexpr std::size_t missing = std::numeric_limits<std::size_t>::max();
using Axes = std::array<std::size_t, 3>;

/// A name that is the letter alone goes before one that only begins with it.
Axes axesOf(const std::vector<std::string>& names) {
    Axes axes = {missing, missing, missing};
    for (const bool exact : {true, false}) {
        for (std::size_t index = 0; index < names.size(); ++index) {
            const char letter = exact && names[index].size() > 1 ? '\0' : axisOf(names[index]);
            if (letter != '\0' && axes.at(static_cast<std::size_t>(letter - 'X')) == missing) {
                axes.at(static_cast<std::size_t>(letter - 'X')) = index;
            }
        }
    }
    return axes;
}

bool isVolume(TecplotShape shape) {
    return shape == TecplotShape::Tetrahedra || shape == TecplotShape::Bricks;
}

constexpr std::int64_t noNode = -1;

class TecplotTaker {
public:
    TecplotTaker(TecplotTextFile&& file, const ImportOptions& options, ExchangeModel& model, FileRead& record,
                 const ReportProgress& report)
        : file_(std::move(file)), options_(options), model_(model), record_(record), report_(report) {}

    void run();

private:
    void findAxes();
    bool hasCoordinates(const TecplotTextZone& zone) const;
    bool takesPart(const TecplotTextZone& zone);
    const std::vector<double>& axis(const TecplotTextZone& zone, std::size_t number) const;
    void chooseVariables();
    void takeGrids();
    PatchList patchesOfZone(const TecplotTextZone& zone, const ImportOptions& options);
    void takeAsMesh();
    void addGrid(const TecplotTextZone& zone, FileMesh& mesh);
    void addElements(const TecplotTextZone& zone, FileMesh& mesh);
    void addFace(std::span<const std::int64_t> corners, FileMesh& mesh) const;
    void addOuterFaces(const TecplotTextZone& zone, std::int64_t offset, FileMesh& mesh);
    void tell();

    TecplotTextFile file_;
    const ImportOptions& options_;
    ExchangeModel& model_;
    FileRead& record_;
    const ReportProgress& report_;
    Axes axes_ = {missing, missing, missing};
    std::vector<double> zeros_; // where there is no z
    std::vector<std::size_t> kept_;
    GridTally grids_;
    std::int64_t keptZones_ = 0;
    std::int64_t noCoordinates_ = 0;
    std::int64_t lines_ = 0;
    std::int64_t polyhedra_ = 0;
    std::int64_t elementsOutside_ = 0;
    std::int64_t elementsMissing_ = 0;
    bool titlesLost_ = false;
    bool mesh_ = false;
};

void TecplotTaker::run() {
    findAxes();
    countOf(record_.found, "zones") += static_cast<std::int64_t>(file_.zones.size()) + file_.badCounts + file_.noRoom;
    countOf(record_.kept, "zones") += 0;
    std::erase_if(file_.zones, [this](const TecplotTextZone& zone) { return !takesPart(zone); });
    mesh_ = std::any_of(file_.zones.begin(), file_.zones.end(),
                        [](const TecplotTextZone& zone) { return zone.shape != TecplotShape::Ordered; });
    chooseVariables();
    if (mesh_) {
        takeAsMesh();
    } else {
        takeGrids();
    }
    tell();
}

// Variables of other names: the first three are taken.
void TecplotTaker::findAxes() {
    axes_ = axesOf(file_.variables);
    if (axes_[0] == missing || axes_[1] == missing) {
        axes_ = {0, 1, 2};
        if (!file_.variables.empty()) {
            record_.changed.emplace_back("No variables X and Y: the first three are taken for coordinates");
        }
    } else if (axes_[2] == missing && !file_.zones.empty()) {
        record_.changed.emplace_back("No variable Z: 0 is taken for it");
    }
    std::int64_t most = 0;
    for (const TecplotTextZone& zone : file_.zones) {
        most = std::max(most, zone.values.empty() || zone.values[0] == nullptr ? 0 : zone.nodes);
    }
    zeros_.assign(axes_[2] == missing ? static_cast<std::size_t>(most) : 0, 0.0);
}

bool TecplotTaker::hasCoordinates(const TecplotTextZone& zone) const {
    return std::all_of(axes_.begin(), axes_.end(), [&](std::size_t index) {
        return index == missing ? zone.nodes <= static_cast<std::int64_t>(zeros_.size())
                                : index < zone.values.size() && zone.values[index] != nullptr;
    });
}

const std::vector<double>& TecplotTaker::axis(const TecplotTextZone& zone, std::size_t number) const {
    const std::size_t index = axes_.at(number);
    return index == missing ? zeros_ : *zone.values[index];
}

// Counts those that give nothing by what they lack.
bool TecplotTaker::takesPart(const TecplotTextZone& zone) {
    if (zone.shape == TecplotShape::Polyhedra || zone.shape == TecplotShape::Lines) {
        ++(zone.shape == TecplotShape::Lines ? lines_ : polyhedra_);
        return false;
    }
    if (!hasCoordinates(zone)) {
        ++noCoordinates_;
        return false;
    }
    if (isVolume(zone.shape) && !options_.volumeFaces) {
        ++grids_.volumes;
        return false;
    }
    return true;
}

// Zones of triangles keep what all of them have; grids have no room for values.
void TecplotTaker::chooseVariables() {
    const bool onlyElements =
        mesh_ && std::all_of(file_.zones.begin(), file_.zones.end(),
                             [](const TecplotTextZone& zone) { return zone.shape != TecplotShape::Ordered; });
    for (std::size_t index = 0; onlyElements && index < file_.variables.size(); ++index) {
        const bool isAxis = std::find(axes_.begin(), axes_.end(), index) != axes_.end();
        const bool everywhere =
            std::all_of(file_.zones.begin(), file_.zones.end(), [index](const TecplotTextZone& zone) {
                return index < zone.values.size() && zone.values[index] != nullptr &&
                       std::all_of(zone.values[index]->begin(), zone.values[index]->end(),
                                   [](double value) { return std::isfinite(value); });
            });
        if (!isAxis && everywhere) {
            kept_.push_back(index);
        }
    }
}

PatchList TecplotTaker::patchesOfZone(const TecplotTextZone& zone, const ImportOptions& options) {
    GridBlock block;
    block.i = zone.i;
    block.j = zone.j;
    block.k = zone.k;
    const auto count = static_cast<std::ptrdiff_t>(zone.nodes);
    const auto copy = [&](std::size_t number) {
        const std::vector<double>& values = axis(zone, number);
        return std::vector<double>(values.begin(), values.begin() + count);
    };
    block.x = copy(0);
    block.y = copy(1);
    block.z = copy(2);
    return patchesOf(block, options, grids_);
}

void TecplotTaker::takeGrids() {
    for (const TecplotTextZone& zone : file_.zones) {
        GridBlock block;
        block.i = zone.i;
        block.j = zone.j;
        block.k = zone.k;
        countBlock(block, record_.found);
        PatchList patches = patchesOfZone(zone, options_);
        keptZones_ += patches.empty() ? 0 : 1;
        countPatches(patches, record_.kept);
        titlesLost_ = titlesLost_ || (!zone.title.empty() && !patches.empty());
        std::move(patches.begin(), patches.end(), std::back_inserter(model_.patches));
    }
    tellGrids(grids_, options_, record_);
}

// The whole file is one mesh, so that counts and reports are those of the file.
void TecplotTaker::takeAsMesh() {
    FileMesh mesh;
    for (const std::size_t index : kept_) {
        mesh.variables.push_back(file_.variables[index]);
    }
    mesh.values.resize(kept_.size());
    for (TecplotTextZone& zone : file_.zones) {
        mesh.zones.push_back(zone.title);
        if (zone.shape == TecplotShape::Ordered) {
            addGrid(zone, mesh);
        } else {
            addElements(zone, mesh);
        }
        mesh.zoneOfPolygon.resize(mesh.polygonEnds.size(), static_cast<std::int32_t>(mesh.zones.size() - 1));
        zone = {};
    }
    const std::size_t before = model_.region.blocks.size();
    buildMesh(std::move(mesh), options_, model_, record_, report_);
    keptZones_ = static_cast<std::int64_t>(model_.region.blocks.size() - before);
    tellGrids(grids_, {}, record_);
}

void TecplotTaker::addGrid(const TecplotTextZone& zone, FileMesh& mesh) {
    ImportOptions unscaled = options_;
    unscaled.scale = 1.0; // the mesh is scaled as a whole
    const PatchList patches = patchesOfZone(zone, unscaled);
    const bool surface = addTriangles(patches, mesh);
    grids_.triangles += surface ? 1 : 0;
    lines_ += !patches.empty() && !surface ? 1 : 0;
}

void TecplotTaker::addElements(const TecplotTextZone& zone, FileMesh& mesh) {
    const auto offset = static_cast<std::int64_t>(mesh.pointCount());
    for (std::size_t node = 0; node < static_cast<std::size_t>(zone.nodes); ++node) {
        mesh.addPoint(axis(zone, 0)[node], axis(zone, 1)[node], axis(zone, 2)[node]);
    }
    for (std::size_t field = 0; field < kept_.size(); ++field) {
        const std::vector<double>& values = *zone.values[kept_[field]];
        mesh.values[field].insert(mesh.values[field].end(), values.begin(), values.end());
    }
    const std::size_t corners = nodesOfElement(zone.shape);
    const std::size_t whole = zone.connectivity == nullptr ? 0 : zone.connectivity->size() / corners;
    elementsMissing_ += std::max<std::int64_t>(zone.elements - static_cast<std::int64_t>(whole), 0);
    if (isVolume(zone.shape)) {
        addOuterFaces(zone, offset, mesh);
        return;
    }
    std::vector<std::int64_t> face;
    for (std::size_t element = 0; element < whole; ++element) {
        face.clear();
        for (std::size_t corner = 0; corner < corners; ++corner) {
            const std::int64_t node = (*zone.connectivity)[element * corners + corner];
            face.push_back(node >= 1 && node <= zone.nodes ? offset + node - 1 : noNode);
        }
        addFace(face, mesh);
    }
}

// A quadrilateral with two equal corners side by side is a triangle.
void TecplotTaker::addFace(std::span<const std::int64_t> corners, FileMesh& mesh) const {
    const std::vector<std::int64_t> different = withoutRepeats(corners);
    if (different.size() >= 3) {
        mesh.addPolygon(different);
    } else {
        mesh.addPolygon(corners);
    }
}

void TecplotTaker::addOuterFaces(const TecplotTextZone& zone, std::int64_t offset, FileMesh& mesh) {
    const VolumeShape shape = zone.shape == TecplotShape::Tetrahedra ? VolumeShape::Tetrahedron : VolumeShape::Brick;
    const std::size_t corners = nodesOfElement(zone.shape);
    const std::vector<std::int64_t> none;
    const std::vector<std::int64_t>& nodes = zone.connectivity == nullptr ? none : *zone.connectivity;
    constexpr std::size_t step = 1 << 20;
    const auto report = [this](double /*fraction*/) {
        if (report_) {
            report_(TecplotTextReader::endOfText); // how much is to come is not known
        }
    };
    OuterFaces outer;
    std::vector<std::int64_t> element(corners);
    for (std::size_t first = 0; first + corners <= nodes.size(); first += corners) {
        if (first % step == 0) {
            report(0.0);
        }
        std::transform(nodes.begin() + static_cast<std::ptrdiff_t>(first),
                       nodes.begin() + static_cast<std::ptrdiff_t>(first + corners), element.begin(),
                       [&](std::int64_t node) { return node < 1 || node > zone.nodes ? noNode : node - 1 + offset; });
        if (std::find(element.begin(), element.end(), noNode) == element.end()) {
            outer.add(shape, element);
        } else {
            ++elementsOutside_;
        }
    }
    outer.forEach([&mesh](std::span<const std::int64_t> face) { mesh.addPolygon(face); }, report);
    ++grids_.hollow;
}

void TecplotTaker::tell() {
    countOf(record_.kept, "zones") += keptZones_;
    const auto variables = static_cast<std::int64_t>(file_.variables.size());
    const auto coordinates =
        static_cast<std::int64_t>(std::count_if(axes_.begin(), axes_.end(), [variables](std::size_t index) {
            return index != missing && static_cast<std::int64_t>(index) < variables;
        }));
    const std::int64_t keptVariables = model_.empty() ? 0 : coordinates + static_cast<std::int64_t>(kept_.size());
    countOf(record_.found, "variables") += variables;
    countOf(record_.kept, "variables") += keptVariables;
    tellMissing(record_, "Zones whose counts cannot be used", file_.badCounts);
    tellMissing(record_, "Zones that share more than the file holds", file_.noRoom);
    tellMissing(record_, "Zones without whole coordinates", noCoordinates_);
    tellMissing(record_, "Zones of lines, which have no surface", lines_);
    tellMissing(record_, "Zones of polygons or polyhedra", polyhedra_);
    tellMissing(record_, "Zones whose numbers end early", file_.cutZones);
    tellMissing(record_, "Elements that the file does not have", elementsMissing_);
    tellMissing(record_, "Elements with nodes that are not there", elementsOutside_);
    tellMissing(record_, "Words and numbers that belong to nothing", file_.foreign);
    if (file_.cellValues > 0) {
        record_.losesDetail("Variables at cell centres are skipped: " + std::to_string(file_.cellValues));
    }
    if (keptVariables < variables && !model_.empty()) {
        record_.losesDetail("Variables that are not kept: " + std::to_string(variables - keptVariables));
    }
    if (titlesLost_) {
        record_.losesDetail("Titles of grids are not kept");
    }
    if (file_.passedOver > 0) {
        record_.losesDetail("Text and geometry records are passed over: " + std::to_string(file_.passedOver));
    }
    if (!file_.valuesPassedOver.empty()) {
        record_.losesDetail("Values of headers that are not kept: " + listOf(file_.valuesPassedOver));
    }
}

} // namespace

void importTecplot(std::string_view text, const ImportOptions& options, ExchangeModel& model, FileRead& record,
                   const ReportProgress& report) {
    record.format = "tecplot";
    if (text.starts_with("#!TDV") || text.starts_with("#!SZPLT")) {
        record.losesGeometry("This is a binary Tecplot file, which is not read");
        return;
    }
    TecplotTextFile file = TecplotTextReader(text, report).read();
    const std::int64_t recognised = static_cast<std::int64_t>(file.zones.size()) + file.badCounts + file.noRoom;
    if (recognised == 0 && !trimmed(text).empty()) {
        record.losesGeometry("No zone was found");
    }
    TecplotTaker(std::move(file), options, model, record, report).run();
}

} // namespace velmora
