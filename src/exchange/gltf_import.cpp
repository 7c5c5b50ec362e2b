#include "gltf_import.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "FileBytes.h"
#include "PlacedMesh.h"
#include "TextScan.h"
#include "binary_numbers.h"
#include "nearby_file.h"
#include "read_record.h"

namespace velmora {

namespace {

using Json = nlohmann::json;

// ---- Looking into JSON of which nothing is sure ---------------------------------------------------------------------

const Json* member(const Json* object, const char* key) {
    if (object == nullptr || !object->is_object()) {
        return nullptr;
    }
    const auto found = object->find(key);
    return found == object->end() ? nullptr : &*found;
}

/// A whole number that positions and counts can have.
std::optional<std::uint64_t> wholeNumber(const Json* value) {
    constexpr std::uint64_t most = std::uint64_t{1} << 40; // sums and products with what stands beside it have room
    if (value == nullptr || !value->is_number()) {
        return std::nullopt;
    }
    const double number = value->get<double>();
    if (!(number >= 0.0) || number > static_cast<double>(most) || number != std::floor(number)) {
        return std::nullopt;
    }
    return static_cast<std::uint64_t>(number);
}

std::uint64_t wholeNumberOr(const Json* value, std::uint64_t fallback) {
    return wholeNumber(value).value_or(fallback);
}

std::string textOf(const Json* value) {
    return value != nullptr && value->is_string() ? value->get_ref<const std::string&>() : std::string();
}

bool isTrue(const Json* value) {
    return value != nullptr && value->is_boolean() && value->get<bool>();
}

std::size_t sizeOf(const Json* list) {
    return list != nullptr && list->is_array() ? list->size() : 0;
}

const Json* entryOf(const Json* list, const Json* index) {
    const std::optional<std::uint64_t> number = wholeNumber(index);
    return number && *number < sizeOf(list) ? &(*list)[static_cast<std::size_t>(*number)] : nullptr;
}

/// So many numbers of a list; the fallback where there is no such list.
template <std::size_t n>
std::array<double, n> numbersOr(const Json* list, const std::array<double, n>& fallback) {
    if (sizeOf(list) != n || !std::all_of(list->begin(), list->end(), [](const Json& v) { return v.is_number(); })) {
        return fallback;
    }
    std::array<double, n> numbers{};
    std::transform(list->begin(), list->end(), numbers.begin(), [](const Json& value) { return value.get<double>(); });
    return numbers;
}

// ---- Places ---------------------------------------------------------------------------------------------------------

Placement placementOf(const Json* node) {
    if (const Json* const matrix = member(node, "matrix")) {
        const std::array<double, 16> m = // column by column
            numbersOr<16>(matrix, {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1});
        return {{m[0], m[4], m[8], m[12], m[1], m[5], m[9], m[13], m[2], m[6], m[10], m[14]}};
    }
    const std::array<double, 3> t = numbersOr<3>(member(node, "translation"), {0, 0, 0});
    const auto [x, y, z, w] = numbersOr<4>(member(node, "rotation"), {0, 0, 0, 1});
    const std::array<double, 3> s = numbersOr<3>(member(node, "scale"), {1, 1, 1});
    return {{(1 - 2 * (y * y + z * z)) * s[0], 2 * (x * y - z * w) * s[1], 2 * (x * z + y * w) * s[2], t[0],
             2 * (x * y + z * w) * s[0], (1 - 2 * (x * x + z * z)) * s[1], 2 * (y * z - x * w) * s[2], t[1],
             2 * (x * z - y * w) * s[0], 2 * (y * z + x * w) * s[1], (1 - 2 * (x * x + y * y)) * s[2], t[2]}};
}

// ---- Bytes ----------------------------------------------------------------------------------------------------------

std::string base64Decoded(std::string_view text) {
    constexpr std::string_view letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::array<std::uint8_t, 256> values{};
    values.fill(64);
    for (std::size_t i = 0; i < letters.size(); ++i) {
        values.at(static_cast<unsigned char>(letters[i])) = static_cast<std::uint8_t>(i);
    }
    std::string bytes;
    bytes.reserve(text.size() / 4 * 3 + 3);
    std::uint32_t bits = 0;
    int count = 0;
    for (const char c : text) {
        const std::uint8_t value = values.at(static_cast<unsigned char>(c));
        if (value == 64) {
            break; // "=" at the end, or nothing that belongs here
        }
        bits = bits << 6 | value;
        count += 6;
        if (count >= 8) {
            count -= 8;
            bytes += static_cast<char>(bits >> count & 0xFF);
        }
    }
    return bytes;
}

struct Buffer {
    std::unique_ptr<FileBytes> file;
    std::string decoded;
    std::string_view bytes;
};

/// Numbers of a buffer, whole as far as its bytes go.
struct Accessor {
    std::string_view bytes;
    std::string own; ///< in place of these, where some of them stand elsewhere
    std::uint64_t count = 0;
    std::uint64_t stride = 0;
    int type = 0; ///< the number that the format has for its kind of numbers
    bool normalized = false;

