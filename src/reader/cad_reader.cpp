#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include <BRepMesh_IncrementalMesh.hxx>
#include <BRep_Tool.hxx>
#include <IGESControl_Reader.hxx>
#include <IGESData_GlobalSection.hxx>
#include <IGESData_IGESModel.hxx>
#include <IGESGeom_BoundedSurface.hxx>
#include <IGESGeom_TrimmedSurface.hxx>
#include <IGESSolid_Face.hxx>
#include <Interface_InterfaceModel.hxx>
#include <Interface_Static.hxx>
#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <Poly_Triangulation.hxx>
#include <Precision.hxx>
#include <STEPControl_Reader.hxx>
#include <Standard_Failure.hxx>
#include <Standard_OutOfMemory.hxx>
#include <Standard_Transient.hxx>
#include <StepShape_FaceSurface.hxx>
#include <TColStd_SequenceOfAsciiString.hxx>
#include <TCollection_HAsciiString.hxx>
#include <TopExp_Explorer.hxx>
#include <TopLoc_Location.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Face.hxx>
#include <TopoDS_Shape.hxx>
#include <TransferBRep.hxx>
#include <Transfer_TransientProcess.hxx>
#include <XSControl_Reader.hxx>
#include <XSControl_TransferReader.hxx>
#include <XSControl_WorkSession.hxx>

#include "FileBytes.h"
#include "TextScan.h"
#include "cad_names.h"
#include "cad_patches.h"
#include "reader_work.h"
#include "step_numbers.h"

namespace velmora {

namespace {

/// The library's word for a unit of length, so that it leaves coordinates as they stand in the file.
std::string libraryUnit(const std::string& unit) {
    static const std::map<std::string, std::string> words = {
        {"millimetre", "MM"}, {"millimeter", "MM"}, {"mm", "MM"},         {"metre", "M"},       {"meter", "M"},
        {"m", "M"},           {"centimetre", "CM"}, {"centimeter", "CM"}, {"cm", "CM"},         {"inch", "INCH"},
        {"in", "INCH"},       {"foot", "FT"},       {"ft", "FT"},         {"mile", "MI"},       {"mi", "MI"},
        {"kilometre", "KM"},  {"kilometer", "KM"},  {"km", "KM"},         {"micrometre", "UM"}, {"micrometer", "UM"},
        {"um", "UM"},         {"mil", "MIL"},       {"microinch", "UIN"}, {"uin", "UIN"}};
    const auto found = words.find(smallLetters(unit));
    return found == words.end() ? std::string() : found->second;
}

bool isFace(const Handle(Standard_Transient) & entity) {
    return entity->IsKind(STANDARD_TYPE(StepShape_FaceSurface)) ||
           entity->IsKind(STANDARD_TYPE(IGESGeom_TrimmedSurface)) ||
           entity->IsKind(STANDARD_TYPE(IGESGeom_BoundedSurface)) || entity->IsKind(STANDARD_TYPE(IGESSolid_Face));
}

/// The faces of a file of which the library made nothing, as it does without a word of damaged ones.
std::int64_t facesWithoutShape(const Handle(XSControl_WorkSession) & session) {
    const Handle(Interface_InterfaceModel) model = session->Model();
    const Handle(Transfer_TransientProcess) process = session->TransferReader()->TransientProcess();
    std::int64_t count = 0;
    for (int i = 1; i <= model->NbEntities(); ++i) {
        const Handle(Standard_Transient) entity = model->Value(i);
        count += isFace(entity) && TransferBRep::ShapeResult(process, entity).IsNull() ? 1 : 0;
    }
    return count;
}

class CadReader {
public:
    CadReader(const ReaderWork& work, ForeignWriter& out) : work_(work), out_(out) {}

    void run() {
        const TopoDS_Shape shape = work_.format == "step" ? readStep() : readIges();
        if (shape.IsNull()) {
            throw Refusal("nothing that can be transferred");
        }
        out_.progress(0.5);
        if (work_.options.cadPatches) {
            takePatches(shape);
        } else {
            takeTriangles(shape);
        }
        out_.lost("Faces of which no triangles can be made", noTriangles_);
        tellFaces();
    }

private:
    void setUnit(const std::string& unit) {
        static const std::map<std::string, std::string> names = {
            {"MM", "millimetre"}, {"M", "metre"},      {"CM", "centimetre"}, {"INCH", "inch"}, {"FT", "foot"},
            {"MI", "mile"},       {"KM", "kilometre"}, {"UM", "micrometre"}, {"MIL", "mil"},   {"UIN", "microinch"}};
        const std::string word = libraryUnit(unit);
        out_.unit(word.empty() ? "millimetre" : names.at(word));
        Interface_Static::SetCVal("xstep.cascade.unit", word.empty() ? "MM" : word.c_str());
    }

