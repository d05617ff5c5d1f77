#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTimer>

#include <chrono>

namespace quillary::test {

/// Runs the event loop until a condition holds; false if it doesn't within ten seconds, which no working program needs.
/// The condition is looked at after each round of events, so it must change through one.
template <typename Condition>
[[nodiscard]] bool waitUntil(Condition condition) {
    using namespace std::chrono_literals;
    const QDeadlineTimer deadline(10s);
    QTimer alarm;
    alarm.start(1s);
    while (!condition()) {
        if (deadline.hasExpired()) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

/// Runs the event loop for a while, for what must not happen in it.
inline void runEventLoop(std::chrono::milliseconds time) {
    bool isOver = false;
    QTimer::singleShot(time, Qt::PreciseTimer, [&isOver] { isOver = true; });
    while (!isOver) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

} // namespace quillary::test
