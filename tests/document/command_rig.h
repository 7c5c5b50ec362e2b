#pragma once

#include <array>
#include <optional>
#include <sstream>

#include "arranged_capture.h"
#include "command_table.h"
#include "small_zones.h"
#include "zone_fixture.h"

namespace velmora::test {

using Fields = std::vector<std::pair<std::string, std::string>>;

/// A patch, section and point from 1, as a user counts them; of a zone the last is the node.
struct Place {
    std::int32_t patch = 0;
    std::int32_t section = 0;
    std::int32_t point = 0;
};

/// One command with what a person answers. OK is pressed in its dialogs and Yes is said, unless it is called off.
struct Step {
    std::string id;
    Fields fields = {};
    std::vector<std::string> files = {};
    std::optional<Place> click = std::nullopt; ///< the click that the command waits for
};

using Steps = std::vector<Step>;

inline Steps operator+(Steps first, const Steps& then) {
    first.insert(first.end(), then.begin(), then.end());
    return first;
}

inline Steps section(int patch, int number) {
    return {
        {.id = "line.inputSection", .fields = {{"patch", std::to_string(patch)}, {"section", std::to_string(number)}}}};
}
inline Steps line(int patch, int number) {
    return {{.id = "line.inputLine", .fields = {{"patch", std::to_string(patch)}, {"line", std::to_string(number)}}}};
}
inline Steps addPatch(int number) {
    return {{.id = "patch.inputAndAdd", .fields = {{"number", std::to_string(number)}}}};
}
inline Steps point(int patch, int section, int number) {
    return {{.id = "point.capture", .click = Place{patch, section, number}}};
}

/// All that is seen of a model, and of what stands beside it, as text: two pictures are alike when their texts are.
class Picture {
public:
    /// Patches and zones alone.
    static std::string ofModel(const DocumentState& doc) {
        Picture picture;
        picture.add("patches", doc.patches);
        picture.add("zones", doc.feRegion);
        return picture.text_.str();
    }

    static std::string ofAll(const DocumentState& doc) {
        Picture picture;
        picture.text_ << ofModel(doc);
        picture.addSelection(doc);
        picture.addPointsBeside(doc);
        return picture.text_.str();
    }

    static std::string ofPatches(const PatchList& patches) {
        Picture picture;
        picture.add("patches", patches);
        return picture.text_.str();
    }

    static std::string ofZones(const zRegion_fe& zones) {
        Picture picture;
        picture.add("zones", zones);
        return picture.text_.str();
    }

    static std::string ofZones(const KeptRegion& kept) {
        zRegion_fe zones;
        zones.blocks = kept.blocks.copy();
        return ofZones(zones);
    }

private:
    Picture() { text_.precision(17); }

    void add(const zVec<double>& p) { text_ << '(' << p.x << ' ' << p.y << ' ' << p.z << ')'; }
    void add(const char* name, const PointList& points) {
        text_ << '\n' << name << ' ';
        for (const zVec<double>& p : points) {
            add(p);
        }
    }
    void add(const char* name, const PatchList& patches) {
        text_ << '\n' << name << ' ' << patches.size();
        for (const Patch& patch : patches) {
            text_ << "\n patch " << patch.size();
            for (const PointList& points : patch) {
                add("  section", points);
            }
        }
    }
    void add(const char* name, const zRegion_fe& zones) {
        text_ << '\n' << name << ' ' << zones.blocks.size();
        for (std::size_t k = 0; k < zones.blocks.size(); ++k) {
            text_ << "\n zone ";
            zVec<double> at;
            for (int n = 0; zones.getNode(static_cast<int>(k), n, at.x, at.y, at.z) == 0; ++n) {
                add(at);
            }
            for (int e = 0; e < 4 * zones.blocks[k]->elementCount; ++e) {
                text_ << ' ' << zones.blocks[k]->connectivity[static_cast<std::size_t>(e)];
            }
        }
    }
    void addSelection(const DocumentState& doc) {
        text_ << "\nzBlock";
        for (std::int32_t i = 0; i < doc.blockCount; ++i) {
            text_ << ' ' << doc.blockList[static_cast<std::size_t>(i)];
        }
        if (doc.capture->sectionCaptured) {
            text_ << "\nheld section " << doc.capture->capturedPatch << ' ' << doc.capture->capturedSection;
        }
        if (doc.capture->lineCaptured) {
            text_ << "\nheld line " << doc.capture->capturedPatch << ' ' << doc.capture->capturedLine;
        }
        if (doc.capture->pointPicked) {
            text_ << "\nheld point ";
            add(doc.capture->capturedPointPos);
        }
        text_ << "\nswitches " << doc.showBlockOnly << doc.showFirstPoints << doc.showDoublePoints << doc.showBuffer
              << doc.showZBlockMarkers;
    }
    void addPointsBeside(const DocumentState& doc) {
        if (doc.showBuffer) {
            add("buffer", doc.lineBuffer);
            add("clipboard", doc.pointClipboardFull ? PointList{doc.pointClipboard} : PointList());
        }
        add("joint", doc.interLine);
        add("markers", doc.markersOpen ? doc.markers : PointList());
        add("initial markers", doc.sftPoints);
        add("shifted markers", doc.sftTargets);
        text_ << "\nsecond " << textOf(doc.secondKind);
        add("second zones", doc.referenceRegion);
    }

