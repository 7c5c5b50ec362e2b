#include "LeaveSignals.h"

#include <QSocketNotifier>
#include <array>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace velmora {

namespace {

constexpr std::array<int, 3> leaveSignals{SIGTERM, SIGINT, SIGHUP};
std::array<struct sigaction, leaveSignals.size()> actionsBefore;
volatile int writeEnd = -1;

extern "C" void noteSignal(int) {
    const int error = errno;
    const char mark = 1;
    // A full pipe holds marks enough.
    [[maybe_unused]] const ssize_t written = ::write(writeEnd, &mark, 1);
    errno = error;
}

} // namespace

LeaveSignals::LeaveSignals(QObject* parent) : QObject(parent) {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        return; // the signals end the program as they always did
    }
    readEnd_ = ends[0];
    writeEnd = ends[1];
    notifier_ = new QSocketNotifier(readEnd_, QSocketNotifier::Read, this);
    connect(notifier_, &QSocketNotifier::activated, this, &LeaveSignals::read);
    for (std::size_t i = 0; i < leaveSignals.size(); ++i) {
        struct sigaction action {};
        action.sa_handler = noteSignal;
        action.sa_flags = SA_RESTART;
        sigemptyset(&action.sa_mask);
        ::sigaction(leaveSignals[i], nullptr, &actionsBefore[i]);
        if (actionsBefore[i].sa_handler != SIG_IGN) {
            ::sigaction(leaveSignals[i], &action, nullptr);
        }
    }
}

LeaveSignals::~LeaveSignals() {
    if (readEnd_ < 0) {
        return;
    }
    for (std::size_t i = 0; i < leaveSignals.size(); ++i) {
        ::sigaction(leaveSignals[i], &actionsBefore[i], nullptr);
    }
    delete notifier_;
    ::close(readEnd_);
    ::close(writeEnd);
    writeEnd = -1;
}

void LeaveSignals::read() {
    std::array<char, 16> marks{};
    while (::read(readEnd_, marks.data(), marks.size()) > 0) {
    }
    emit came();
}

} // namespace velmora
