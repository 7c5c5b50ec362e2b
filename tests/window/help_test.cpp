#include <gtest/gtest.h>

#include <QAbstractTextDocumentLayout>
#include <QLineEdit>
#include <QScrollBar>
#include <QTextBlock>
#include <QTimer>
#include <QTreeWidget>
#include <QWindow>

#include "Desk.h"
#include "DocumentState.h"
#include "GuideBrowser.h"
#include "HelpWindow.h"
#include "WindowDriver.h"
#include "qt_text.h"

namespace velmora::test {
namespace {

/// The window of the guide that is shown, or null; the one of a dialog before the frame's. To be used in ask() only.
HelpWindow* shownGuide() {
    HelpWindow* shown = nullptr;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* window = qobject_cast<HelpWindow*>(widget);
        if (window != nullptr && window->isVisible() && (shown == nullptr || window->parentWidget() != nullptr)) {
            shown = window;
        }
    }
    return shown;
}

template <class Part>
Part* part(const char* name) {
    return shownGuide()->findChild<Part*>(QLatin1String(name));
}

bool waitForGuide(WindowDriver& person) {
    const bool there = person.waitFor([] {
        HelpWindow* window = shownGuide();
        return window != nullptr && window->isActiveWindow() && window->windowHandle()->isExposed();
    });
    person.settle();
    return there;
}

bool waitForNoGuide(WindowDriver& person) {
    return person.waitFor([] { return shownGuide() == nullptr; });
}

QString placeShown(WindowDriver& person) {
    return person.ask([] { return part<GuideBrowser>("page")->source().toString(); });
}

bool waitForPlace(WindowDriver& person, const QString& place) {
    return person.waitFor([place] { return part<GuideBrowser>("page")->source().toString() == place; });
}

/// The position on the screen of the first link to `target` on the page, scrolled to where it is seen.
QPoint linkTo(WindowDriver& person, const QString& target) {
    return person.ask([target] {
        auto* page = part<GuideBrowser>("page");
        for (QTextBlock block = page->document()->begin(); block.isValid(); block = block.next()) {
            for (auto piece = block.begin(); piece != block.end(); ++piece) {
                if (piece.fragment().charFormat().anchorHref() == target) {
                    QTextCursor cursor(page->document());
                    cursor.setPosition(piece.fragment().position() + 2);
                    page->setTextCursor(cursor);
                    page->ensureCursorVisible();
                    return page->viewport()->mapToGlobal(page->cursorRect(cursor).center());
                }
            }
        }
        throw std::runtime_error("no link to " + target.toStdString());
    });
}

/// How far below the upper edge of the page the heading stands.
int headingDepth(WindowDriver& person, const QString& heading) {
    return person.ask([heading] {
        auto* page = part<GuideBrowser>("page");
        for (QTextBlock block = page->document()->begin(); block.isValid(); block = block.next()) {
            if (block.blockFormat().headingLevel() > 0 && block.text() == heading) {
                return page->cursorRect(QTextCursor(block)).top();
            }
        }
        throw std::runtime_error("no heading " + heading.toStdString());
    });
}

TEST(Help, F1OpensTheGuideBesideTheFrameAndLinksLeadOnAndBack) {
    const Desk desk;
    runProgram({desk.model.string()}, [](WindowDriver& person) {
        person.waitForFrame();
        person.key("F1");
        ASSERT_TRUE(waitForGuide(person));
        EXPECT_EQ(placeShown(person), QStringLiteral("qrc:/guide/index.md"));
        EXPECT_GT(person.ask([] { return part<GuideBrowser>("page")->width(); }), 500);
        person.ask([] { shownGuide()->resize(760, 600); });
        person.settle();
        EXPECT_EQ(person.ask([] { return part<GuideBrowser>("page")->horizontalScrollBar()->maximum(); }), 0)
            << "the picture fits in";
        person.ask([] { shownGuide()->resize(1120, 700); });
        person.settle();
        person.screenshot("guide");

        person.click(linkTo(person, QStringLiteral("lines.md#copy")));
        ASSERT_TRUE(waitForPlace(person, QStringLiteral("qrc:/guide/lines.md#copy")));
        person.settle();
        const int depth = headingDepth(person, QStringLiteral("Copy"));
        EXPECT_GE(depth, 0);
        EXPECT_LE(depth, 40) << "the heading that the link names is on top";
        EXPECT_EQ(person.ask([] { return part<QTreeWidget>("contents")->currentItem()->text(0); }),
                  QStringLiteral("Copy"))
            << "the contents follow";
        person.screenshot("guide-copy");
        person.key("Left", "Alt_L");
        EXPECT_TRUE(waitForPlace(person, QStringLiteral("qrc:/guide/index.md")));
        person.key("Right", "Alt_L");
        EXPECT_TRUE(waitForPlace(person, QStringLiteral("qrc:/guide/lines.md#copy")));

        // The frame is not held up meanwhile.
        person.ask([] { shownGuide()->move(200, 320); });
        person.choose({"View", "Surface"});
        EXPECT_FALSE(person.ask([] { return WindowDriver::frame().state().surfaceMode; }));
        person.choose({"Help", "Help Topics"});
        ASSERT_TRUE(waitForGuide(person)) << "the same window comes to the front";
        person.key("Escape");
        EXPECT_TRUE(waitForNoGuide(person));
        EXPECT_TRUE(person.ask([] { return WindowDriver::frame().isVisible(); }));
    });
}

TEST(Help, TheSearchFindsTextAcrossPages) {
    runProgram({}, [](WindowDriver& person) {
        person.waitForFrame();
        person.choose({"Help", "Help Topics"});
        ASSERT_TRUE(waitForGuide(person));
        person.key("f", "Control_L");
        person.settle();
        person.type("weeding");
        ASSERT_TRUE(person.waitFor([] { return part<QLineEdit>("search")->text() == "weeding"; }));
        const QStringList found = person.ask([] {
            QStringList texts;
            const auto* list = part<QTreeWidget>("contents");
            for (int i = 0; i < list->topLevelItemCount(); ++i) {
                texts.append(list->topLevelItem(i)->text(0));
            }
            return texts;
        });
        EXPECT_EQ(found.value(0), QStringLiteral("Weeding (Edit menu: Lines)"));
        EXPECT_GT(found.size(), 1) << "the line menu names it too";
        person.key("Return");
        EXPECT_TRUE(waitForPlace(person, QStringLiteral("qrc:/guide/lines.md#weeding")));
        person.settle();
        EXPECT_LE(headingDepth(person, QStringLiteral("Weeding")), 40);
        EXPECT_FALSE(person.ask([] { return part<GuideBrowser>("page")->extraSelections().isEmpty(); })) << "marked";
        person.screenshot("guide-search");

        person.type("x");
        EXPECT_TRUE(person.waitFor([] {
            const auto* list = part<QTreeWidget>("contents");
            return list->topLevelItemCount() == 1 && list->topLevelItem(0)->flags() == Qt::NoItemFlags;
        })) << "nothing is found";
        person.key("Escape");
        EXPECT_TRUE(person.waitFor([] { return part<QTreeWidget>("contents")->topLevelItemCount() > 10; }))
            << "the contents are back";
        person.key("Escape");
        EXPECT_TRUE(waitForNoGuide(person));
    });
}

TEST(Help, F1OnAMenuEntryOpensItsPlace) {
    runProgram({}, [](WindowDriver& person) {
        person.waitForFrame();
        person.openMenu(QStringLiteral("File"));
        person.key("Down");
        person.key("Down");
        person.settle();
        person.key("F1");
        ASSERT_TRUE(waitForGuide(person));
        EXPECT_EQ(placeShown(person), QStringLiteral("qrc:/guide/file.md#open"));
        EXPECT_TRUE(person.ask([] { return QApplication::activePopupWidget() == nullptr; }));
    });
}

TEST(Help, F1InADialogOpensTheGuideOfItsCommandToBeUsedBesideIt) {
    const Desk desk;
    runProgram({desk.model.string()}, [](WindowDriver& person) {
        person.waitForFrame();
        person.choose({"Edit", "Patches", "Input & Add to zBlock..."});
        person.waitForBox(QStringLiteral("CInputPatch"));
        person.key("F1");
        ASSERT_TRUE(waitForGuide(person));
        EXPECT_EQ(placeShown(person), QStringLiteral("qrc:/guide/patches.md#input--add-to-zblock"));
        person.screenshot("guide-of-dialog");
        person.key("f", "Control_L");
        person.settle();
        person.type("merge");
        EXPECT_TRUE(person.waitFor([] { return part<QLineEdit>("search")->text() == "merge"; }))
            << "the dialog does not hold it up";
        person.key("Escape");
        person.settle();
        person.key("Escape");
        EXPECT_TRUE(waitForNoGuide(person));
        person.waitForBox(QStringLiteral("CInputPatch"));
        person.key("Return");
        EXPECT_TRUE(person.waitForNoBox());
        EXPECT_EQ(person.ask([] { return WindowDriver::frame().state().blockCount; }), 1);
    });
}

/// The lines of a page that are not laid out.
QString linesWithoutHeight(const QTextDocument& page) {
    QString lines;
    for (QTextBlock block = page.begin(); block.isValid(); block = block.next()) {
        if (!block.text().isEmpty() && !(page.documentLayout()->blockBoundingRect(block).height() > 0.0)) {
            lines += block.text() + QLatin1Char('\n');
        }
    }
    return lines;
}

TEST(Help, APageOpenedLowDownIsLaidOutWhole) {
    const Desk desk;
    runProgram({desk.model.string()}, [](WindowDriver& person) {
        person.waitForFrame();
        person.choose({"Transformations", "Smooth geometry..."});
        person.waitForBox(QStringLiteral("CSmooth"));
        person.key("F1");
        ASSERT_TRUE(waitForGuide(person));
        EXPECT_TRUE(
            person.waitFor([] { return linesWithoutHeight(*part<GuideBrowser>("page")->document()).isEmpty(); }));
        EXPECT_EQ(person.ask([] { return linesWithoutHeight(*part<GuideBrowser>("page")->document()); }), QString());
        person.key("Escape");
        EXPECT_TRUE(waitForNoGuide(person));
        person.key("Escape");
        EXPECT_TRUE(person.waitForNoBox());
    });
}

TEST(Help, TheProgramEndsWithItsFrameThoughTheGuideIsOpen) {
    const int status = runProgram({}, [](WindowDriver& person) {
        person.waitForFrame();
        person.key("F1");
        ASSERT_TRUE(waitForGuide(person));
        person.ask([] { QTimer::singleShot(0, &WindowDriver::frame(), &QWidget::close); });
        EXPECT_TRUE(person.waitForEnd());
    });
    EXPECT_EQ(status, 0);
}

} // namespace
} // namespace velmora::test
