#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QComboBox>
#include <QDragEnterEvent>
#include <QLabel>
#include <QMimeData>
#include <QSettings>
#include <QUrl>

#include "Desk.h"
#include "WindowDriver.h"
#include "qt_text.h"

namespace velmora::test {
namespace {

namespace fs = std::filesystem;

/// Captures the point 1 of section 1 of patch 1 and moves it, so that there is something to save.
void changeModel(WindowDriver& person) {
    person.ask([] {
        VelmoraDoc& document = WindowDriver::frame().document();
        document.patches[0][0][0].x += 1.0;
        document.documentModified = true;
    });
}

void closeByEscape(WindowDriver& person) {
    person.click(person.onView({400, 300}));
    person.key("Escape");
}

TEST(Frame, EscapeLeavesAnUnchangedModelWithoutAQuestion) {
    const Desk desk;
    const int status = runProgram({desk.model.string()}, [](WindowDriver& person) {
        person.waitForFrame();
        closeByEscape(person);
        EXPECT_TRUE(person.waitForEnd());
    });
    EXPECT_EQ(status, 0);
}

TEST(Frame, EscapeAsksForAChangedModelAndNoLeavesTheFileAsItWas) {
    const Desk desk;
    const std::string before = fileText(desk.model);
    const int status = runProgram({desk.model.string()}, [](WindowDriver& person) {
        person.waitForFrame();
        changeModel(person);
        closeByEscape(person);
        person.waitForBox(QStringLiteral("questionBox"));
        person.key("Escape");
        EXPECT_TRUE(person.waitFor([] { return QApplication::activeModalWidget() == nullptr; })) << "stay";
        EXPECT_TRUE(WindowDriver::frame().isVisible());
        closeByEscape(person);
        person.waitForBox(QStringLiteral("questionBox"));
        person.key("n", "Alt_L");
        EXPECT_TRUE(person.waitForEnd());
    });
    EXPECT_EQ(status, 0);
    EXPECT_EQ(fileText(desk.model), before);
}

TEST(Frame, ClosingTheWindowAsksToo) {
    const Desk desk;
    const std::string before = fileText(desk.model);
    runProgram({desk.model.string()}, [](WindowDriver& person) {
        person.waitForFrame();
        changeModel(person);
        person.key("F4", "Alt_L");
        person.waitForBox(QStringLiteral("questionBox"));
        person.key("y", "Alt_L");
        EXPECT_TRUE(person.waitForEnd());
    });
    EXPECT_NE(fileText(desk.model), before);
}

TEST(Frame, StaysOpenWhenTheModelCannotBeSaved) {
    const Desk desk;
    runProgram({desk.model.string()}, [&](WindowDriver& person) {
        person.waitForFrame();
        changeModel(person);
        fs::remove_all(desk.folder.path());
        person.choose({"File", "Exit"});
        person.waitForBox(QStringLiteral("questionBox"));
        person.key("Return");
        person.waitForBox(QStringLiteral("messageBox"));
        person.key("Return");
        ASSERT_TRUE(person.waitForNoBox());
        EXPECT_TRUE(person.ask([] { return WindowDriver::frame().isVisible(); }));
        EXPECT_TRUE(person.ask([] { return WindowDriver::frame().document().documentModified; }));
    });
}

TEST(Frame, AboutShowsTheMachinesState) {
    runProgram({}, [](WindowDriver& person) {
        person.waitForFrame();
        person.choose({"Help", "About Velmora..."});
        person.waitForBox(QStringLiteral("aboutBox"));
        person.screenshot(QStringLiteral("about"));
        const std::string text = person.ask([] {
            const QWidget* box = QApplication::activeModalWidget();
            return plainBytes(box->findChild<QLabel*>(QStringLiteral("aboutText"))->text());
        });
        EXPECT_THAT(text, ::testing::MatchesRegex("Velmora 0\\.1\\.0\n\nPhysical memory: [0-9]+ MB\nAvailable memory: "
                                                  "[0-9]+ MB\nFree disk space: [0-9]+ MB"));
        person.key("Return");
        EXPECT_TRUE(person.waitForNoBox());
    });
}

TEST(Frame, KeepsTheRecentFilesAndTheSettingsOnly) {
    const Desk wing;
    const Desk sphere("even_sphere.apt");
    const QString wingPath = qtPath(wing.model);
    const QString spherePath = qtPath(sphere.model);
    runProgram({wing.model.string()}, [](WindowDriver& person) { person.waitForFrame(); });
    runProgram(
        {sphere.model.string()},
        [&](WindowDriver& person) {
            person.waitForFrame();
            person.openMenu(QStringLiteral("File"));
            person.screenshot(QStringLiteral("file-menu"));
            person.clickEntry(QStringLiteral("2 ") + wingPath);
            EXPECT_TRUE(person.waitFor([] { return WindowDriver::frame().document().patches.size() == 3; }));
            EXPECT_EQ(person.title(), QStringLiteral("m100_wingbody.apt[*] - Velmora"));
            person.openMenu(QStringLiteral("File"));
            person.clickEntry(QStringLiteral("2 ") + spherePath);
            EXPECT_EQ(person.title(), QStringLiteral("even_sphere.apt[*] - Velmora"));
            const QSettings kept;
            EXPECT_EQ(person.ask([&] { return kept.value(QStringLiteral("Settings/AppName")).toString(); }),
                      QStringLiteral("Kelt"));
            EXPECT_TRUE(kept.fileName().contains(QStringLiteral("/Dovra/"))) << plainBytes(kept.fileName());
            EXPECT_EQ(kept.value(QStringLiteral("Recent File List/File1")).toString(), spherePath);
            EXPECT_EQ(kept.value(QStringLiteral("Recent File List/File2")).toString(), wingPath);
            for (const QString& key : kept.allKeys()) {
                EXPECT_TRUE(key == QStringLiteral("Settings/AppName") ||
                            key.startsWith(QStringLiteral("Recent File List/")) ||
                            key == QStringLiteral("Window/Geometry") || key == QStringLiteral("Window/Bars"))
                    << plainBytes(key);
            }
        },
        Settings::Kept);
}

TEST(Frame, OpeningARecentFileAsksToSaveTheChangedModel) {
    const Desk wing;
    const Desk sphere("even_sphere.apt");
    const std::string before = fileText(sphere.model);
    runProgram({wing.model.string()}, [](WindowDriver& person) { person.waitForFrame(); });
    runProgram(
        {sphere.model.string()},
        [&](WindowDriver& person) {
            person.waitForFrame();
            changeModel(person);
            person.openMenu(QStringLiteral("File"));
            person.clickEntry(QStringLiteral("2 ") + qtPath(wing.model));
            person.waitForBox(QStringLiteral("questionBox"));
            person.key("Return");
            ASSERT_TRUE(person.waitForNoBox());
            EXPECT_EQ(person.title(), QStringLiteral("m100_wingbody.apt[*] - Velmora"));
        },
        Settings::Kept);
    EXPECT_NE(fileText(sphere.model), before);
}

/// Drops files on the frame; whether it takes them.
bool drop(const QList<QUrl>& urls) {
    QMimeData data;
    data.setUrls(urls);
    QDragEnterEvent enter(QPoint(400, 300), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QApplication::sendEvent(&WindowDriver::frame(), &enter);
    if (enter.isAccepted()) {
        QDropEvent event(QPointF(400, 300), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&WindowDriver::frame(), &event);
    }
    return enter.isAccepted();
}

bool waitForPatches(WindowDriver& person, std::size_t count) {
    return person.waitFor([count] { return WindowDriver::frame().document().patches.size() == count; });
}

TEST(Frame, AFileDroppedOnItIsOpenedAndSeveralMakeOneModel) {
    const Desk wing;
    const Desk sphere("even_sphere.apt");
    const FlatDesk flat;
    const auto url = [](const fs::path& path) { return QUrl::fromLocalFile(qtPath(path)); };
    runProgram({sphere.model.string()}, [&](WindowDriver& person) {
        person.waitForFrame();
        const std::size_t ofSphere = person.ask([] { return WindowDriver::frame().document().patches.size(); });
        EXPECT_FALSE(person.ask([] { return drop({QUrl(QStringLiteral("https://example.org/a.apt"))}); }));
        EXPECT_TRUE(person.ask([&] { return drop({url(wing.model)}); }));
        EXPECT_TRUE(waitForPatches(person, 3));
        EXPECT_EQ(person.title(), QStringLiteral("m100_wingbody.apt[*] - Velmora"));
        writeFileText(flat.folder / "lines.skl", "1\n2\n3\n0 0 0\n1 0 0\n2 0 0\n2\n0 1 0\n1 1 0\n");
        // Each file once, and of the first one's type alone.
        EXPECT_TRUE(person.ask([&] {
            return drop({url(sphere.model), url(flat.model), url(sphere.model), url(flat.folder / "lines.skl")});
        }));
        EXPECT_TRUE(waitForPatches(person, ofSphere + 3));
        EXPECT_EQ(person.title(), QStringLiteral("flat.apt[*] - Velmora")) << "as Open with several files names it";
    });
}

TEST(Frame, FilesDroppedOnAChangedModelAskToSaveIt) {
    const Desk wing;
    const FlatDesk flat;
    const std::string before = fileText(flat.model);
    runProgram({flat.model.string()}, [&](WindowDriver& person) {
        person.waitForFrame();
        changeModel(person);
        person.ask([&] { drop({QUrl::fromLocalFile(qtPath(wing.model))}); });
        person.waitForBox(QStringLiteral("questionBox"));
        EXPECT_EQ(person.boxText(), QStringLiteral("Save data before exit"));
        person.key("n", "Alt_L");
        ASSERT_TRUE(person.waitForNoBox());
        EXPECT_TRUE(waitForPatches(person, 3));
        EXPECT_EQ(person.title(), QStringLiteral("m100_wingbody.apt[*] - Velmora"));
    });
    EXPECT_EQ(fileText(flat.model), before);
}

QStringList offeredTypes(WindowDriver& person) {
    return person.ask([] {
        const auto* types = QApplication::activeModalWidget()->findChild<QComboBox*>(QStringLiteral("fileTypeCombo"));
        QStringList words;
        for (int i = 0; i < types->count(); ++i) {
            words.append(types->itemText(i));
        }
        return words;
    });
}

TEST(Frame, OpenOffersTheTypesAndOpensWhatIsChosen) {
    const Desk desk("even_sphere.apt");
    runProgram({}, [&](WindowDriver& person) {
        person.waitForFrame();
        person.key("o", "Control_L");
        person.waitForBox(QStringLiteral("fileChooser"));
        person.screenshot(QStringLiteral("open-chooser"));
        EXPECT_EQ(person.ask([] { return QApplication::activeModalWidget()->windowTitle(); }), QStringLiteral("Open"));
        const QStringList types = offeredTypes(person);
        EXPECT_EQ(types.value(0), QStringLiteral("Available Files (*.apt;*.skl;*.dat;*.wrl;*.stl;*.apm;*.fld;*.grd)"));
        EXPECT_EQ(types.value(1), QStringLiteral("Geometry Files (*.apt)"));
        EXPECT_EQ(types.value(2), QStringLiteral("Sections Files (*.skl)"));
        EXPECT_EQ(types.size(), 9);
        person.type(desk.model.string());
        person.key("Return");
        ASSERT_TRUE(person.waitForNoBox());
        EXPECT_EQ(person.title(), QStringLiteral("even_sphere.apt[*] - Velmora"));
    });
}

TEST(Frame, SaveAsAddsTheSuffixOfTheChosenType) {
    const Desk desk("even_sphere.apt");
    runProgram({desk.model.string()}, [&](WindowDriver& person) {
        person.waitForFrame();
        person.choose({"File", "Save As..."});
        person.waitForBox(QStringLiteral("fileChooser"));
        EXPECT_EQ(offeredTypes(person).value(0), QStringLiteral("Velmora Geometry Files (*.apt)"));
        person.clickWidget(QStringLiteral("fileTypeCombo"));
        person.key("Down");
        person.key("Return");
        person.settle();
        person.clickWidget(QStringLiteral("fileNameEdit"));
        person.key("a", "Control_L");
        person.type("copy");
        person.screenshot(QStringLiteral("save-chooser"));
        person.key("Return");
        ASSERT_TRUE(person.waitForNoBox());
        EXPECT_TRUE(fs::exists(desk.folder / "copy.skl"));

        person.choose({"File", "Save As..."});
        person.waitForBox(QStringLiteral("fileChooser"));
        EXPECT_EQ(person.ask([] {
            return QApplication::activeModalWidget()
                ->findChild<QComboBox*>(QStringLiteral("fileTypeCombo"))
                ->currentText();
        }),
                  QStringLiteral("Velmora Geometry Files (*.skl)"))
            << "the type used last";
        person.key("Escape");
        EXPECT_TRUE(person.waitForNoBox());
    });
}

TEST(Frame, AModelThatHasNoSurfaceIsSaidSoOnceAndDrawnAsLines) {
    const TemporaryFolder folder;
    writeFileText(folder / "lines.skl", "1\n2\n3\n0 0 0\n1 0 0\n2 0 0\n2\n0 1 0\n1 1 0\n");
    runProgram({(folder / "lines.skl").string()}, [](WindowDriver& person) {
        person.waitForBox(QStringLiteral("messageBox"));
        EXPECT_EQ(person.boxText(), QStringLiteral("surface not allowed"));
        person.key("Return");
        ASSERT_TRUE(person.waitForNoBox());
        person.settle();
        EXPECT_FALSE(person.ask([] { return WindowDriver::frame().document().surfaceMode; }));
        EXPECT_EQ(person.ask([] { return WindowDriver::frame().view().list().number; }), 1);
    });
}

/// Runs where the toolkit can make no OpenGL context.
TEST(NoGraphics, TheFrameWorksAndSaysWhatIsMissing) {
    const Desk desk;
    const int status = runProgram({desk.model.string()}, [](WindowDriver& person) {
        person.waitForFrame();
        EXPECT_EQ(person.status(), QStringLiteral("wglCreateContext failed"));
        person.screenshot(QStringLiteral("no-graphics"));
        person.choose({"Edit", "Lines", "Input", "Section..."});
        person.waitForBox(QStringLiteral("CInputSection"));
        person.key("Return");
        ASSERT_TRUE(person.waitForNoBox());
        EXPECT_TRUE(person.ask([] { return WindowDriver::frame().document().capture->sectionCaptured; }));
        person.choose({"File", "Exit"});
        EXPECT_TRUE(person.waitForEnd());
    });
    EXPECT_EQ(status, 0);
}

} // namespace
} // namespace velmora::test
