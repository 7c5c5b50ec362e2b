#pragma once

#include <string>

#include "TextStream.h"
#include "VrmlScene.h"
#include "zTriangulator.h"

namespace velmora {

/// The words of a VRML file that are looked for.
struct VrmlKeywords {
    const char* faceSet;
    const char* coordinateField;
    const char* coordinateNode;
    const char* pointField;
    const char* indexField;
};

/// Takes a VRML file apart as far as face sets need it. Errors name "zVRMLReader" as their file: EOFError at the end of
/// the file, ParseError where the text is another than wanted, IOError when the file ends within a bracket.
class VrmlParser {
public:
    /// `input` must outlive the parser and stand at the start of the file.
    explicit VrmlParser(TextStream& input) : input_(input) {}

    /// Takes the first line. Raises ParseError when it is not that of a VRML file, FileError on another version than 1
    /// or 2.
    void readHeader();

    /// Goes behind the next face set's name.
    void findNode();

    /// Takes the node that begins at the position: its points and its faces go behind those in the two lists.
    void parseNode(VertexList& points, PolygonList& polygons);

    /// Whether the last node's numbers are separated by commas, which none of the lists takes.
    bool metComma() const { return metComma_; }
    /// Whether the last node's points are a node that has a name or stands elsewhere, which is passed over.
    bool metReference() const { return metReference_; }
    /// Whether fewer than three numbers are left behind the last node's points: one too many or too few may have
    /// shifted them.
    bool metPartOfPoint() const { return metPartOfPoint_; }
    /// What stands in the file beside the points and faces.
    const VrmlScene& scene() const { return scene_; }

private:
    bool takeOfWord();
    void readWord();
    void expectWord(const char* wanted);
    void readCoordinates(VertexList& points);
    void readPoints(VertexList& points);
    void readIndices(PolygonList& polygons);
    void skipField();
    void skipBrackets(char opening);
    void skipString();
    int takeInBrackets();
    bool passToFaceSet();
    bool takeFaceSet();
    void noteComma();

    TextStream& input_;
    const VrmlKeywords* keywords_ = nullptr;
    std::string word_;
    bool metComma_ = false;
    bool metReference_ = false;
    bool metPartOfPoint_ = false;
    VrmlScene scene_;
};

} // namespace velmora
