#include "foreign_files.h"

#include "document_fixture.h"
#include "exchange_files.h"
#include "file_texts.h"
#include "messages.h"

namespace velmora::test {

namespace {

using testing::Contains;
using testing::Not;

bool reads(std::string_view extension) {
    const std::vector<std::string_view> known = importExtensions();
    return std::find(known.begin(), known.end(), extension) != known.end();
}

const char* const triangle = "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n";

TEST_F(DocumentTest, AnImportThatIsStoppedLeavesTheModelAsItWas) {
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

TEST_F(DocumentTest, AFileThatOpenTakesIsNotForeign) {
    for (const char* const name : {"a.obj", "a.PLY", "a.glb", "a.p3d"}) {
        EXPECT_TRUE(isForeignFile(name)) << name;
    }
    for (const char* const name : {"a.apt", "a.dat", "a.wrl", "a.STL", "a.txt", "a"}) {
        EXPECT_FALSE(isForeignFile(name)) << name;
    }
}

TEST_F(DocumentTest, AnStlFileIsForeignWhenItIsOneOfBytes) {
    std::string bytes(84, '\0');
    bytes.replace(0, 5, "solid");
    writeFileText(folder / "bytes.stl", bytes);
    EXPECT_TRUE(isForeignFile(folder / "bytes.stl"));
    writeFileText(folder / "text.stl", "solid a\n" + std::string(100, ' ') + "endsolid a\n");
    EXPECT_FALSE(isForeignFile(folder / "text.stl"));
    writeFileText(folder / "short.stl", std::string(20, '\0'));
    EXPECT_FALSE(isForeignFile(folder / "short.stl"));
}

TEST_F(DocumentTest, AForeignFileComesByItsPath) {
    writeFileText(folder / "a.obj", triangle);
    ui.dialogs.push_back({});
    importForeignFile(doc, folder / "a.obj");
    EXPECT_EQ(doc.feRegion.blocks.size(), 1U);
    EXPECT_TRUE(doc.documentModified);
    EXPECT_EQ(doc.modelFile.documentTitle, "Untitled.dat");
}

TEST_F(DocumentTest, TheUnitOfAFileStandsInTheStatusLine) {
    if (!reads("step")) {
        GTEST_SKIP() << "built without the library for STEP";
    }
    ui.dialogs.push_back({});
    importForeignFile(doc, std::filesystem::path(VELMORA_TEST_DATA) / "box.step");
    EXPECT_THAT(heard(), Contains(testing::StartsWith("status: Unit of length: millimetre. ")));
}

TEST_F(DocumentTest, ATypeOfALibraryThatIsNotThereIsRefusedAsSuch) {
    for (const std::string_view extension : absentExtensions()) {
        EXPECT_FALSE(reads(extension) && extension != "wrl");
        const std::string name = "a." + std::string(extension);
        ui.files.push_back({folder / name});
        run("file.import");
        EXPECT_THAT(heard(), Contains("message: Files of this type cannot be imported: " + std::string(extension) +
                                      " (this build has no library for it)"));
    }
}

} // namespace

} // namespace velmora::test
