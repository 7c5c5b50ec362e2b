#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <limits>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <cgns_io.h>
#include <cgnslib.h>

#include "nearby_file.h"
#include "outer_faces.h"
#include "read_record.h"
#include "reader_work.h"

namespace velmora {

namespace {

/// A name as the library gives it: 32 letters at most, and a NUL.
using Name = std::array<char, 33>;

/// What an element is, by the name of its type: how many corners it has, and how many nodes in all.
struct ElementKind {
    enum class Family { Nothing, Line, Face, Volume } family = Family::Nothing;
    VolumeShape shape = VolumeShape::Tetrahedron;
    std::size_t corners = 0;
    std::size_t nodes = 0;
};

ElementKind kindOf(CGNS_ENUMT(ElementType_t) type) {
    const std::string_view name = cg_ElementTypeName(type);
    int nodes = 0;
    if (cg_npe(type, &nodes) != CG_OK || nodes <= 0) {
        return {};
    }
    ElementKind kind;
    kind.nodes = static_cast<std::size_t>(nodes);
    const auto volume = [&kind](VolumeShape shape) {
        kind.family = ElementKind::Family::Volume;
        kind.shape = shape;
        kind.corners = cornersOf(shape);
    };
    if (name.starts_with("TRI_") || name.starts_with("QUAD_")) {
        kind.family = ElementKind::Family::Face;
        kind.corners = name.starts_with("TRI_") ? 3 : 4;
    } else if (name.starts_with("TETRA_")) {
        volume(VolumeShape::Tetrahedron);
    } else if (name.starts_with("PYRA_")) {
        volume(VolumeShape::Pyramid);
    } else if (name.starts_with("PENTA_")) {
        volume(VolumeShape::Prism);
    } else if (name.starts_with("HEXA_")) {
        volume(VolumeShape::Brick);
    } else {
        kind.family = ElementKind::Family::Line;
    }
    return kind;
}

// ---- Links to other files -------------------------------------------------------------------------------------------

/// Nodes that stand in other files which may not be read. They must be found before the library follows them.
class LinkSearch {
public:
    LinkSearch(int file, const std::filesystem::path& folder) : file_(file), folder_(folder) {}

    std::int64_t outsideOf(double node, int depth) {
        constexpr int deepest = 64;
        int count = 0;
        if (depth > deepest || cgio_number_children(file_, node, &count) != 0 || count <= 0) {
            return 0;
        }
        std::vector<double> children(static_cast<std::size_t>(count));
        int found = 0;
        if (cgio_children_ids(file_, node, 1, count, &found, children.data()) != 0) {
            return 0;
        }
        children.resize(static_cast<std::size_t>(std::clamp(found, 0, count)));
        std::int64_t outside = 0;
        for (const double child : children) {
            int length = 0;
            if (cgio_is_link(file_, child, &length) == 0 && length > 0) {
                outside += isOutside(child) ? 1 : 0;
            } else {
                outside += outsideOf(child, depth + 1);
            }
            cgio_release_id(file_, child);
        }
        return outside;
    }

private:
    bool isOutside(double node) const {
        std::vector<char> file(CGIO_MAX_FILE_LENGTH + 1);
        std::vector<char> name(CGIO_MAX_LINK_LENGTH + 1);
        int fileLength = 0;
        int nameLength = 0;
        return cgio_link_size(file_, node, &fileLength, &nameLength) != 0 || fileLength > CGIO_MAX_FILE_LENGTH ||
               nameLength > CGIO_MAX_LINK_LENGTH || cgio_get_link(file_, node, file.data(), name.data()) != 0 ||
               (file[0] != '\0' && !nearbyFile(folder_, file.data()));
    }