    TopoDS_Shape readStep() {
        STEPControl_Reader reader;
        if (readStepText(reader) != IFSelect_RetDone) {
            throw Refusal("no STEP file");
        }
        TColStd_SequenceOfAsciiString lengths;
        TColStd_SequenceOfAsciiString angles;
        TColStd_SequenceOfAsciiString solidAngles;
        reader.FileUnits(lengths, angles, solidAngles);
        setUnit(lengths.IsEmpty() ? "" : lengths.First().ToCString());
        out_.progress(0.2);
        reader.TransferRoots();
        tellMade(reader);
        return reader.OneShape();
    }

    IFSelect_ReturnStatus readStepText(STEPControl_Reader& reader) {
        const FileBytes file(work_.path, {});
        if (!hasWildNumber(file.text())) {
            return reader.ReadFile(work_.path.c_str());
        }
        out_.lost("Numbers that are not finite, or beyond all measure: what is made of them is left out");
        std::istringstream stream(withoutWildNumbers(file.text()));
        return reader.ReadStream(work_.path.c_str(), stream);
    }

    TopoDS_Shape readIges() {
        IGESControl_Reader reader;
        if (reader.ReadFile(work_.path.c_str()) != IFSelect_RetDone) {
            throw Refusal("no IGES file");
        }
        const Handle(IGESData_IGESModel) model = reader.IGESModel();
        IGESData_GlobalSection section = model->GlobalSection();
        const Handle(TCollection_HAsciiString) name = section.UnitName();
        setUnit(name.IsNull() ? "" : name->ToCString());
        section.SetCascadeUnit(section.UnitValue()); // taken when the file was read, before its unit was known
        model->SetGlobalSection(section);
        out_.progress(0.2);
        reader.TransferRoots();
        tellMade(reader);
        return reader.OneShape();
    }

    /// What the library made of the file, and what it made nothing of.
    void tellMade(XSControl_Reader& reader) {
        names_ = CadNames(reader.WS());
        const int missing = reader.NbRootsForTransfer() - reader.NbShapes();
        out_.lost("Parts that the reader of the format does not understand", std::max(missing, 0));
        out_.lost("Faces that the reader of the format does not understand", facesWithoutShape(reader.WS()));
    }

    /// Solids, and what belongs to none of them: shells, then faces alone, each in the order of the file, which the
    /// library changes where it takes a shell apart.
    std::vector<TopoDS_Shape> bodiesOf(const TopoDS_Shape& shape) const {
        std::vector<TopoDS_Shape> bodies;
        for (TopExp_Explorer solid(shape, TopAbs_SOLID); solid.More(); solid.Next()) {
            bodies.push_back(solid.Current());
        }
        const auto shells = static_cast<std::ptrdiff_t>(bodies.size());
        for (TopExp_Explorer shell(shape, TopAbs_SHELL, TopAbs_SOLID); shell.More(); shell.Next()) {
            bodies.push_back(shell.Current());
        }
        const auto faces = static_cast<std::ptrdiff_t>(bodies.size());
        for (TopExp_Explorer face(shape, TopAbs_FACE, TopAbs_SHELL); face.More(); face.Next()) {
            bodies.push_back(face.Current());
        }
        sortByPlace(bodies.begin() + shells, bodies.begin() + faces);
        sortByPlace(bodies.begin() + faces, bodies.end());
        return bodies;
    }

    void sortByPlace(std::vector<TopoDS_Shape>::iterator begin, std::vector<TopoDS_Shape>::iterator end) const {
        std::map<const Standard_Transient*, int> places;
        const auto placeOf = [this](const TopoDS_Shape& shape) {
            const TopExp_Explorer face(shape, TopAbs_FACE);
            return face.More() ? names_.placeOf(face.Current()) : 0;
        };
        std::transform(begin, end, std::inserter(places, places.end()), [&placeOf](const TopoDS_Shape& shape) {
            return std::pair(static_cast<const Standard_Transient*>(shape.TShape().get()), placeOf(shape));
        });
        std::stable_sort(begin, end, [&places](const TopoDS_Shape& a, const TopoDS_Shape& b) {
            return places.at(a.TShape().get()) < places.at(b.TShape().get());
        });
    }

    void takePatches(const TopoDS_Shape& shape) {
        std::int64_t number = 0;
        for (const TopoDS_Shape& body : bodiesOf(shape)) {
            for (TopExp_Explorer face(body, TopAbs_FACE); face.More(); face.Next()) {
                takePatch(TopoDS::Face(face.Current()), ++number);
            }
        }
    }

