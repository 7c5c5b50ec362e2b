#include "cad_names.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

#include <IGESData_IGESEntity.hxx>
#include <Interface_EntityIterator.hxx>
#include <Interface_Graph.hxx>
#include <Interface_InterfaceModel.hxx>
#include <StepBasic_Product.hxx>
#include <StepBasic_ProductDefinition.hxx>
#include <StepBasic_ProductDefinitionFormation.hxx>
#include <StepRepr_CharacterizedDefinition.hxx>
#include <StepRepr_PropertyDefinition.hxx>
#include <StepRepr_PropertyDefinitionRepresentation.hxx>
#include <StepRepr_Representation.hxx>
#include <StepRepr_RepresentationItem.hxx>
#include <StepRepr_RepresentedDefinition.hxx>
#include <StepRepr_ShapeRepresentationRelationship.hxx>
#include <StepRepr_ShapeRepresentationRelationshipWithTransformation.hxx>
#include <TCollection_HAsciiString.hxx>
#include <TransferBRep.hxx>
#include <Transfer_TransientProcess.hxx>
#include <XSControl_TransferReader.hxx>

#include "TextScan.h"

namespace velmora {

namespace {

using Entity = Handle(Standard_Transient);

std::string textOf(const Handle(TCollection_HAsciiString) & text) {
    return text.IsNull() ? std::string() : std::string(trimmed(text->ToCString()));
}

std::string nameOf(const Entity& entity) {
    const Handle(StepRepr_RepresentationItem) item = Handle(StepRepr_RepresentationItem)::DownCast(entity);
    if (!item.IsNull()) {
        return textOf(item->Name());
    }
    const Handle(IGESData_IGESEntity) iges = Handle(IGESData_IGESEntity)::DownCast(entity);
    if (iges.IsNull() || !iges->HasName()) {
        return {};
    }
    constexpr std::string_view noNumber = "(0)"; // behind a label
    const std::string name = textOf(iges->NameValue());
    return name.substr(0, name.size() - (name.ends_with(noNumber) ? noNumber.size() : 0));
}

std::string productOf(const StepRepr_PropertyDefinitionRepresentation& representation) {
    const Handle(StepRepr_PropertyDefinition) property = representation.Definition().PropertyDefinition();
    if (property.IsNull()) {
        return {};
    }
    const Handle(StepBasic_ProductDefinition) definition = property->Definition().ProductDefinition();
    if (definition.IsNull() || definition->Formation().IsNull() || definition->Formation()->OfProduct().IsNull()) {
        return {};
    }
    return textOf(definition->Formation()->OfProduct()->Name());
}

/// Both representations of a shape that are said to be the same.
std::vector<Entity> sameShapes(const Entity& entity) {
    const Handle(StepRepr_ShapeRepresentationRelationship) same =
        Handle(StepRepr_ShapeRepresentationRelationship)::DownCast(entity);
    if (same.IsNull() || same->IsKind(STANDARD_TYPE(StepRepr_ShapeRepresentationRelationshipWithTransformation))) {
        return {};
    }
    return {same->Rep1(), same->Rep2()};
}

} // namespace

// Bodies go before what holds them: a shape that stands for both has the body's name.
CadNames::CadNames(const Handle(XSControl_WorkSession) & session) : session_(session) {
    const Handle(Transfer_TransientProcess) process = session->TransferReader()->TransientProcess();
    for (int i = 1; i <= process->NbMapped(); ++i) {
        const Entity entity = process->Mapped(i);
        const TopoDS_Shape shape = TransferBRep::ShapeResult(process->Find(entity));
        if (!shape.IsNull()) {
            Entity& known = entities_[shape.TShape().get()];
            known = known.IsNull() || nameOf(known).empty() ? entity : known;
        }
    }
}

Entity CadNames::entityOf(const TopoDS_Shape& shape) const {
    const auto found = entities_.find(shape.TShape().get());
    return found == entities_.end() ? Entity() : found->second;
}

std::string CadNames::ofShape(const TopoDS_Shape& shape) const {
    return nameOf(entityOf(shape));
}

std::string CadNames::ofBody(const TopoDS_Shape& shape) const {
    const Entity entity = entityOf(shape);
    const std::string name = nameOf(entity);
    return name.empty() && !entity.IsNull() ? productAbove(entity) : name;
}

int CadNames::placeOf(const TopoDS_Shape& shape) const {
    const Entity entity = entityOf(shape);
    return entity.IsNull() ? 0 : session_->Model()->Number(entity);
}

/// From a shape of STEP by those that hold it, the nearest first, to the product.
std::string CadNames::productAbove(const Handle(Standard_Transient) & shape) const {
    constexpr std::size_t most = 1000; // of a damaged file
    std::vector<Entity> around = {shape};
    const auto add = [&around](const Entity& entity) {
        if (!entity.IsNull() && std::find(around.begin(), around.end(), entity) == around.end()) {
            around.push_back(entity);
        }
    };
    for (std::size_t i = 0; i < around.size() && around.size() < most; ++i) {
        const Entity entity = around[i];
        const Handle(StepRepr_PropertyDefinitionRepresentation) representation =
            Handle(StepRepr_PropertyDefinitionRepresentation)::DownCast(entity);
        std::string name = representation.IsNull() ? std::string() : productOf(*representation);
        if (!name.empty()) {
            return name;
        }
        for (Interface_EntityIterator above = session_->Graph().Sharings(entity); above.More(); above.Next()) {
            add(above.Value());
        }
        for (const Entity& same : sameShapes(entity)) {
            add(same);
        }
    }
    return {};
}

} // namespace velmora
