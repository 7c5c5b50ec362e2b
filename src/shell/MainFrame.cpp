#include "MainFrame.h"

#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QCryptographicHash>
#include <QDragEnterEvent>
#include <QMenuBar>
#include <QMimeData>
#include <QScreen>
#include <QSettings>
#include <QStandardPaths>
#include <QStatusTipEvent>
#include <QTimer>
#include <algorithm>

#include "AccessKeys.h"
#include "CommandGuard.h"
#include "HelpDesk.h"
#include "KeyListBox.h"
#include "Panels.h"
#include "PixelPicture.h"
#include "StartPanel.h"
#include "VelmoraDoc.h"
#include "command_keys.h"
#include "foreign_files.h"
#include "messages.h"
#include "qt_text.h"

namespace velmora {

namespace {

constexpr QSize startSize{1024, 720};
constexpr QSize smallestSize{320, 240};
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
const QString statusKey = QStringLiteral("Window/StatusBar");
/// Whether the user ever pressed a key of the view.
const QString keyUsedKey = QStringLiteral("Window/ViewKeyUsed");

/// The bytes behind what tells whether they are still the same.
QByteArray sealed(const QByteArray& bytes) {
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha1) + bytes;
}

/// The bytes that were sealed; none when the value was damaged.
QByteArray unsealed(const QByteArray& value) {
    const QByteArray bytes = value.mid(QCryptographicHash::hashLength(QCryptographicHash::Sha1));
    return value == sealed(bytes) ? bytes : QByteArray();
}

} // namespace

MainFrame::MainFrame()
    : recent_(new RecentFiles(this)), status_(new StatusLine(this)), viewWidget_(new GlViewWidget(this)),
      userInterface_(std::make_unique<QtUserInterface>(*this, *status_, *recent_)),
      session_(std::make_unique<Session>(*userInterface_, *viewWidget_, static_cast<ShellCommands&>(*this),
                                         documentsFolder())) {
    setWindowIcon(QIcon(QStringLiteral(":/icons/velmora.svg")));
    setWindowTitle(QStringLiteral("Velmora"));
    setIconSize(toolIconSize);
    setStatusBar(status_);
    setCentralWidget(viewWidget_);
    actions_ = new CommandActions(
        *recent_, [this](const Command& command) { return stateOf(command); },
        [this](std::string_view key) { return commandsOfKey(session_->document(), key); }, this);
    makeMenus();
    makeToolBars();
    actions_->addShortcuts(*this);
    connectView();
    makePanels();
    status_->showText(qtText(session_->document().status));
    setAcceptDrops(true);
    resize(startSize);
    viewWidget_->setFocus();
    help_ = new HelpDesk(this);
    startPanel_ = new StartPanel(*recent_, viewWidget_);
    connect(startPanel_, &StartPanel::commandChosen, this, [this](const QString& id) {
        if (const Command* command = findCommand(plainBytes(id))) {
            run(*command);
        }
    });
    connect(startPanel_, &StartPanel::fileChosen, this, &MainFrame::openFile);
    refresh();
    // The lock keys' indicators follow keys pressed in any window of the program.
    qApp->installEventFilter(this);
}

MainFrame::~MainFrame() {
    qApp->removeEventFilter(this);
    // Bars and panels are hidden with the window, when there is no document left to ask.
    panels_->disconnect(this);
    for (QToolBar* bar : toolBars_) {
        bar->disconnect(this);
    }
    session_->view().OnDestroy();
    viewWidget_->setView(nullptr);
}

