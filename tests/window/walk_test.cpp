#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QCheckBox>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QScreen>
#include <cmath>
#include <set>

#include "Desk.h"
#include "DialogValues.h"
#include "DocumentState.h"
#include "VelmoraDoc.h"
#include "WindowDriver.h"
#include "arranged_capture.h"
#include "qt_text.h"

// Every menu and every parameter dialog, one after the other, as a person meets them: what is shown is kept as
// pictures, and each dialog is worked by the keyboard alone.

namespace velmora::test {
namespace {

using Prepare = void (*)(VelmoraDoc&);

void nothing(VelmoraDoc&) {}

void holdBlock(VelmoraDoc& document, int patches) {
    for (int k = 0; k < patches; ++k) {
        document.blockList[static_cast<std::size_t>(k)] = k;
    }
    document.blockCount = patches;
    document.capture.holdBlock();
}

void holdPatch(VelmoraDoc& document) {
    holdBlock(document, 1);
}

void holdTwoPatches(VelmoraDoc& document) {
    holdBlock(document, 2);
}

void holdSection(VelmoraDoc& document) {
    test::holdSection(document, 0, 1);
}

void holdPoint(VelmoraDoc& document) {
    test::holdPoint(document, 0, 1, 1);
}

void holdPointOfSection(VelmoraDoc& document) {
    holdSection(document);
    holdPoint(document);
}

/// A line, and a point off it that it shall go through.
void holdLineAndFreePoint(VelmoraDoc& document) {
    test::holdLine(document, 0, 1);
    document.CaptureFreePoint();
    document.takePick({Pick::Target::Point, true, 0, 1, 2, 0, *document.pointAt(0, 1, 1)});
    document.moveRegimeAtRelease();
}

void holdTriangles(VelmoraDoc& document) {
    findCommand("convert.toUnstructured")->run(document);
}

void holdLinesOfTwoLengths(VelmoraDoc& document) {
    document.patches[0][1].pop_back();
    document.retitle();
    document.surfaceMode = false; // lines have no surface picture, and a box says so
}

/// The lines of the patch in the zBlock run along y, through a wall at y = 0.5.
void holdPatchThroughWall(VelmoraDoc& document) {
    document.patches.resize(2);
    document.patches[1] = {{{-1, 0.5, -1}, {4, 0.5, -1}}, {{-1, 0.5, 1}, {4, 0.5, 1}}};
    holdPatch(document);
}

/// How a person opens one dialog and what it is good for. The model is that of FlatDesk.
struct DialogRow {
    const char* name;    ///< class name
    const char* command; ///< its id, an entry of the menu that is opened
    QStringList menu;    ///< menu and submenus of the menu bar; empty: the context menu of the regime
    Prepare prepare;     ///< what is captured before
    const char* ticked;  ///< a check box to tick first; may be empty
    const char* field;   ///< the number to type, or with `wrong` empty the radio group or check box to change
    std::string wrong;   ///< what the field refuses; empty for a field that is not typed
    std::string right;   ///< what it takes, or the key that changes it
    bool (*done)(const DocumentState& document);
};

double x(const DocumentState& document, std::size_t n, std::size_t m) {
    return document.patches.at(0).at(n).at(m).x;
}

const std::vector<DialogRow>& dialogRows() {
    using Doc = const DocumentState&;
    static const QStringList transform = {"Transformations"};
    static const QStringList convert = {"Transformations", "Convert to"};
    static const std::vector<DialogRow> rows = {
        {"Cduplicate",
         "point.duplicate",
         {},
         holdPoint,
         "",
         "duplicateCount",
         "0",
         "2",
         [](Doc d) { return d.patches[0][1].size() == 5; }},
        {"CRebreak",
         "line.rebreak",
         {},
         holdSection,
         "",
         "newCount",
         "1",
         "7",
         [](Doc d) { return d.patches[0][1].size() == 7; }},
        {"CRebreakPart",
         "point.rebreakPart",
         {},
         holdPointOfSection,
         "",
         "newCount",
         "1",
         "3",
         [](Doc d) { return d.patches[0][1].size() == 5; }},
        {"CInputPatch",
         "patch.inputAndAdd",
         {"Edit", "Patches"},
         nothing,
         "",
         "number",
         "one",
         "2",
         [](Doc d) { return d.blockCount == 1 && d.blockList[0] == 1; }},
        {"CInputSection",
         "line.inputSection",
         {"Edit", "Lines", "Input"},
         nothing,
         "",
         "section",
         "0",
         "2",
         [](Doc d) { return d.capture->sectionCaptured && d.capture->capturedSection == 1; }},
        {"CInputLine",
         "line.inputLine",
         {"Edit", "Lines", "Input"},
         nothing,
         "",
         "line",
         "1000001",
         "3",
         [](Doc d) { return d.capture->lineCaptured && d.capture->capturedLine == 2; }},
        {"CScaling", "model.scaling", transform, nothing, "", "scale", "two", "2",
         [](Doc d) { return x(d, 0, 1) == 2.0; }},
        {"CBlockMove", "model.move", transform, nothing, "", "deltaX", "1,5", "1.5",
         [](Doc d) { return x(d, 0, 0) == 1.5; }},
        {"CBlockRotate", "model.rotation", transform, nothing, "", "angle", "90 deg", "90",
         [](Doc d) { return std::abs(std::abs(d.patches[0][1][0].z) - 1.0) < 1e-9; }},
        {"CFlipBlock", "model.flip", transform, nothing, "", "xPlane", "-", "1",
         [](Doc d) { return x(d, 0, 0) == -1.0 && x(d, 0, 3) == 2.0; }},
        {"CSymmetricBlock", "model.symmetric", transform, nothing, "", "xPlane", "e", "-1",
         [](Doc d) { return d.patches.size() == 6; }},
        {"CLast_First_switch", "model.lastFirstSwitch", transform, nothing, "", "kind", "", "Down",
         [](Doc d) { return x(d, 0, 0) == 3.0; }},
        {"CSmooth", "model.smooth", transform, nothing, "", "regime", "", "Down",
         [](Doc d) { return d.patchUndoReady && d.dialogs->smooth.regime == 2; }},
        {"CCompare", "model.compare", transform, holdPatch, "", "target", "", "Down",
         [](Doc d) { return d.comparison() != nullptr && d.dialogs->compare.target == 2; }},
        {"CColours",
         "view.colourByValue",
         {"View"},
         nothing,
         "",
         "quantity",
         "",
         "Down",
         [](Doc d) { return d.dialogs->colours.quantity == 2; }},
        {"CPicture",
         "file.picture",
         {"File"},
         nothing,
         "",
         "width",
         "0",
         "320",
         [](Doc d) {
             std::filesystem::path file = d.modelFile.chosenPath;
             return QImage(QString::fromStdString(file.replace_extension("png").string())).width() == 320;
         }},
        {"CFeatures",
         "view.features",
         {"Options"},
         nothing,
         "",
         "showFirstPoints",
         "",
         "space",
         [](Doc d) { return d.showFirstPoints; }},
        {"CMerge", "block.merge", transform, holdTwoPatches, "", "aptControl", "", "space",
         [](Doc d) { return d.patches.size() == 2 && d.dialogs->merge.aptControl; }},
        {"CFirstPoint",
         "line.firstPoint",
         {},
         holdSection,
         "",
         "makeLoop",
         "",
         "space",
         [](Doc d) { return d.patchUndoReady && d.dialogs->firstPoint.makeLoop; }},
        {"CExtrapolation",
         "block.extrapolate",
         {"Edit", "Patches"},
         holdPatch,
         "",
         "coefficient",
         "-1",
         "1",
         [](Doc d) { return d.patches[0].size() == 4; }},
        {"CInterpolate",
         "line.interpolate",
         {},
         holdSection,
         "",
         "coefficient",
         "2",
         "0.5",
         [](Doc d) { return d.patches[0][1][0].y != 1.0; }},
        {"CPrescribe",
         "line.prescribe",
         {},
         holdSection,
         "useZ",
         "z",
         "up",
         "3",
         [](Doc d) { return d.patches[0][1][0].z == 3.0 && d.patches[0][1][3].z == 3.0; }},
        {"CBeforeAfter",
         "point.knifePart",
         {},
         holdPointOfSection,
         "",
         "choice",
         "",
         "Up",
         [](Doc d) { return d.partBefore && d.patches[0][1].size() == 3; }},
        {"CCorrectLine",
         "line.correct",
         {},
         holdLineAndFreePoint,
         "",
         "power",
         "0",
         "1",
         [](Doc d) { return d.dialogs->correctLine.power == 1.0 && x(d, 1, 1) == 2.0; }},
        {"dlgEditPoint",
         "point.edit",
         {"Edit", "Point"},
         holdPoint,
         "",
         "x",
         "1e",
         "7",
         [](Doc d) { return x(d, 1, 1) == 7.0; }},
        {"dlgViewing",
         "view.manual",
         {"View", "Projection"},
         nothing,
         "",
         "scale",
         "0",
         "2",
         [](Doc d) { return d.dialogs->viewing.scale == 2.0; }},
        {"CConvert_to_SKL", "convert.toSkl", convert, holdTriangles, "", "number", "100001", "3",
         [](Doc d) { return d.fileKind == FileKind::Skl && d.patches.size() == 1; }},
        {"CConvert_SKL_to_APT", "convert.toApt", convert, holdLinesOfTwoLengths, "", "pointCount", "1", "6",
         [](Doc d) { return d.fileKind == FileKind::Apt && d.patches[0][1].size() == 6; }},
        {"CUKnife", "convert.knife", convert, holdTriangles, "", "section", "mid", "6.5",
         [](Doc d) { return d.patchUndoReady && d.feRegion.blocks.back()->elementCount == 0; }},
        {"CIntersection", "model.intersection", transform, holdPatchThroughWall, "", "insidePoints", "1", "5",
         [](Doc d) { return d.patches[0].size() == 4 && d.patches[0][0].size() == 5; }},
        {"CRegularFind",
         "point.input",
         {"Edit", "Point"},
         holdPoint,
         "",
         "M",
         "last",
         "3",
         [](Doc d) { return d.capture->capturedPoint == 2; }},
    };
    return rows;
}

// ---- What every window keeps to -------------------------------------------------------------------------------------

/// The letter behind the access mark of a text; null when it has none.
QChar accessKey(QString text) {
    text.replace(QLatin1String("&&"), QLatin1String("  "));
    return text.section(QLatin1Char('&'), 1, 1).left(1).isEmpty()
               ? QChar()
               : text.section(QLatin1Char('&'), 1, 1).at(0).toUpper();
}

void expectKeyOnce(const QWidget& dialog) {
    std::set<QChar> seen;
    const auto take = [&seen](const QString& text) {
        const QChar key = accessKey(text);
        EXPECT_TRUE(key.isNull() || seen.insert(key).second) << "access key twice: " << plainBytes(text);
    };
    for (const QAbstractButton* button : dialog.findChildren<QAbstractButton*>()) {
        take(button->text());
    }
    for (const QLabel* label : dialog.findChildren<QLabel*>()) {
        if (label->buddy() != nullptr) {
            take(label->text());
        }
    }
}

/// Whether a control shows all of its text.
bool showsAllText(const QWidget& control) {
    const bool texts =
        qobject_cast<const QLabel*>(&control) != nullptr || qobject_cast<const QAbstractButton*>(&control) != nullptr;
    return !texts || (control.width() >= control.sizeHint().width() && control.height() >= control.sizeHint().height());
}

/// All of it stands on a small screen, no text is cut, each control has a name for those who do not see it.
void expectGoodWindow() {
    const QWidget& dialog = *QApplication::activeModalWidget();
    EXPECT_TRUE(QRect(0, 0, 1280, 720).contains(QRect(QPoint(0, 0), dialog.frameGeometry().size())));
    for (const QWidget* control : dialog.findChildren<QWidget*>()) {
        if (!control->isVisible()) {
            continue;
        }
        const QString name = control->objectName();
        EXPECT_TRUE(dialog.rect().contains(QRect(control->mapTo(&dialog, QPoint(0, 0)), control->size())))
            << plainBytes(name);
        EXPECT_TRUE(showsAllText(*control)) << plainBytes(name);
        const auto* button = qobject_cast<const QAbstractButton*>(control);
        if ((control->focusPolicy() & Qt::TabFocus) != 0 && (button == nullptr || button->text().isEmpty())) {
            EXPECT_FALSE(control->accessibleName().isEmpty()) << plainBytes(name);
        }
    }
    expectKeyOnce(dialog);
}

// ---- Hands ----------------------------------------------------------------------------------------------------------

/// Goes by the Tab key to the control of a field: its edit, its check box, or a button of its radio group.
bool tabTo(WindowDriver& person, const QString& field) {
    const auto there = [field] {
        const QWidget* focus = QApplication::focusWidget();
        return focus != nullptr &&
               (focus->objectName() == field || focus->objectName().startsWith(field + QLatin1Char('.')));
    };
    for (int i = 0; i < 30; ++i) {
        if (person.ask(there)) {
            return true;
        }
        person.key("Tab");
        person.settle();
    }
    return false;
}

void openContextMenu(WindowDriver& person) {
    person.click(person.onView({400, 300}), WindowDriver::rightButton);
    ASSERT_TRUE(person.waitFor([] { return WindowDriver::openedMenu() != nullptr; }));
}

void closeMenus(WindowDriver& person) {
    person.ask([] {
        while (QWidget* popup = QApplication::activePopupWidget()) {
            popup->close();
        }
    });
    person.settle();
}

/// The model as it is in the file, with what `prepare` captures.
void startOver(WindowDriver& person, const std::filesystem::path& model, Prepare prepare) {
    person.ask([&] {
        VelmoraDoc& document = WindowDriver::frame().document();
        document.onOpenDocument(model);
        document.blockCount = 0;
        prepare(document);
        document.redraw();
    });
}

void openDialogOf(WindowDriver& person, const DialogRow& row) {
    if (row.menu.isEmpty()) {
        openContextMenu(person);
    } else {
        person.choose(row.menu);
    }
    person.clickEntry(QString::fromLatin1(row.command));
    person.waitForBox(QString::fromLatin1(row.name));
}

void expectRefused(WindowDriver& person, const DialogRow& row) {
    person.type(row.wrong);
    person.key("Return");
    person.waitForBox(QStringLiteral("messageBox"));
    EXPECT_TRUE(person.boxText().startsWith(QStringLiteral("Please enter"))) << plainBytes(person.boxText());
    person.key("Return");
    person.waitForBox(QString::fromLatin1(row.name));
    EXPECT_EQ(person.ask([] { return QApplication::focusWidget()->objectName(); }), QString::fromLatin1(row.field));
}

/// Return on what comes behind the dialog, until the frame has the word again: the first answer of a box goes on, and a
/// chooser takes what it proposes.
void closeBoxes(WindowDriver& person) {
    enum class State { Waiting, Box, Frame };
    for (int i = 0; i < 100; ++i) {
        person.settle();
        const State state = person.ask([] {
            const QWidget* modal = QApplication::activeModalWidget();
            if (modal == nullptr) {
                return WindowDriver::frame().isActiveWindow() ? State::Frame : State::Waiting;
            }
            const QString name = modal->objectName();
            const bool goesOn = name.endsWith(QStringLiteral("Box")) || name == QStringLiteral("fileChooser");
            return modal->isActiveWindow() && goesOn ? State::Box : State::Waiting;
        });
        if (state == State::Frame) {
            return;
        }
        if (state == State::Box) {
            person.key("Return");
        }
    }
    ADD_FAILURE() << "a box stays open";
}

void workDialog(WindowDriver& person, const DialogRow& row) {
    openDialogOf(person, row);
    person.ask(expectGoodWindow);
    person.screenshot(QStringLiteral("dialog-") + QString::fromLatin1(row.name));
    if (*row.ticked != '\0') {
        ASSERT_TRUE(tabTo(person, QString::fromLatin1(row.ticked)));
        person.key("space");
        person.settle();
    }
    ASSERT_TRUE(tabTo(person, QString::fromLatin1(row.field)));
    if (row.wrong.empty()) {
        person.key(row.right.c_str());
        person.settle();
    } else {
        expectRefused(person, row);
        person.type(row.right);
    }
    person.key("Return");
    closeBoxes(person);
    EXPECT_TRUE(person.ask([&] { return row.done(WindowDriver::frame().state()); })) << "no effect";
}

// ---- The walks ------------------------------------------------------------------------------------------------------

TEST(Walk, EveryDialogIsWorkedByTheKeyboard) {
    const FlatDesk desk;
    runProgram({desk.model.string()}, [&](WindowDriver& person) {
        person.waitForFrame();
        person.rest = std::chrono::milliseconds(40);
        for (const DialogRow& row : dialogRows()) {
            SCOPED_TRACE(row.name);
            startOver(person, desk.model, row.prepare);
            workDialog(person, row);
            if (testing::Test::HasFatalFailure()) {
                return;
            }
        }
        person.ask([] { WindowDriver::frame().state().documentModified = false; });
    });
}

/// Keeps a picture of each menu, and of each of its submenus open beside it.
void pictureMenu(WindowDriver& person, const std::vector<MenuEntry>& entries, const QString& name) {
    person.screenshot(name);
    person.ask([] {
        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        EXPECT_TRUE(screen.contains(WindowDriver::openedMenu()->geometry()));
    });
    for (const MenuEntry& entry : entries) {
        if (entry.kind == MenuEntry::Kind::Submenu) {
            const QString words = wordsOf(qtText(entry.text));
            person.clickEntry(words);
            pictureMenu(person, entry.entries, name + QLatin1Char('-') + words.section(QLatin1Char(' '), 0, 0));
            person.key("Left");
            person.settle();
        }
    }
}

TEST(Walk, EveryMenuStandsOnTheScreen) {
    const FlatDesk desk;
    runProgram({desk.model.string()}, [&](WindowDriver& person) {
        person.waitForFrame();
        person.rest = std::chrono::milliseconds(60);
        person.screenshot(QStringLiteral("frame"));
        for (const Menu& menu : mainMenus()) {
            const QString words = wordsOf(qtText(menu.name));
            person.openMenu(words);
            pictureMenu(person, menu.entries, QStringLiteral("menu-") + words);
            closeMenus(person);
        }
        for (const auto& [menu, prepare] :
             {std::pair{&patchContextMenu(), Prepare(holdPatch)}, std::pair{&lineContextMenu(), Prepare(holdSection)},
              std::pair{&pointContextMenu(), Prepare(holdPoint)}}) {
            startOver(person, desk.model, prepare);
            openContextMenu(person);
            pictureMenu(person, menu->entries, QStringLiteral("context-") + qtText(menu->name).section(' ', 0, 0));
            closeMenus(person);
        }
    });
}

TEST(Walk, ACommandOfAMenuIsReachedWithoutTheMouse) {
    const FlatDesk desk;
    runProgram({desk.model.string()}, [&](WindowDriver& person) {
        person.waitForFrame();
        person.key("e", "Alt_L");
        ASSERT_TRUE(person.waitFor([] { return WindowDriver::openedMenu() != nullptr; }));
        for (const char* key : {"l", "i", "s"}) {
            person.key(key);
            person.settle();
        }
        person.waitForBox(QStringLiteral("CInputSection"));
        person.key("Return");
        ASSERT_TRUE(person.waitForNoBox());
        // The menu key opens the menu of the regime.
        person.key("Menu");
        ASSERT_TRUE(person.waitFor([] { return WindowDriver::openedMenu() != nullptr; }));
        EXPECT_EQ(person.ask([] { return WindowDriver::openedMenu()->objectName(); }), QStringLiteral("Line Context"));
        person.key("a");
        person.waitForBox(QStringLiteral("CRebreak"));
        // The key of a label goes to its field.
        const QString key = person.ask([] {
            for (const QLabel* label : QApplication::activeModalWidget()->findChildren<QLabel*>()) {
                if (label->buddy() != nullptr && label->buddy()->objectName() == QStringLiteral("compression")) {
                    return QString(accessKey(label->text())).toLower();
                }
            }
            return QString();
        });
        ASSERT_FALSE(key.isEmpty());
        person.key(plainBytes(key).c_str(), "Alt_L");
        EXPECT_TRUE(
            person.waitFor([] { return QApplication::focusWidget()->objectName() == QStringLiteral("compression"); }));
        person.key("Escape");
        ASSERT_TRUE(person.waitForNoBox());
    });
}

} // namespace
} // namespace velmora::test
