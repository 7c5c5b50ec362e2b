#include "GuideBrowser.h"

#include <QAbstractTextDocumentLayout>
#include <QImage>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextTable>
#include <QTimer>

#include "guide.h"

namespace velmora {

namespace {

constexpr qreal pageMargin = 16.0;
constexpr qreal cellPadding = 4.0;
/// Above a heading within a page, by its level.
constexpr qreal headingMargins[] = {0.0, 0.0, 28.0, 18.0};

QList<QTextTable*> tablesOf(const QTextDocument& document) {
    QList<QTextTable*> tables;
    for (QTextFrame* frame : document.rootFrame()->childFrames()) {
        if (auto* table = qobject_cast<QTextTable*>(frame)) {
            tables.append(table);
        }
    }
    return tables;
}

} // namespace

GuideBrowser::GuideBrowser(QWidget* parent) : QTextBrowser(parent) {
    // What leads out of the guide is a matter of the desktop's browser.
    setOpenExternalLinks(true);
    connect(this, &QTextBrowser::sourceChanged, this, &GuideBrowser::dressPage);
}

/// Pages come with the lists filled in that they ask for.
QVariant GuideBrowser::loadResource(int type, const QUrl& name) {
    const QString page = name.fileName();
    return guidePages().contains(page) ? QVariant(guideText(page)) : QTextBrowser::loadResource(type, name);
}

void GuideBrowser::doSetSource(const QUrl& url, QTextDocument::ResourceType type) {
    setExtraSelections({});
    QTextBrowser::doSetSource(url, type);
    if (url.hasFragment()) {
        scrollToHeading(url.fragment());
    }
    // A window that is just coming up takes its size later, and the layout that was begun for the other size leaves
    // paragraphs without a height: the page is laid out from the start then.
    QTimer::singleShot(0, this, [this, url] {
        document()->markContentsDirty(0, document()->characterCount());
        if (source() == url && url.hasFragment()) {
            scrollToHeading(url.fragment());
        }
        viewport()->update();
    });
}

void GuideBrowser::resizeEvent(QResizeEvent* event) {
    QTextBrowser::resizeEvent(event);
    fitPictures();
}

/// What Markdown says nothing of: margins, and the frames of tables.
void GuideBrowser::dressPage(const QUrl& url) {
    shown_ = url;
    document()->setDocumentMargin(pageMargin);
    dressHeadings();
    dressTables();
    fitPictures();
}

void GuideBrowser::dressHeadings() {
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        const int level = block.blockFormat().headingLevel();
        if (level > 0) {
            QTextBlockFormat format;
            format.setTopMargin(headingMargins[std::min(level, 3)]);
            QTextCursor(block).mergeBlockFormat(format);
        }
    }
}

void GuideBrowser::dressTables() {
    for (QTextTable* table : tablesOf(*document())) {
        QTextTableFormat format = table->format();
        format.setBorder(1.0);
        format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
        format.setBorderCollapse(true);
        format.setBorderBrush(palette().mid());
        format.setCellPadding(cellPadding);
        format.setCellSpacing(0.0);
        table->setFormat(format);
    }
}

/// A picture wider than the window is shown smaller; it never grows beyond its own size.
void GuideBrowser::fitPictures() {
    const int room = std::max(viewport()->width() - static_cast<int>(2 * pageMargin), 1);
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        for (auto part = block.begin(); part != block.end(); ++part) {
            const QTextFragment fragment = part.fragment();
            if (!fragment.charFormat().isImageFormat()) {
                continue;
            }
            QTextImageFormat format = fragment.charFormat().toImageFormat();
            const QUrl url = shown_.resolved(QUrl(format.name()));
            const int width = QImage(QLatin1Char(':') + url.path()).width();
            if (width < 1 || format.width() == std::min(width, room)) {
                continue;
            }
            format.setWidth(std::min(width, room));
            QTextCursor cursor(document());
            cursor.setPosition(fragment.position());
            cursor.setPosition(fragment.position() + fragment.length(), QTextCursor::KeepAnchor);
            cursor.setCharFormat(format);
            break; // the block's parts are others now; the guide has one picture to a block
        }
    }
}

void GuideBrowser::scrollToHeading(const QString& anchor) {
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        if (block.blockFormat().headingLevel() > 0 && anchorOf(block.text().simplified()) == anchor) {
            setTextCursor(QTextCursor(block));
            document()->documentLayout()->documentSize(); // lays out the whole page, so that the bar knows its range
            const qreal top = document()->documentLayout()->blockBoundingRect(block).top();
            verticalScrollBar()->setValue(static_cast<int>(top - pageMargin / 2));
            return;
        }
    }
}

void GuideBrowser::markWords(const QStringList& words) {
    QList<QTextEdit::ExtraSelection> marks;
    for (const QString& word : words) {
        for (QTextCursor at = document()->find(word); !at.isNull(); at = document()->find(word, at)) {
            ExtraSelection mark;
            mark.cursor = at;
            mark.format.setBackground(palette().highlight());
            mark.format.setForeground(palette().highlightedText());
            marks.append(mark);
        }
    }
    setExtraSelections(marks);
}

} // namespace velmora
