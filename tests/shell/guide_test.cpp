#include "guide.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QRegularExpression>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>
#include <algorithm>
#include <set>

#include "DialogValues.h"
#include "DocumentState.h"
#include "RecordingUi.h"
#include "qt_text.h"

/// Failures show texts as words. In the namespace of QString, where it is looked for.
static void PrintTo(const QString& text, std::ostream* stream) {
    *stream << '"' << text.toStdString() << '"';
}

namespace velmora::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

QString fileText(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return QString::fromUtf8(file.readAll());
}

/// The pages that are made of the program's tables: they name everything and explain nothing.
bool isTable(const QString& page) {
    return page == QLatin1String("commands.md") || page == QLatin1String("fields.md");
}

/// What pages say, headings and all, in one line; of all pages that explain when none is named.
QString wordsOf(const QString& page = QString()) {
    QString words;
    for (const GuideSection& section : guideSections()) {
        if (page.isEmpty() ? !isTable(section.page) : section.page == page) {
            words += section.heading + QLatin1Char(' ') + section.text + QLatin1Char(' ');
        }
    }
    return words.simplified();
}

const GuideSection* sectionAt(const GuidePlace& place) {
    const auto& all = guideSections();
    const auto found = std::find_if(all.begin(), all.end(), [&place](const GuideSection& section) {
        return section.page == place.page && anchorOf(section.heading) == place.anchor;
    });
    return found == all.end() ? nullptr : &*found;
}

struct Target {
    QString page; ///< where it stands
    QString name; ///< the address of a link, the file of a picture
};

/// What the text of a page leads to: its links, or its pictures.
std::vector<Target> targetsOf(const QString& page, bool pictures) {
    QTextDocument document;
    document.setMarkdown(guideText(page));
    std::vector<Target> targets;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto part = block.begin(); part != block.end(); ++part) {
            const QTextCharFormat format = part.fragment().charFormat();
            const QString name = pictures ? format.toImageFormat().name() : format.anchorHref();
            if (!name.isEmpty()) {
                targets.push_back({page, name});
            }
        }
    }
    return targets;
}

/// The addresses of the links that stand in lists.
QStringList linksOfLists(const QString& page) {
    QTextDocument document;
    document.setMarkdown(guideText(page));
    QStringList links;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto part = block.begin(); part != block.end() && block.textList() != nullptr; ++part) {
            const QString address = part.fragment().charFormat().anchorHref();
            if (!address.isEmpty()) {
                links.append(address);
            }
        }
    }
    return links;
}

std::vector<Target> allTargets(bool pictures) {
    std::vector<Target> all;
    for (const QString& page : guidePages()) {
        const auto targets = targetsOf(page, pictures);
        all.insert(all.end(), targets.begin(), targets.end());
    }
    return all;
}

std::set<QString> namesIn(const QString& folder, const char* pattern) {
    const QStringList names = QDir(folder).entryList({QString::fromLatin1(pattern)}, QDir::Files);
    return {names.begin(), names.end()};
}

// ---- Anchors and places ---------------------------------------------------------------------------------------------

TEST(Guide, AnchorsAreLowerCaseWithHyphensForBlanksAndNoOtherMarks) {
    EXPECT_EQ(anchorOf("Rebreak"), QString("rebreak"));
    EXPECT_EQ(anchorOf("Input & Add to zBlock"), QString("input--add-to-zblock"));
    EXPECT_EQ(anchorOf("First/Last in \"line\" buffer"), QString("firstlast-in-line-buffer"));
    EXPECT_EQ(anchorOf("Next Section (Line)"), QString("next-section-line"));
    EXPECT_EQ(anchorOf(""), QString());
}

TEST(Guide, ACommandStandsOnThePageOfItsKind) {
    const auto placeOfId = [](const char* id) {
        const GuidePlace place = placeOf(*findCommand(id));
        return place.page + QLatin1Char('#') + place.anchor;
    };
    EXPECT_EQ(placeOfId("file.open"), QString("file.md#open"));
    EXPECT_EQ(placeOfId("block.delete"), QString("patches.md#block-delete"));
    EXPECT_EQ(placeOfId("line.knife"), QString("lines.md#knife"));
    EXPECT_EQ(placeOfId("model.knife"), QString("transformations.md#knife"));
    EXPECT_EQ(placeOfId("convert.knife"), QString("convert.md#knife"));
    EXPECT_EQ(placeOfId("view.features"), QString("options.md#view-features"));
    EXPECT_EQ(placeOfId("view.fit"), QString("view.md#fit-to-window"));
}

// ---- What is told ---------------------------------------------------------------------------------------------------

