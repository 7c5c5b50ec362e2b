#pragma once

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QString>
#include <QTimer>
#include <algorithm>
#include <deque>
#include <functional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

/// Failures show texts as words. In the namespace of QString, where it is looked for.
inline void PrintTo(const QString& text, std::ostream* stream) {
    *stream << '"' << text.toStdString() << '"';
}

namespace velmora::test {

/// Answers what the program waits for: each box, dialog or menu that opens gets the next of the steps. One that nobody
/// expects is a failure and is closed, so that no test waits for ever.
class Person : public QObject {
public:
    using Step = std::function<void(QWidget& open)>;

    Person() { lookSoon(); }
    ~Person() override {
        for (const auto& [name, step] : steps_) {
            ADD_FAILURE() << name << " did not open";
        }
    }

    /// What to do when the window of that object name opens.
    void at(std::string name, Step step) { steps_.emplace_back(std::move(name), std::move(step)); }
    /// Expects a message and presses its OK.
    void atMessage(const QString& text) {
        at("messageBox", [text](QWidget& box) {
            EXPECT_EQ(dynamic_cast<QMessageBox&>(box).text(), text);
            dynamic_cast<QDialog&>(box).accept();
        });
    }
    /// Expects a question and answers it.
    void atQuestion(const QString& text, bool yes) {
        at("questionBox", [text, yes](QWidget& box) {
            auto& question = dynamic_cast<QMessageBox&>(box);
            EXPECT_EQ(question.text(), text);
            question.button(yes ? QMessageBox::Yes : QMessageBox::No)->click();
        });
    }
    /// Types numbers into a dialog and presses OK.
    void atDialog(const std::string& name, const std::vector<std::pair<const char*, const char*>>& fields) {
        at(name, [fields](QWidget& dialog) {
            for (const auto& [key, text] : fields) {
                dialog.findChild<QLineEdit*>(QString::fromLatin1(key))->setText(QString::fromLatin1(text));
            }
            dynamic_cast<QDialog&>(dialog).accept();
        });
    }
    void atDialogCancel(const std::string& name) {
        at(name, [](QWidget& dialog) { dynamic_cast<QDialog&>(dialog).reject(); });
    }
    bool isDone() const { return steps_.empty(); }
    /// Expects nothing more.
    void forget() { steps_.clear(); }

private:
    // A timer of its own for each look: a step may itself wait for a box.
    void lookSoon() {
        QTimer::singleShot(1, this, [this] {
            lookSoon();
            look();
        });
    }

    void look() {
        std::erase_if(seen_, [](const QPointer<QWidget>& widget) { return widget == nullptr || !widget->isVisible(); });
        QWidget* const popup = QApplication::activePopupWidget();
        QWidget* const open = popup != nullptr ? popup : QApplication::activeModalWidget();
        if (open == nullptr || !open->isVisible() || std::find(seen_.begin(), seen_.end(), open) != seen_.end()) {
            return;
        }
        seen_.emplace_back(open);
        const std::string name = open->objectName().toStdString();
        if (steps_.empty() || steps_.front().first != name) {
            ADD_FAILURE() << "unexpected: " << name;
            open->close();
            return;
        }
        const Step step = std::move(steps_.front().second);
        steps_.pop_front();
        step(*open);
    }

    std::deque<std::pair<std::string, Step>> steps_;
    std::vector<QPointer<QWidget>> seen_;
};

/// Lets the program go on until `holds` or for two seconds; whether it holds.
inline bool waitUntil(const std::function<bool()>& holds) {
    QElapsedTimer waited;
    waited.start();
    while (!holds() && waited.elapsed() < 2000) {
        QApplication::processEvents(QEventLoop::AllEvents, 5);
    }
    return holds();
}

} // namespace velmora::test
