#pragma once

#include <QObject>

class QSocketNotifier;

namespace velmora {

/// The signals that ask a program to end (SIGTERM, SIGINT, SIGHUP), brought into the event loop: the handler only writes
/// to a pipe. One object at a time; the signals do what they did before once it is gone. A signal that was ignored when
/// the program started, as nohup does, stays so.
class LeaveSignals : public QObject {
    Q_OBJECT

public:
    explicit LeaveSignals(QObject* parent = nullptr);
    ~LeaveSignals() override;

signals:
    void came();

private:
    void read();

    QSocketNotifier* notifier_ = nullptr;
    int readEnd_ = -1;
};

} // namespace velmora
