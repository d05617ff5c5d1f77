#pragma once

#include <QTimer>

#include <chrono>
#include <functional>

namespace quillary {

/// An action that runs once on the event loop of its thread, a while after it was last asked for. It dies with its
/// owner: what is pending then never runs.
class DelayedTask {
public:
    DelayedTask(std::chrono::milliseconds delay, std::function<void()> action);

    /// Asks for the action. Asked again while it is pending, it waits the whole delay anew.
    void restart();

    /// Takes back what is pending, if anything.
    void cancel();

    bool isPending() const { return m_timer.isActive(); }

private:
    QTimer m_timer;
    std::function<void()> m_action;
};

} // namespace quillary
