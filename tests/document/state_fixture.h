#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "DialogValues.h"
#include "DocumentState.h"
#include "DocumentView.h"
#include "RecordingUi.h"
#include "arranged_capture.h"
#include "path_names.h"
#include "small_models.h"

namespace velmora {
class VelmoraDoc;
struct Pick;
} // namespace velmora

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

/// A document after the program's start, with one view and a folder for its files. Its state is read and arranged as
/// `doc`, its commands are run by their ids.
class StateTest : public testing::Test {
public:
    /// Runs a command, which must be on.
    void run(const std::string& id);
    /// The same with `fields` set in the dialog that it shows, then OK.
    void runWith(const std::string& id, const std::vector<std::pair<std::string, std::string>>& fields);
    /// Runs a command whether it is on or not.
    void call(const std::string& id);

    void open(const std::filesystem::path& path);

    /// A file of the folder.
    std::filesystem::path file(const std::string& name, const std::string& text) {
        writeFileText(folder / name, text);
        return folder / name;
    }

protected:
    StateTest();
    ~StateTest() override;

    // What is no command.

    void openAll(const std::vector<std::filesystem::path>& paths);
    std::filesystem::path saveTarget();
    void showStatus(const std::string& text);
    void savePointUndo();
    void savePatchUndo();
    void prepareDragCorrection();
    void placeDraggedPoint(const zVec<double>& position);
    void take(const Pick& pick);
    const std::string& extentStatus() const;
    bool saveModified();
    void bendCapturedCurve(const zVec<double>& target, int plane);
    void updateBounds();
    void redraw();
    void leaveRegimes();
    /// The left button comes up in a view.
    void releaseButton();
    void attach(DocumentView& further);
    void detach(DocumentView& further);

    /// Puts a model in place as if it had been opened as wing.apt or wing.skl from the folder, without any trace.
    void hold(PatchList model);

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
    const std::unique_ptr<VelmoraDoc> document_;
    DocumentState& doc;
};

/// The kinds as they are printed, one behind the other.
inline std::string kindsOf(const DocumentState& doc) {
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
