#include "guide.h"

#include <QFile>
#include <QRegularExpression>
#include <QTextBlock>
#include <QTextDocument>
#include <algorithm>

#include "qt_text.h"

// The pages stand in a static library: nothing would link them in otherwise. Outside any namespace by its nature.
static void loadGuide() {
    Q_INIT_RESOURCE(guide);
}

namespace velmora {

namespace {

struct PageOfKind {
    const char* kind; ///< what a command's id begins with
    const char* page;
};

/// The first that fits counts.
constexpr PageOfKind pagesOfKinds[] = {
    {"file.", "file.md"},       {"patch.", "patches.md"},
    {"block.", "patches.md"},   {"line.", "lines.md"},
    {"buffer.", "lines.md"},    {"point.", "point.md"},
    {"convert.", "convert.md"}, {"model.", "transformations.md"},
    {"help.", "help.md"},       {"view.features", "options.md"},
    {"view.", "view.md"},       {"options.", "options.md"},
};

/// The entries of a menu, its submenus' too: a list with an item for each group between two bars.
QString listOf(const std::vector<MenuEntry>& entries, bool toolTips) {
    QString list = QStringLiteral("- ");
    bool first = true;
    for (const MenuEntry& entry : entries) {
        if (entry.kind == MenuEntry::Kind::Separator) {
            list += QStringLiteral("\n- ");
            first = true;
            continue;
        }
        list += first ? QString() : QStringLiteral(", ");
        first = false;
        if (entry.kind == MenuEntry::Kind::Submenu) {
            list += listOf(entry.entries, toolTips).mid(2);
        } else if (const Command* command = findCommand(entry.command)) {
            const GuidePlace place = placeOf(*command);
            const std::string text = toolTips && *command->toolTip != '\0' ? command->toolTip : entry.text;
            list += QStringLiteral("[%1](%2#%3)").arg(qtText(plainText(text)), place.page, place.anchor);
        }
    }
    return list;
}

/// The lists that a page may ask for, by the name that follows "menu" or "bar".
QString namedList(const QString& kind, const QString& name) {
    if (kind == QLatin1String("bar")) {
        const auto& bars = toolBars();
        const auto bar =
            std::find_if(bars.begin(), bars.end(), [&name](const Menu& m) { return qtText(m.name) == name; });
        return bar == bars.end() ? QString() : listOf(bar->entries, true);
    }
    for (const Menu* menu : {&pointContextMenu(), &lineContextMenu(), &patchContextMenu()}) {
        if (qtText(menu->name) == name) {
            return listOf(menu->entries, false);
        }
    }
    return {};
}

void addSections(const QString& page, std::vector<GuideSection>& sections) {
    QTextDocument document;
    document.setMarkdown(guideText(page));
    QString pageTitle;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        const QString text = block.text().simplified();
        const int level = block.blockFormat().headingLevel();
        if (level > 0) {
            pageTitle = pageTitle.isEmpty() ? text : pageTitle;
            sections.push_back({page, pageTitle, level, text, QString()});
        } else if (!sections.empty() && !text.isEmpty()) {
            sections.back().text += text + QLatin1Char('\n');
        }
    }
}

bool holdsAll(const QString& text, const QStringList& words) {
    return std::all_of(words.begin(), words.end(),
                       [&text](const QString& word) { return text.contains(word, Qt::CaseInsensitive); });
}

} // namespace

const QStringList& guidePages() {
    loadGuide();
    static const QStringList pages = {
        QStringLiteral("index.md"),    QStringLiteral("tutorial.md"),        QStringLiteral("regimes.md"),
        QStringLiteral("file.md"),     QStringLiteral("patches.md"),         QStringLiteral("lines.md"),
        QStringLiteral("point.md"),    QStringLiteral("transformations.md"), QStringLiteral("convert.md"),
        QStringLiteral("view.md"),     QStringLiteral("options.md"),         QStringLiteral("help.md"),
        QStringLiteral("menus.md"),    QStringLiteral("formats.md"),         QStringLiteral("point-table.md"),
        QStringLiteral("messages.md"), QStringLiteral("scripts.md"),         QStringLiteral("numbers.md"),
        QStringLiteral("howto.md"),    QStringLiteral("python.md"),          QStringLiteral("batch.md"),
        QStringLiteral("commands.md"), QStringLiteral("fields.md"),
    };
    return pages;
}

QString guideText(const QString& page) {
    loadGuide();
    QFile file(QStringLiteral(":/guide/") + page);
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    QString text = QString::fromUtf8(file.readAll());
    static const QRegularExpression asked(QStringLiteral("<!-- (menu|bar) (.+?) -->"));
    for (QRegularExpressionMatch found = asked.match(text); found.hasMatch(); found = asked.match(text)) {
        text.replace(found.capturedStart(), found.capturedLength(), namedList(found.captured(1), found.captured(2)));
    }
    return text;
}

QUrl guideUrl(const GuidePlace& place) {
    loadGuide();
    QUrl url(QStringLiteral("qrc:/guide/") + place.page);
    if (!place.anchor.isEmpty()) {
        url.setFragment(place.anchor);
    }
    return url;
}

QString anchorOf(const QString& heading) {
    QString anchor;
    for (const QChar c : heading.toLower()) {
        if (c == QLatin1Char(' ')) {
            anchor += QLatin1Char('-');
        } else if (c.isLetterOrNumber() || c == QLatin1Char('-') || c == QLatin1Char('_')) {
            anchor += c;
        }
    }
    return anchor;
}

GuidePlace placeOf(const Command& command) {
    const std::string_view id = command.id;
    const auto* const found = std::find_if(std::begin(pagesOfKinds), std::end(pagesOfKinds),
                                           [id](const PageOfKind& kind) { return id.starts_with(kind.kind); });
    if (found == std::end(pagesOfKinds)) {
        return {};
    }
    return {QString::fromLatin1(found->page), anchorOf(qtText(plainText(command.menuText)))};
}

const std::vector<GuideSection>& guideSections() {
    static const std::vector<GuideSection> sections = [] {
        std::vector<GuideSection> all;
        for (const QString& page : guidePages()) {
            addSections(page, all);
        }
        return all;
    }();
    return sections;
}

std::vector<const GuideSection*> findInGuide(const QString& words) {
    const QStringList wanted = words.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    std::vector<const GuideSection*> found;
    if (wanted.isEmpty()) {
        return found;
    }
    for (const GuideSection& section : guideSections()) {
        if (holdsAll(section.heading + QLatin1Char('\n') + section.text, wanted)) {
            found.push_back(&section);
        }
    }
    std::stable_partition(found.begin(), found.end(),
                          [&wanted](const GuideSection* section) { return holdsAll(section->heading, wanted); });
    return found;
}

} // namespace velmora
