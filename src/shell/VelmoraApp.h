#pragma once

#include <QApplication>
#include <memory>
#include <optional>

#include "MainFrame.h"

namespace velmora {

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

    QApplication application_;
    std::unique_ptr<MainFrame> frame_;
};

} // namespace velmora
