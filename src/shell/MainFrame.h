#pragma once

#include <QMainWindow>
#include <memory>

#include "CommandActions.h"
#include "GlViewWidget.h"
#include "QtUserInterface.h"
#include "RecentFiles.h"
#include "StatusLine.h"

namespace velmora {

class HelpDesk;

/// The frame: menu bar, tool bars, status line, and the one document with its one view. It routes each command to
/// its owner and keeps the commands' states up to date.
class MainFrame : public QMainWindow {
    Q_OBJECT

public:
    MainFrame();
    ~MainFrame() override;

    VelmoraDoc& document() { return *document_; }
    VelmoraView& view() { return *view_; }

    /// Runs a command of the table if it is on.
    void run(const Command& command);
    /// Opens a file in place of the model, which the user may save first.
    void openFile(const QString& path);
    /// Opens several in place of the model: those behind the first join it if they are of its type.
    void openFiles(const QStringList& paths);
    /// Shows the frame with its bars as it was when it was closed last, the first time maximised. Then says in the
    /// status line why the view stays empty, if it does.
    void showAsLeft();

signals:
    void aboutWanted();

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void makeMenus();
    void makeToolBars();
    void connectView();
    CommandState stateOf(const Command& command) const;
    std::optional<bool> checkedStateOf(const Command& command) const;
    void runShellCommand(const Command& command);
    void showContextMenu(const QPoint& position);
    bool toolBarsShown() const;
    void refresh();
    bool restoreWindow();
    void keepWindow() const;
    void reportGraphics();

    RecentFiles* recent_;
    StatusLine* status_;
    GlViewWidget* viewWidget_;
    CommandActions* actions_;
    HelpDesk* help_;
    QList<QToolBar*> toolBars_;
    std::unique_ptr<QtUserInterface> userInterface_;
    std::unique_ptr<VelmoraDoc> document_;
    std::unique_ptr<VelmoraView> view_;
};

} // namespace velmora