    int file_;
    const std::filesystem::path& folder_;
};

std::int64_t linksOutside(const std::filesystem::path& path) {
    int file = 0;
    double root = 0.0;
    if (cgio_open_file(path.c_str(), CGIO_MODE_READ, CGIO_FILE_NONE, &file) != 0) {
        throw Refusal("no CGNS file");
    }
    const std::filesystem::path folder = path.parent_path();
    const std::int64_t outside = cgio_get_root_id(file, &root) == 0 ? LinkSearch(file, folder).outsideOf(root, 0) : 0;
    cgio_close_file(file);
    return outside;
}

// ---- Zones ----------------------------------------------------------------------------------------------------------

struct Section {
    std::string name;
    CGNS_ENUMT(ElementType_t) type = CGNS_ENUMV(ElementTypeNull);
    cgsize_t start = 0;
    cgsize_t end = 0;
    std::vector<cgsize_t> elements;
    std::vector<cgsize_t> offsets; ///< where each begins, where elements differ
    bool isPolygons() const { return type == CGNS_ENUMV(NGON_n); }
    bool isPolyhedra() const { return type == CGNS_ENUMV(NFACE_n); }
};

class CgnsReader {
public:
    CgnsReader(int file, const ReaderWork& work, ForeignWriter& out) : file_(file), work_(work), out_(out) {}

    void run();

private:
    void readBase();
    std::vector<int> orderOf(int zones) const;
    void readZone();
    void readGrid(const std::string& name, const std::vector<cgsize_t>& sizes);
    void readElements(const std::string& name, const std::vector<cgsize_t>& sizes);
    bool readCoordinates(const std::vector<cgsize_t>& sizes, std::array<std::vector<double>, 3>& axes);
    std::vector<Section> readSections();
    std::string familyHere() const;
    std::string zoneFamily();
    std::string familyOf(const Section& section);
    void addFaces(const Section& section, FileMesh& mesh);
    void addOuterFaces(const std::vector<Section>& sections, FileMesh& mesh);
    void addPolyhedra(const std::vector<Section>& sections, FileMesh& mesh) const;
    template <class Take>
    void forElements(const Section& section, Take take);