    std::ostringstream text_;
};

/// A view that keeps the picture that it was last told to draw.
class WatchingView : public DocumentView {
public:
    explicit WatchingView(const DocumentState& document) : doc_(document) {}

    std::string drawn;

    void onGeometryChanged() override { drawn = Picture::ofAll(doc_); }
    void onPictureChanged() override { drawn = Picture::ofAll(doc_); }
    void onHighlightChanged() override { drawn = Picture::ofAll(doc_); }
    void onBoundsChanged() override { drawn = Picture::ofAll(doc_); }
    void setMouseMode(MouseMode) override {}
    void forceMouseMode(MouseMode) override {}
    void resetMouseMode() override {}
    int principalPlane() const override { return 0; }

private:
    const DocumentState& doc_;
};

/// A document that is worked by its commands alone, as a person would.
class CommandRig : public ZoneTest {
protected:
    CommandRig() : watcher(doc) { attach(watcher); }

    /// Runs a command with its answers. It must be on.
    void run(const Step& step) {
        ASSERT_FALSE(isCommandOff(doc, step.id)) << step.id;
        ui.answers = {true, true};
        ui.dialogs = {step.fields};
        ui.files.clear();
        if (!step.files.empty()) {
            ui.files.push_back({});
            for (const std::string& name : step.files) {
                ui.files.back().push_back(folder / name);
            }
        }
        call(step.id);
        if (step.click) {
            clickOn(*step.click);
        }
    }

    /// Runs each of them.
    void runAll(const Steps& steps) {
        for (const Step& step : steps) {
            ASSERT_NO_FATAL_FAILURE(run(step));
        }
    }

    /// Runs a command that finds no answer: No, Cancel, no file.
    void callOff(const std::string& id) {
        ui.answers.clear();
        ui.dialogs.clear();
        ui.files.clear();
        const auto table = std::exchange(ui.onRegularInput, nullptr);
        call(id);
        ui.onRegularInput = table;
    }

    /// The left button goes down and up on what stands there: each armed regime takes what it waits for.
    void clickOn(const Place& place) {
        const std::int32_t patch = place.patch - 1;
        const std::int32_t section = place.section - 1;
        const std::int32_t number = place.point - 1;
        if (doc.capture->pointCaptureArmed || doc.capture->freePointArmed) {
            doc.capture.renumberPatch(patch);
            doc.capture.renumberPoint(section, number);
            const auto position = doc.positionAt(patch, section, number);
            ASSERT_TRUE(position.has_value());
            doc.capture.placePoint(*position);
            doc.capture.showPoint();
            doc.capture.describePoint(true);
        }
        if (doc.capture->patchCaptureArmed) {
            doc.capture.renumberPatch(patch);
        }
        if (doc.capture->patchRemoving) {
            arranged(doc).patchToRemove = patch;
        }
        if (doc.capture->sectionCaptureArmed) {
            doc.capture.renumberPatch(patch);
            doc.capture.renumberSection(section);
        }
        if (doc.capture->lineCaptureArmed) {
            doc.capture.renumberPatch(patch);
            doc.capture.renumberLine(number);
        }
        releaseButton();
    }

    /// Saves the model, so that the mark of a change is gone, and forgets what was shown so far.
    void settle() {
        call("file.save");
        redraw();
        forget();
    }

    /// The mark of a change, and both snapshots with their readiness.
    std::string undoState() const {
        return std::string("changed ") + (doc.documentModified ? "1" : "0") + " ready " +
               (doc.pointUndoReady ? "1" : "0") + (doc.patchUndoReady ? "1" : "0") +
               Picture::ofPatches(doc.pointUndoPatches.copy()) + Picture::ofPatches(doc.undoPatches.copy()) +
               Picture::ofZones(doc.pointUndoRegion) + Picture::ofZones(doc.undoRegion);
    }

    /// A flat grid with one point out of its plane, a second one 0.05 behind it, a third one above it and a wall of two
    /// lines that runs down through the first.
    void holdGrid() {
        Patch raised = flatPatch(5, 6);
        raised[3][4] = {4.3, 3.2, 0.4};
        Patch behind = flatPatch(5, 6);
        for (PointList& points : behind) {
            for (zVec<double>& p : points) {
                p.y += 4.05;
            }
        }
        const Patch wall = {{{1.25, 1.25, 1}, {2.75, 1.25, 1}}, {{1.25, 1.25, -1}, {2.75, 1.25, -1}}};
        hold({raised, behind, flatPatch(5, 6, 2), wall});
    }

    void holdLines() { hold({patchOf({3, 5, 2}), patchOf({4, 4})}); }

    /// A zone of two triangles, and two of one triangle above it.
    void holdTriangles() {
        holdZones({});
        const std::vector<zVec<double>> square = {{0, 0, 0}, {4, 0, 0}, {4, 4, 1}, {0, 4, 1}};
        doc.feRegion.blocks.push_back(triangleZone("square", square, {0, 1, 2, 0, 2, 3}));
        doc.feRegion.blocks.push_back(triangleZone("above", {{-9, -9, 3}, {9, -9, 3}, {-9, 9, 3}}, {0, 1, 2}));
        doc.feRegion.blocks.push_back(triangleZone("over", {{-9, -9, 5}, {9, -9, 5}, {-9, 9, 5}}, {0, 1, 2}));
        ui.files = {{folder / "wing.dat"}};
        call("file.saveAs");
        updateBounds();
        forget();
    }

    WatchingView watcher;
};

} // namespace velmora::test
