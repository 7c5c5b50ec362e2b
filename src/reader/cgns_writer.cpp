#include <algorithm>
#include <array>
#include <cstdint>
#include <set>
#include <string>
#include <variant>
#include <vector>

#include <cgnslib.h>

#include "reader_work.h"
#include "written_names.h"

namespace velmora {

namespace {

void demand(int outcome) {
    if (outcome != CG_OK) {
        throw Refusal(cg_get_error());
    }
}

constexpr std::size_t longest = 32; // letters of a name

/// Names of zones, which must differ.
class ZoneNames {
public:
    std::string nameFor(const std::string& title) {
        ++number_;
        std::string name = cgnsName(title);
        name = name.empty() ? "Zone " + std::to_string(number_) : name;
        std::string different = name;
        for (int i = 2; !used_.insert(different).second; ++i) {
            const std::string end = " " + std::to_string(i);
            different = name.substr(0, longest - end.size()) + end;
        }
        return different;
    }

private:
    std::set<std::string> used_;
    int number_ = 0;
};

class CgnsWriter {
public:
    CgnsWriter(int file, int base, bool single) : file_(file), base_(base), single_(single) {}

    void write(const ForeignGrid& grid) {
        const GridBlock& block = grid.block;
        const auto i = static_cast<cgsize_t>(block.i);
        const auto j = static_cast<cgsize_t>(block.j);
        const std::array<cgsize_t, 6> sizes = {i, j, i - 1, j - 1, 0, 0};
        begin(grid.title, sizes.data(), CGNS_ENUMV(Structured), block.x, block.y, block.z);
    }

    void write(const FileMesh& mesh) {
        const auto triangles = static_cast<cgsize_t>(mesh.polygonEnds.size());
        const std::array<cgsize_t, 3> sizes = {static_cast<cgsize_t>(mesh.pointCount()), triangles, 0};
        const std::string title = mesh.zones.empty() ? std::string() : mesh.zones.front();
        const std::string zone = begin(title, sizes.data(), CGNS_ENUMV(Unstructured), mesh.x, mesh.y, mesh.z);
        std::vector<cgsize_t> corners(mesh.corners.size());
        std::transform(mesh.corners.begin(), mesh.corners.end(), corners.begin(),
                       [](std::int64_t corner) { return static_cast<cgsize_t>(corner + 1); });
        int section = 0;
        const std::string name = cgnsName(title); // readers that name parts by their sections find the title there
        demand(cg_section_write(file_, base_, zone_, name.empty() ? zone.c_str() : name.c_str(), CGNS_ENUMV(TRI_3), 1,
                                triangles, 0, corners.data(), &section));
    }

private:
    /// The name that the zone got.
    std::string begin(const std::string& title, const cgsize_t* sizes, CGNS_ENUMT(ZoneType_t) type,
                      const std::vector<double>& x, const std::vector<double>& y, const std::vector<double>& z) {
        std::string name = names_.nameFor(title);
        demand(cg_zone_write(file_, base_, name.c_str(), sizes, type, &zone_));
        demand(cg_goto(file_, base_, "Zone_t", zone_, "end"));
        demand(cg_ordinal_write(++written_)); // readers may find zones by the order of their names
        axis("CoordinateX", x);
        axis("CoordinateY", y);
        axis("CoordinateZ", z);
        return name;
    }

    void axis(const char* name, const std::vector<double>& values) {
        int coordinate = 0;
        if (single_) {
            const std::vector<float> narrow(values.begin(), values.end());
            demand(cg_coord_write(file_, base_, zone_, CGNS_ENUMV(RealSingle), name, narrow.data(), &coordinate));
        } else {
            demand(cg_coord_write(file_, base_, zone_, CGNS_ENUMV(RealDouble), name, values.data(), &coordinate));
        }
    }

    int file_;
    int base_;
    bool single_;
    int zone_ = 0;
    int written_ = 0;
    ZoneNames names_;
};

} // namespace

void writeCgns(const ReaderWork& work, const ForeignFile& file) {
    constexpr int cellDimension = 2;
    constexpr int space = 3;
    int number = 0;
    int base = 0;
    demand(cg_open(work.path.c_str(), CG_MODE_WRITE, &number));
    demand(cg_base_write(number, "Base", cellDimension, space, &base));
    CgnsWriter writer(number, base, file.singlePrecision);
    for (const auto& part : file.parts) {
        std::visit([&writer](const auto& zone) { writer.write(zone); }, part);
    }
    demand(cg_close(number));
}

} // namespace velmora
