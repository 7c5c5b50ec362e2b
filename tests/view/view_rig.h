#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "DocumentState.h"
#include "FakeSurface.h"
#include "RecordingUi.h"
#include "UserInterface.h"
#include "VelmoraView.h"
#include "pixel_of.h"
#include "small_models.h"

namespace velmora::test {

/// A surface that also keeps the colours of its clears, the rectangles inverted and the cursors shown.
class NotedSurface : public FakeSurface {
public:
    std::vector<Colour> clears;
    std::vector<std::pair<PixelPoint, PixelPoint>> rectangles;
    std::vector<MouseMode> cursors;
    int timerStops = 0;

    void clearFrame(const Colour& colour) override {
        clears.push_back(colour);
        FakeSurface::clearFrame(colour);
    }
    void invertRectangle(PixelPoint from, PixelPoint to) override {
        rectangles.emplace_back(from, to);
        FakeSurface::invertRectangle(from, to);
    }
    void showCursor(MouseMode mode) override {
        cursors.push_back(mode);
        FakeSurface::showCursor(mode);
    }
    void stopTimer() override {
        ++timerStops;
        FakeSurface::stopTimer();
    }
};

/// A person who can do something while a message box stands open.
class BusyUi : public RecordingUi {
public:
    std::function<void()> whileBoxStands;

    void showMessage(const Message& message) override {
        RecordingUi::showMessage(message);
        if (whileBoxStands) {
            whileBoxStands();
        }
    }
};

/// A document with one view of 600 by 600 pixels, and shorthands for what a person does with it.
struct ViewRig {
    BusyUi ui;
    const std::unique_ptr<VelmoraDoc> owned;
    VelmoraDoc& document;
    DocumentState& doc;
    NotedSurface surface;
    VelmoraView view;

    ViewRig();
    ~ViewRig();

    /// Makes `patches` the model as opening a file would, and paints.
    void show(const PatchList& patches);

    void paint() { view.OnDraw(); }
    void open(const std::filesystem::path& path);
    void updateBounds();
    void redraw();
    void redrawPicture();
    void toggleSurface();
    /// Runs a command of the document, whether it is on or not.
    void call(const std::string& id);

    /// Parallel projection: a pixel is the same length everywhere.
    void useParallelProjection() { view.runViewCommand("view.orthographic"); }

    /// The pixel that shows a model point.
    PixelPoint pixelOf(const zVec<double>& point) { return test::pixelOf(view, doc, point); }

    bool pick(const zVec<double>& point) { return view.PickPoint(pixelOf(point)); }
    void press(const zVec<double>& point) { view.OnLeftButtonDown(pixelOf(point)); }
    void release(const zVec<double>& point) { view.OnLeftButtonUp(pixelOf(point)); }
    void click(const zVec<double>& point) {
        press(point);
        release(point);
    }
    void clickPixel(PixelPoint pixel) {
        view.OnLeftButtonDown(pixel);
        view.OnLeftButtonUp(pixel);
    }
    void drag(PixelPoint from, PixelPoint to) {
        view.OnLeftButtonDown(from);
        view.OnMouseMove(to);
    }

    void putIntoBlock(const std::vector<std::int32_t>& patches) {
        doc.blockCount = 0;
        for (const std::int32_t patch : patches) {
            doc.blockList[static_cast<std::size_t>(doc.blockCount)] = patch;
            ++doc.blockCount;
        }
    }
};

/// The same numbers as the 16 of a matrix, each within `tolerance`.
inline void expectMatrix(const Matrix4& actual, const Matrix4& expected, double tolerance) {
    for (std::size_t i = 0; i < 16; ++i) {
        EXPECT_NEAR(actual[i], expected[i], tolerance) << "element " << i;
    }
}

inline void expectVector(const zVec<double>& actual, const zVec<double>& expected, double tolerance) {
    EXPECT_NEAR(actual.x, expected.x, tolerance) << "x";
    EXPECT_NEAR(actual.y, expected.y, tolerance) << "y";
    EXPECT_NEAR(actual.z, expected.z, tolerance) << "z";
}

/// The point that a matrix sends a model point to; the last row is taken as 0, 0, 0, 1.
inline zVec<double> sent(const Matrix4& m, const zVec<double>& p) {
    return {m[0] * p.x + m[4] * p.y + m[8] * p.z + m[12], m[1] * p.x + m[5] * p.y + m[9] * p.z + m[13],
            m[2] * p.x + m[6] * p.y + m[10] * p.z + m[14]};
}

/// Two flat patches side by side: the first covers x 0 to 3, y 0 to 2, the second x 10 to 13, y 0 to 2.
inline PatchList twoPatches() {
    PatchList list{flatPatch(3, 4), flatPatch(3, 4)};
    for (PointList& section : list[1]) {
        for (zVec<double>& point : section) {
            point.x += 10.0;
        }
    }
    return list;
}

} // namespace velmora::test
