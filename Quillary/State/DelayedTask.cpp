#include "Quillary/State/DelayedTask.h"

#include <utility>

namespace quillary {

DelayedTask::DelayedTask(std::chrono::milliseconds delay, std::function<void()> action) : m_action(std::move(action)) {
    m_timer.setSingleShot(true);
    m_timer.setInterval(delay);
    // A coarse timer may fire a twentieth early.
    m_timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] {
        // The action may end the task's owner and with it the task.
        const auto pending = m_action;
        pending();
    });
}

void DelayedTask::restart() {
    m_timer.start();
}

void DelayedTask::cancel() {
    m_timer.stop();
}

} // namespace quillary
