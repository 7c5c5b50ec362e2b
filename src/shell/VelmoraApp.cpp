#include "VelmoraApp.h"

#include <QCommandLineParser>
#include <QSettings>
#include <QTimer>
#include <QtGlobal>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "AboutBox.h"
#include "CommandGuard.h"
#include "RescueFolder.h"
#include "VelmoraDoc.h"
#include "about.h"
#include "messages.h"
#include "qt_text.h"

// The pictures stand in a static library: nothing would link them in otherwise. Outside any namespace by its nature.
static void loadPictures() {
    Q_INIT_RESOURCE(velmora);
}

namespace velmora {

namespace {

constexpr int startFailed = 1;
constexpr int usageError = 2;
const QString obliqueOption = QStringLiteral("oblique");

void describeProgram(QCommandLineParser& parser) {
    QCoreApplication::setOrganizationName(QStringLiteral("Dovra"));
    QCoreApplication::setApplicationName(QStringLiteral("Velmora"));
    QCoreApplication::setApplicationVersion(QString::fromLatin1(programVersion()));
    QGuiApplication::setDesktopFileName(QStringLiteral("org.velmora.Velmora"));
    parser.setApplicationDescription(QStringLiteral("An editor of the surface geometry of bodies."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOption(
        {QStringLiteral("no-rescue"),
         QStringLiteral("Keep no rescue copy of a model with changes, and offer none that was left behind.")});
    parser.addOption({obliqueOption, QStringLiteral("Show the file from an oblique side, fitted to the window.")});
    parser.addOption(
        {QStringLiteral("run"), QStringLiteral("Run a script once the window is shown."), QStringLiteral("script")});
    parser.addPositionalArgument(QStringLiteral("path"), QStringLiteral("The file to open."), QStringLiteral("[path]"));
}

/// What --help and --version print needs no display: answered before the window system is asked for.
void answerWithoutDisplay(int& argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        for (const char* option : {"-h", "--help", "--help-all", "-v", "--version"}) {
            if (std::strcmp(argv[i], option) == 0) {
                QCoreApplication application(argc, argv);
                QCommandLineParser parser;
                describeProgram(parser);
                parser.process(application);
            }
        }
    }
}

/// What the toolkit said while it looked for a display.
QStringList& heldWords() {
    static QStringList words;
    return words;
}

/// Where it finds none it would talk at length and abort: one line says it, and the process ends as one that failed.
void holdWords(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (type == QtFatalMsg) {
        std::fputs("velmora: no display was found to open a window on; velmora-batch needs none\n", stderr);
        std::fflush(stderr);
        std::_Exit(startFailed);
    }
    heldWords().append(qFormatLogMessage(type, context, text));
}

void releaseWords() {
    qInstallMessageHandler(nullptr);
    for (const QString& words : heldWords()) {
        std::fprintf(stderr, "%s\n", qPrintable(words));
    }
    heldWords().clear();
}

/// The arguments, once the surfaces of all windows are set to what the view needs.
int& prepared(int& argc, char** argv) {
    answerWithoutDisplay(argc, argv);
    qInstallMessageHandler(holdWords);
    QSurfaceFormat::setDefaultFormat(GlCanvas::surfaceFormat(PixelFormat{}));
    return argc;
}

struct CommandLine {
    QStringList paths;
    bool rescue = true;
    bool oblique = false;
    QString script; ///< empty: none
};

CommandLine readCommandLine(const QCoreApplication& application) {
    QCommandLineParser parser;
    describeProgram(parser);
    parser.process(application);
    if (parser.positionalArguments().size() > 1) {
        std::fputs("velmora: give one file at most\n", stderr);
        parser.showHelp(usageError);
    }
    return {parser.positionalArguments(), !parser.isSet(QStringLiteral("no-rescue")), parser.isSet(obliqueOption),
            parser.value(QStringLiteral("run"))};
}

} // namespace

bool Application::notify(QObject* receiver, QEvent* event) {
    try {
        return QApplication::notify(receiver, event);
    } catch (const std::exception& error) {
        emit eventFailed(qtText(causeOf(error)));
        return true;
    }
}

VelmoraApp::VelmoraApp(int& argc, char** argv) : application_(prepared(argc, argv), argv) {
    releaseWords();
    // The toolkit takes the user's locale; numbers are written as in the C locale everywhere.
    std::setlocale(LC_NUMERIC, "C");
    loadPictures();
}

VelmoraApp::~VelmoraApp() = default;

bool VelmoraApp::initInstance() {
    const CommandLine commandLine = readCommandLine(application_);
    QSettings().setValue(QStringLiteral("Settings/AppName"), QStringLiteral("Kelt"));
    frame_ = std::make_unique<MainFrame>();
    QObject::connect(frame_.get(), &MainFrame::aboutWanted, frame_.get(), [this] { showAbout(); });
    // A message box that closes before the frame is shown is not the last window.
    QGuiApplication::setQuitOnLastWindowClosed(false);
    QObject::connect(&application_, &Application::eventFailed, frame_.get(), [this](const QString& cause) {
        frame_->document().ShowStatus(message::commandFailed(plainBytes(cause)).text);
    });
    frame_->session().start();
    leaveDesk_ = std::make_unique<LeaveDesk>(*frame_, commandLine.rescue ? rescueRoot() : std::filesystem::path());
    QObject::connect(leaveDesk_.get(), &LeaveDesk::left, frame_.get(), [this] {
        left_ = true;
        QCoreApplication::exit(0);
    });
    const QStringList& paths = commandLine.paths;
    if (leaveDesk_->offerLeft()) {
        frame_->document().ShowStatus(paths.isEmpty() ? "The changes are back"
                                                      : "The changes are back; no file was opened");
    } else if (!paths.isEmpty()) {
        frame_->session().open({filePath(paths.front())});
        if (frame_->document().structureKind == StructureKind::None) {
            return false;
        }
    }
    frame_->showAsLeft();
    if (commandLine.oblique) {
        // The window has its size only once it is laid out.
        QTimer::singleShot(0, frame_.get(), [this] { frame_->run(*findCommand("view.oblique")); });
    }
    if (!commandLine.script.isEmpty()) {
        frame_->runScript(filePath(commandLine.script));
        left_ = left_ || frame_->isHidden(); // the script left
    }
    QGuiApplication::setQuitOnLastWindowClosed(true);
    return true;
}

int VelmoraApp::run() {
    if (!initInstance()) {
        return startFailed;
    }
    return left_ ? 0 : QApplication::exec();
}

void VelmoraApp::showAbout() {
    AboutBox(frame_->openGlVersion(), frame_.get()).exec();
}

} // namespace velmora
