#pragma once

#include <map>
#include <string>

#include <Standard_Transient.hxx>
#include <TopoDS_Shape.hxx>
#include <XSControl_WorkSession.hxx>

namespace velmora {

/// The names that a file has for the shapes that were made of it.
class CadNames {
public:
    CadNames() = default;
    /// Of a session that has made its shapes.
    explicit CadNames(const Handle(XSControl_WorkSession) & session);

    /// The name of a shape itself, wherever it is placed; empty without one.
    std::string ofShape(const TopoDS_Shape& shape) const;
    /// The same; without a name of its own that of the product to which it belongs.
    std::string ofBody(const TopoDS_Shape& shape) const;

    /// The number in the file of what a shape was made of; 0 when it is not known.
    int placeOf(const TopoDS_Shape& shape) const;

private:
    Handle(Standard_Transient) entityOf(const TopoDS_Shape& shape) const;
    std::string productAbove(const Handle(Standard_Transient) & shape) const;

    Handle(XSControl_WorkSession) session_;
    std::map<const Standard_Transient*, Handle(Standard_Transient)> entities_; // by what a shape is at all its places
};

} // namespace velmora
