#include "WindowDriver.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QScreen>
#include <QSettings>
#include <QWindow>
#include <thread>

#include "VelmoraApp.h"
// Xlib defines common words as macros: nothing of Qt may follow it.
#include <X11/XKBlib.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

namespace velmora::test {

namespace {

constexpr std::chrono::milliseconds shortWhile{20};

/// The window that takes the input: the dialog or box on top, else the frame.
QWidget* windowOnTop() {
    QWidget* modal = QApplication::activeModalWidget();
    return modal != nullptr ? modal : &WindowDriver::frame();
}

MainFrame* findFrame() {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (auto* frame = qobject_cast<MainFrame*>(widget)) {
            return frame;
        }
    }
    return nullptr;
}

} // namespace

QString wordsOf(const QString& menuText) {
    QString words = menuText.section(QLatin1Char('\t'), 0, 0);
    words.replace(QLatin1String("&&"), QLatin1String("\n")).remove(QLatin1Char('&'));
    return words.replace(QLatin1Char('\n'), QLatin1Char('&')).trimmed();
}

WindowDriver::WindowDriver() : display_(XOpenDisplay(nullptr)) {
    if (display_ == nullptr) {
        throw std::runtime_error("no X display");
    }
}

WindowDriver::~WindowDriver() {
    XCloseDisplay(display_);
}

// ---- Looking --------------------------------------------------------------------------------------------------------

void WindowDriver::post(std::function<void()> task) {
    QMetaObject::invokeMethod(QCoreApplication::instance(), std::move(task), Qt::QueuedConnection);
}

bool WindowDriver::waitFor(const std::function<bool()>& holds) {
    const auto until = Clock::now() + patience;
    while (Clock::now() < until) {
        if (ask(holds)) {
            return true;
        }
        std::this_thread::sleep_for(shortWhile);
    }
    return false;
}

void WindowDriver::settle() {
    XSync(display_, 0);
    std::this_thread::sleep_for(rest);
    try {
        ask([] {});
        ask([] {});
    } catch (const std::runtime_error&) {
        // What was sent may have ended the program; only a program that hangs is a trouble.
        if (!ended_) {
            throw;
        }
    }
}

bool WindowDriver::waitForEnd() {
    const auto until = Clock::now() + patience;
    while (!ended_ && Clock::now() < until) {
        std::this_thread::sleep_for(shortWhile);
    }
    return ended_;
}

MainFrame& WindowDriver::frame() {
    MainFrame* found = findFrame();
    if (found == nullptr) {
        throw std::runtime_error("the frame is not there");
    }
    return *found;
}

void WindowDriver::waitForFrame() {
    const bool up = waitFor([] {
        const MainFrame* found = findFrame();
        return found != nullptr && found->isVisible() && found->isMaximized() && found->isActiveWindow() &&
               found->windowHandle()->isExposed();
    });
    if (!up) {
        throw std::runtime_error("the frame does not come up");
    }
    settle();
}

QString WindowDriver::status() {
    return ask([] { return frame().findChild<QLabel*>(QStringLiteral("message"))->text(); });
}

QString WindowDriver::title() {
    return ask([] { return frame().windowTitle(); });
}

void WindowDriver::waitForBox(const QString& name) {
    const bool there = waitFor([name] {
        const QWidget* modal = QApplication::activeModalWidget();
        return modal != nullptr && modal->objectName() == name && modal->isActiveWindow() &&
               modal->windowHandle()->isExposed();
    });
    if (!there) {
        throw std::runtime_error("no box " + name.toStdString());
    }
    settle();
}

bool WindowDriver::waitForNoBox() {
    const bool none = waitFor([] { return QApplication::activeModalWidget() == nullptr && frame().isActiveWindow(); });
    settle();
    return none;
}

QString WindowDriver::boxText() {
    return ask([] {
        const auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        return box != nullptr ? box->text() : QString();
    });
}

QPoint WindowDriver::centreOf(const QString& widget) {
    return ask([widget] {
        const auto* found = windowOnTop()->findChild<QWidget*>(widget);
        if (found == nullptr || !found->isVisible()) {
            throw std::runtime_error("no widget " + widget.toStdString());
        }
        return found->mapToGlobal(found->rect().center());
    });
}

QPoint WindowDriver::onView(PixelPoint pixel) {
    return ask([pixel] { return frame().centralWidget()->mapToGlobal(QPoint(pixel.x, pixel.y)); });
}

void WindowDriver::screenshot(const QString& name) {
    settle();
    ask([name] {
        const QDir folder(QStringLiteral(VELMORA_SCREENSHOTS));
        folder.mkpath(QStringLiteral("."));
        QGuiApplication::primaryScreen()->grabWindow(0).save(folder.filePath(name + QStringLiteral(".png")));
    });
}

QByteArray WindowDriver::pixelsOf(const QRect& place) {
    XSync(display_, 0);
    XImage* image =
        XGetImage(display_, DefaultRootWindow(display_), place.x(), place.y(), static_cast<unsigned>(place.width()),
                  static_cast<unsigned>(place.height()), AllPlanes, ZPixmap);
    if (image == nullptr) {
        throw std::runtime_error("the display shows nothing there");
    }
    QByteArray pixels(image->data, static_cast<qsizetype>(image->bytes_per_line) * image->height);
    XDestroyImage(image);
    return pixels;
}

