#include <algorithm>
#include <random>
#include <set>

#include "VelmoraDoc.h"
#include "command_rig.h"
#include "command_table.h"
#include "reliability.h"
#include "sound_model.h"
#include "zone_fixture.h"

namespace velmora::test {

namespace {

/// Runs commands in any order on a small model, as far as they are on, with OK and Yes to all.
class CommandWalk : public ZoneTest {
protected:
    int pick(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random_); }

    void holdAnything() {
        leaveRegimes();
        doc.feRegion.blocks.clear();
        doc.lineBuffer = patchOf({3})[0];
        doc.lineBufferFull = true;
        switch (pick(4)) {
        case 0:
            holdZones({3, 3, 4});
            break;
        case 1:
            hold({patchOf({3, 5, 2}), patchOf({1}), patchOf({4, 4})});
            break;
        default:
            hold({flatPatch(4, 5), flatPatch(3, 3), flatPatch(2, 4)});
        }
    }

    /// Captures a curve, a point or a part that is there, as a click in the view would.
    void captureAnything() {
        if (doc.partCount() == 0) {
            return;
        }
        const std::int32_t part = pick(doc.partCount());
        if (doc.structureKind == StructureKind::Unstructured) {
            addOnce(part);
            return;
        }
        const Patch& patch = doc.patches[static_cast<std::size_t>(part)];
        const int section = patch.empty() ? -1 : pick(countOf(patch));
        const int points = section < 0 ? 0 : countOf(patch[static_cast<std::size_t>(section)]);
        switch (points == 0 ? 3 : pick(4)) {
        case 0:
            leaveRegimes();
            captureSection(part, section);
            break;
        case 1:
            leaveRegimes();
            doc.fileKind == FileKind::Apt ? captureLine(part, pick(points)) : captureSection(part, section);
            break;
        case 2:
            if (doc.pointAt(doc.capture->capturedPatch, doc.capture->capturedSection, 0) != nullptr &&
                doc.capture->sectionCaptured) {
                const int count = countOf(*doc.sectionAt(doc.capture->capturedPatch, doc.capture->capturedSection));
                capturePoint(doc.capture->capturedPatch, doc.capture->capturedSection, pick(count));
            }
            break;
        default:
            addOnce(part);
        }
    }

    void runAnything() {
        const auto commands = commandTable();
        const Command& command = commands[static_cast<std::size_t>(pick(static_cast<int>(commands.size())))];
        const std::string id = command.id;
        if (!command.run || isCommandOff(doc, id) || id.starts_with("file.")) {
            return;
        }
        ui.answers = {true, true};
        ui.dialogs.assign(2, {});
        ui.onDialog = [this](DialogForm& form) {
            for (const DialogField& field : form.fields) {
                if (field.kind == FieldKind::Radio && pick(2) == 0) {
                    setField(form, field.key, std::to_string(1 + pick(static_cast<int>(field.choices.size()))));
                }
            }
            setField(form, "duplicateCount", "2");
        };
        const PatchList patches = doc.patches;
        const std::string zones = Picture::ofZones(doc.feRegion);
        const bool structured = doc.structureKind == StructureKind::Structured;
        ran_ = id;
        call(id);
        const bool changed = doc.patches != patches || Picture::ofZones(doc.feRegion) != zones;
        if (!changed || keepsNoSnapshot.count(id) > 0) {
            return;
        }
        // What Undo would bring back is the model before the command, to the bit.
        if (doc.pointUndoIsNewer) {
            EXPECT_TRUE(structured ? doc.pointUndoPatches.copy() == patches
                                   : Picture::ofZones(doc.pointUndoRegion) == zones)
                << id;
        } else {
            EXPECT_TRUE(structured ? doc.undoPatches.copy() == patches : Picture::ofZones(doc.undoRegion) == zones)
                << id;
            if (doc.patchUndoReady && pick(3) == 0) {
                call("patch.undo");
                EXPECT_EQ(doc.patches, patches) << id;
                EXPECT_EQ(Picture::ofZones(doc.feRegion), zones) << id;
            }
        }
    }

    /// The model is saved elsewhere and read again: it is the same.
    void expectToComeBackFromAFile() {
        if (doc.structureKind != StructureKind::Structured || doc.partCount() == 0) {
            return;
        }
        const bool grid = doc.fileKind == FileKind::Apt;
        const std::filesystem::path path = folder / (grid ? "walk.apt" : "walk.skl");
        std::filesystem::remove(path);
        const PatchList model = doc.patches;
        if (std::any_of(model.begin(), model.end(), [](const Patch& patch) { return patch.empty(); })) {
            return; // a patch without a section has no place in a file
        }
        ui.files = {{path}};
        ui.answers = {true, true};
        call("file.saveAs");
        RecordingUi other;
        VelmoraDoc reader(other, folder.path());
        reader.onNewDocument();
        reader.onOpenDocument(path);
        EXPECT_EQ(reader.patches, model) << ran_;
    }

    void expectSoundness(int step) {
        const std::string wrong = unsoundness(doc);
        ASSERT_EQ(wrong, "") << "step " << step << ", after " << ran_;
    }

private:
    void addOnce(std::int32_t part) {
        if (!doc.inBlock(part)) {
            addToBlock(part);
        }
        doc.capture.holdBlock();
    }

    /// Chosen again they take themselves back, or they are Undo.
    const std::set<std::string> keepsNoSnapshot = {"model.convertation", "model.lastFirstSwitch",
                                                   "point.reverseSection", "patch.undo", "point.undo"};
    std::string ran_ = "nothing";
    std::mt19937 random_{7};
};

} // namespace

TEST_F(CommandWalk, LeavesASoundModelWhoseUndoIsTheModelBefore) {
    holdAnything();
    for (int step = 0; step < times(6000, 100000); ++step) {
        if (step % 40 == 0 || doc.structureKind == StructureKind::None || pointTotal(doc.patches) > 2000) {
            holdAnything();
        }
        captureAnything();
        runAnything();
        ASSERT_NO_FATAL_FAILURE(expectSoundness(step));
        if (step % 100 == 0) {
            expectToComeBackFromAFile();
        }
    }
}

} // namespace velmora::test
