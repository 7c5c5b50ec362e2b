#pragma once

#include <QString>
#include <QStringList>
#include <QUrl>
#include <vector>

#include "command_table.h"

namespace velmora {

// The user guide, compiled in: pages in Markdown, cut into sections at their headings.

/// A place in the guide; an empty anchor is the top of the page.
struct GuidePlace {
    QString page = QStringLiteral("index.md");
    QString anchor;
};

/// What stands under one heading, down to the next of any level.
struct GuideSection {
    QString page;
    QString pageTitle;
    int level = 1;
    QString heading;
    QString text; ///< plain, its blocks one to a line
};

/// The pages in the order of the contents, as file names.
const QStringList& guidePages();
/// The Markdown of a page. Where it says `<!-- menu NAME -->` or `<!-- bar NAME -->`, the entries of that context menu
/// or tool bar stand, each a link to where it is told.
QString guideText(const QString& page);
/// The address of a place for a text browser.
QUrl guideUrl(const GuidePlace& place);
/// The name by which links mean a heading: lower case, blanks as "-", of the other marks only "-" and "_".
QString anchorOf(const QString& heading);
/// Where a command is told: on the page of its kind, under its menu text.
GuidePlace placeOf(const Command& command);
/// The whole guide in order, read once.
const std::vector<GuideSection>& guideSections();
/// The sections that hold every word of `words`, whatever the case: those that have them in their heading come first.
std::vector<const GuideSection*> findInGuide(const QString& words);

} // namespace velmora
