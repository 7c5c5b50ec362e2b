#include <random>

#include "command_table.h"
#include "zone_fixture.h"

namespace velmora::test {

namespace {

/// Runs commands in any order on a small model, as far as they are on, with OK and Yes to all.
class CommandWalk : public ZoneTest {
protected:
    int pick(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random_); }

    void holdAnything() {
        doc.leaveRegimes();
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
            doc.leaveRegimes();
            captureSection(part, section);
            break;
        case 1:
            doc.leaveRegimes();
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
        if (command.run == nullptr || isCommandOff(doc, id) || id.starts_with("file.")) {
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
        (doc.*command.run)();
    }

    void expectSoundness(int step) {
        ASSERT_GE(doc.blockCount, 0) << step;
        ASSERT_LE(doc.blockCount, blockCapacity) << step;
        if (doc.structureKind == StructureKind::None) {
            ASSERT_TRUE(doc.holdsNothing()) << step;
        }
        if (doc.structureKind == StructureKind::Structured && doc.fileKind == FileKind::Apt) {
            for (const Patch& patch : doc.patches) {
                for (const PointList& section : patch) {
                    ASSERT_EQ(section.size(), patch.front().size()) << step;
                }
            }
        }
    }

private:
    void addOnce(std::int32_t part) {
        if (!doc.inBlock(part)) {
            addToBlock(part);
        }
        doc.capture.holdBlock();
    }

    std::mt19937 random_{7};
};

} // namespace

TEST_F(CommandWalk, NeverLeavesTheModelOrCallsAGridWhatIsNone) {
    holdAnything();
    for (int step = 0; step < 20000; ++step) {
        if (step % 40 == 0 || doc.structureKind == StructureKind::None || pointTotal(doc.patches) > 2000) {
            holdAnything();
        }
        captureAnything();
        runAnything();
        ASSERT_NO_FATAL_FAILURE(expectSoundness(step));
    }
}

} // namespace velmora::test