    int file_;
    const ReaderWork& work_;
    ForeignWriter& out_;
    int base_ = 1;
    int zone_ = 1;
    int cells_ = 0; // dimension of the base's cells
    int space_ = 0;
    bool hasVolumes_ = false; // the zone at hand
    std::int64_t noCoordinates_ = 0;
    std::int64_t volumes_ = 0; // left out
    std::int64_t hollow_ = 0;  // of which only the faces are kept
    std::int64_t noSections_ = 0;
    std::int64_t lines_ = 0;
    std::int64_t curved_ = 0; // elements with nodes between their corners
    std::int64_t unknown_ = 0;
};

void CgnsReader::run() {
    int bases = 0;
    cg_nbases(file_, &bases);
    for (base_ = 1; base_ <= bases; ++base_) {
        readBase();
    }
    out_.lost("Zones without coordinates x, y and z", noCoordinates_);
    out_.lost("Volume zones, whose faces were not asked for", volumes_);
    out_.changed(volumesWithoutInside, hollow_);
    out_.lost("Sections that cannot be read", noSections_);
    out_.lost("Elements of unknown kinds", unknown_);
    out_.lost("Lines and points, which are no polygons", lines_);
    out_.changed("Elements with nodes between their corners, which are left out", curved_);
}

void CgnsReader::readBase() {
    Name name{};
    int zones = 0;
    if (cg_base_read(file_, base_, name.data(), &cells_, &space_) != CG_OK ||
        cg_nzones(file_, base_, &zones) != CG_OK) {
        return;
    }
    double done = 0.0;
    for (const int zone : orderOf(zones)) {
        zone_ = zone;
        readZone();
        out_.progress(++done / zones);
    }
}

// The library has zones by the order of their names, "Rib 10" before "Rib 2"; their own numbers go before that.
std::vector<int> CgnsReader::orderOf(int zones) const {
    std::vector<std::pair<int, int>> numbered;
    for (int zone = 1; zone <= zones; ++zone) {
        int number = 0;
        const bool has = cg_goto(file_, base_, "Zone_t", zone, "end") == CG_OK && cg_ordinal_read(&number) == CG_OK;
        numbered.emplace_back(has ? number : std::numeric_limits<int>::max(), zone);
    }
    std::sort(numbered.begin(), numbered.end());
    std::vector<int> order;
    std::transform(numbered.begin(), numbered.end(), std::back_inserter(order),
                   [](const auto& zone) { return zone.second; });
    return order;
}

void CgnsReader::readZone() {
    Name name{};
    std::array<cgsize_t, 9> sizes{};
    CGNS_ENUMT(ZoneType_t) type = CGNS_ENUMV(ZoneTypeNull);
    if (cg_zone_type(file_, base_, zone_, &type) != CG_OK ||
        cg_zone_read(file_, base_, zone_, name.data(), sizes.data()) != CG_OK || cells_ < 1 || cells_ > 3) {
        ++noCoordinates_;
        return;
    }
    if (type == CGNS_ENUMV(Structured)) {
        readGrid(name.data(), {sizes.begin(), sizes.begin() + cells_});
    } else {
        readElements(name.data(), {sizes[0]});
    }
}

bool CgnsReader::readCoordinates(const std::vector<cgsize_t>& sizes, std::array<std::vector<double>, 3>& axes) {
    std::size_t count = 1;
    for (const cgsize_t size : sizes) {
        if (size < 1) {
            return false;
        }
        count *= static_cast<std::size_t>(size);
    }
    const std::vector<cgsize_t> first(sizes.size(), 1);
    const std::array<const char*, 3> names = {"CoordinateX", "CoordinateY", "CoordinateZ"};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        axes.at(axis).assign(count, 0.0);
        const bool read = cg_coord_read(file_, base_, zone_, names.at(axis), CGNS_ENUMV(RealDouble), first.data(),
                                        sizes.data(), axes.at(axis).data()) == CG_OK;
        if (!read && static_cast<int>(axis) < space_) { // a plane has no z
            return false;
        }
    }
    return true;
}

void CgnsReader::readGrid(const std::string& name, const std::vector<cgsize_t>& sizes) {
    std::array<std::vector<double>, 3> axes;
    if (!readCoordinates(sizes, axes)) {
        ++noCoordinates_;
        return;
    }
    ForeignGrid grid;
    const std::string family = zoneFamily();
    grid.title = family.empty() ? name : family;
    grid.block.i = sizes[0];
    grid.block.j = sizes.size() > 1 ? sizes[1] : 1;
    grid.block.k = sizes.size() > 2 ? sizes[2] : 1;
    grid.block.x = std::move(axes[0]);
    grid.block.y = std::move(axes[1]);
    grid.block.z = std::move(axes[2]);
    out_.add(grid);
}

// ---- Names ----------------------------------------------------------------------------------------------------------

/// The family of the node that was gone to.
std::string CgnsReader::familyHere() const {
    std::array<char, 20 * 33 + 1> name{}; // a path of families may stand there
    return cg_famname_read(name.data()) == CG_OK ? std::string(name.data()) : std::string();
}

std::string CgnsReader::zoneFamily() {
    return cg_goto(file_, base_, "Zone_t", zone_, "end") == CG_OK ? familyHere() : std::string();
}

// That of a boundary condition which has exactly the section's elements.
std::string CgnsReader::familyOf(const Section& section) {
    int conditions = 0;
    cg_nbocos(file_, base_, zone_, &conditions);
    for (int condition = 1; condition <= conditions; ++condition) {
        Name name{};
        CGNS_ENUMT(BCType_t) type{};
        CGNS_ENUMT(PointSetType_t) set{};
        CGNS_ENUMT(DataType_t) normals{};
        CGNS_ENUMT(GridLocation_t) location{};
        cgsize_t count = 0;
        cgsize_t normalCount = 0;
        int normalIndex = 0;
        int sets = 0;
        if (cg_boco_info(file_, base_, zone_, condition, name.data(), &type, &set, &count, &normalIndex, &normalCount,
                         &normals, &sets) != CG_OK ||
            count < 1 || cg_boco_gridlocation_read(file_, base_, zone_, condition, &location) != CG_OK) {
            continue;
        }
        std::vector<cgsize_t> elements(static_cast<std::size_t>(count));
        std::vector<double> unused(3 * static_cast<std::size_t>(std::max<cgsize_t>(normalCount, 0)));
        if (cg_boco_read(file_, base_, zone_, condition, elements.data(), unused.data()) != CG_OK) {
            continue;
        }
        const bool ofElements = location == CGNS_ENUMV(FaceCenter) || location == CGNS_ENUMV(CellCenter) ||
                                set == CGNS_ENUMV(ElementRange) || set == CGNS_ENUMV(ElementList);
        const bool isRange = set == CGNS_ENUMV(PointRange) || set == CGNS_ENUMV(ElementRange);
        std::sort(elements.begin(), elements.end());
        const bool same = elements.front() == section.start && elements.back() == section.end &&
                          (isRange || count == section.end - section.start + 1);
        if (ofElements && same &&
            cg_goto(file_, base_, "Zone_t", zone_, "ZoneBC_t", 1, "BC_t", condition, "end") == CG_OK) {
            return familyHere();
        }
    }
    return {};
}

// ---- Elements -------------------------------------------------------------------------------------------------------

std::vector<Section> CgnsReader::readSections() {
    std::vector<Section> sections;
    int count = 0;
    cg_nsections(file_, base_, zone_, &count);
    for (int number = 1; number <= count; ++number) {
        Section section;
        Name name{};
        int border = 0;
        int hasParents = 0;
        cgsize_t size = 0;
        if (cg_section_read(file_, base_, zone_, number, name.data(), &section.type, &section.start, &section.end,
                            &border, &hasParents) != CG_OK ||
            cg_ElementDataSize(file_, base_, zone_, number, &size) != CG_OK || size < 0 ||
            section.end < section.start) {
            ++noSections_;
            continue;
        }
        section.name = name.data();
        section.elements.resize(static_cast<std::size_t>(size));
        const bool differ = section.isPolygons() || section.isPolyhedra() || section.type == CGNS_ENUMV(MIXED);
        if (differ) {
            section.offsets.resize(static_cast<std::size_t>(section.end - section.start) + 2);
        }
        const int outcome = differ ? cg_poly_elements_read(file_, base_, zone_, number, section.elements.data(),
                                                           section.offsets.data(), nullptr)
                                   : cg_elements_read(file_, base_, zone_, number, section.elements.data(), nullptr);
        if (outcome == CG_OK) {
            sections.push_back(std::move(section));
        } else {
            ++noSections_;
        }
    }
    return sections;
}

// Calls `take` with the kind and the nodes of each element that is whole.
template <class Take>
void CgnsReader::forElements(const Section& section, Take take) {
    const std::vector<cgsize_t>& all = section.elements;
    std::size_t at = 0;
    for (cgsize_t element = section.start; element <= section.end && at < all.size(); ++element) {
        ElementKind kind;
        if (section.isPolygons() || section.isPolyhedra()) {
            const auto index = static_cast<std::size_t>(element - section.start);
            const cgsize_t begin = section.offsets[index];
            const cgsize_t end = section.offsets[index + 1];
            if (begin < 0 || end < begin || static_cast<std::size_t>(end) > all.size()) {
                ++unknown_;
                continue;
            }
            at = static_cast<std::size_t>(begin);
            kind.family = section.isPolygons() ? ElementKind::Family::Face : ElementKind::Family::Volume;
            kind.corners = kind.nodes = static_cast<std::size_t>(end - begin);
        } else if (section.type == CGNS_ENUMV(MIXED)) {
            kind = kindOf(static_cast<CGNS_ENUMT(ElementType_t)>(all[at++]));
        } else {
            kind = kindOf(section.type);
        }
        if (kind.family == ElementKind::Family::Nothing || kind.nodes > all.size() - at) {
            ++unknown_; // and where the next one begins is not known
            return;
        }
        take(kind, all.data() + at);
        curved_ += kind.nodes > kind.corners && kind.family != ElementKind::Family::Line ? 1 : 0;
        at += kind.nodes;
    }
}

void CgnsReader::addFaces(const Section& section, FileMesh& mesh) {
    std::vector<std::int64_t> face;
    forElements(section, [&](const ElementKind& kind, const cgsize_t* nodes) {
        if (kind.family == ElementKind::Family::Face) {
            face.assign(nodes, nodes + kind.corners);
            std::for_each(face.begin(), face.end(), [](std::int64_t& node) { --node; });
            mesh.addPolygon(face);
        } else if (kind.family == ElementKind::Family::Line) {
            ++lines_;
        } else {
            hasVolumes_ = true;
        }
    });
    mesh.zoneOfPolygon.resize(mesh.polygonEnds.size(), static_cast<std::int32_t>(mesh.zones.size()) - 1);
}

void CgnsReader::addOuterFaces(const std::vector<Section>& sections, FileMesh& mesh) {
    OuterFaces outer;
    std::vector<std::int64_t> corners;
    for (const Section& section : sections) {
        if (section.isPolygons() || section.isPolyhedra()) {
            continue;
        }
        forElements(section, [&](const ElementKind& kind, const cgsize_t* nodes) {
            if (kind.family == ElementKind::Family::Volume) {
                corners.assign(nodes, nodes + kind.corners);
                outer.add(kind.shape, corners);
            }
        });
    }
    outer.forEach(
        [&](std::span<const std::int64_t> face) {
            corners.assign(face.begin(), face.end());
            std::for_each(corners.begin(), corners.end(), [](std::int64_t& node) { --node; });
            mesh.addPolygon(corners);
        },
        {});
    addPolyhedra(sections, mesh);
    mesh.zoneOfPolygon.resize(mesh.polygonEnds.size(), 0);
}

// Polyhedra name the numbers of their polygons, negative ones turned round: an outer one is named once.
void CgnsReader::addPolyhedra(const std::vector<Section>& sections, FileMesh& mesh) const {
    std::map<cgsize_t, std::pair<int, bool>> named; // how often, and whether turned round
    for (const Section& section : sections) {
        for (const cgsize_t face : section.isPolyhedra() ? section.elements : std::vector<cgsize_t>()) {
            auto& [times, turned] = named[face < 0 ? -face : face];
            ++times;
            turned = face < 0;
        }
    }
    std::vector<std::int64_t> corners;
    for (const Section& section : sections) {
        for (cgsize_t face = section.start; section.isPolygons() && face <= section.end; ++face) {
            const auto found = named.find(face);
            const auto index = static_cast<std::size_t>(face - section.start);
            const cgsize_t begin = section.offsets[index];
            const cgsize_t end = section.offsets[index + 1];
            if (found == named.end() || found->second.first != 1 || begin < 0 || end < begin ||
                static_cast<std::size_t>(end) > section.elements.size()) {
                continue;
            }
            corners.assign(section.elements.begin() + begin, section.elements.begin() + end);
            std::for_each(corners.begin(), corners.end(), [](std::int64_t& node) { --node; });
            if (found->second.second) {
                std::reverse(corners.begin(), corners.end());
            }
            mesh.addPolygon(corners);
        }
    }
}

// Faces of a volume zone that have a section of their own stand for its outside.
void CgnsReader::readElements(const std::string& name, const std::vector<cgsize_t>& sizes) {
    std::array<std::vector<double>, 3> axes;
    if (!readCoordinates(sizes, axes)) {
        ++noCoordinates_;
        return;
    }
    FileMesh mesh;
    mesh.x = std::move(axes[0]);
    mesh.y = std::move(axes[1]);
    mesh.z = std::move(axes[2]);
    const std::vector<Section> sections = readSections();
    const std::string family = zoneFamily();
    const bool polyhedra =
        std::any_of(sections.begin(), sections.end(), [](const Section& section) { return section.isPolyhedra(); });
    hasVolumes_ = false;
    for (const Section& section : sections) {
        if (section.isPolyhedra() || (polyhedra && section.isPolygons())) {
            continue; // polygons between polyhedra are no surface
        }
        const std::string own = familyOf(section);
        const std::string& title = !own.empty() ? own : !family.empty() ? family : section.name;
        mesh.zones.push_back(title.empty() ? name : title);
        const std::size_t before = mesh.polygonEnds.size();
        addFaces(section, mesh);
        if (mesh.polygonEnds.size() == before) {
            mesh.zones.pop_back();
        }
    }
    if (mesh.polygonEnds.empty() && (polyhedra || hasVolumes_)) {
        mesh.zones = {family.empty() ? name : family};
        if (!work_.options.volumeFaces) {
            ++volumes_;
            return;
        }
        addOuterFaces(sections, mesh);
    }
    hollow_ += polyhedra || hasVolumes_ ? 1 : 0;
    if (mesh.zones.empty()) {
        mesh.zones = {name};
    }
    out_.add(mesh);
}

} // namespace

void readCgns(const ReaderWork& work, ForeignWriter& out) {
    out.format("cgns");
    const std::int64_t outside = linksOutside(work.path);
    if (outside > 0) {
        out.lost("Parts in files outside of the folder of this one, which are not read", outside);
        return;
    }
    int file = 0;
    if (cg_open(work.path.c_str(), CG_MODE_READ, &file) != CG_OK) {
        throw Refusal(cg_get_error());
    }
    CgnsReader(file, work, out).run();
}

} // namespace velmora