TEST(Guide, TellsEveryCommandUnderItsMenuText) {
    for (const Command& command : commandTable()) {
        const GuideSection* section = sectionAt(placeOf(command));
        ASSERT_NE(section, nullptr) << command.id;
        EXPECT_EQ(section->heading, qtText(plainText(command.menuText))) << command.id;
        EXPECT_GT(section->text.size(), 20) << command.id;
    }
}

void expectWording(const std::vector<MenuEntry>& entries) {
    for (const MenuEntry& entry : entries) {
        expectWording(entry.entries);
        if (entry.kind == MenuEntry::Kind::Item) {
            const QString page = placeOf(*findCommand(entry.command)).page;
            EXPECT_TRUE(wordsOf(page).contains(qtText(plainText(entry.text)))) << entry.command << ": " << entry.text;
        }
    }
}

TEST(Guide, CallsEveryMenuEntryByTheWordsOfItsMenu) {
    for (const Menu& menu : mainMenus()) {
        expectWording(menu.entries);
    }
    for (const Menu* menu : {&pointContextMenu(), &lineContextMenu(), &patchContextMenu()}) {
        expectWording(menu->entries);
    }
}

/// The links of the items of a menu, its submenus' too, in order.
void addPlaces(const std::vector<MenuEntry>& entries, QStringList& places) {
    for (const MenuEntry& entry : entries) {
        addPlaces(entry.entries, places);
        if (entry.kind == MenuEntry::Kind::Item) {
            const GuidePlace place = placeOf(*findCommand(entry.command));
            places.append(place.page + QLatin1Char('#') + place.anchor);
        }
    }
}

TEST(Guide, ThePageOfMenusListsEachEntryOfTheContextMenusAndToolBarsInOrder) {
    QStringList expected;
    for (const Menu* menu : {&pointContextMenu(), &lineContextMenu(), &patchContextMenu()}) {
        addPlaces(menu->entries, expected);
    }
    for (const Menu& bar : toolBars()) {
        addPlaces(bar.entries, expected);
    }
    EXPECT_EQ(linksOfLists(QStringLiteral("menus.md")), expected);
}

TEST(Guide, NamesEveryKey) {
    const QString keys = wordsOf("index.md");
    for (const Command& command : commandTable()) {
        EXPECT_TRUE(keys.contains(QString::fromLatin1(command.accelerator))) << command.id;
    }
}

TEST(Guide, NamesEveryFieldAndChoiceOfEveryDialog) {
    RecordingUi ui;
    DocumentState document(ui, {});
    const QString words = wordsOf();
    for (const std::string& name : DialogValues::names()) {
        const DialogForm form = document.dialogs->form(name).value();
        for (const DialogField& field : form.fields) {
            for (const std::string& choice : field.choices) {
                EXPECT_TRUE(words.contains(qtText(plainText(choice)))) << name << ": " << choice;
            }
            EXPECT_TRUE(field.kind == FieldKind::Radio || words.contains(qtText(plainText(field.label))))
                << name << ": " << field.label;
        }
    }
}

