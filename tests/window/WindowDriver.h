#pragma once

#include <QApplication>
#include <QByteArray>
#include <QMenu>
#include <QPoint>
#include <QRect>
#include <QString>
#include <QStringList>
#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "MainFrame.h"

struct _XDisplay;

/// Failures of tests show texts as words. In the namespace of QString, where it is looked for.
inline void PrintTo(const QString& text, std::ostream* stream) {
    *stream << '"' << text.toStdString() << '"';
}

namespace velmora::test {

/// A person in front of the program: real mouse and key events of the X server, at places learned from the living
/// widgets. It works in a thread of its own while the program runs in the main thread.
class WindowDriver {
public:
    static constexpr int leftButton = 1;
    static constexpr int rightButton = 3;
    /// How long settle() waits for what was sent: shorter where every look that follows waits for what it wants to see.
    std::chrono::milliseconds rest{200};

    WindowDriver();
    WindowDriver(const WindowDriver&) = delete;
    WindowDriver& operator=(const WindowDriver&) = delete;
    ~WindowDriver();

    // ---- Looking --------------------------------------------------------------------------------------------------

    /// Runs `look` in the program's thread, between two of its events, and gives its result. Throws when the program
    /// does not answer or has ended.
    template <class Look>
    auto ask(Look look) -> decltype(look());
    /// Waits until `holds`, asked in the program's thread, is true; false when that takes too long.
    bool waitFor(const std::function<bool()>& holds);
    /// Lets all that was sent so far take its effect.
    void settle();
    /// Waits until the program has ended; false when it does not.
    bool waitForEnd();

    /// The frame; to be used in ask() only.
    static MainFrame& frame();
    /// Throws unless the frame comes up, active and painted.
    void waitForFrame();
    QString status();
    QString title();
    /// Waits for a window of that object name to be on top; throws when none comes.
    void waitForBox(const QString& name);
    /// Waits until no dialog or box is open.
    bool waitForNoBox();
    /// The text of the message or question box that is open.
    QString boxText();
    /// The position on the screen of a widget's centre, of the box on top or else of the frame.
    QPoint centreOf(const QString& widget);
    /// The position on the screen of a pixel of the view.
    QPoint onView(PixelPoint pixel);
    /// Keeps a picture of the whole screen in the folder of the build.
    void screenshot(const QString& name);
    /// What the screen shows at a place, asked of the display: the program need not answer.
    QByteArray pixelsOf(const QRect& place);

    // ---- Mouse and keys -------------------------------------------------------------------------------------------

    void move(QPoint position);
    void press(int button = leftButton);
    void release(int button = leftButton);
    void click(QPoint position, int button = leftButton);
    void clickWidget(const QString& widget) { click(centreOf(widget)); }
    /// Presses and releases a key by its X name: "Return", "Escape", "a"; `modifier` may be empty.
    void key(const char* name, const char* modifier = "");
    /// Types letters, digits and common marks.
    void type(const std::string& text);

    // ---- Menus ----------------------------------------------------------------------------------------------------

    /// Opens a menu of the menu bar by its words.
    void openMenu(const QString& title);
    /// Clicks an entry of the menu that is open, by its words or its command's id; waits for its submenu if it has one.
    void clickEntry(const QString& entry);
    /// openMenu, then clickEntry for each further word.
    void choose(const QStringList& path);
    /// The menu that is open now; to be used in ask() only.
    static QMenu* openedMenu();

    /// The main thread's side: the program has ended.
    void noteEnd() { ended_ = true; }
    /// Ends the program, whatever it is at.
    void endProgram();

private:
    using Clock = std::chrono::steady_clock;
    static constexpr std::chrono::seconds patience{20};

    void post(std::function<void()> task);
    void keyEvent(unsigned long symbol, bool down);

    _XDisplay* display_;
    std::atomic<bool> ended_{false};
};

/// Words of a menu text: without access marks and the key behind the tab.
QString wordsOf(const QString& menuText);

/// What the program finds of its runs before: nothing, or what it kept.
enum class Settings { Fresh, Kept };

/// Starts the program as its main() does, with `arguments` behind its name, and lets `person` work in it. When the
/// person is done and the program still runs, it is ended. Gives the exit status.
int runProgram(const std::vector<std::string>& arguments, const std::function<void(WindowDriver&)>& person,
               Settings settings = Settings::Fresh);

template <class Look>
auto WindowDriver::ask(Look look) -> decltype(look()) {
    auto task = std::make_shared<std::packaged_task<decltype(look())()>>(std::move(look));
    auto answer = task->get_future();
    post([task] { (*task)(); });
    const auto until = Clock::now() + patience;
    while (answer.wait_for(std::chrono::milliseconds(20)) != std::future_status::ready) {
        if (ended_ || Clock::now() > until) {
            throw std::runtime_error(ended_ ? "the program has ended" : "the program does not answer");
        }
    }
    return answer.get();
}

} // namespace velmora::test
