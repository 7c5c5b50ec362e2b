#include "foreign_stream.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <utility>
#include <variant>

namespace velmora {

namespace {

constexpr std::size_t headSize = 1 + sizeof(std::uint64_t);

// The kinds of records.
constexpr char formatRecord = 'F';
constexpr char unitRecord = 'U';
constexpr char singleRecord = 'S';
constexpr char lostRecord = 'L';
constexpr char detailRecord = 'D';
constexpr char changedRecord = 'C';
constexpr char progressRecord = 'P';
constexpr char facesRecord = 'N'; // how many are in the file, and of how many there are grids
constexpr char gridRecord = 'G';  // three counts and the title; its coordinates follow
constexpr char meshRecord = 'M';  // its arrays follow
constexpr char titleRecord = 'T'; // of a zone of the mesh
constexpr char cornerRecord = 'A';
constexpr char polygonRecord = 'B';
constexpr char zoneRecord = 'O';
constexpr char endRecord = 'Q';

constexpr std::int64_t mostFaces = std::int64_t{1} << 53; // no file has more, and sums of such counts have room

template <class T>
T valueAt(std::string_view bytes, std::size_t place = 0) {
    T value{};
    std::memcpy(&value, bytes.data() + place, sizeof(T));
    return value;
}

/// An array of a record; false when its length is not that of whole entries.
template <class T>
bool takeArray(std::string_view bytes, std::vector<T>& array) {
    array.resize(bytes.size() / sizeof(T));
    if (!array.empty()) {
        std::memcpy(array.data(), bytes.data(), array.size() * sizeof(T));
    }
    return bytes.size() % sizeof(T) == 0;
}

template <class T>
std::size_t bytesOf(const std::vector<T>& array) {
    return array.size() * sizeof(T);
}

bool holdsTogether(const ForeignGrid& grid) {
    const GridBlock& block = grid.block;
    const std::size_t points = block.x.size();
    const auto count = static_cast<std::int64_t>(points);
    return block.i > 0 && block.j > 0 && block.k > 0 && points > 0 && block.y.size() == points &&
           block.z.size() == points && block.i <= count && block.j <= count / block.i &&
           block.k == count / block.i / block.j && block.pointCount() == count;
}

bool holdsTogether(const FileMesh& mesh) {
    const auto zones = static_cast<std::int64_t>(std::max<std::size_t>(mesh.zones.size(), 1));
    return mesh.y.size() == mesh.x.size() && mesh.z.size() == mesh.x.size() &&
           mesh.zones.size() <= std::numeric_limits<std::int32_t>::max() &&
           std::is_sorted(mesh.polygonEnds.begin(), mesh.polygonEnds.end()) &&
           (mesh.polygonEnds.empty() ? mesh.corners.empty() : mesh.polygonEnds.back() == mesh.corners.size()) &&
           (mesh.zoneOfPolygon.empty() || mesh.zoneOfPolygon.size() == mesh.polygonEnds.size()) &&
           std::all_of(mesh.zoneOfPolygon.begin(), mesh.zoneOfPolygon.end(),
                       [zones](std::int32_t zone) { return zone >= 0 && zone < zones; });
}

} // namespace

// ---- Writing --------------------------------------------------------------------------------------------------------

ForeignWriter::ForeignWriter(std::function<bool(const char* bytes, std::size_t size)> write)
    : write_(std::move(write)) {}

void ForeignWriter::record(char kind, const void* bytes, std::size_t size) {
    std::array<char, headSize> head{};
    const auto length = static_cast<std::uint64_t>(size);
    head[0] = kind;
    std::memcpy(head.data() + 1, &length, sizeof(length));
    good_ = good_ && write_(head.data(), head.size()) && write_(static_cast<const char*>(bytes), size);
}

void ForeignWriter::format(std::string_view name) {
    text(formatRecord, name);
}

void ForeignWriter::unit(std::string_view name) {
    text(unitRecord, name);
}

void ForeignWriter::singlePrecision() {
    text(singleRecord, {});
}

void ForeignWriter::lost(std::string_view reason) {
    text(lostRecord, reason);
}

void ForeignWriter::detail(std::string_view reason) {
    text(detailRecord, reason);
}

void ForeignWriter::changed(std::string_view what) {
    text(changedRecord, what);
}

void ForeignWriter::lost(std::string_view reason, std::int64_t number) {
    if (number != 0) {
        lost(std::string(reason) + ": " + std::to_string(number));
    }
}

void ForeignWriter::changed(std::string_view what, std::int64_t number) {
    if (number != 0) {
        changed(std::string(what) + ": " + std::to_string(number));
    }
}

void ForeignWriter::faces(std::int64_t found, std::int64_t kept) {
    const std::array<std::int64_t, 2> counts = {found, kept};
    record(facesRecord, counts.data(), sizeof(counts));
}

void ForeignWriter::progress(double fraction) {
    record(progressRecord, &fraction, sizeof(fraction));
}

void ForeignWriter::add(const ForeignGrid& grid) {
    std::string head(3 * sizeof(std::int64_t), '\0');
    const std::array<std::int64_t, 3> counts = {grid.block.i, grid.block.j, grid.block.k};
    std::memcpy(head.data(), counts.data(), head.size());
    text(gridRecord, head + grid.title);
    record('X', grid.block.x.data(), bytesOf(grid.block.x));
    record('Y', grid.block.y.data(), bytesOf(grid.block.y));
    record('Z', grid.block.z.data(), bytesOf(grid.block.z));
}

void ForeignWriter::add(const FileMesh& mesh) {
    text(meshRecord, {});
    for (const std::string& title : mesh.zones) {
        text(titleRecord, title);
    }
    record('X', mesh.x.data(), bytesOf(mesh.x));
    record('Y', mesh.y.data(), bytesOf(mesh.y));
    record('Z', mesh.z.data(), bytesOf(mesh.z));
    record(cornerRecord, mesh.corners.data(), bytesOf(mesh.corners));
    record(polygonRecord, mesh.polygonEnds.data(), bytesOf(mesh.polygonEnds));
    record(zoneRecord, mesh.zoneOfPolygon.data(), bytesOf(mesh.zoneOfPolygon));
}

bool ForeignWriter::end() {
    text(endRecord, {});
    return good_;
}

// ---- Taking ---------------------------------------------------------------------------------------------------------

bool ForeignCollector::take(std::string_view bytes) {
    taken_ += bytes.size();
    tooMuch_ = tooMuch_ || taken_ > most_;
    if (tooMuch_ || ended_ || !good_) {
        good_ = false;
        return false;
    }
    waiting_ += bytes;
    std::string_view rest = waiting_;
    while (good_ && rest.size() >= headSize) {
        const auto length = valueAt<std::uint64_t>(rest, 1);
        if (length > most_) {
            good_ = false;
            tooMuch_ = true;
        } else if (length > rest.size() - headSize) {
            break;
        } else {
            good_ = !ended_ && takeRecord(rest[0], rest.substr(headSize, static_cast<std::size_t>(length)));
            rest.remove_prefix(headSize + static_cast<std::size_t>(length));
        }
    }
    waiting_.erase(0, waiting_.size() - rest.size());
    return good_;
}

std::vector<double>* ForeignCollector::axis(char kind) {
    const auto number = static_cast<std::size_t>(kind - 'X');
    if (file_.parts.empty()) {
        return nullptr;
    }
    return std::visit(
        [number](auto& part) -> std::vector<double>* {
            if constexpr (std::is_same_v<std::decay_t<decltype(part)>, ForeignGrid>) {
                return std::array<std::vector<double>*, 3>{&part.block.x, &part.block.y, &part.block.z}.at(number);
            } else {
                return std::array<std::vector<double>*, 3>{&part.x, &part.y, &part.z}.at(number);
            }
        },
        file_.parts.back());
}

FileMesh* ForeignCollector::mesh() {
    return file_.parts.empty() ? nullptr : std::get_if<FileMesh>(&file_.parts.back());
}

bool ForeignCollector::takeRecord(char kind, std::string_view bytes) {
    switch (kind) {
    case formatRecord:
        file_.format = bytes;
        return true;
    case unitRecord:
        file_.unit = bytes;
        return true;
    case singleRecord:
        file_.singlePrecision = true;
        return true;
    case lostRecord:
        file_.lost.emplace_back(bytes);
        return true;
    case detailRecord:
        file_.details.emplace_back(bytes);
        return true;
    case changedRecord:
        file_.changed.emplace_back(bytes);
        return true;
    case progressRecord:
        if (bytes.size() == sizeof(double)) {
            progress_ = std::clamp(valueAt<double>(bytes), progress_, 1.0);
        }
        return true;
    case facesRecord:
        if (bytes.size() != 2 * sizeof(std::int64_t)) {
            return false;
        }
        file_.facesFound = valueAt<std::int64_t>(bytes);
        file_.facesKept = valueAt<std::int64_t>(bytes, sizeof(std::int64_t));
        return file_.facesKept >= 0 && file_.facesKept <= file_.facesFound && file_.facesFound <= mostFaces;
    case gridRecord: {
        constexpr std::size_t counts = 3 * sizeof(std::int64_t);
        if (bytes.size() < counts) {
            return false;
        }
        ForeignGrid grid;
        grid.title = bytes.substr(counts);
        grid.block.i = valueAt<std::int64_t>(bytes);
        grid.block.j = valueAt<std::int64_t>(bytes, sizeof(std::int64_t));
        grid.block.k = valueAt<std::int64_t>(bytes, 2 * sizeof(std::int64_t));
        file_.parts.emplace_back(std::move(grid));
        return true;
    }
    case meshRecord:
        file_.parts.emplace_back(FileMesh());
        return true;
    case titleRecord:
        if (mesh() != nullptr) {
            mesh()->zones.emplace_back(bytes);
        }
        return mesh() != nullptr;
    case 'X':
    case 'Y':
    case 'Z':
        return axis(kind) != nullptr && takeArray(bytes, *axis(kind));
    case cornerRecord:
        return mesh() != nullptr && takeArray(bytes, mesh()->corners);
    case polygonRecord:
        return mesh() != nullptr && takeArray(bytes, mesh()->polygonEnds);
    case zoneRecord:
        return mesh() != nullptr && takeArray(bytes, mesh()->zoneOfPolygon);
    case endRecord:
        ended_ = true;
        return true;
    default:
        return false;
    }
}

bool ForeignCollector::isWhole() const {
    return good_ && ended_ && waiting_.empty() &&
           std::all_of(file_.parts.begin(), file_.parts.end(), [](const auto& part) {
               return std::visit([](const auto& held) { return holdsTogether(held); }, part);
           });
}

} // namespace velmora