void MainFrame::makeMenus() {
    QStringList names;
    for (const Menu& menu : mainMenus()) {
        names.append(qtText(menu.name));
    }
    names = withKeysOnce(names);
    for (const Menu& menu : mainMenus()) {
        actions_->fillMenu(*menuBar()->addMenu(names.takeFirst()), menu.entries);
    }
    connect(actions_, &CommandActions::triggered, this, &MainFrame::run);
    connect(actions_, &CommandActions::keyUsed, this, &MainFrame::noteKey);
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

void MainFrame::makePanels() {
    session_->keepHistory();
    panels_ = new Panels(*this, *session_, *userInterface_);
    connect(panels_, &Panels::workWanted, this, &MainFrame::carryOut);
    connect(panels_, &Panels::changed, this, &MainFrame::refresh);
    connect(panels_, &Panels::leavingWanted, this, &MainFrame::leave);
}

void MainFrame::connectView() {
    viewWidget_->setView(&session_->view());
    connect(viewWidget_, &GlViewWidget::paintBegins, this, [this] { userInterface_->holdMessages(true); });
    connect(viewWidget_, &GlViewWidget::paintEnds, this, [this] {
        userInterface_->holdMessages(false);
        if (session_->document().surfaceMode != surfaceShown_) {
            QTimer::singleShot(0, this, &MainFrame::refresh); // lines have no surface, as the paint found out
        }
    });
    connect(viewWidget_, &GlViewWidget::failed, this, [this](const QString& cause) {
        // A box would bring the next paint, and that the next box.
        session_->document().ShowStatus(message::commandFailed(plainBytes(cause)).text);
    });
    viewWidget_->keepOpenWhile([this] { return userInterface_->mayBeMeantForWork(); });
    connect(viewWidget_, &GlViewWidget::hinted, status_, &StatusLine::showPointed);
    connect(viewWidget_, &GlViewWidget::keyTaken, this, &MainFrame::refresh);
    connect(viewWidget_, &GlViewWidget::leftReleased, this, &MainFrame::refresh);
    connect(viewWidget_, &GlViewWidget::contextMenuWanted, this, &MainFrame::showContextMenu);
}

// ---- The window itself ----------------------------------------------------------------------------------------------

bool MainFrame::restoreWindow() {
    const QSettings settings;
    // Of damaged bytes the toolkit makes bars without end, or none that it finds again.
    restoreState(unsealed(settings.value(barsKey).toByteArray()));
    status_->setVisible(settings.value(statusKey, true).toBool());
    const bool restored = restoreGeometry(settings.value(geometryKey).toByteArray());
    if (restored) {
        keepSensibleSize();
    }
    return restored;
}

/// A geometry of another desk, or none that a screen has, leaves next to nothing of the window.
void MainFrame::keepSensibleSize() {
    if (isMaximized() || isFullScreen() || (width() >= smallestSize.width() && height() >= smallestSize.height())) {
        return;
    }
    const QRect room = screen()->availableGeometry();
    resize(startSize.boundedTo(room.size()));
    move(room.topLeft());
}

void MainFrame::keepWindow() const {
    QSettings settings;
    settings.setValue(geometryKey, saveGeometry());
    settings.setValue(barsKey, sealed(saveState()));
    settings.setValue(statusKey, !status_->isHidden());
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
        session_->view().OnCreate();
        session_->document().ShowStatus(session_->view().lastErrorText);
    }
}

// ---- Commands -------------------------------------------------------------------------------------------------------

CommandState MainFrame::stateOf(const Command& command) const {
    CommandState state;
    state.on = session_->isOn(command);
    state.checked = checkedState(command, session_->document(), session_->view(), *this);
    return state;
}

void MainFrame::run(const Command& command) {
    const HelpDesk::Running running(*help_, command);
    userInterface_->nameWork(qtText(*command.statusText == '\0' ? plainText(command.menuText) : command.statusText));
    carryOut([&] { session_->run(command); });
    userInterface_->nameWork({});
    refresh();
}

/// What ends a piece of work by an exception is told; the document is what it was before.
void MainFrame::carryOut(const std::function<void()>& work) {
    std::optional<std::string> cause;
    try {
        work();
    } catch (const std::exception& error) {
        cause = causeOf(error);
    }
    if (cause) {
        session_->document().ui().showMessage(message::commandFailed(*cause));
    }
}

void MainFrame::showGuide() {
    help_->open();
}

void MainFrame::showKeys() {
    KeyListBox(this).exec();
}

void MainFrame::savePicture() {
    velmora::savePicture(*session_, pixelDrawer());
}

void MainFrame::copyPicture() {
    const QImage image = viewImage(*session_);
    if (image.isNull()) {
        session_->ui().showMessage(message::pictureNotDrawn);
    } else {
        QGuiApplication::clipboard()->setImage(image);
    }
}

void MainFrame::showPanel(Panel panel) {
    panels_->toggle(panel);
}

bool MainFrame::panelShown(Panel panel) const {
    return panels_ != nullptr && panels_->shown(panel);
}

void MainFrame::runScript(const std::filesystem::path& script) {
    panels_->runScript(script);
}

