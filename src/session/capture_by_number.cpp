#include "capture_by_number.h"

#include "DocumentState.h"
#include "Session.h"

namespace velmora {

namespace {

void runIfOn(Session& session, const char* id) {
    session.run(*findCommand(id));
}

bool liesOnCapturedCurve(const CaptureState& capture, std::int32_t patch, std::int32_t section, std::int32_t point) {
    return capture.capturedPatch == patch &&
           (capture.sectionCaptured ? capture.capturedSection == section : capture.capturedLine == point);
}

} // namespace

bool capturePointByNumber(Session& session, std::int32_t patch, std::int32_t section, std::int32_t point) {
    const DocumentState& doc = session.state();
    const bool measures = session.view().mouseMode == ModeMeasure;
    if (doc.capture->curveHeld() && !liesOnCapturedCurve(*doc.capture, patch, section, point)) {
        runIfOn(session, "line.exit");
    }
    if (doc.capture->patchCaptured && doc.blockCount > 0 && !doc.inBlock(patch)) {
        runIfOn(session, "patch.exit");
    }
    if (!doc.capture->pointCaptureArmed) {
        runIfOn(session, doc.capture->pointCaptured ? "point.next" : "point.capture");
    }
    Act act;
    act.kind = Act::Kind::Point;
    act.patch = patch;
    act.section = section;
    act.point = point;
    const bool captured = session.act(act) == VelmoraView::ActResult::Done;
    if (captured && measures) {
        session.view().setMouseMode(ModeMeasure); // the button was not needed: it stays with the places to measure from
    }
    return captured;
}

} // namespace velmora