/// The texts that a header declares, of the form `name = "text";` or `name{severity, "text"};`.
QStringList declaredTexts(const QString& header) {
    static const QRegularExpression text(QStringLiteral(R"([=,]\s*"((?:[^"\\]|\\.)*)\"\s*\}?;)"));
    QStringList texts;
    auto found = text.globalMatch(fileText(QStringLiteral(VELMORA_SOURCES "/") + header));
    while (found.hasNext()) {
        QString words = found.next().captured(1);
        words.replace(QLatin1String("\\\""), QLatin1String("\"")).replace(QLatin1String("\\n"), QLatin1String(" "));
        texts.append(words.simplified());
    }
    return texts;
}

TEST(Guide, ExplainsEveryMessage) {
    const QString explained = wordsOf("messages.md");
    for (const char* header :
         {"document/messages.h", "formats/format_outcome.h", "formats/field_file.h", "interchange/dat_geometry.h"}) {
        const QStringList texts = declaredTexts(QString::fromLatin1(header));
        EXPECT_FALSE(texts.isEmpty()) << header;
        for (const QString& text : texts) {
            EXPECT_TRUE(explained.contains(text)) << header << ": " << text.toStdString();
        }
    }
}

// ---- Pages, links, pictures -----------------------------------------------------------------------------------------

TEST(Guide, HoldsEveryFileOfItsFolderAndNoOther) {
    const auto& pages = guidePages();
    const std::set<QString> listed(pages.begin(), pages.end());
    EXPECT_EQ(listed.size(), static_cast<std::size_t>(pages.size()));
    EXPECT_EQ(listed, namesIn(":/guide", "*.md"));
    EXPECT_EQ(listed, namesIn(VELMORA_GUIDE, "*.md"));
    EXPECT_EQ(namesIn(":/guide/pictures", "*"), namesIn(VELMORA_GUIDE "/pictures", "*"));
}

TEST(Guide, NoTwoHeadingsOfAPageShareAnAnchor) {
    std::set<QString> seen;
    for (const GuideSection& section : guideSections()) {
        const QString place = section.page + QLatin1Char('#') + anchorOf(section.heading);
        EXPECT_TRUE(seen.insert(place).second) << place.toStdString();
    }
}

TEST(Guide, EveryLinkLeadsToAPlaceOfTheGuide) {
    const auto links = allTargets(false);
    EXPECT_GT(links.size(), 100U);
    for (const Target& link : links) {
        const QUrl url = guideUrl({link.page, QString()}).resolved(QUrl(link.name));
        const GuidePlace place{url.path().section(QLatin1Char('/'), -1), url.fragment()};
        EXPECT_EQ(url.scheme(), QString("qrc")) << link.page.toStdString() << " -> " << link.name.toStdString();
        EXPECT_TRUE(guidePages().contains(place.page)) << link.page.toStdString() << " -> " << link.name.toStdString();
        EXPECT_TRUE(place.anchor.isEmpty() || sectionAt(place) != nullptr)
            << link.page.toStdString() << " -> " << link.name.toStdString();
    }
}

TEST(Guide, EveryPageIsReachedFromTheFirst) {
    std::set<QString> reached{guidePages().front()};
    std::vector<QString> open{guidePages().front()};
    while (!open.empty()) {
        const QString page = open.back();
        open.pop_back();
        for (const Target& link : targetsOf(page, false)) {
            const QString next = guideUrl({page, QString()}).resolved(QUrl(link.name)).path().section('/', -1);
            if (reached.insert(next).second) {
                open.push_back(next);
            }
        }
    }
    for (const QString& page : guidePages()) {
        EXPECT_TRUE(reached.count(page) == 1) << page.toStdString();
    }
}

TEST(Guide, EveryPictureIsThereSmallAndShown) {
    std::set<QString> shown;
    for (const Target& picture : allTargets(true)) {
        const QImage image(QStringLiteral(":/guide/") + picture.name);
        EXPECT_FALSE(image.isNull()) << picture.page.toStdString() << ": " << picture.name.toStdString();
        EXPECT_LE(image.width(), 900) << picture.name.toStdString();
        EXPECT_LT(QFile(QStringLiteral(":/guide/") + picture.name).size(), 100'000) << picture.name.toStdString();
        shown.insert(picture.name.section('/', -1));
    }
    EXPECT_EQ(shown, namesIn(":/guide/pictures", "*"));
}

// ---- Search ---------------------------------------------------------------------------------------------------------

QStringList headingsFound(const QString& words) {
    QStringList headings;
    for (const GuideSection* section : findInGuide(words)) {
        headings.append(section->heading);
    }
    return headings;
}

TEST(GuideSearch, FindsAllWordsInAnyOrderWhateverTheCase) {
    EXPECT_THAT(headingsFound("revolution body"), ElementsAre(QString("Cylinder")));
    EXPECT_THAT(headingsFound("  BODY   Revolution "), ElementsAre(QString("Cylinder")));
}

TEST(GuideSearch, HeadingsWithTheWordsComeFirst) {
    const QStringList found = headingsFound("weeding");
    ASSERT_FALSE(found.isEmpty());
    EXPECT_EQ(found.front(), QString("Weeding"));
    const QStringList extrapolate = headingsFound("extrapolate");
    EXPECT_GT(extrapolate.size(), 1) << "it is named elsewhere too";
    EXPECT_EQ(extrapolate.front(), QString("Extrapolate"));
}

TEST(GuideSearch, HeadingsComeBeforeTextsThatStandOnEarlierPages) {
    for (const char* word : {"messages", "formats", "undo", "merge", "smooth"}) {
        const QStringList found = headingsFound(word);
        const auto named = [word](const QString& heading) { return heading.contains(word, Qt::CaseInsensitive); };
        const auto others = std::find_if_not(found.begin(), found.end(), named);
        EXPECT_NE(others, found.begin()) << word;
        EXPECT_NE(others, found.end()) << word << " is named in texts too";
        EXPECT_TRUE(std::none_of(others, found.end(), named)) << word;
    }
}

TEST(GuideSearch, FindsNothingForNoWordsAndForWordsThatAreNotThere) {
    EXPECT_THAT(findInGuide(""), IsEmpty());
    EXPECT_THAT(findInGuide("   "), IsEmpty());
    EXPECT_THAT(findInGuide("zeppelin"), IsEmpty());
    EXPECT_THAT(findInGuide("cylinder zeppelin"), IsEmpty());
}

} // namespace
} // namespace velmora::test