void MainFrame::toggleToolBars() {
    const bool show = !toolBarsShown();
    for (QToolBar* bar : toolBars_) {
        bar->setVisible(show);
    }
}

void MainFrame::toggleStatusBar() {
    status_->setVisible(status_->isHidden());
}

bool MainFrame::toolBarsShown() const {
    return std::any_of(toolBars_.begin(), toolBars_.end(), [](const QToolBar* bar) { return !bar->isHidden(); });
}

void MainFrame::refresh() {
    surfaceShown_ = session_->document().surfaceMode;
    actions_->refresh();
    actions_->tell("file.save", qtText(session_->document().saveTargetText()));
    setWindowModified(session_->document().documentModified);
    status_->showMode(modeText());
    startPanel_->setVisible(session_->document().holdsNothing());
    if (panels_ != nullptr) {
        panels_->refresh();
    }
}

/// What the left button does where that is out of the ordinary; a key that is worth knowing to whoever knows none.
QString MainFrame::modeText() const {
    const int mode = session_->view().mouseMode;
    for (const Command& command : commandTable()) {
        if (command.owner == CommandOwner::View && mode < ModeNone && VelmoraView::mouseModeOf(command.id) == mode) {
            return qtText(plainText(command.menuText));
        }
    }
    const CaptureState& capture = *session_->document().capture;
    switch (mode) {
    case ModePoint:
        return capture.pointDragging ? tr("Drag") : tr("Point");
    case ModePatch:
        return tr("Patch");
    case ModeSection:
        return tr("Section");
    case ModeLine:
        return tr("Line");
    default:
        break;
    }
    const Command* oblique = findCommand("view.oblique");
    return session_->document().holdsNothing() || QSettings().value(keyUsedKey, false).toBool()
               ? QString()
               : tr("Key %1: %2 view")
                     .arg(QString::fromLatin1(oblique->accelerator), qtText(plainText(oblique->menuText)));
}

void MainFrame::noteKey(const Command& command) {
    // The menu's forms of the views leave the repaint to the menu that closes; here none does.
    viewWidget_->requestRepaint();
    if (command.owner == CommandOwner::View) {
        QSettings().setValue(keyUsedKey, true);
        refresh();
    }
}

void MainFrame::openFile(const QString& path) {
    openFiles({path});
}

void MainFrame::exit() {
    if (mayLeave()) {
        leave();
    }
}

/// What there is to ask was asked.
void MainFrame::leave() {
    leaving_ = true;
    close();
    leaving_ = false;
}

bool MainFrame::mayLeave() {
    // What waits for an answer goes on first: the question would be answered by the end.
    return QApplication::activeModalWidget() == nullptr && session_->leave();
}

void MainFrame::openFiles(const QStringList& paths) {
    std::vector<std::filesystem::path> files;
    std::transform(paths.cbegin(), paths.cend(), std::back_inserter(files), filePath);
    userInterface_->nameWork(tr("Open a model"));
    std::error_code error;
    const auto missing = std::find_if(files.begin(), files.end(),
                                      [&](const auto& file) { return !std::filesystem::exists(file, error); });
    if (missing != files.end()) {
        session_->document().ui().showMessage(message::noSuchFile(missing->string()));
    } else if (files.size() == 1 && std::filesystem::is_directory(files.front(), error)) {
        carryOut([&] { session_->openIn(files.front()); });
    } else if (files.size() == 1 && isForeignFile(files.front())) {
        carryOut([&] { offerImport(files.front()); });
    } else {
        carryOut([&] { session_->openInstead(files); });
    }
    userInterface_->nameWork({});
    refresh();
}

/// A file that Open does not take.
void MainFrame::offerImport(const std::filesystem::path& path) {
    if (session_->document().ui().ask(message::offerImport(path.filename().string()))) {
        session_->importInstead(path);
    }
}

void MainFrame::showContextMenu(const QPoint& position) {
    const Menu* entries = activeContextMenu(session_->document());
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
    // Nothing is asked in here: to a window that is closing a second request would come through, past the question.
    event->setAccepted(leaving_ || (!session_->document().documentModified && mayLeave()));
    if (event->isAccepted()) {
        keepWindow();
    } else if (QApplication::activeModalWidget() == nullptr) {
        QTimer::singleShot(0, this, &MainFrame::exit);
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
