#include "MainFrame.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QMenuBar>
#include <QMimeData>
#include <QSettings>
#include <QStandardPaths>
#include <QStatusTipEvent>
#include <QTimer>
#include <algorithm>

#include "HelpDesk.h"
#include "command_keys.h"
#include "qt_text.h"

namespace velmora {

namespace {

constexpr QSize startSize{1024, 720};
constexpr QSize toolIconSize{16, 16};

std::filesystem::path documentsFolder() {
    return filePath(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
}

/// The files that are dragged, in their order, each once; what is no file of this machine is left out.
QStringList draggedFiles(const QMimeData& data) {
    QStringList paths;
    for (const QUrl& url : data.urls()) {
        if (url.isLocalFile()) {
            paths.append(url.toLocalFile());
        }
    }
    paths.removeDuplicates();
    return paths;
}

/// Where the settings keep the window.
const QString geometryKey = QStringLiteral("Window/Geometry");
const QString barsKey = QStringLiteral("Window/Bars");

} // namespace

MainFrame::MainFrame()
    : recent_(new RecentFiles(this)), status_(new StatusLine(this)), viewWidget_(new GlViewWidget(this)),
      userInterface_(std::make_unique<QtUserInterface>(*this, *status_, *recent_)),
      document_(std::make_unique<VelmoraDoc>(*userInterface_, documentsFolder())),
      view_(std::make_unique<VelmoraView>(*document_, *viewWidget_)) {
    setWindowIcon(QIcon(QStringLiteral(":/icons/velmora.svg")));
    setWindowTitle(QStringLiteral("Velmora"));
    setIconSize(toolIconSize);
    setStatusBar(status_);
    setCentralWidget(viewWidget_);
    actions_ = new CommandActions(
        *recent_, [this](const Command& command) { return stateOf(command); },
        [this](std::string_view key) { return commandsOfKey(*document_, key); }, this);
    makeMenus();
    makeToolBars();
    actions_->addShortcuts(*this);
    connectView();
    status_->showText(qtText(document_->status));
    setAcceptDrops(true);
    resize(startSize);
    viewWidget_->setFocus();
    help_ = new HelpDesk(this);
    // The lock keys' indicators follow keys pressed in any window of the program.
    qApp->installEventFilter(this);
}

MainFrame::~MainFrame() {
    qApp->removeEventFilter(this);
    // The bars are hidden with the window, when there is no document left to ask.
    for (QToolBar* bar : toolBars_) {
        bar->disconnect(this);
    }
    view_->OnDestroy();
    viewWidget_->setView(nullptr);
}

void MainFrame::makeMenus() {
    for (const Menu& menu : mainMenus()) {
        actions_->fillMenu(*menuBar()->addMenu(qtText(menu.name)), menu.entries);
    }
    connect(actions_, &CommandActions::triggered, this, &MainFrame::run);
    connect(actions_, &CommandActions::recentFileChosen, this, &MainFrame::openFile);
    connect(actions_, &CommandActions::menuClosed, this, [this] {
        status_->showHint({});
        // What the menu covered is painted anew, and with it what a command changed without asking for a paint.
        viewWidget_->requestRepaint();
    });
}

void MainFrame::makeToolBars() {
    for (const Menu& bar : toolBars()) {
        auto* toolBar = new QToolBar(qtText(bar.name), this);
        toolBar->setObjectName(qtText(bar.name));
        toolBar->setMovable(true);
        actions_->fillToolBar(*toolBar, bar.entries);
        addToolBar(Qt::TopToolBarArea, toolBar);
        if (toolBars_.isEmpty()) {
            // The longest bar has a row to itself.
            addToolBarBreak(Qt::TopToolBarArea);
        }
        connect(toolBar, &QToolBar::visibilityChanged, this, &MainFrame::refresh);
        toolBars_.append(toolBar);
    }
}

void MainFrame::connectView() {
    viewWidget_->setView(view_.get());
    connect(viewWidget_, &GlViewWidget::paintBegins, this, [this] { userInterface_->holdMessages(true); });
    connect(viewWidget_, &GlViewWidget::paintEnds, this, [this] { userInterface_->holdMessages(false); });
    connect(viewWidget_, &GlViewWidget::leftReleased, this, &MainFrame::refresh);
    connect(viewWidget_, &GlViewWidget::contextMenuWanted, this, &MainFrame::showContextMenu);
}

// ---- The window itself ----------------------------------------------------------------------------------------------

bool MainFrame::restoreWindow() {
    const QSettings settings;
    restoreState(settings.value(barsKey).toByteArray());
    return restoreGeometry(settings.value(geometryKey).toByteArray());
}

void MainFrame::keepWindow() const {
    QSettings settings;
    settings.setValue(geometryKey, saveGeometry());
    settings.setValue(barsKey, saveState());
}

void MainFrame::showAsLeft() {
    if (restoreWindow()) {
        show();
    } else {
        showMaximized();
    }
    reportGraphics();
}

void MainFrame::reportGraphics() {
    if (!viewWidget_->hasContext()) {
        // There is no canvas that would have told the view: let it find out.
        view_->OnCreate();
        document_->ShowStatus(view_->lastErrorText);
    }
}

// ---- Commands -------------------------------------------------------------------------------------------------------

CommandState MainFrame::stateOf(const Command& command) const {
    CommandState state;
    state.on = !isCommandOff(*document_, command.id) &&
               !(command.owner == CommandOwner::View && view_->isViewCommandOff(command.id));
    state.checked = checkedState(command.id);
    return state;
}

std::optional<bool> MainFrame::checkedState(std::string_view id) const {
    if (id == "view.toolbar") {
        return toolBarsShown();
    }
    if (id == "view.statusBar") {
        return !status_->isHidden();
    }
    if (id == "view.surface") {
        return document_->surfaceMode;
    }
    if (id == "view.perspective") {
        return view_->projectionMode == 0;
    }
    if (id == "view.orthographic") {
        return view_->projectionMode == 1;
    }
    if (id == "block.only") {
        return document_->showBlockOnly;
    }
    if (id == "model.reflectToSft") {
        return true; // it carries the mark whether or not markers are there
    }
    return std::nullopt;
}

void MainFrame::run(const Command& command) {
    if (!stateOf(command).on) {
        return;
    }
    const HelpDesk::Running running(*help_, command);
    switch (command.owner) {
    case CommandOwner::Document:
        document_->runCommand(command.run);
        break;
    case CommandOwner::View:
        view_->runViewCommand(command.id);
        break;
    case CommandOwner::Shell:
        runShellCommand(command);
        break;
    }
    refresh();
}

void MainFrame::runShellCommand(const Command& command) {
    const std::string_view id = command.id;
    if (id == "file.exit") {
        close();
    } else if (id == "view.toolbar") {
        const bool show = !toolBarsShown();
        for (QToolBar* bar : toolBars_) {
            bar->setVisible(show);
        }
    } else if (id == "view.statusBar") {
        status_->setVisible(status_->isHidden());
    } else if (id == "help.topics") {
        help_->open();
    } else if (id == "help.about") {
        emit aboutWanted();
    }
}

bool MainFrame::toolBarsShown() const {
    return std::any_of(toolBars_.begin(), toolBars_.end(), [](const QToolBar* bar) { return !bar->isHidden(); });
}

void MainFrame::refresh() {
    actions_->refresh();
    setWindowModified(document_->documentModified);
}

void MainFrame::openFile(const QString& path) {
    openFiles({path});
}

void MainFrame::openFiles(const QStringList& paths) {
    std::vector<std::filesystem::path> files;
    std::transform(paths.cbegin(), paths.cend(), std::back_inserter(files), filePath);
    if (document_->saveModified()) {
        document_->onOpenDocuments(files);
    }
    refresh();
}

void MainFrame::showContextMenu(const QPoint& position) {
    const Menu* entries = activeContextMenu(*document_);
    if (entries == nullptr) {
        return;
    }
    QMenu menu(this);
    menu.setObjectName(qtText(entries->name));
    actions_->fillMenu(menu, entries->entries);
    // Menus of the menu bar do both by themselves.
    connect(&menu, &QMenu::hovered, this, [this](QAction* action) { action->showStatusText(this); });
    menu.exec(position);
    status_->showHint(QString());
}

// ---- Events ---------------------------------------------------------------------------------------------------------

bool MainFrame::event(QEvent* event) {
    if (event->type() == QEvent::StatusTip) {
        status_->showHint(static_cast<QStatusTipEvent*>(event)->tip());
        return true;
    }
    // A menu that help was asked in leaves the keyboard to nobody.
    if (event->type() == QEvent::WindowActivate && (focusWidget() == nullptr || focusWidget() == menuBar())) {
        viewWidget_->setFocus();
    }
    return QMainWindow::event(event);
}

bool MainFrame::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::WindowActivate:
        if (watched->isWindowType()) {
            status_->refreshLocks();
        }
        break;
    default:
        break;
    }
    return QMainWindow::eventFilter(watched, event);
}

void MainFrame::closeEvent(QCloseEvent* event) {
    event->setAccepted(document_->saveModified());
    if (event->isAccepted()) {
        keepWindow();
    }
}

void MainFrame::dragEnterEvent(QDragEnterEvent* event) {
    if (!draggedFiles(*event->mimeData()).isEmpty()) {
        event->acceptProposedAction();
    }
}

void MainFrame::dropEvent(QDropEvent* event) {
    event->acceptProposedAction();
    // A question within the drop would keep the program that the file comes from waiting.
    QTimer::singleShot(0, this, [this, paths = draggedFiles(*event->mimeData())] { openFiles(paths); });
}

} // namespace velmora
