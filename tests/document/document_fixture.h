#pragma once

#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "RecordingUi.h"
#include "VelmoraDoc.h"
#include "arranged_capture.h"
#include "path_names.h"
#include "small_models.h"

namespace velmora::test {

using Lines = std::vector<std::string>;

/// A view that draws nothing and keeps what the document asked of it.
class RecordingView : public DocumentView {
public:
    Lines calls;
    Lines changes; ///< what changed, as the document told it: "geometry", "picture", "highlight" or "bounds"
    int plane = 0; ///< what principalPlane answers

    void onGeometryChanged() override { note("redraw", "geometry"); }
    void onPictureChanged() override { note("redraw", "picture"); }
    void onHighlightChanged() override { note("redraw", "highlight"); }
    void onBoundsChanged() override { note("bounds", "bounds"); }
    void setMouseMode(MouseMode mode) override { calls.push_back("set " + nameOf(mode)); }
    void forceMouseMode(MouseMode mode) override { calls.push_back("force " + nameOf(mode)); }
    void resetMouseMode() override { calls.emplace_back("reset"); }
    int principalPlane() const override { return plane; }

private:
    void note(const char* call, const char* change) {
        calls.emplace_back(call);
        changes.emplace_back(change);
    }
    static std::string nameOf(MouseMode mode) {
        switch (mode) {
        case ModePoint:
            return "point";
        case ModePatch:
            return "patch";
        case ModeSection:
            return "section";
        case ModeLine:
            return "line";
        default:
            return std::to_string(mode);
        }
    }
};

/// A document after the program's start, with one view and a folder for its files.
class DocumentTest : public testing::Test {
protected:
    DocumentTest() : doc(ui, folder.path()) {
        doc.onNewDocument();
        doc.attachView(view);
        forget();
    }

    /// Puts a model in place as if it had been opened as wing.apt or wing.skl from the folder, without any trace.
    void hold(PatchList model) {
        doc.patches = std::move(model);
        doc.modelFile.chosenPath = folder / "wing.apt";
        doc.retitle();
        doc.updateBounds();
        forget();
    }

    /// Forgets what was shown and asked so far.
    void forget() {
        ui.transcript.clear();
        view.calls.clear();
    }

    /// What was shown and asked since the last call.
    Lines heard() { return std::exchange(ui.transcript, {}); }

    /// What the view was asked since the last call.
    Lines viewCalls() { return std::exchange(view.calls, {}); }

    void addToBlock(std::int32_t patch) {
        doc.blockList[static_cast<std::size_t>(doc.blockCount)] = patch;
        ++doc.blockCount;
    }

    std::vector<std::int32_t> block() const { return {doc.blockList.begin(), doc.blockList.begin() + doc.blockCount}; }

    void capturePoint(std::int32_t patch, std::int32_t section, std::int32_t point) {
        holdPoint(doc, patch, section, point);
    }
    void captureSection(std::int32_t patch, std::int32_t section) { holdSection(doc, patch, section); }
    void captureLine(std::int32_t patch, std::int32_t line) { holdLine(doc, patch, line); }

    /// The folder as the document's strings show it, with its closing separator.
    std::string shownFolder() const { return lowerCase(folder.path().string()) + "/"; }

    TemporaryFolder folder;
    RecordingUi ui;
    RecordingView view;
    VelmoraDoc doc;
};

/// The kinds as they are printed, one behind the other.
inline std::string kindsOf(const VelmoraDoc& doc) {
    return std::string(textOf(doc.structureKind)) + textOf(doc.fileKind) + textOf(doc.secondKind);
}

/// A patch whose sections have the given numbers of points, point (n, m) at (m, n, 0).
inline Patch patchOf(const std::vector<int>& pointCounts) {
    Patch patch;
    double y = 0;
    for (const int count : pointCounts) {
        PointList section;
        for (int m = 0; m < count; ++m) {
            section.push_back({static_cast<double>(m), y, 0.0});
        }
        patch.push_back(section);
        y += 1;
    }
    return patch;
}

/// The x coordinates of a section, or the coordinate named.
inline std::vector<double> coordinates(const PointList& points, double zVec<double>::*axis = &zVec<double>::x) {
    std::vector<double> values;
    for (const zVec<double>& p : points) {
        values.push_back(p.*axis);
    }
    return values;
}

/// Per section its number of points.
inline std::vector<std::int32_t> countsOf(const Patch& patch) {
    std::vector<std::int32_t> counts;
    for (const PointList& section : patch) {
        counts.push_back(countOf(section));
    }
    return counts;
}

} // namespace velmora::test
