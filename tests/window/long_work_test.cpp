#include <gtest/gtest.h>

#include <QDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QThread>
#include <atomic>
#include <memory>
#include <thread>

#include "Desk.h"
#include "DocumentState.h"
#include "GlCanvas.h"
#include "GlViewWidget.h"
#include "VelmoraDoc.h"
#include "WindowDriver.h"
#include "large_body.h"
#include "messages.h"
#include "temporary_folder.h"

namespace velmora::test {
namespace {

std::size_t patchesOf(WindowDriver& person) {
    return person.ask([] { return WindowDriver::frame().state().patches.size(); });
}

bool waitUntil(const std::atomic<bool>& flag) {
    constexpr int patience = 20'000; // ms
    for (int waited = 0; !flag && waited < patience; waited += 10) {
        QThread::msleep(10);
    }
    return flag;
}

QString messagePane(const MainFrame& frame) {
    return frame.findChild<QLabel*>(QStringLiteral("message"))->text();
}

/// Lets the program sleep whenever it looks at its events while it works, so that the work is not through before the
/// person had a hand in it, on however fast a machine. Timers are not looked at then.
class Slowness {
public:
    /// From now on, once `begun`.
    Slowness() : thread_([this] { run(); }) {}
    ~Slowness() {
        on_ = false;
        thread_.join();
    }
    Slowness(const Slowness&) = delete;
    Slowness& operator=(const Slowness&) = delete;

    std::atomic<bool> begun{false}; ///< the work, as good as
    std::atomic<bool> held{false};  ///< it looked for the first time

private:
    void run() {
        while (on_ || asleep_) {
            if (on_ && begun && !asleep_.exchange(true)) {
                QMetaObject::invokeMethod(
                    qApp, [this] { sleep(); }, Qt::QueuedConnection);
            }
            QThread::msleep(10);
        }
    }
    void sleep() {
        QThread::msleep(held.exchange(true) ? 100 : 1500);
        asleep_ = false;
    }

    std::atomic<bool> on_{true};
    std::atomic<bool> asleep_{false};
    std::thread thread_;
};

/// Begins a slice of more than half a second, and waits until it is at work.
void beginLongSlice(WindowDriver& person, Slowness& slowness) {
    person.choose({"Transformations", "Convert to", "SKL..."});
    person.waitForBox(QStringLiteral("CConvert_to_SKL"));
    person.clickWidget(QStringLiteral("number"));
    person.key("a", "Control_L");
    person.type("70000");
    person.ask([&slowness] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        QObject::connect(dialog, &QDialog::finished, qApp, [&slowness] { slowness.begun = true; });
    });
    person.key("Return");
    EXPECT_TRUE(waitUntil(slowness.held)) << "the slice does not begin";
}

const QPushButton& cancelButton() {
    return *WindowDriver::frame().findChild<QPushButton*>(QStringLiteral("cancelWork"));
}

void expectAsBefore(WindowDriver& person, std::size_t zones) {
    EXPECT_TRUE(person.waitFor([] { return QApplication::overrideCursor() == nullptr; }));
    person.rest = std::chrono::milliseconds(200);
    person.settle();
    person.rest = std::chrono::milliseconds(20);
    EXPECT_EQ(person.status(), QString::fromLatin1(message::workCancelled));
    EXPECT_EQ(patchesOf(person), 0U);
    EXPECT_EQ(person.ask([] { return WindowDriver::frame().state().feRegion.blocks.size(); }), zones);
    EXPECT_FALSE(person.ask([] { return WindowDriver::frame().state().documentModified; }));
    EXPECT_FALSE(person.ask([] { return cancelButton().isVisible(); }));
}

TEST(LongWork, EscAndTheButtonGiveItUpAndNothingTypedMeanwhileActsAfterwards) {
    const TemporaryFolder folder;
    const std::filesystem::path body = writeLargeBody(folder / "body.dat", 140);
    runProgram({body.string()}, [&](WindowDriver& person) {
        person.waitForFrame();
        person.rest = std::chrono::milliseconds(20);
        const std::size_t zones = person.ask([] { return WindowDriver::frame().state().feRegion.blocks.size(); });
        ASSERT_EQ(zones, 1U);
        const QPoint view = person.onView({300, 300});
        auto slowness = std::make_unique<Slowness>();
        beginLongSlice(person, *slowness);
        person.key("n", "Control_L"); // New, which would ask
        person.move(view);
        person.press(WindowDriver::rightButton);
        person.release(WindowDriver::rightButton);
        person.key("Escape");
        expectAsBefore(person, zones);
        EXPECT_EQ(person.ask([] { return QApplication::activeModalWidget(); }), nullptr);
        EXPECT_EQ(person.ask([] { return WindowDriver::openedMenu(); }), nullptr);

        slowness = std::make_unique<Slowness>();
        beginLongSlice(person, *slowness);
        EXPECT_TRUE(person.ask([] { return cancelButton().isVisible(); })) << "asked in the middle of the work";
        EXPECT_EQ(person.ask([] { return messagePane(WindowDriver::frame()); }),
                  QStringLiteral("Convert unstructured grid to lines (SKL)"));
        person.screenshot(QStringLiteral("long-work"));
        const QPoint button = person.centreOf(QStringLiteral("cancelWork"));
        person.move(button);
        person.press();
        person.release();
        expectAsBefore(person, zones);
        EXPECT_EQ(person.ask([] { return WindowDriver::frame().session().journal().lines().size(); }), 1U)
            << "the file that was opened";
    });
}

TEST(LongWork, APaintThatItDroppedIsMadeUpForAtItsEnd) {
    const Desk desk;
    runProgram({desk.model.string()}, [](WindowDriver& person) {
        person.waitForFrame();
        int before = 0;
        int paints = 0;
        QMetaObject::Connection counting;
        person.ask([&] {
            MainFrame& frame = WindowDriver::frame();
            auto* const canvas = frame.findChild<GlCanvas*>();
            counting = QObject::connect(canvas, &GlCanvas::frameWanted, canvas, [&paints] { ++paints; });
            UserInterface& ui = frame.document().ui();
            ui.setBusy(true);
            QThread::msleep(600);
            paints = 0;
            canvas->update();
            ui.wantsToStop();
            before = paints;
            ui.setBusy(false);
            return true;
        });
        EXPECT_EQ(before, 0) << "not in the middle of the work";
        for (int waited = 0; waited < 5000 && person.ask([&paints] { return paints; }) == 0; waited += 20) {
            QThread::msleep(20);
        }
        EXPECT_GT(person.ask([&paints] { return paints; }), 0);
        person.ask([&counting] { return QObject::disconnect(counting); });
    });
}

TEST(LongWork, AnEscThatComesJustBehindItDoesNotLeaveTheProgram) {
    const Desk desk;
    runProgram({desk.model.string()}, [](WindowDriver& person) {
        person.waitForFrame();
        person.ask([] {
            UserInterface& ui = WindowDriver::frame().document().ui();
            ui.setBusy(true);
            QThread::msleep(600);
            ui.wantsToStop();
            ui.setBusy(false);
            GlViewWidget& view = *WindowDriver::frame().findChild<GlViewWidget*>();
            QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
            QApplication::sendEvent(&view, &escape);
            return true;
        });
        QThread::msleep(300);
        EXPECT_TRUE(person.ask([] { return WindowDriver::frame().isVisible(); }));
    });
}

} // namespace
} // namespace velmora::test
