#pragma once

#include <QMainWindow>
#include <functional>
#include <memory>

#include "CommandActions.h"
#include "GlViewWidget.h"
#include "QtUserInterface.h"
#include "RecentFiles.h"
#include "Session.h"
#include "StatusLine.h"

namespace velmora {

class HelpDesk;
class Panels;
class StartPanel;
class VelmoraDoc;
struct DocumentState;

/// The frame: menu bar, tool bars, status line, and the session with its one view. It runs commands by the session and
/// keeps their states up to date.
class MainFrame : public QMainWindow, public ShellCommands {
    Q_OBJECT

public:
    MainFrame();
    ~MainFrame() override;

    Session& session() { return *session_; }
    VelmoraDoc& document() { return session_->document(); }
    DocumentState& state() { return session_->state(); }
    VelmoraView& view() { return session_->view(); }

    /// Runs a command of the table if it is on.
    void run(const Command& command);
    /// Opens a file in place of the model, which the user may save first.
    void openFile(const QString& path);
    /// Opens several in place of the model: those behind the first join it if they are of its type.
    void openFiles(const QStringList& paths);
    void offerImport(const std::filesystem::path& path);
    /// Runs a script, and tells where it ended if it could not go on.
    void runScript(const std::filesystem::path& script);
    /// Nothing is asked, and the model is saved or given up.
    bool mayLeave();
    /// Keeps place, size and bars of the window for the next start.
    void keepWindow() const;
    /// Shows the frame with its bars as it was when it was closed last, the first time maximised. Then says in the
    /// status line why the view stays empty, if it does.
    void showAsLeft();
    /// The version of the view's OpenGL; empty: there is none.
    QString openGlVersion() { return viewWidget_->openGlVersion(); }

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
    void makePanels();
    void connectView();
    CommandState stateOf(const Command& command) const;
    void exit() override;
    void leave();
    void showGuide() override;
    void showKeys() override;
    void showAbout() override { emit aboutWanted(); }
    void savePicture() override;
    void copyPicture() override;
    void showPanel(Panel panel) override;
    bool panelShown(Panel panel) const override;
    void toggleToolBars() override;
    void toggleStatusBar() override;
    bool toolBarsShown() const override;
    bool statusBarShown() const override { return !status_->isHidden(); }
    void showContextMenu(const QPoint& position);
    void refresh();
    QString modeText() const;
    void noteKey(const Command& command);
    bool restoreWindow();
    void keepSensibleSize();
    void carryOut(const std::function<void()>& work);
    void reportGraphics();

    RecentFiles* recent_;
    StatusLine* status_;
    GlViewWidget* viewWidget_;
    CommandActions* actions_;
    HelpDesk* help_;
    StartPanel* startPanel_;
    QList<QToolBar*> toolBars_;
    bool leaving_ = false;      ///< the question was answered: the window may go
    bool surfaceShown_ = false; ///< what the Surface button says
    std::unique_ptr<QtUserInterface> userInterface_;
    std::unique_ptr<Session> session_;
    Panels* panels_ = nullptr;
};

} // namespace velmora