// ---- Mouse and keys -------------------------------------------------------------------------------------------------

void WindowDriver::move(QPoint position) {
    XTestFakeMotionEvent(display_, -1, position.x(), position.y(), 0);
    XFlush(display_);
}

void WindowDriver::press(int button) {
    XTestFakeButtonEvent(display_, static_cast<unsigned>(button), 1, 0);
    XFlush(display_);
}

void WindowDriver::release(int button) {
    XTestFakeButtonEvent(display_, static_cast<unsigned>(button), 0, 0);
    XFlush(display_);
}

void WindowDriver::click(QPoint position, int button) {
    move(position);
    // Menus want to see the mouse arrive before it clicks.
    std::this_thread::sleep_for(shortWhile);
    press(button);
    release(button);
    // The window manager holds a click back while it looks at it: a mouse that went on meanwhile would be let go
    // somewhere else.
    settle();
}

void WindowDriver::keyEvent(unsigned long symbol, bool down) {
    const unsigned code = XKeysymToKeycode(display_, symbol);
    if (code == 0) {
        throw std::runtime_error("no such key");
    }
    XTestFakeKeyEvent(display_, code, down ? 1 : 0, 0);
    XFlush(display_);
}

void WindowDriver::key(const char* name, const char* modifier) {
    const unsigned long symbol = XStringToKeysym(name);
    const unsigned long held = *modifier == '\0' ? 0 : XStringToKeysym(modifier);
    if (held != 0) {
        keyEvent(held, true);
    }
    keyEvent(symbol, true);
    keyEvent(symbol, false);
    if (held != 0) {
        keyEvent(held, false);
    }
}

void WindowDriver::type(const std::string& text) {
    for (const char letter : text) {
        // The Latin-1 symbols of X have the codes of their letters.
        const auto symbol = static_cast<unsigned long>(static_cast<unsigned char>(letter));
        const unsigned code = XKeysymToKeycode(display_, symbol);
        const bool shifted = XkbKeycodeToKeysym(display_, static_cast<KeyCode>(code), 0, 0) != symbol;
        if (shifted) {
            keyEvent(XK_Shift_L, true);
        }
        keyEvent(symbol, true);
        keyEvent(symbol, false);
        if (shifted) {
            keyEvent(XK_Shift_L, false);
        }
    }
    settle();
}

// ---- Menus ----------------------------------------------------------------------------------------------------------

QMenu* WindowDriver::openedMenu() {
    return qobject_cast<QMenu*>(QApplication::activePopupWidget());
}

void WindowDriver::openMenu(const QString& title) {
    const QPoint position = ask([title] {
        const QMenuBar* bar = frame().menuBar();
        for (QAction* action : bar->actions()) {
            if (wordsOf(action->text()) == title) {
                return bar->mapToGlobal(bar->actionGeometry(action).center());
            }
        }
        throw std::runtime_error("no menu " + title.toStdString());
    });
    click(position);
    if (!waitFor([title] { return openedMenu() != nullptr && wordsOf(openedMenu()->title()) == title; })) {
        throw std::runtime_error("the menu does not open: " + title.toStdString());
    }
    settle();
}

void WindowDriver::clickEntry(const QString& entry) {
    struct Found {
        QPoint position;
        bool submenu;
    };
    const Found found = ask([entry] {
        QMenu* menu = openedMenu();
        const QList<QAction*> actions = menu != nullptr ? menu->actions() : QList<QAction*>();
        for (QAction* action : actions) {
            if (wordsOf(action->text()) == entry || action->objectName() == entry) {
                return Found{menu->mapToGlobal(menu->actionGeometry(action).center()), action->menu() != nullptr};
            }
        }
        throw std::runtime_error("no entry " + entry.toStdString());
    });
    click(found.position);
    if (found.submenu) {
        waitFor([entry] { return openedMenu() != nullptr && wordsOf(openedMenu()->title()) == entry; });
        settle();
    }
}

void WindowDriver::choose(const QStringList& path) {
    openMenu(path.front());
    for (const QString& entry : path.mid(1)) {
        clickEntry(entry);
    }
}

// ---- The program ----------------------------------------------------------------------------------------------------

void WindowDriver::endProgram() {
    if (!ended_) {
        post([] { QCoreApplication::exit(99); });
    }
}

int runProgram(const std::vector<std::string>& arguments, const std::function<void(WindowDriver&)>& person,
               Settings settings) {
    if (settings == Settings::Fresh) {
        QSettings(QStringLiteral("Dovra"), QStringLiteral("Velmora")).clear();
    }
    std::vector<std::string> words{"velmora"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    for (std::string& word : words) {
        pointers.push_back(word.data());
    }
    pointers.push_back(nullptr);
    int count = static_cast<int>(words.size());
    VelmoraApp application(count, pointers.data());
    WindowDriver driver;
    std::thread hands([&] {
        try {
            person(driver);
        } catch (const std::exception& trouble) {
            ADD_FAILURE() << trouble.what();
            if (!driver.waitForEnd()) {
                driver.screenshot(QStringLiteral("failure"));
            }
        }
        driver.endProgram();
    });
    const int status = application.run();
    driver.noteEnd();
    hands.join();
    return status;
}

} // namespace velmora::test
