#pragma once

#include <QWidget>

#include "guide.h"

class QHBoxLayout;
class QLineEdit;
class QTreeWidget;
class QTreeWidgetItem;

namespace velmora {

class GuideBrowser;

/// The user guide in a window of its own: contents or search results at the left, the page at the right.
class HelpWindow : public QWidget {
    Q_OBJECT

public:
    /// With a parent, the window goes with it and may be used while the parent, a dialog, waits for its answer.
    explicit HelpWindow(QWidget* parent = nullptr);

    /// Shows the window with that place on top.
    void open(const GuidePlace& place);

private:
    void makeBar(QHBoxLayout& bar);
    void makeKeys();
    void showContents();
    void showFound(const QString& words);
    void go(const QTreeWidgetItem* item);
    void markContents(const QUrl& shown);
    void leave();

    QLineEdit* search_;
    QTreeWidget* list_;
    GuideBrowser* page_;
};

} // namespace velmora
