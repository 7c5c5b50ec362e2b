#pragma once

#include <QApplication>
#include <memory>
#include <optional>

#include "LeaveDesk.h"
#include "MainFrame.h"

namespace velmora {

/// Catches what passes an event: the program goes on, and a status text tells of it.
class Application : public QApplication {
    Q_OBJECT

public:
    using QApplication::QApplication;

    bool notify(QObject* receiver, QEvent* event) override;

signals:
    void eventFailed(const QString& cause);
};

/// The process: settings, command line, the frame with its document and view, and the event loop.
class VelmoraApp {
public:
    /// `argc` and `argv` must live as long as the object. With --help or --version the process ends here.
    VelmoraApp(int& argc, char** argv);
    VelmoraApp(const VelmoraApp&) = delete;
    VelmoraApp& operator=(const VelmoraApp&) = delete;
    ~VelmoraApp();

    /// Starts and runs until the frame closes. The exit status: 0, or 1 when the start failed.
    int run();

private:
    /// Makes the frame, with a new document or the file of the command line. False when that file did not open.
    bool initInstance();
    void showAbout();

    Application application_;
    std::unique_ptr<MainFrame> frame_;
    std::unique_ptr<LeaveDesk> leaveDesk_;
    bool left_ = false; ///< by a signal, or by the script that came with the start
};

} // namespace velmora
