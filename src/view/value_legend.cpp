#include "VelmoraView.h"

namespace velmora {

namespace {

// The legend below the triad, in pixels.
constexpr double swatchX = 20.0;
constexpr double textX = 34.0;
constexpr double titleBelowTop = 110.0;
constexpr double rowHeight = 16.0;
constexpr double baseBelowMiddle = 4.0;
constexpr float swatchSize = 12.0F;
/// Window depth of the legend: in front of the scene.
constexpr double legendDepth = 0.01;

constexpr Colour white{1.0F, 1.0F, 1.0F, 1.0F};

} // namespace

void VelmoraView::addLegend() {
    const double scale = pixelScale();
    const auto place = [this, scale](double x, double belowTop) {
        return unprojectPoint({scale * x, viewport.height - scale * belowTop, legendDepth}, modelViewMatrix,
                              projectionMatrix, viewport);
    };
    const auto addText = [this, &place](double x, double belowTop, const std::string& text) {
        if (const auto at = place(x, belowTop + baseBelowMiddle)) {
            overlay_.texts.push_back({text, *at, white});
        }
    };
    double belowTop = titleBelowTop;
    addText(swatchX - swatchSize / 2.0, belowTop, coloured_->values.name);
    for (const LegendRow& row : legendOf(coloured_->scale)) {
        belowTop += rowHeight;
        if (const auto at = place(swatchX, belowTop)) {
            overlay_.list.point(*at, swatchSize, row.colour);
        }
        addText(textX, belowTop, row.text);
    }
}

} // namespace velmora
