#include "VrmlScene.h"

#include <algorithm>
#include <array>
#include <limits>

#include "characters.h"
#include "name_list.h"
#include "number_text.h"
#include "scene_nodes.h"
#include "zExceptions.h"

namespace velmora {

namespace {

/// Characters that are held of a word or a number; none that anybody means is as long.
constexpr std::size_t longestToken = std::size_t{1} << 16;
/// The numbers of a matrix; no field of interest has more.
constexpr std::size_t mostValues = 16;

/// Fields whose numbers move, turn or scale what stands below them.
constexpr std::array<std::string_view, 5> placingFields{"translation", "rotation", "scale", "scaleFactor", "matrix"};
constexpr std::array<std::string_view, 11> shapes{"Box",           "Cone",           "Cylinder",  "Sphere",
                                                  "Cube",          "Text",           "AsciiText", "Extrusion",
                                                  "ElevationGrid", "IndexedLineSet", "PointSet"};
constexpr std::array<std::string_view, 5> colourFields{"diffuseColor", "ambientColor", "emissiveColor", "specularColor",
                                                       "transparency"};
constexpr std::array<std::string_view, 7> textureNodes{"ImageTexture",     "PixelTexture",     "MovieTexture",
                                                       "Texture2",         "TextureTransform", "Texture2Transform",
                                                       "TextureCoordinate"};
/// Fields of which what is used again is no shape.
constexpr std::array<std::string_view, 6> looksFields{"appearance",       "material",  "texture",
                                                      "textureTransform", "fontStyle", "viewpoint"};
constexpr std::array<std::string_view, 3> fileNodes{"Inline", "WWWInline", "EXTERNPROTO"};

// Whether numbers of a field leave everything where it is.
bool placesNothing(std::string_view field, const std::vector<double>& values) {
    const auto all = [&values](double wanted) {
        return std::all_of(values.begin(), values.end(), [wanted](double value) { return value == wanted; });
    };
    if (field == "translation") {
        return all(0.0);
    }
    if (field == "rotation") {
        return values.size() < 4 || values[3] == 0.0;
    }
    if (field == "matrix") {
        constexpr std::size_t side = 4;
        for (std::size_t index = 0; index < values.size(); ++index) {
            if (values[index] != (index % (side + 1) == 0 ? 1.0 : 0.0)) {
                return false;
            }
        }
        return true;
    }
    return all(1.0);
}

} // namespace

void VrmlScene::take(std::string_view text) {
    for (const char c : text) {
        take(c);
    }
}

void VrmlScene::take(char c) {
    if (inComment_) {
        inComment_ = c != '\n';
    } else if (inString_) {
        takeOfString(c);
    } else if (c == '#' || c == '"') {
        endToken();
        inComment_ = c == '#';
        inString_ = c == '"';
        text_.clear();
    } else if (isSpace(c) || c == ',' || c == '[' || c == ']') {
        endToken();
    } else if (c == '{' || c == '}') {
        if (c == '{' && !token_.empty()) {
            node_ = token_;
        }
        endToken();
        if (c == '}') {
            endNode();
        }
    } else if (token_.size() < longestToken && (!token_.empty() || isLetter(c) || !field_.empty())) {
        token_ += c; // numbers that belong to no field of interest are not kept
    }
    last_ = inString_ && c == '\\' && last_ == '\\' ? ' ' : c; // one that is marked itself marks nothing
}

void VrmlScene::takeOfString(char c) {
    inString_ = c != '"' || last_ == '\\';
    if (!inString_) {
        takeOfWorldInfo();
    } else if (text_.size() < longestToken) {
        text_ += c;
    }
}

// A save writes the title of the model, and no other.
void VrmlScene::takeOfWorldInfo() {
    if (node_ != "WorldInfo") {
        return;
    }
    if (previous_ == "info") {
        isOurs_ = text_ == writtenInfo;
    } else if (previous_ == "title" && !text_.empty()) {
        if (isOurs_ && title_.empty() && text_.size() < longestToken) {
            title_ = text_;
        } else {
            ++titles_;
        }
    }
}

void VrmlScene::endToken() {
    if (token_.empty()) {
        return;
    }
    if (isLetter(token_.front())) {
        takeWord();
    } else {
        takeNumber(token_);
    }
    token_.clear();
}

void VrmlScene::takeWord() {
    judgeValues();
    const std::string& word = token_;
    takeGeometry(word);
    if (isOneOf(word, placingFields)) {
        field_ = word;
    } else if (isOneOf(word, shapes)) {
        otherShapes_.insert(word);
    } else if (isOneOf(word, colourFields)) {
        ++colours_;
    } else if (isOneOf(word, textureNodes)) {
        ++textures_;
    } else if (isOneOf(word, fileNodes)) {
        ++files_;
    } else if (isOneOf(word, surroundingNodes)) {
        ++surroundings_;
    } else if (isOneOf(word, choosingNodes) || isOneOf(word, actingNodes)) {
        otherNodes_.insert(word);
    } else if (word == "PROTO") {
        ++prototypes_;
    } else if (word == "DEF") {
        ++names_;
    } else if (word == "USE" && !isOneOf(previous_, looksFields)) {
        ++uses_;
    }
    previous_ = word;
    if (word.front() >= 'A' && word.front() <= 'Z') {
        node_ = word;
    }
}

// What stands behind "geometry", with or without a name, is a shape, whatever it is called.
void VrmlScene::takeGeometry(const std::string& word) {
    static constexpr std::array<std::string_view, 3> none{"NULL", "USE", "IS"};
    if (word == "geometry") {
        awaitsShape_ = true;
    } else if (awaitsShape_ && word != "DEF" && previous_ != "DEF") {
        awaitsShape_ = false;
        if (!isOneOf(word, none)) {
            rememberName(otherShapes_, word);
        }
    }
}

void VrmlScene::takeNumber(std::string_view text) {
    if (values_.size() == mostValues) {
        return;
    }
    if (text.size() == longestToken) {
        values_.push_back(std::numeric_limits<double>::quiet_NaN()); // not held whole: it may move something
        return;
    }
    try {
        values_.push_back(fromString<double>(std::string(text)));
    } catch (const ValueError&) {
        return;
    }
}

// A transform of a texture moves no point.
void VrmlScene::judgeValues() {
    const bool ofTexture = node_.find("Texture") != std::string::npos;
    if (!field_.empty() && !ofTexture && !values_.empty() && !placesNothing(field_, values_)) {
        ++placings_;
    }
    field_.clear();
    values_.clear();
}

void VrmlScene::endNode() {
    endToken();
    judgeValues();
    awaitsShape_ = false;
}

void VrmlScene::takeFieldOfFaces(std::string_view name) {
    colours_ += name == "color" || name == "colorIndex" ? 1 : 0;
    textures_ += name == "texCoord" || name == "texCoordIndex" ? 1 : 0;
    turned_ += name == "ccw" ? 1 : 0;
}

void VrmlScene::note(FileRead& record) const {
    const auto told = [](const char* what, std::int64_t count) { return what + std::to_string(count); };
    if (placings_ > 0) {
        record.losesGeometry(told("Records that move, turn or scale face sets and are not followed: ", placings_));
    }
    if (uses_ > 0) {
        record.losesGeometry(told("Shapes that stand again by USE and are not read: ", uses_));
    }
    if (files_ > 0) {
        record.losesGeometry(told("Parts of the scene in other files, which are not read: ", files_));
    }
    if (prototypes_ > 0) {
        record.losesGeometry(told("Prototypes, of which what is made by them is not read: ", prototypes_));
    }
    if (!otherShapes_.empty()) {
        record.losesGeometry("Shapes other than face sets are not read: " + listOf(otherShapes_));
    }
    if (colours_ > 0) {
        record.losesDetail(told("Records of colours that are not kept: ", colours_));
    }
    if (textures_ > 0) {
        record.losesDetail(told("Records of textures that are not kept: ", textures_));
    }
    if (names_ > 0) {
        record.losesDetail(told("Names of nodes that are not kept: ", names_));
    }
    if (surroundings_ > 0) {
        record.losesDetail(told("Views, lights and backgrounds that are not kept: ", surroundings_));
    }
    if (titles_ > 0) {
        record.losesDetail("The title of the scene is not kept");
    }
    if (!otherNodes_.empty()) {
        record.losesDetail("Nodes that are not followed; the shapes in them are read as they stand: " +
                           listOf(otherNodes_));
    }
    if (turned_ > 0) {
        record.losesDetail(told("Face sets that tell which side is the front, which is not followed: ", turned_));
    }
}

} // namespace velmora
