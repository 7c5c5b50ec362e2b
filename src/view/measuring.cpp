#include <algorithm>
#include <iterator>

#include "UserInterface.h"
#include "VelmoraDoc.h"
#include "VelmoraView.h"
#include "held_marks.h"
#include "report_lines.h"

namespace velmora {

// Places to measure from, clicked one after another: the second gives the distance, the third the angle at the second,
// and the one behind begins anew. Nothing of the document changes.

namespace {

constexpr std::size_t mostPlaces = 3;
constexpr Colour yellow{1.0F, 1.0F, 0.0F, 1.0F};
constexpr Colour black{0.0F, 0.0F, 0.0F, 1.0F};
constexpr float lineWidth = 2.0F;
/// Window depth of what is measured: a line through a body shows over it, and its labels over the line.
constexpr double frontDepth = 0.01;
constexpr double labelDepth = 0.005;

MeasuredPlace placeOf(const DocumentState& doc, const Pick& pick) {
    std::optional<MeasuredPlace> place;
    if (pick.target == Pick::Target::Point) {
        place = gridPlace(doc.patches, pick.patch, pick.section, pick.point);
    }
    return place.value_or(MeasuredPlace{pick.position, std::nullopt});
}

Measurement measured(const DocumentState& doc, const std::vector<MeasuredPlace>& places) {
    return measure(doc.patches, places[0], places[1],
                   places.size() == mostPlaces ? std::optional(places[2]) : std::nullopt);
}

/// Where the place is seen, in front of the scene.
std::vector<zVec<double>> inFront(const VelmoraView& view, const std::vector<zVec<double>>& places, double depth) {
    std::vector<zVec<double>> seen;
    for (const zVec<double>& place : places) {
        auto window = projectPoint(place, view.modelViewMatrix, view.projectionMatrix, view.viewport);
        if (window) {
            window->z = depth;
            window = unprojectPoint(*window, view.modelViewMatrix, view.projectionMatrix, view.viewport);
        }
        if (window) {
            seen.push_back(*window);
        }
    }
    return seen;
}

} // namespace

void VelmoraView::beginMeasuring(bool wasMeasuring) {
    if (mouseMode == ModeMeasure || wasMeasuring) {
        doc_.ShowStatus(mouseMode == ModeMeasure ? "Click the first place" : idlePrompt);
    }
    if (!measured_.empty()) {
        measured_.clear();
        repaint();
    }
}

void VelmoraView::OnKeyDown(ViewKey key) {
    if (key == ViewKey::Escape && mouseMode == ModeMeasure) {
        showCandidate(std::nullopt);
        setMouseMode(ModeMeasure);
        beginMeasuring(true);
        return;
    }
    OpenGLView::OnKeyDown(key);
}

void VelmoraView::measureFrom(PixelPoint position) {
    const Pick pick = pickToMeasure(doc_, index_, rayThrough(position), sight());
    if (!pick.found) {
        doc_.ShowStatus("Nothing to measure from lies here");
        return;
    }
    if (!isMeasured() || measured_.size() == mostPlaces) {
        measured_.clear();
    }
    measured_.push_back(placeOf(doc_, pick));
    measuredRevision_ = doc_.geometryRevision();
    doc_.ShowStatus(measured_.size() == 1 ? candidateText(doc_, pick) + ": click the second place"
                                          : measuredText(measured(doc_, measured_), doc_.modelRadius));
    repaint();
}

/// Places that were found in other geometry are forgotten.
bool VelmoraView::isMeasured() const {
    return mouseMode == ModeMeasure && !measured_.empty() && measuredRevision_ == doc_.geometryRevision();
}

void VelmoraView::drawMeasured(DrawList& list) const {
    std::vector<zVec<double>> places;
    std::transform(measured_.begin(), measured_.end(), std::back_inserter(places),
                   [](const MeasuredPlace& place) { return place.point; });
    places = inFront(*this, places, frontDepth);
    if (places.size() > 1) {
        list.begin(Primitive::LineStrip, yellow).lineWidth = lineWidth;
        list.addVertices(places);
    }
    for (const zVec<double>& place : places) {
        list.framedPoint(place, 6.0F, yellow, 8.0F, black);
    }
}

void VelmoraView::labelMeasured() {
    if (measured_.size() < 2) {
        return;
    }
    const Measurement numbers = measured(doc_, measured_);
    const auto label = [this](const std::string& text, const zVec<double>& place, TextPlate::Side side) {
        for (const zVec<double>& at : inFront(*this, {place}, labelDepth)) {
            overlay_.texts.push_back({text, at, yellow, side});
        }
    };
    // Apart even where all that is measured stands in one place.
    label(lengthText(numbers.distance, doc_.modelRadius), (measured_[0].point + measured_[1].point) * 0.5,
          TextPlate::Side::Above);
    if (numbers.angle) {
        label(shortNumber(*numbers.angle) + " deg", measured_[1].point, TextPlate::Side::Below);
    }
}

} // namespace velmora
