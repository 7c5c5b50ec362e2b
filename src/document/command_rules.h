#pragma once

#include "VelmoraDoc.h"

// When the document's state turns a command off: the rules that several rows share. Asked anew each time, nothing is
// cached.
namespace velmora::rules {

using Doc = const VelmoraDoc&;

inline bool curveHeld(Doc d) {
    return d.capture->sectionCaptured || d.capture->lineCaptured;
}
inline bool emptyModel(Doc d) {
    return d.structureKind == StructureKind::None;
}
inline bool notStr(Doc d) {
    return d.structureKind != StructureKind::Structured;
}
inline bool notUns(Doc d) {
    return d.structureKind != StructureKind::Unstructured;
}
inline bool notApt(Doc d) {
    return d.fileKind != FileKind::Apt;
}

inline bool nonOrField(Doc d) {
    return emptyModel(d) || d.fieldMode;
}
inline bool nonOrNoField(Doc d) {
    return emptyModel(d) || !d.fieldMode;
}
inline bool notStrOrField(Doc d) {
    return notStr(d) || d.fieldMode;
}
inline bool notGrid(Doc d) {
    return notStr(d) || notApt(d);
}
inline bool notGridOrField(Doc d) {
    return notGrid(d) || d.fieldMode;
}

inline bool noPoint(Doc d) {
    return !d.capture->pointCaptured;
}
inline bool noPointOrUns(Doc d) {
    return d.structureKind == StructureKind::Unstructured || !d.capture->pointCaptured;
}
inline bool pointCountFixed(Doc d) {
    return noPointOrUns(d) || d.capture->lineCaptured || d.fieldMode;
}

inline bool noBlock(Doc d) {
    return d.blockCount < 1;
}
inline bool noBlockOrField(Doc d) {
    return noBlock(d) || d.fieldMode;
}
inline bool noPairOfPatches(Doc d) {
    return notStr(d) || d.blockCount < 2;
}

inline bool noCurve(Doc d) {
    return !curveHeld(d);
}
inline bool noCurveOrField(Doc d) {
    return noCurve(d) || d.fieldMode;
}
inline bool noCurveOfGrid(Doc d) {
    return notStr(d) || noCurve(d);
}
inline bool noCurveOfGridOrField(Doc d) {
    return noCurveOfGrid(d) || d.fieldMode;
}
inline bool noSectionOrField(Doc d) {
    return notStr(d) || !d.capture->sectionCaptured || d.fieldMode;
}
inline bool noPointOnSection(Doc d) {
    return notStr(d) || !d.capture->sectionCaptured || !d.capture->pointCaptured;
}
inline bool bufferEmpty(Doc d) {
    return !d.lineBufferFull;
}

} // namespace velmora::rules
