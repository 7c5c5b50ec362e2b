#include "HelpWindow.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QKeyEvent>
#include <QMenuBar>
#include <QScrollBar>
#include <QShortcut>
#include <QTextBlock>
#include <QTextTable>
#include <QToolButton>
#include <QTreeWidget>

#include "FrameRig.h"
#include "GuideBrowser.h"
#include "VelmoraDoc.h"
#include "guide.h"

namespace velmora::test {
namespace {

struct HelpRig {
    HelpWindow window;
    GuideBrowser& page = *window.findChild<GuideBrowser*>(QStringLiteral("page"));
    QTreeWidget& contents = *window.findChild<QTreeWidget*>(QStringLiteral("contents"));
    QLineEdit& search = *window.findChild<QLineEdit*>(QStringLiteral("search"));

    explicit HelpRig(const GuidePlace& place = {}) {
        window.open(place);
        settle();
    }
    static void settle() { QApplication::processEvents(); }
    std::string shown() const { return page.source().toString().toStdString(); }
    QToolButton& button(const char* name) { return *window.findChild<QToolButton*>(QString::fromLatin1(name)); }
    void press(const char* name) {
        button(name).click();
        settle();
    }
    void pressKey(const QKeySequence& key) {
        for (QShortcut* shortcut : window.findChildren<QShortcut*>()) {
            if (shortcut->key() == key) {
                emit shortcut->activated();
            }
        }
        settle();
    }
    std::string chosen() const {
        return contents.currentItem() != nullptr ? contents.currentItem()->text(0).toStdString() : "";
    }
};

TEST(HelpWindow, OpensAtAPlaceWithTheKeyboardOnThePage) {
    HelpRig rig({QStringLiteral("lines.md"), QStringLiteral("weeding")});
    EXPECT_EQ(rig.window.windowTitle(), QStringLiteral("Velmora help"));
    EXPECT_TRUE(rig.window.isVisible());
    EXPECT_TRUE(rig.window.isWindow());
    EXPECT_FALSE(rig.window.testAttribute(Qt::WA_QuitOnClose));
    EXPECT_EQ(rig.shown(), "qrc:/guide/lines.md#weeding");
    EXPECT_EQ(rig.window.focusWidget(), &rig.page);
    EXPECT_EQ(rig.chosen(), "Weeding") << "the contents follow";
    EXPECT_TRUE(rig.page.openExternalLinks());
    rig.window.open({});
    EXPECT_EQ(rig.shown(), "qrc:/guide/index.md");
}

TEST(HelpWindow, GoesBackForwardAndToTheStart) {
    HelpRig rig;
    EXPECT_FALSE(rig.button("back").isEnabled());
    EXPECT_FALSE(rig.button("forward").isEnabled());
    rig.window.open({QStringLiteral("file.md"), QString()});
    EXPECT_TRUE(rig.button("back").isEnabled());
    rig.press("back");
    EXPECT_EQ(rig.shown(), "qrc:/guide/index.md");
    EXPECT_FALSE(rig.button("back").isEnabled());
    EXPECT_TRUE(rig.button("forward").isEnabled());
    rig.press("forward");
    EXPECT_EQ(rig.shown(), "qrc:/guide/file.md");
    rig.press("start");
    EXPECT_EQ(rig.shown(), "qrc:/guide/index.md");
    rig.pressKey(QKeySequence::Back);
    EXPECT_EQ(rig.shown(), "qrc:/guide/file.md");
    rig.pressKey(QKeySequence::Forward);
    EXPECT_EQ(rig.shown(), "qrc:/guide/index.md");
}

TEST(HelpWindow, TheContentsAreTheHeadingsOfAllPagesInTheirOrder) {
    HelpRig rig;
    EXPECT_EQ(rig.contents.topLevelItemCount(), guidePages().size());
    const std::vector<GuideSection>& sections = guideSections();
    std::size_t i = 0;
    for (QTreeWidgetItemIterator item(&rig.contents); *item != nullptr; ++item, ++i) {
        ASSERT_LT(i, sections.size());
        EXPECT_EQ((*item)->text(0), sections[i].heading);
        QString above; // the nearest before it that stands higher
        for (std::size_t before = 0; before < i; ++before) {
            above = sections[before].level < sections[i].level ? sections[before].heading : above;
        }
        EXPECT_EQ((*item)->parent() != nullptr ? (*item)->parent()->text(0) : QString(), above);
    }
    EXPECT_EQ(i, sections.size());
    EXPECT_TRUE(rig.contents.rootIsDecorated());
}

TEST(HelpWindow, AnEntryOfTheContentsOpensItsPlace) {
    HelpRig rig;
    QTreeWidgetItem* item = rig.contents.findItems(QStringLiteral("Weeding"), Qt::MatchRecursive).value(0);
    ASSERT_NE(item, nullptr);
    emit rig.contents.itemClicked(item, 0);
    EXPECT_EQ(rig.shown(), "qrc:/guide/lines.md#weeding");
    emit rig.contents.itemActivated(rig.contents.topLevelItem(1), 0);
    EXPECT_EQ(rig.shown(), "qrc:/guide/tutorial.md") << "the heading of a page is its top";
}

TEST(HelpWindow, TheSearchListsWhatItFindsAndMarksTheWords) {
    HelpRig rig;
    rig.search.setText(QStringLiteral("weeding"));
    EXPECT_EQ(rig.contents.topLevelItem(0)->text(0), QStringLiteral("Weeding (Edit menu: Lines)"));
    EXPECT_FALSE(rig.contents.topLevelItem(0)->toolTip(0).isEmpty());
    EXPECT_LE(rig.contents.topLevelItem(0)->toolTip(0).size(), 160);
    EXPECT_FALSE(rig.contents.rootIsDecorated());
    EXPECT_TRUE(rig.page.extraSelections().isEmpty()) << "the page on show is another";
    emit rig.search.returnPressed();
    EXPECT_EQ(rig.shown(), "qrc:/guide/lines.md#weeding");
    ASSERT_FALSE(rig.page.extraSelections().isEmpty());
    for (const auto& mark : rig.page.extraSelections()) {
        EXPECT_EQ(mark.cursor.selectedText().toLower(), QStringLiteral("weeding"));
    }
    rig.press("start");
    EXPECT_TRUE(rig.page.extraSelections().isEmpty()) << "another page has no marks of this one";
    emit rig.search.returnPressed();
    rig.search.setText(QStringLiteral("  "));
    EXPECT_TRUE(rig.page.extraSelections().isEmpty());
    EXPECT_EQ(rig.contents.topLevelItemCount(), guidePages().size());
    EXPECT_EQ(rig.chosen(), "Weeding");
}

TEST(HelpWindow, AHeadingOfAPageIsFoundWithoutItsPage) {
    HelpRig rig;
    rig.search.setText(guideSections().front().heading);
    EXPECT_EQ(rig.contents.topLevelItem(0)->text(0), guideSections().front().heading);
}

TEST(HelpWindow, NothingFoundIsSaidAndLeadsNowhere) {
    HelpRig rig;
    rig.search.setText(QStringLiteral("zzyzx"));
    ASSERT_EQ(rig.contents.topLevelItemCount(), 1);
    EXPECT_EQ(rig.contents.topLevelItem(0)->text(0), QStringLiteral("Nothing found"));
    EXPECT_EQ(rig.contents.topLevelItem(0)->flags(), Qt::NoItemFlags);
    emit rig.search.returnPressed();
    emit rig.contents.itemClicked(rig.contents.topLevelItem(0), 0);
    EXPECT_EQ(rig.shown(), "qrc:/guide/index.md");
}

TEST(HelpWindow, EscapeEndsTheSearchFirst) {
    HelpRig rig;
    rig.pressKey(QKeySequence::Find);
    EXPECT_EQ(rig.window.focusWidget(), &rig.search);
    rig.search.setText(QStringLiteral("wing"));
    rig.pressKey(QKeySequence::Find);
    EXPECT_EQ(rig.search.selectedText(), QStringLiteral("wing")) << "ready to be typed over";
    rig.pressKey(Qt::Key_Escape);
    EXPECT_TRUE(rig.search.text().isEmpty());
    EXPECT_TRUE(rig.window.isVisible());
    rig.pressKey(Qt::Key_Escape);
    EXPECT_FALSE(rig.window.isVisible());
}

// ---- The page -------------------------------------------------------------------------------------------------------

/// How far below the upper edge of the page a heading stands.
int depthOf(const GuideBrowser& page, const char* heading) {
    for (QTextBlock block = page.document()->begin(); block.isValid(); block = block.next()) {
        if (block.blockFormat().headingLevel() > 0 && block.text() == QLatin1String(heading)) {
            return page.cursorRect(QTextCursor(block)).top();
        }
    }
    ADD_FAILURE() << "no heading " << heading;
    return 0;
}

TEST(GuideBrowser, TheHeadingOfThePlaceIsOnTopOfThePage) {
    HelpRig rig({QStringLiteral("lines.md"), QStringLiteral("copy")});
    EXPECT_TRUE(waitUntil([&] { return rig.page.verticalScrollBar()->value() > 0; }));
    EXPECT_GE(depthOf(rig.page, "Copy"), 0);
    EXPECT_LE(depthOf(rig.page, "Copy"), 40);
    rig.page.setSource(guideUrl({QStringLiteral("lines.md"), QStringLiteral("weeding")}));
    HelpRig::settle();
    EXPECT_GE(depthOf(rig.page, "Weeding"), 0);
    EXPECT_LE(depthOf(rig.page, "Weeding"), 40);
}

TEST(GuideBrowser, TablesHaveFramesAndHeadingsRoomAboveThem) {
    int tables = 0;
    HelpRig rig;
    for (const QString& name : guidePages()) {
        rig.page.setSource(guideUrl({name, QString()}));
        EXPECT_EQ(rig.page.document()->documentMargin(), 16.0);
        for (QTextFrame* frame : rig.page.document()->rootFrame()->childFrames()) {
            if (const auto* table = qobject_cast<QTextTable*>(frame)) {
                ++tables;
                EXPECT_EQ(table->format().border(), 1.0);
                EXPECT_EQ(table->format().borderStyle(), QTextFrameFormat::BorderStyle_Solid);
                EXPECT_TRUE(table->format().borderCollapse());
                EXPECT_EQ(table->format().cellPadding(), 4.0);
                EXPECT_EQ(table->format().cellSpacing(), 0.0);
            }
        }
        for (QTextBlock block = rig.page.document()->begin(); block.isValid(); block = block.next()) {
            const int level = block.blockFormat().headingLevel();
            if (level > 0) {
                EXPECT_EQ(block.blockFormat().topMargin(), level == 1 ? 0.0 : level == 2 ? 28.0 : 18.0);
            }
        }
    }
    EXPECT_GT(tables, 0);
}

/// The width at which the first picture of the page is shown.
double pictureWidth(const GuideBrowser& page) {
    for (QTextBlock block = page.document()->begin(); block.isValid(); block = block.next()) {
        for (auto part = block.begin(); part != block.end(); ++part) {
            if (part.fragment().charFormat().isImageFormat()) {
                return part.fragment().charFormat().toImageFormat().width();
            }
        }
    }
    ADD_FAILURE() << "no picture";
    return 0.0;
}

TEST(GuideBrowser, APictureIsShownNoWiderThanThePageAndNoWiderThanItIs) {
    HelpRig rig;
    rig.window.resize(700, 600);
    HelpRig::settle();
    EXPECT_EQ(pictureWidth(rig.page), rig.page.viewport()->width() - 32);
    rig.window.resize(4000, 600);
    HelpRig::settle();
    const double own = pictureWidth(rig.page);
    EXPECT_LT(own, rig.page.viewport()->width() - 32);
    EXPECT_EQ(own, QImage(QStringLiteral(":/guide/pictures/window.png")).width());
}

// ---- Where help is asked for ----------------------------------------------------------------------------------------

bool pressF1(QWidget& widget, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QKeyEvent event(QEvent::KeyPress, Qt::Key_F1, modifiers);
    event.ignore();
    QApplication::sendEvent(&widget, &event);
    QApplication::processEvents();
    return event.isAccepted();
}

/// The place that the guide shows; empty: it is closed.
std::string guideShown() {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (auto* window = qobject_cast<HelpWindow*>(widget); window != nullptr && window->isVisible()) {
            return window->findChild<GuideBrowser*>()->source().toString().toStdString();
        }
    }
    return {};
}

TEST(HelpDesk, TheCommandOpensTheGuideAndBringsTheSameWindowBack) {
    FrameRig rig;
    rig.run("help.topics");
    rig.run("help.topics");
    int windows = 0;
    for (const QWidget* widget : QApplication::topLevelWidgets()) {
        windows += qobject_cast<const HelpWindow*>(widget) != nullptr ? 1 : 0;
    }
    EXPECT_EQ(windows, 1);
    EXPECT_EQ(guideShown(), "qrc:/guide/index.md");
}

TEST(HelpDesk, InAMenuItOpensThePlaceOfTheEntryThatIsHighlighted) {
    FrameRig rig;
    QMenu& menu = *rig.frame.menuBar()->actions().front()->menu();
    rig.person.at("", [&](QWidget& open) {
        menu.setActiveAction(rig.menuEntry("file.open"));
        pressF1(open, Qt::ControlModifier);
        EXPECT_TRUE(menu.isVisible()) << "with another key it is no question for help";
        pressF1(open);
    });
    menu.popup({10, 10});
    EXPECT_TRUE(waitUntil([] { return guideShown() == "qrc:/guide/file.md#open"; })) << guideShown();
    EXPECT_FALSE(menu.isVisible());
}

TEST(HelpDesk, InAMenuWithoutAHighlightItOpensTheFirstPage) {
    FrameRig rig;
    QMenu& menu = *rig.frame.menuBar()->actions().front()->menu();
    rig.person.at("", [&](QWidget& open) { pressF1(open); });
    menu.popup({10, 10});
    EXPECT_TRUE(waitUntil([] { return guideShown() == "qrc:/guide/index.md"; })) << guideShown();
}

TEST(HelpDesk, InADialogItOpensThePlaceOfTheCommandThatRuns) {
    const FlatDesk desk;
    FrameRig rig(desk.model);
    rig.person.at("CBlockMove", [](QWidget& dialog) {
        pressF1(dialog);
        EXPECT_EQ(guideShown(), "qrc:/guide/transformations.md#move");
        auto* guide = dialog.findChild<HelpWindow*>();
        ASSERT_NE(guide, nullptr) << "a window of the dialog: it can be used beside it";
        pressF1(dialog);
        EXPECT_EQ(dialog.findChildren<HelpWindow*>().size(), 1);
        dynamic_cast<QDialog&>(dialog).reject();
    });
    rig.run("model.move");
    EXPECT_EQ(guideShown(), "");
    // Outside of any command a box leads to the first page.
    rig.person.at("messageBox", [](QWidget& box) {
        pressF1(box);
        EXPECT_EQ(guideShown(), "qrc:/guide/index.md");
        dynamic_cast<QDialog&>(box).accept();
    });
    rig.document().ui().showMessage({Severity::Info, "text"});
}

} // namespace
} // namespace velmora::test
