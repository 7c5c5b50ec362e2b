#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <new>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <Inventor/SbMatrix.h>
#include <Inventor/SbName.h>
#include <Inventor/SoDB.h>
#include <Inventor/SoFullPath.h>
#include <Inventor/SoInput.h>
#include <Inventor/SoPrimitiveVertex.h>
#include <Inventor/VRMLnodes/SoVRMLCoordinate.h>
#include <Inventor/VRMLnodes/SoVRMLIndexedFaceSet.h>
#include <Inventor/VRMLnodes/SoVRMLIndexedLineSet.h>
#include <Inventor/VRMLnodes/SoVRMLInline.h>
#include <Inventor/VRMLnodes/SoVRMLPointSet.h>
#include <Inventor/VRMLnodes/SoVRMLWorldInfo.h>
#include <Inventor/actions/SoCallbackAction.h>
#include <Inventor/elements/SoCoordinateElement.h>
#include <Inventor/elements/SoShapeHintsElement.h>
#include <Inventor/errors/SoError.h>
#include <Inventor/errors/SoReadError.h>
#include <Inventor/misc/SoChildList.h>
#include <Inventor/misc/SoProtoInstance.h>
#include <Inventor/nodes/SoFaceSet.h>
#include <Inventor/nodes/SoIndexedFaceSet.h>
#include <Inventor/nodes/SoMaterial.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoVertexProperty.h>
#include <Inventor/nodes/SoVertexShape.h>

#include "name_list.h"
#include "nearby_file.h"
#include "read_record.h"
#include "reader_work.h"
#include "scene_nodes.h"

namespace velmora {

namespace {

/// Which other files may be read, and which are at it.
class Neighbours {
public:
    explicit Neighbours(std::filesystem::path folder) : folder_(std::move(folder)) {}

    /// The file of that name, when it may be read now: a file is no part of itself.
    std::optional<std::filesystem::path> enter(const std::string& name) {
        std::optional<std::filesystem::path> path = nearbyFile(folder_, name);
        if (!path) {
            ++outside;
            return std::nullopt;
        }
        if (!entered_.insert(*path).second) {
            ++repeated;
            return std::nullopt;
        }
        return path;
    }
    void leave(const std::filesystem::path& path) { entered_.erase(path); }

    std::int64_t outside = 0;
    std::int64_t repeated = 0;
    std::int64_t unread = 0;

private:
    std::filesystem::path folder_;
    std::set<std::filesystem::path> entered_;
};

/// Input that opens no other file but those beside it.
class GuardedInput : public SoInput {
public:
    explicit GuardedInput(Neighbours& neighbours) : neighbours_(neighbours) {}

    SbBool pushFile(const char* name) override {
        const std::optional<std::filesystem::path> path = neighbours_.enter(name);
        return path && SoInput::pushFile(path->c_str()) != 0 ? TRUE : FALSE;
    }

private:
    Neighbours& neighbours_;
};

std::string contentOf(const std::filesystem::path& path) {
    std::string content;
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    if (file && file.tellg() > 0) {
        content.resize(static_cast<std::size_t>(file.tellg()));
        file.seekg(0);
        file.read(content.data(), static_cast<std::streamsize>(content.size()));
        content.resize(static_cast<std::size_t>(file.gcount()));
    }
    return content;
}

/// What a text begins with that lacks the line by which such files are known; none where it has one.
std::string missingHead(std::string_view text, const std::string& format) {
    constexpr std::string_view gzip = "\x1F\x8B";
    if (text.starts_with("#VRML") || text.starts_with("#Inventor") || text.starts_with(gzip)) {
        return {};
    }
    return format == "inventor" ? "#Inventor V2.1 ascii\n" : "#VRML V2.0 utf8\n";
}

/// A word follows "DEF" that has letters outside of ASCII: the library writes other ones in their place.
bool hasForeignNames(std::string_view text) {
    constexpr std::string_view spaces = " \t\r\n";
    constexpr std::string_view keyword = "DEF";
    for (std::size_t at = text.find(keyword); at != std::string_view::npos; at = text.find(keyword, at + 1)) {
        std::string_view name = text.substr(at + keyword.size());
        const std::size_t blanks = std::min(name.find_first_not_of(spaces), name.size());
        name.remove_prefix(blanks);
        name = name.substr(0, name.find_first_of(spaces));
        if (blanks > 0 && std::any_of(name.begin(), name.end(), [](char c) { return (c & 0x80) != 0; })) {
            return true;
        }
    }
    return false;
}

std::string formatOf(std::string_view text, const std::string& fallback) {
    return text.starts_with("#VRML V1")    ? "vrml1"
           : text.starts_with("#VRML")     ? "vrml2"
           : text.starts_with("#Inventor") ? "inventor"
                                           : fallback;
}

// What the library says of a file that it cannot read is that the scene is not whole; pictures are no part of it.
std::int64_t complaints = 0;

void onError(const SoError* error, void* /*data*/) {
    const bool isPicture = error->getDebugString().find("texture file") >= 0;
    complaints += error->isOfType(SoReadError::getClassTypeId()) && !isPicture ? 1 : 0;
}

class SceneReader {
public:
    SceneReader(const ReaderWork& work, ForeignWriter& out)
        : work_(work), out_(out), neighbours_(work.path.parent_path()) {}

