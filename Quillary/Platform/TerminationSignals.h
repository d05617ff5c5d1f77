#pragma once

#include <QObject>
#include <QSocketNotifier>

namespace quillary {

/// SIGTERM, SIGINT and SIGHUP as an event of the main thread. The second one ends the process at once by its default
/// action, so that a program that hangs in its farewell can still be stopped.
class TerminationSignals : public QObject {
    Q_OBJECT

public:
    /// Holds the three signals back for the whole process, but not for programs that it starts. Call it before any
    /// other thread exists: threads inherit it.
    static void block();

    explicit TerminationSignals(QObject* parent = nullptr);
    ~TerminationSignals() override;

Q_SIGNALS:
    void received(int signal);

private:
    void readOne();

    int m_descriptor;
    QSocketNotifier m_notifier;
};

} // namespace quillary