    const char* at(std::uint64_t entry) const {
        return (own.empty() ? bytes : std::string_view(own)).data() + entry * stride;
    }
};

constexpr int signedByte = 5120;
constexpr int unsignedByte = 5121;
constexpr int signedShort = 5122;
constexpr int unsignedShort = 5123;
constexpr int unsignedInt = 5125;
constexpr int real = 5126;

std::uint64_t sizeOfType(int type) {
    return type == signedByte || type == unsignedByte     ? 1
           : type == signedShort || type == unsignedShort ? 2
           : type == unsignedInt || type == real          ? 4
                                                          : 0;
}

double numberOf(const char* at, int type, bool normalized) {
    const auto scaled = [normalized](double value, double most) {
        return normalized ? std::max(value / most, -1.0) : value;
    };
    switch (type) {
    case signedByte:
        return scaled(numberAt<std::int8_t>(at, false), 127.0);
    case unsignedByte:
        return scaled(numberAt<std::uint8_t>(at, false), 255.0);
    case signedShort:
        return scaled(numberAt<std::int16_t>(at, false), 32767.0);
    case unsignedShort:
        return scaled(numberAt<std::uint16_t>(at, false), 65535.0);
    case unsignedInt:
        return numberAt<std::uint32_t>(at, false);
    default:
        return static_cast<double>(numberAt<float>(at, false));
    }
}

// ---- Reading --------------------------------------------------------------------------------------------------------

class GltfReader {
public:
    GltfReader(std::string_view text, const std::filesystem::path& folder, FileRead& record,
               const ReportProgress& report)
        : text_(text), folder_(folder), record_(record), report_(report) {}

    FileMesh run();

private:
    /// A node on the way through the tree, with the nearest name above its mesh.
    struct Step {
        std::uint64_t node = 0;
        Placement above;
        std::string name;
    };
    struct Points {
        std::int64_t first = 0;
        std::int64_t count = 0;
    };

    bool takeContainer();
    bool takeTree();
    void takeNodes();
    std::vector<Step> roots() const;
    void takeNode(const Json& node, const Placement& placement, const std::string& name);
    void takePrimitive(const Json& primitive);
    bool isCompressed(const Json& primitive) const;
    bool isCompressedView(const Json* accessor) const;
    std::optional<Points> takePoints(const Json* index);
    std::optional<Accessor> accessorAt(const Json* index, std::string_view kind, std::uint64_t numbers);
    std::string_view bytesOf(const Json& description, const Json* view);
    bool replaceSparse(const Json& sparse, std::uint64_t count, std::uint64_t size, Accessor& accessor);
    std::string_view bufferAt(const Json* index);
    void load(Buffer& buffer, const Json& description, bool isFirst);
    void tell();

