#include "HelpWindow.h"

#include <QHBoxLayout>
#include <QIcon>
#include <QLineEdit>
#include <QShortcut>
#include <QSplitter>
#include <QStyle>
#include <QToolButton>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
#include <QVBoxLayout>

#include "GuideBrowser.h"
#include "theme_icon.h"

namespace velmora {

namespace {

constexpr QSize startSize{1120, 700};
constexpr int listWidth = 320;
constexpr int tipLength = 160;
constexpr int urlRole = Qt::UserRole;

QTreeWidgetItem* makeItem(const QString& text, const GuideSection& section) {
    auto* item = new QTreeWidgetItem(QStringList(text));
    const QString anchor = section.level == 1 ? QString() : anchorOf(section.heading);
    item->setData(0, urlRole, guideUrl({section.page, anchor}));
    return item;
}

} // namespace

HelpWindow::HelpWindow(QWidget* parent)
    : QWidget(parent, Qt::Window), search_(new QLineEdit(this)), list_(new QTreeWidget(this)),
      page_(new GuideBrowser(this)) {
    setObjectName(QStringLiteral("helpWindow"));
    setWindowTitle(tr("Velmora help"));
    setWindowIcon(QIcon(QStringLiteral(":/icons/velmora.svg")));
    // The program ends with its frame, not with the guide.
    setAttribute(Qt::WA_QuitOnClose, false);
    list_->setObjectName(QStringLiteral("contents"));
    list_->setAccessibleName(tr("Contents"));
    list_->setHeaderHidden(true);
    page_->setObjectName(QStringLiteral("page"));
    page_->setAccessibleName(tr("Page"));

    auto* bar = new QHBoxLayout;
    makeBar(*bar);
    auto* split = new QSplitter(this);
    split->addWidget(list_);
    split->addWidget(page_);
    split->setStretchFactor(1, 1);
    split->setSizes({listWidth, startSize.width() - listWidth});
    split->setChildrenCollapsible(false);
    auto* column = new QVBoxLayout(this);
    column->addLayout(bar);
    column->addWidget(split, 1);

    connect(list_, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem* item) { go(item); });
    connect(list_, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem* item) { go(item); });
    connect(page_, &QTextBrowser::sourceChanged, this, &HelpWindow::markContents);
    makeKeys();
    showContents();
    resize(startSize);
}

void HelpWindow::makeBar(QHBoxLayout& bar) {
    const auto addButton = [&](const char* name, const QString& text, const QIcon& icon) {
        auto* button = new QToolButton(this);
        button->setObjectName(QLatin1String(name));
        button->setIcon(icon);
        button->setToolTip(text);
        button->setAccessibleName(text);
        bar.addWidget(button);
        return button;
    };
    auto* back = addButton("back", tr("Back"), style()->standardIcon(QStyle::SP_ArrowBack));
    auto* forward = addButton("forward", tr("Forward"), style()->standardIcon(QStyle::SP_ArrowForward));
    auto* start = addButton("start", tr("Start page"), themeIcon(QStringLiteral(":/icons/guide.start.svg")));
    back->setEnabled(false);
    forward->setEnabled(false);
    connect(back, &QToolButton::clicked, page_, &QTextBrowser::backward);
    connect(forward, &QToolButton::clicked, page_, &QTextBrowser::forward);
    connect(start, &QToolButton::clicked, this, [this] { page_->setSource(guideUrl({})); });
    connect(page_, &QTextBrowser::backwardAvailable, back, &QToolButton::setEnabled);
    connect(page_, &QTextBrowser::forwardAvailable, forward, &QToolButton::setEnabled);

    search_->setObjectName(QStringLiteral("search"));
    search_->setAccessibleName(tr("Search"));
    search_->setPlaceholderText(tr("Search the guide"));
    search_->setToolTip(tr("Words that a section has all of; Escape goes back to the contents"));
    search_->setClearButtonEnabled(true);
    search_->setMaximumWidth(360);
    bar.addStretch(1);
    bar.addWidget(search_, 2);
    connect(search_, &QLineEdit::textChanged, this, &HelpWindow::showFound);
    connect(search_, &QLineEdit::returnPressed, this, [this] { go(list_->topLevelItem(0)); });
}

void HelpWindow::makeKeys() {
    const auto addKey = [this](const QKeySequence& key, auto run) {
        connect(new QShortcut(key, this), &QShortcut::activated, this, run);
    };
    addKey(QKeySequence::Back, [this] { page_->backward(); });
    addKey(QKeySequence::Forward, [this] { page_->forward(); });
    addKey(QKeySequence::Find, [this] {
        search_->setFocus();
        search_->selectAll();
    });
    addKey(Qt::Key_Escape, [this] { leave(); });
}

void HelpWindow::open(const GuidePlace& place) {
    // Shown first: the place on top depends on the width of the page.
    show();
    raise();
    activateWindow();
    page_->setSource(guideUrl(place));
    page_->setFocus();
}

// ---- The list at the left -------------------------------------------------------------------------------------------

void HelpWindow::showContents() {
    list_->clear();
    list_->setRootIsDecorated(true);
    QList<QTreeWidgetItem*> above; // the item in hand, behind those that it stands under
    for (const GuideSection& section : guideSections()) {
        QTreeWidgetItem* item = makeItem(section.heading, section);
        while (!above.isEmpty() && above.back()->data(0, urlRole + 1).toInt() >= section.level) {
            above.removeLast();
        }
        if (above.isEmpty()) {
            list_->addTopLevelItem(item);
        } else {
            above.back()->addChild(item);
        }
        item->setData(0, urlRole + 1, section.level);
        above.append(item);
    }
    markContents(page_->source());
}

void HelpWindow::showFound(const QString& words) {
    if (words.trimmed().isEmpty()) {
        page_->markWords({});
        showContents();
        return;
    }
    list_->clear();
    list_->setRootIsDecorated(false);
    for (const GuideSection* section : findInGuide(words)) {
        const bool top = section->level == 1;
        auto* item =
            makeItem(top ? section->heading : tr("%1 (%2)").arg(section->heading, section->pageTitle), *section);
        item->setToolTip(0, section->text.left(tipLength));
        list_->addTopLevelItem(item);
    }
    if (list_->topLevelItemCount() == 0) {
        auto* none = new QTreeWidgetItem(QStringList(tr("Nothing found")));
        none->setFlags(Qt::NoItemFlags);
        list_->addTopLevelItem(none);
    }
}

void HelpWindow::go(const QTreeWidgetItem* item) {
    const QUrl url = item != nullptr ? item->data(0, urlRole).toUrl() : QUrl();
    if (url.isEmpty()) {
        return;
    }
    page_->setSource(url);
    page_->markWords(search_->text().simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts));
}

/// The contents follow the page.
void HelpWindow::markContents(const QUrl& shown) {
    QTreeWidgetItem* found = nullptr;
    for (QTreeWidgetItemIterator item(list_); *item != nullptr; ++item) {
        if ((*item)->data(0, urlRole).toUrl() == shown) {
            found = *item;
            break;
        }
    }
    if (found != nullptr) {
        list_->setCurrentItem(found);
        list_->scrollToItem(found);
    }
}

/// Escape ends the search first, then closes the window.
void HelpWindow::leave() {
    if (search_->text().isEmpty()) {
        close();
    } else {
        search_->clear();
    }
}

} // namespace velmora
