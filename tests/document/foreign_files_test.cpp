#include "foreign_files.h"

#include "CommandTest.h"
#include "exchange_files.h"
#include "file_texts.h"
#include "messages.h"

namespace velmora::test {

namespace {

using testing::Contains;
using testing::Not;

const char* const triangle = "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n";

TEST_F(CommandTest, AnImportThatIsStoppedLeavesTheModelAsItWas) {
    hold({flatPatch(2, 3)});
    const PatchList before = doc.patches;
    writeFileText(folder / "a.obj", triangle);
    ui.stops = true;
    ui.answers = {true};
    ui.files.push_back({folder / "a.obj"});
    ui.dialogs.push_back({});
    run("file.import");
    EXPECT_TRUE(doc.patches == before);
    EXPECT_TRUE(doc.feRegion.blocks.empty());
    EXPECT_EQ(doc.structureKind, StructureKind::Structured);
    EXPECT_THAT(heard(), Contains(std::string("status: ") + message::workCancelled));
    EXPECT_THAT(heard(), Not(Contains("message: Open procedure is canceled")));
    EXPECT_EQ(ui.busyDepth, 0);
}

TEST_F(CommandTest, AFileThatOpenTakesIsNotForeign) {
    for (const char* const name : {"a.obj", "a.PLY", "a.glb", "a.p3d"}) {
        EXPECT_TRUE(isForeignFile(name)) << name;
    }
    for (const char* const name : {"a.apt", "a.dat", "a.wrl", "a.STL", "a.txt", "a"}) {
        EXPECT_FALSE(isForeignFile(name)) << name;
    }
}

TEST_F(CommandTest, AForeignFileComesByItsPath) {
    writeFileText(folder / "a.obj", triangle);
    ui.dialogs.push_back({});
    importForeignFile(doc, folder / "a.obj");
    EXPECT_EQ(doc.feRegion.blocks.size(), 1U);
    EXPECT_TRUE(doc.documentModified);
    EXPECT_EQ(doc.modelFile.documentTitle, "Untitled.dat");
}

} // namespace

} // namespace velmora::test
