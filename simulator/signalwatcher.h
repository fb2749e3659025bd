#pragma once

#include <QObject>
#include <QSocketNotifier>

namespace kestrel_simulator {

/// Turns SIGINT and SIGTERM into a Qt signal. One at a time per process.
class SignalWatcher : public QObject {
    Q_OBJECT

public:
    explicit SignalWatcher(QObject* parent = nullptr);
    ~SignalWatcher() override;

Q_SIGNALS:
    void stopRequested();

private:
    QSocketNotifier* m_notifier = nullptr;
};

} // namespace kestrel_simulator
