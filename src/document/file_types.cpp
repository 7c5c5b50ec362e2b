#include "file_types.h"

#include <algorithm>

namespace velmora {

const std::vector<FileType>& modelFileTypes() {
    static const std::vector<FileType> types = {{"apt", "Geometry"},     {"skl", "Sections"},     {"dat", "TechPlot"},
                                                {"wrl", "Unstructured"}, {"stl", "Unstructured"}, {"apm", "Markers"},
                                                {"fld", "FlowField"},    {"grd", "Unstructured"}};
    return types;
}

const std::vector<FileType>& singleFileTypes() {
    static const std::vector<FileType> types = {
        {"*", " All"},
        {"wrl", "Unstructured"},
        {"apt", "Velmora Geometry"},
        {"dat", "TecPlot Geometry"},
        {"skl", "Velmora Geometry"},
        {"ext", "Velmora Geometry"},
        {"stl", "Unstructured"},
        {"sft", "Structured"},
        {"apm", "Velmora Geometry"},
        {"cbc", "Detalization "},
        {"bc", "Detalization "},
        {"dat", "Velmora FlowField"},
    };
    return types;
}

std::vector<FileType> fileTypesNamed(std::initializer_list<const char*> extensions) {
    std::vector<FileType> types;
    for (const char* extension : extensions) {
        const auto& all = singleFileTypes();
        types.push_back(
            *std::find_if(all.begin(), all.end(), [&](const FileType& t) { return t.extension == extension; }));
    }
    return types;
}

const std::vector<FileType>& importFileTypes() {
    static const std::vector<FileType> types = {
        {"stl", "Triangles"}, {"obj", "Triangles"}, {"ply", "Triangles"}, {"off", "Triangles"}, {"gltf", "glTF"},
        {"glb", "glTF"},      {"3mf", "3MF"},       {"wrl", "VRML"},      {"iv", "Inventor"},   {"dat", "Tecplot"},
        {"plt", "Tecplot"},   {"tec", "Tecplot"},   {"x", "PLOT3D"},      {"xyz", "PLOT3D"},    {"p3d", "PLOT3D"},
        {"fmt", "PLOT3D"},    {"cgns", "CGNS"},     {"stp", "CAD"},       {"step", "CAD"},      {"igs", "CAD"},
        {"iges", "CAD"}};
    return types;
}

const std::vector<FileType>& exportFileTypes() {
    static const std::vector<FileType> types = {{"p3d", "PLOT3D"},    {"xyz", "PLOT3D"},    {"dat", "Tecplot"},
                                                {"cgns", "CGNS"},     {"stl", "Triangles"}, {"obj", "Triangles"},
                                                {"ply", "Triangles"}, {"wrl", "VRML"}};
    return types;
}

const std::vector<FileType>& exportTriangleFileTypes() {
    static const std::vector<FileType> types = {{"stl", "Triangles"}, {"obj", "Triangles"}, {"ply", "Triangles"},
                                                {"wrl", "VRML"},      {"dat", "Tecplot"},   {"cgns", "CGNS"}};
    return types;
}

const FileType& flowFieldType() {
    return singleFileTypes().back();
}

} // namespace velmora