    void run();

private:
    SoSeparator* load(const std::filesystem::path& path);
    bool open(GuardedInput& input, const std::string& text, const std::filesystem::path& path) const;
    static SoSeparator* readUntilFault(SoInput& input);
    static void onInline(const SbString& url, void* self, SoVRMLInline* node);
    static SoCallbackAction::Response onShape(void* self, SoCallbackAction* action, const SoNode* node);
    static SoCallbackAction::Response onShapeEnd(void* self, SoCallbackAction* action, const SoNode* node);
    static void onTriangle(void* self, SoCallbackAction* action, const SoPrimitiveVertex* a, const SoPrimitiveVertex* b,
                           const SoPrimitiveVertex* c);
    bool takeFaces(SoCallbackAction& action, const SoNode& node);
    bool takeIndexedFaces(SoCallbackAction& action, const SbVec3f* points, std::int32_t count, const SoMFInt32& corners,
                          bool reversed);
    bool takeFaceSet(SoCallbackAction& action, const SoFaceSet& faces);
    void begin(SoCallbackAction& action, bool reversed);
    void finish();
    void addPoint(const SbVec3f& point);
    void addFace();
    std::string titleOf(SoCallbackAction& action) const;
    void tellOfOtherNodes(SoNode& scene);

    const ReaderWork& work_;
    ForeignWriter& out_;
    Neighbours neighbours_;
    FileMesh mesh_;
    SbMatrix matrix_;
    bool reversed_ = false;
    bool shapeOpen_ = false;
    std::vector<std::int64_t> face_;
    std::int64_t made_ = 0; // shapes that the library made triangles of
    std::int64_t lines_ = 0;
    std::int64_t zones_ = 0;
    bool tooMany_ = false;
    std::int64_t placed_ = 0;  // shapes that do not stand where their points are
    std::int64_t again_ = 0;   // places of shapes that stood at another one before
    std::int64_t inlined_ = 0; // other files
    std::set<const SoNode*> shapes_;
};

// ---- Files ----------------------------------------------------------------------------------------------------------

// The whole text in memory; only a packed file is left to the library. Of a damaged file, of which the library gives
// nothing at all, the nodes before the fault are read in a second try.
SoSeparator* SceneReader::load(const std::filesystem::path& path) {
    std::string text = contentOf(path);
    const std::string head = missingHead(text, work_.format);
    text.insert(0, head);
    if (!head.empty()) {
        out_.changed("The first line, which tells the kind of the file, is missing");
    }
    GuardedInput input(neighbours_);
    if (!open(input, text, path)) {
        return nullptr;
    }
    SoSeparator* const scene = SoDB::readAll(&input);
    if (scene != nullptr) {
        return scene;
    }
    const std::int64_t told = complaints;
    GuardedInput again(neighbours_);
    SoSeparator* const part = open(again, text, path) ? readUntilFault(again) : nullptr;
    complaints = told;
    return part;
}

bool SceneReader::open(GuardedInput& input, const std::string& text, const std::filesystem::path& path) const {
    if (text.starts_with('#')) {
        input.setBuffer(text.data(), text.size());
        return true;
    }
    return input.openFile(path.c_str()) == TRUE;
}

SoSeparator* SceneReader::readUntilFault(SoInput& input) {
    auto* const scene = new SoSeparator;
    scene->ref();
    for (std::size_t before = 0;; before = input.getNumBytesRead()) {
        SoNode* node = nullptr;
        if (SoDB::read(&input, node) == FALSE || (node == nullptr && input.getNumBytesRead() == before)) {
            break;
        }
        if (node != nullptr) {
            scene->addChild(node);
        }
    }
    scene->unrefNoDelete();
    if (scene->getNumChildren() > 0) {
        return scene;
    }
    scene->ref();
    scene->unref();
    return nullptr;
}

void SceneReader::onInline(const SbString& url, void* self, SoVRMLInline* node) {
    auto& reader = *static_cast<SceneReader*>(self);
    const std::optional<std::filesystem::path> path = reader.neighbours_.enter(percentDecoded(url.getString()));
    if (!path) {
        return;
    }
    SoSeparator* const scene = reader.load(*path);
    reader.neighbours_.leave(*path);
    if (scene == nullptr) {
        ++reader.neighbours_.unread;
    } else {
        node->setChildData(scene);
        ++reader.inlined_;
    }
}

// ---- Shapes ---------------------------------------------------------------------------------------------------------

// The nearest name above the shape, its own counts.
std::string SceneReader::titleOf(SoCallbackAction& action) const {
    const auto* const path = static_cast<const SoFullPath*>(action.getCurPath());
    for (int i = path->getLength(); i > 0; --i) {
        const SoNode* const node = path->getNode(i - 1);
        if (node->getName().getLength() > 0) {
            return node->getName().getString();
        }
        const SoProtoInstance* const instance = SoProtoInstance::findProtoInstance(node);
        if (instance != nullptr && instance->getName().getLength() > 0) {
            return instance->getName().getString();
        }
    }
    return {};
}

void SceneReader::begin(SoCallbackAction& action, bool reversed) {
    mesh_ = {};
    mesh_.zones = {titleOf(action)};
    matrix_ = action.getModelMatrix();
    reversed_ = reversed != (matrix_.det3() < 0.0F);
    placed_ += matrix_ == SbMatrix::identity() ? 0 : 1;
}

void SceneReader::finish() {
    if (!mesh_.polygonEnds.empty()) {
        out_.add(mesh_);
        ++zones_;
    }
    mesh_ = {};
}

// Rows of the matrix are what the columns are elsewhere.
void SceneReader::addPoint(const SbVec3f& point) {
    std::array<double, 3> p{};
    for (int axis = 0; axis < 3; ++axis) {
        double sum = static_cast<double>(matrix_[3][axis]);
        for (int k = 0; k < 3; ++k) {
            sum += static_cast<double>(point[k]) * static_cast<double>(matrix_[k][axis]);
        }
        p.at(static_cast<std::size_t>(axis)) = sum;
    }
    mesh_.addPoint(p[0], p[1], p[2]);
}

void SceneReader::addFace() {
    if (!face_.empty()) {
        if (reversed_) {
            std::reverse(face_.begin(), face_.end());
        }
        mesh_.addPolygon(face_);
        face_.clear();
    }
}

bool SceneReader::takeIndexedFaces(SoCallbackAction& action, const SbVec3f* points, std::int32_t count,
                                   const SoMFInt32& corners, bool reversed) {
    begin(action, reversed);
    for (std::int32_t i = 0; i < count; ++i) {
        addPoint(points[i]);
    }
    for (int i = 0; i < corners.getNum(); ++i) {
        if (corners[i] == -1) {
            addFace();
        } else {
            face_.push_back(corners[i] >= 0 ? corners[i] : -1);
        }
    }
    addFace();
    finish();
    return true;
}

bool SceneReader::takeFaceSet(SoCallbackAction& action, const SoFaceSet& faces) {
    const SoCoordinateElement* const coordinates = SoCoordinateElement::getInstance(action.getState());
    begin(action, SoShapeHintsElement::getVertexOrdering(action.getState()) == SoShapeHintsElement::CLOCKWISE);
    std::int64_t next = faces.startIndex.getValue();
    for (int i = 0; i < coordinates->getNum(); ++i) {
        addPoint(coordinates->get3(i));
    }
    for (int i = 0; i < faces.numVertices.getNum(); ++i) {
        const std::int32_t asked = faces.numVertices[i];
        const std::int64_t left = std::max<std::int64_t>(coordinates->getNum() - next, 0);
        const std::int64_t number = asked < 0 ? left : std::min<std::int64_t>(asked, left + 1); // one that is not there
        for (std::int64_t k = 0; k < number; ++k) {
            face_.push_back(next++);
        }
        addFace();
    }
    finish();
    return true;
}

// Face sets keep their own points and polygons.
bool SceneReader::takeFaces(SoCallbackAction& action, const SoNode& node) {
    if (node.isOfType(SoVRMLIndexedFaceSet::getClassTypeId())) {
        const auto& faces = static_cast<const SoVRMLIndexedFaceSet&>(node);
        const SoNode* const coordinates = faces.coord.getValue();
        if (coordinates == nullptr || !coordinates->isOfType(SoVRMLCoordinate::getClassTypeId())) {
            return true;
        }
        const SoMFVec3f& points = static_cast<const SoVRMLCoordinate*>(coordinates)->point;
        return takeIndexedFaces(action, points.getValues(0), points.getNum(), faces.coordIndex,
                                faces.ccw.getValue() == FALSE);
    }
    if (node.isOfType(SoIndexedFaceSet::getClassTypeId())) {
        const auto& faces = static_cast<const SoIndexedFaceSet&>(node);
        const SoCoordinateElement* const coordinates = SoCoordinateElement::getInstance(action.getState());
        std::vector<SbVec3f> points;
        points.reserve(static_cast<std::size_t>(std::max(coordinates->getNum(), 0)));
        for (int i = 0; i < coordinates->getNum(); ++i) {
            points.push_back(coordinates->get3(i));
        }
        if (const auto* const own = static_cast<const SoVertexProperty*>(faces.vertexProperty.getValue());
            own != nullptr && own->vertex.getNum() > 0) {
            points.assign(own->vertex.getValues(0), own->vertex.getValues(0) + own->vertex.getNum());
        }
        return takeIndexedFaces(action, points.data(), static_cast<std::int32_t>(points.size()), faces.coordIndex,
                                SoShapeHintsElement::getVertexOrdering(action.getState()) ==
                                    SoShapeHintsElement::CLOCKWISE);
    }
    if (node.isOfType(SoFaceSet::getClassTypeId()) &&
        static_cast<const SoFaceSet&>(node).vertexProperty.getValue() == nullptr) {
        return takeFaceSet(action, static_cast<const SoFaceSet&>(node));
    }
    return false;
}

SoCallbackAction::Response SceneReader::onShape(void* self, SoCallbackAction* action, const SoNode* node) {
    auto& reader = *static_cast<SceneReader*>(self);
    constexpr std::int64_t mostZones = std::int64_t{1} << 18; // few bytes can name one shape any number of times
    if (reader.zones_ >= mostZones) {
        reader.tooMany_ = true;
        return SoCallbackAction::ABORT;
    }
    reader.shapeOpen_ = false;
    reader.again_ += reader.shapes_.insert(node).second ? 0 : 1;
    if (reader.takeFaces(*action, *node)) {
        return SoCallbackAction::PRUNE;
    }
    reader.begin(*action, false);
    reader.shapeOpen_ = true;
    return SoCallbackAction::CONTINUE; // its triangles come one by one
}

void SceneReader::onTriangle(void* self, SoCallbackAction* /*action*/, const SoPrimitiveVertex* a,
                             const SoPrimitiveVertex* b, const SoPrimitiveVertex* c) {
    auto& reader = *static_cast<SceneReader*>(self);
    for (const SoPrimitiveVertex* const vertex : {a, b, c}) {
        reader.face_.push_back(static_cast<std::int64_t>(reader.mesh_.pointCount()));
        reader.addPoint(vertex->getPoint());
    }
    reader.addFace();
}

// Corners of these triangles that are the same point become one.
SoCallbackAction::Response SceneReader::onShapeEnd(void* self, SoCallbackAction* /*action*/, const SoNode* /*node*/) {
    auto& reader = *static_cast<SceneReader*>(self);
    if (!reader.shapeOpen_) {
        return SoCallbackAction::CONTINUE;
    }
    FileMesh& mesh = reader.mesh_;
    if (mesh.polygonEnds.empty()) {
        ++reader.lines_;
        return SoCallbackAction::CONTINUE;
    }
    ++reader.made_;
    const EqualPoints equal = findEqualPoints(mesh.x, mesh.y, mesh.z);
    std::int32_t kept = 0;
    for (std::size_t i = 0; i < mesh.x.size(); ++i) {
        if (equal.place[i] == kept) {
            const auto place = static_cast<std::size_t>(kept++);
            mesh.x[place] = mesh.x[i];
            mesh.y[place] = mesh.y[i];
            mesh.z[place] = mesh.z[i];
        }
    }
    for (std::vector<double>* const axis : {&mesh.x, &mesh.y, &mesh.z}) {
        axis->resize(static_cast<std::size_t>(equal.count));
    }
    for (std::int64_t& corner : mesh.corners) {
        corner = equal.place[static_cast<std::size_t>(corner)];
    }
    reader.finish();
    return SoCallbackAction::CONTINUE;
}

/// The name under which files know a node: the library marks those of the second version of the format.
std::string_view nameInFiles(const SoNode& node) {
    constexpr std::string_view mark = "VRML";
    std::string_view name = node.getTypeId().getName().getString();
    name.remove_prefix(name.starts_with(mark) ? mark.size() : 0);
    return name;
}

bool hasTitle(const SoNode& node) {
    return node.isOfType(SoVRMLWorldInfo::getClassTypeId()) &&
           static_cast<const SoVRMLWorldInfo&>(node).title.getValue().getLength() > 0;
}

// All nodes, those that are not shown too, each once wherever it is used again.
void SceneReader::tellOfOtherNodes(SoNode& scene) {
    std::set<SoNode*> seen;
    std::vector<SoNode*> waiting = {&scene};
    std::set<std::string> choosing;
    std::set<std::string> acting;
    std::int64_t surroundings = 0;
    bool titled = false;
    while (!waiting.empty()) {
        SoNode* const node = waiting.back();
        waiting.pop_back();
        if (!seen.insert(node).second) {
            continue;
        }
        const std::string_view name = nameInFiles(*node);
        if (isOneOf(name, choosingNodes)) {
            choosing.emplace(name);
        } else if (isOneOf(name, actingNodes)) {
            acting.emplace(name);
        }
        surroundings += isOneOf(name, surroundingNodes) ? 1 : 0;
        titled = titled || hasTitle(*node);
        const SoChildList* const children = node->getChildren();
        for (int i = 0; children != nullptr && i < children->getLength(); ++i) {
            waiting.push_back((*children)[i]);
        }
    }
    if (!choosing.empty()) {
        out_.detail("Nodes of which only what they show is read: " + listOf(choosing));
    }
    if (!acting.empty()) {
        out_.detail("Nodes that are not kept: " + listOf(acting));
    }
    if (surroundings > 0) {
        out_.detail("Views, lights and backgrounds that are not kept: " + std::to_string(surroundings));
    }
    if (titled) {
        out_.detail("The title of the scene is not kept");
    }
}

void SceneReader::run() {
    std::string content = contentOf(work_.path);
    out_.format(formatOf(content.substr(0, 64), work_.format));
    const auto speaksOf = [&content](const char* word) { return content.find(word) != std::string::npos; };
    // A material without a colour says nothing; every writer, this program's too, puts one beside each face set.
    if (speaksOf("Color") || speaksOf("Texture")) {
        out_.detail(materialsNotKept);
    }
    if (hasForeignNames(content)) {
        out_.detail("Names with letters outside of ASCII are not kept as they are");
    }
    content = std::string(); // it is large, and read again with what the library needs
    out_.singlePrecision();
    SoDB::init();
    SoError::setHandlerCallback(onError, nullptr);
    SoReadError::setHandlerCallback(onError, nullptr);
    SoVRMLInline::setFetchURLCallBack(onInline, this);
    neighbours_.enter(work_.path.filename().string());
    SoSeparator* const scene = load(work_.path);
    if (scene == nullptr) {
        throw Refusal("no scene");
    }
    scene->ref();
    tellOfOtherNodes(*scene);
    out_.progress(0.5);
    SoCallbackAction action;
    action.addPreCallback(SoShape::getClassTypeId(), onShape, this);
    action.addPostCallback(SoShape::getClassTypeId(), onShapeEnd, this);
    action.addTriangleCallback(SoShape::getClassTypeId(), onTriangle, this);
    action.apply(scene);
    if (tooMany_) {
        throw std::bad_alloc();
    }
    out_.lost("Places that the reader of the format does not understand", complaints);
    out_.lost("Files outside of the folder of this one, which are not read", neighbours_.outside);
    out_.lost("Files that name themselves, read once", neighbours_.repeated);
    out_.lost("Other files that cannot be read", neighbours_.unread);
    out_.lost("Shapes without a surface", lines_);
    out_.changed("Shapes of which triangles were made", made_);
    out_.changed("Shapes whose place became part of their points", placed_);
    out_.changed("Shapes that stand at several places, each a zone", again_);
    out_.changed("Other files that became part of the model", inlined_);
}

} // namespace

void readVrml(const ReaderWork& work, ForeignWriter& out) {
    SceneReader(work, out).run();
}

} // namespace velmora