    std::string_view text_;
    const std::filesystem::path& folder_;
    FileRead& record_;
    const ReportProgress& report_;
    std::string_view binary_;
    Json root_;
    std::map<std::uint64_t, Buffer> buffers_;
    std::map<std::uint64_t, Points> pointsOfNode_; // by accessor
    PlacedMesh placed_;
    bool truncated_ = false;
    std::int64_t outside_ = 0;       // buffers in files that may not be read
    std::int64_t noBuffer_ = 0;      // or are not there
    std::int64_t noPrimitive_ = 0;   // meshes of which nothing can be read
    std::int64_t compressed_ = 0;    // meshes
    std::int64_t noSurface_ = 0;     // lines and points
    std::int64_t cutPoints_ = 0;     // beyond the end of their buffer
    std::int64_t cutCorners_ = 0;    // the same
    std::int64_t cutReplaced_ = 0;   // numbers in place of others that have no place, or are not there
    std::int64_t looseCorners_ = 0;  // behind the last whole triangle
    std::int64_t repeatedNodes_ = 0; // that stand twice in the tree
    std::int64_t repeats_ = 0;       // of a mesh by an extension
    std::int64_t outOfScene_ = 0;    // nodes with a mesh
    std::int64_t noRoom_ = 0;        // nodes, meshes
    std::int64_t changing_ = 0;      // meshes that skins or weights change
};

FileMesh GltfReader::run() {
    if (takeContainer() && takeTree()) {
        takeNodes();
    }
    tell();
    return std::move(placed_.mesh());
}

// The binary form: a header of 12 bytes, then chunks with length and kind, the tree and its first buffer.
bool GltfReader::takeContainer() {
    constexpr std::uint32_t jsonChunk = 0x4E4F534A;
    constexpr std::uint32_t binaryChunk = 0x004E4942;
    if (!text_.starts_with("glTF")) {
        return true;
    }
    std::string_view json;
    std::string_view rest = text_.substr(std::min<std::size_t>(12, text_.size()));
    if (text_.size() >= 12 && numberAt<std::uint32_t>(text_.data() + 4, false) != 2) {
        record_.losesGeometry("It is not of version 2");
        return false;
    }
    truncated_ = text_.size() < 12 || numberAt<std::uint32_t>(text_.data() + 8, false) > text_.size();
    while (rest.size() >= 8) {
        const std::size_t length = numberAt<std::uint32_t>(rest.data(), false);
        const auto kind = numberAt<std::uint32_t>(rest.data() + 4, false);
        rest.remove_prefix(8);
        truncated_ = truncated_ || length > rest.size();
        const std::string_view chunk = rest.substr(0, length);
        if (kind == jsonChunk && json.empty()) {
            json = chunk;
        } else if (kind == binaryChunk && binary_.empty()) {
            binary_ = chunk;
        }
        rest.remove_prefix(chunk.size());
    }
    text_ = json;
    return true;
}

bool GltfReader::takeTree() {
    constexpr std::size_t mostJson = std::size_t{1} << 28; // a tree takes many times the memory of its text
    if (text_.size() > mostJson) {
        record_.losesGeometry("The description is too large for the memory");
        return false;
    }
    root_ = Json::parse(text_.begin(), text_.end(), nullptr, false);
    if (!root_.is_object() || (!root_.contains("asset") && !root_.contains("meshes"))) {
        record_.losesGeometry(truncated_ ? "The file ends too early" : "It is no glTF");
        return false;
    }
    const std::string version = textOf(member(member(&root_, "asset"), "version"));
    if (!version.empty() && !version.starts_with("2.")) {
        record_.losesGeometry("It is not of version 2");
        return false;
    }
    return true;
}

std::vector<GltfReader::Step> GltfReader::roots() const {
    const Json* const nodes = member(&root_, "nodes");
    const Json* const scenes = member(&root_, "scenes");
    std::vector<Step> steps;
    if (sizeOf(scenes) > 0) {
        const Json* const asked = entryOf(scenes, member(&root_, "scene"));
        const Json* const list = member(asked != nullptr ? asked : &scenes->front(), "nodes");
        for (std::size_t i = 0; i < sizeOf(list); ++i) {
            steps.push_back({wholeNumberOr(&(*list)[i], sizeOf(nodes)), {}, {}});
        }
        return steps;
    }
    std::vector<bool> isChild(sizeOf(nodes), false);
    for (std::size_t i = 0; i < sizeOf(nodes); ++i) {
        const Json* const children = member(&(*nodes)[i], "children");
        for (std::size_t child = 0; child < sizeOf(children); ++child) {
            const std::uint64_t number = wholeNumberOr(&(*children)[child], isChild.size());
            if (number < isChild.size()) {
                isChild[static_cast<std::size_t>(number)] = true;
            }
        }
    }
    for (std::size_t i = 0; i < isChild.size(); ++i) {
        if (!isChild[i]) {
            steps.push_back({i, {}, {}});
        }
    }
    return steps;
}

void GltfReader::takeNodes() {
    const Json* const nodes = member(&root_, "nodes");
    std::vector<Step> waiting = roots();
    std::reverse(waiting.begin(), waiting.end());
    std::vector<bool> seen(sizeOf(nodes), false);
    std::size_t taken = 0;
    while (!waiting.empty()) {
        Step step = std::move(waiting.back());
        waiting.pop_back();
        if (step.node >= seen.size() || seen[static_cast<std::size_t>(step.node)]) {
            ++repeatedNodes_;
            continue;
        }
        seen[static_cast<std::size_t>(step.node)] = true;
        const Json& node = (*nodes)[static_cast<std::size_t>(step.node)];
        const Placement placement = step.above * placementOf(&node);
        const std::string name = textOf(member(&node, "name"));
        step.name = name.empty() ? step.name : name;
        takeNode(node, placement, step.name);
        const Json* const children = member(&node, "children");
        for (std::size_t child = sizeOf(children); child > 0; --child) {
            waiting.push_back({wholeNumberOr(&(*children)[child - 1], seen.size()), placement, step.name});
        }
        if (report_) {
            report_(std::lerp(0.2, 0.6, static_cast<double>(++taken) / static_cast<double>(seen.size())));
        }
    }
    for (std::size_t i = 0; i < seen.size(); ++i) {
        outOfScene_ += !seen[i] && member(&(*nodes)[i], "mesh") != nullptr ? 1 : 0;
    }
}

void GltfReader::takeNode(const Json& node, const Placement& placement, const std::string& name) {
    const Json* const index = member(&node, "mesh");
    if (index == nullptr) {
        return;
    }
    const Json* const mesh = entryOf(member(&root_, "meshes"), index);
    const Json* const primitives = member(mesh, "primitives");
    if (sizeOf(primitives) == 0) {
        ++noPrimitive_;
        return;
    }
    if (!placed_.hasRoom(0, 0)) {
        ++noRoom_;
        return;
    }
    repeats_ += member(member(&node, "extensions"), "EXT_mesh_gpu_instancing") != nullptr ? 1 : 0;
    changing_ += member(&node, "skin") != nullptr || member(mesh, "weights") != nullptr ? 1 : 0;
    placed_.beginZone(name.empty() ? textOf(member(mesh, "name")) : name, placement);
    pointsOfNode_.clear();
    for (const Json& primitive : *primitives) {
        takePrimitive(primitive);
    }
}

// Beside compressed data the same may stand as it is: for such a mesh its accessors have views, for such a view its
// buffer has bytes.
bool GltfReader::isCompressed(const Json& primitive) const {
    const Json* const accessors = member(&root_, "accessors");
    const Json* const points = entryOf(accessors, member(member(&primitive, "attributes"), "POSITION"));
    const Json* const corners = entryOf(accessors, member(&primitive, "indices"));
    const bool isDraco = member(member(&primitive, "extensions"), "KHR_draco_mesh_compression") != nullptr;
    return (isDraco && member(points, "bufferView") == nullptr) || isCompressedView(points) ||
           isCompressedView(corners);
}

bool GltfReader::isCompressedView(const Json* accessor) const {
    const Json* const view = entryOf(member(&root_, "bufferViews"), member(accessor, "bufferView"));
    const Json* const extensions = member(view, "extensions");
    if (member(extensions, "EXT_meshopt_compression") == nullptr &&
        member(extensions, "KHR_meshopt_compression") == nullptr) {
        return false;
    }
    const Json* const index = member(view, "buffer");
    const bool isChunk = wholeNumber(index) == 0 && !binary_.empty();
    return !isChunk && member(entryOf(member(&root_, "buffers"), index), "uri") == nullptr;
}

void GltfReader::takePrimitive(const Json& primitive) {
    constexpr std::uint64_t triangles = 4;
    constexpr std::uint64_t strip = 5;
    constexpr std::uint64_t fan = 6;
    const std::uint64_t mode = wholeNumberOr(member(&primitive, "mode"), triangles);
    const Json* const positions = member(member(&primitive, "attributes"), "POSITION");
    if (isCompressed(primitive)) {
        ++compressed_;
        return;
    }
    if (mode < triangles) {
        ++noSurface_;
        return;
    }
    const Json* const indices = member(&primitive, "indices");
    std::optional<Accessor> corners;
    if (indices != nullptr) {
        corners = accessorAt(indices, "SCALAR", 1);
    }
    const std::optional<Points> points = takePoints(positions);
    if (!points || mode > fan || (indices != nullptr && !corners)) {
        ++noPrimitive_;
        return;
    }
    const std::int64_t count = corners ? static_cast<std::int64_t>(corners->count) : points->count;
    const std::int64_t whole = mode == triangles ? count / 3 : std::max<std::int64_t>(count - 2, 0);
    if (!placed_.hasRoom(0, static_cast<std::uint64_t>(3 * whole))) {
        ++noRoom_;
        return;
    }
    looseCorners_ += mode == triangles ? count % 3 : count < 3 ? count : 0;
    const auto corner = [&](std::int64_t i) {
        auto number = static_cast<double>(i);
        if (corners) {
            number = numberOf(corners->at(static_cast<std::uint64_t>(i)), corners->type, false);
        }
        // Where the file stores them as floating-point numbers, they may be far beyond any integer.
        const bool isThere = number >= 0.0 && number < static_cast<double>(points->count);
        return isThere ? points->first + static_cast<std::int64_t>(number) : -1;
    };
    for (std::int64_t i = 0; i < whole; ++i) {
        if (mode == triangles) {
            placed_.addTriangle(corner(3 * i), corner(3 * i + 1), corner(3 * i + 2));
        } else if (mode == strip) {
            placed_.addTriangle(corner(i), corner(i + 1 + i % 2), corner(i + 2 - i % 2));
        } else {
            placed_.addTriangle(corner(i + 1), corner(i + 2), corner(0));
        }
    }
}

// Primitives of a mesh may share their points.
std::optional<GltfReader::Points> GltfReader::takePoints(const Json* index) {
    const std::optional<Accessor> accessor = accessorAt(index, "VEC3", 3);
    if (!accessor) {
        return std::nullopt;
    }
    const auto [place, isNew] = pointsOfNode_.try_emplace(*wholeNumber(index));
    if (!isNew) {
        return place->second;
    }
    if (!placed_.hasRoom(accessor->count, 0)) {
        pointsOfNode_.erase(place);
        ++noRoom_;
        return std::nullopt;
    }
    place->second = {placed_.nextPoint(), static_cast<std::int64_t>(accessor->count)};
    const std::uint64_t size = sizeOfType(accessor->type);
    for (std::uint64_t i = 0; i < accessor->count; ++i) {
        const char* const at = accessor->at(i);
        placed_.addPoint({numberOf(at, accessor->type, accessor->normalized),
                          numberOf(at + size, accessor->type, accessor->normalized),
                          numberOf(at + 2 * size, accessor->type, accessor->normalized)});
    }
    return place->second;
}

// Of numbers that go beyond the end of their buffer those that are there.
std::optional<Accessor> GltfReader::accessorAt(const Json* index, std::string_view kind, std::uint64_t numbers) {
    const Json* const description = entryOf(member(&root_, "accessors"), index);
    const Json* const view = entryOf(member(&root_, "bufferViews"), member(description, "bufferView"));
    const Json* const sparse = member(description, "sparse");
    const std::optional<std::uint64_t> count = wholeNumber(member(description, "count"));
    Accessor accessor;
    accessor.type = static_cast<int>(wholeNumberOr(member(description, "componentType"), 0));
    accessor.normalized = isTrue(member(description, "normalized"));
    const std::uint64_t size = numbers * sizeOfType(accessor.type);
    if (!count || size == 0 || textOf(member(description, "type")) != kind || (view == nullptr && sparse == nullptr)) {
        return std::nullopt;
    }
    if (view == nullptr) {                                          // all are 0 but for those that stand elsewhere
        constexpr std::uint64_t mostZeros = std::uint64_t{1} << 20; // no bytes stand behind them
        accessor.stride = size;
        accessor.count = std::min(*count, mostZeros);
        noRoom_ += *count > mostZeros ? 1 : 0;
    } else {
        accessor.bytes = bytesOf(*description, view);
        const std::uint64_t stride = wholeNumberOr(member(view, "byteStride"), 0);
        accessor.stride = stride == 0 ? size : stride;
        const std::uint64_t there =
            accessor.bytes.size() < size ? 0 : (accessor.bytes.size() - size) / accessor.stride + 1;
        accessor.count = std::min(*count, there);
        (numbers == 1 ? cutCorners_ : cutPoints_) += static_cast<std::int64_t>(*count - accessor.count);
    }
    if (sparse != nullptr && !replaceSparse(*sparse, accessor.count, size, accessor)) {
        return std::nullopt;
    }
    return accessor;
}

/// From where the numbers of an accessor, or of a part of it, begin to the end of their view.
std::string_view GltfReader::bytesOf(const Json& description, const Json* view) {
    const auto behind = [](std::string_view bytes, const Json* offset) {
        return bytes.substr(std::min<std::size_t>(wholeNumberOr(offset, 0), bytes.size()));
    };
    const std::string_view bytes = behind(bufferAt(member(view, "buffer")), member(view, "byteOffset"));
    return behind(bytes.substr(0, wholeNumberOr(member(view, "byteLength"), 0)), member(&description, "byteOffset"));
}

// A list of entries and of what they are instead: all of them are copied, and these replaced. False where there is
// nothing to be read of the list, or no memory for the copy.
bool GltfReader::replaceSparse(const Json& sparse, std::uint64_t count, std::uint64_t size, Accessor& accessor) {
    const Json* const views = member(&root_, "bufferViews");
    const Json* const indices = member(&sparse, "indices");
    const Json* const values = member(&sparse, "values");
    const Json* const indexView = entryOf(views, member(indices, "bufferView"));
    const Json* const valueView = entryOf(views, member(values, "bufferView"));
    const std::uint64_t number = wholeNumberOr(member(&sparse, "count"), 0);
    const auto indexType = static_cast<int>(wholeNumberOr(member(indices, "componentType"), 0));
    const std::uint64_t indexSize = sizeOfType(indexType);
    if (indexView == nullptr || valueView == nullptr || indexSize == 0 || !placed_.hasRoom(count, 0)) {
        return false;
    }
    std::string whole(count * size, '\0');
    for (std::uint64_t i = 0; !accessor.bytes.empty() && i < count; ++i) {
        std::copy_n(accessor.at(i), size, whole.begin() + static_cast<std::ptrdiff_t>(i * size));
    }
    accessor.own = std::move(whole);
    accessor.stride = size;
    const std::string_view places = bytesOf(*indices, indexView);
    const std::string_view numbers = bytesOf(*values, valueView);
    const std::uint64_t there = std::min(places.size() / indexSize, numbers.size() / size);
    for (std::uint64_t i = 0; i < std::min(number, there); ++i) {
        const double place = numberOf(places.data() + i * indexSize, indexType, false);
        if (place >= 0.0 && place < static_cast<double>(count)) {
            std::copy_n(numbers.data() + i * size, size,
                        accessor.own.begin() + static_cast<std::ptrdiff_t>(static_cast<std::uint64_t>(place) * size));
        } else {
            ++cutReplaced_;
        }
    }
    cutReplaced_ += static_cast<std::int64_t>(number - std::min(number, there));
    return true;
}

std::string_view GltfReader::bufferAt(const Json* index) {
    const Json* const description = entryOf(member(&root_, "buffers"), index);
    if (description == nullptr) {
        return {};
    }
    const std::uint64_t number = *wholeNumber(index);
    const auto [place, isNew] = buffers_.try_emplace(number);
    if (isNew) {
        load(place->second, *description, number == 0);
    }
    return place->second.bytes;
}

void GltfReader::load(Buffer& buffer, const Json& description, bool isFirst) {
    const Json* const address = member(&description, "uri");
    const std::string uri = textOf(address);
    if (address == nullptr) {
        buffer.bytes = isFirst ? binary_ : std::string_view();
        noBuffer_ += buffer.bytes.empty() ? 1 : 0;
    } else if (uri.starts_with("data:")) {
        constexpr std::string_view mark = ";base64,";
        const std::size_t start = uri.find(mark);
        buffer.decoded =
            start == std::string::npos ? "" : base64Decoded(std::string_view(uri).substr(start + mark.size()));
        buffer.bytes = buffer.decoded;
        noBuffer_ += start == std::string::npos ? 1 : 0;
    } else if (const auto path = nearbyFile(folder_, percentDecoded(uri))) {
        buffer.file = std::make_unique<FileBytes>(*path);
        buffer.bytes = buffer.file->text();
        noBuffer_ += buffer.file->isOpen() && !buffer.file->tooLarge() ? 0 : 1;
    } else {
        ++outside_;
    }
    buffer.bytes = buffer.bytes.substr(0, wholeNumberOr(member(&description, "byteLength"), 0));
}

void GltfReader::tell() {
    if (truncated_ && root_.is_object()) {
        record_.losesGeometry("The file ends too early");
    }
    tellMissing(record_, "Files outside of the folder of this one, which are not read", outside_);
    tellMissing(record_, "Buffers that are not there", noBuffer_);
    tellMissing(record_, "Meshes that are compressed", compressed_);
    tellMissing(record_, "Meshes that cannot be read", noPrimitive_);
    tellMissing(record_, "Meshes of lines or points, which are no polygons", noSurface_);
    tellMissing(record_, "Points beyond the end of their data", cutPoints_);
    tellMissing(record_, "Corners beyond the end of their data", cutCorners_);
    tellMissing(record_, "Numbers in place of others that are not there", cutReplaced_);
    tellMissing(record_, "Corners that make no whole triangle", looseCorners_);
    tellMissing(record_, "Nodes that are not there or stand in the tree twice", repeatedNodes_);
    tellMissing(record_, "Nodes whose mesh an extension repeats, read once", repeats_);
    tellMissing(record_, "Nodes with a mesh that are not in the scene", outOfScene_);
    tellMissing(record_, "Meshes for which the memory does not suffice", noRoom_);
    placed_.tell(record_, "Nodes", sizeOf(member(&root_, "materials")) > 0);
    if (changing_ > 0 || sizeOf(member(&root_, "animations")) > 0) {
        record_.losesDetail("Skins, weights and animations are not applied");
    }
}

} // namespace

void importGltf(std::string_view text, const std::filesystem::path& folder, const ImportOptions& options,
                ExchangeModel& model, FileRead& record, const ReportProgress& report) {
    record.format = "gltf";
    const bool isEmpty = trimmed(text).empty();
    FileMesh mesh = isEmpty ? FileMesh() : GltfReader(text, folder, record, report).run();
    buildScene(std::move(mesh), isEmpty, options, model, record, report);
}

} // namespace velmora