    void takePatch(const TopoDS_Face& face, std::int64_t number) {
        FacePatch patch = patchOfFace(face, work_.options.sections, work_.options.points);
        faces_[patch.border].push_back(number);
        if (!patch.block.x.empty()) {
            out_.add(ForeignGrid{names_.ofShape(face), std::move(patch.block)});
        }
    }

    /// "faces 2, 5"; of very many the first ones.
    static std::string listOf(const std::vector<std::int64_t>& faces) {
        constexpr std::size_t most = 20;
        std::string text = faces.size() == 1 ? "face " : "faces ";
        for (std::size_t i = 0; i < std::min(faces.size(), most); ++i) {
            text += (i > 0 ? ", " : "") + std::to_string(faces[i]);
        }
        return text + (faces.size() > most ? " and others" : "");
    }

    /// What became of each face as a patch, by its number in the file.
    void tellFaces() {
        const std::vector<std::int64_t>& trimmed = faces_[FaceBorder::FourSides];
        const std::vector<std::int64_t>& holes = faces_[FaceBorder::WithHoles];
        const std::vector<std::int64_t>& others = faces_[FaceBorder::OtherSides];
        const std::size_t patches = faces_[FaceBorder::OnParameters].size() + trimmed.size();
        if (work_.options.cadPatches) {
            const auto number = [](std::size_t size) { return static_cast<std::int64_t>(size); };
            out_.faces(number(patches + holes.size() + others.size()), number(patches));
        }
        if (patches > 0) {
            out_.changed(
                "Faces that became patches: " + std::to_string(patches) +
                (trimmed.empty() ? "" : " (between the four sides of a trimmed one: " + listOf(trimmed) + ')'));
        }
        if (!holes.empty() || !others.empty()) {
            out_.lost("Faces that became no patch: " + std::to_string(holes.size() + others.size()) + " (" +
                      (holes.empty() ? "" : "with holes: " + listOf(holes)) +
                      (holes.empty() || others.empty() ? "" : "; ") +
                      (others.empty() ? "" : "without a border of four sides: " + listOf(others)) + ')');
        }
    }

    void takeTriangles(const TopoDS_Shape& shape) {
        constexpr double angle = 0.5;                        // radians; what is asked for is the distance
        const double least = 1.001 * Precision::Confusion(); // below it the library makes no triangles
        const double chord = std::max(work_.options.chord, least);
        if (chord > work_.options.chord) {
            out_.changed("The error of triangles is the least that is possible, 1e-07");
        }
        const BRepMesh_IncrementalMesh mesher(shape, chord, Standard_False, angle, Standard_False);
        out_.progress(0.9);
        const std::vector<TopoDS_Shape> bodies = bodiesOf(shape);
        for (const TopoDS_Shape& body : bodies) {
            FileMesh mesh;
            mesh.zones = {names_.ofBody(body)};
            for (TopExp_Explorer face(body, TopAbs_FACE); face.More(); face.Next()) {
                addTriangles(TopoDS::Face(face.Current()), mesh);
            }
            out_.add(mesh);
        }
        out_.changed("Faces that became triangles", meshed_);
    }

    void addTriangles(const TopoDS_Face& face, FileMesh& mesh) {
        TopLoc_Location location;
        const Handle(Poly_Triangulation) triangles = BRep_Tool::Triangulation(face, location);
        if (triangles.IsNull()) {
            ++noTriangles_;
            return;
        }
        ++meshed_;
        const auto first = static_cast<std::int64_t>(mesh.pointCount()) - 1; // they count from 1
        for (int i = 1; i <= triangles->NbNodes(); ++i) {
            const gp_Pnt point = triangles->Node(i).Transformed(location);
            mesh.addPoint(point.X(), point.Y(), point.Z());
        }
        const bool turned = face.Orientation() == TopAbs_REVERSED;
        for (int i = 1; i <= triangles->NbTriangles(); ++i) {
            int a = 0;
            int b = 0;
            int c = 0;
            triangles->Triangle(i).Get(a, b, c);
            mesh.addPolygon({first + a, first + (turned ? c : b), first + (turned ? b : c)});
        }
    }

    const ReaderWork& work_;
    ForeignWriter& out_;
    CadNames names_;
    std::map<FaceBorder, std::vector<std::int64_t>> faces_; // numbers of those that were to become patches
    std::int64_t meshed_ = 0;
    std::int64_t noTriangles_ = 0;
};

} // namespace

void readCad(const ReaderWork& work, ForeignWriter& out) {
    out.format(work.format);
    Message::DefaultMessenger()->ChangePrinters().Clear();
    try {
        CadReader(work, out).run();
    } catch (const Standard_OutOfMemory&) {
        throw std::bad_alloc();
    } catch (const Standard_Failure& failure) {
        throw Refusal(failure.GetMessageString());
    }
}

} // namespace velmora
