#pragma once

#include <QSocketNotifier>

#include <functional>
#include <optional>

class QDateTime;

namespace quillary {

/// Tells when the wall clock reaches a moment. A timer counts the time that passes: it stands still while the computer
/// sleeps, and knows nothing of a clock that is set.
class WallClockAlarm {
public:
    /// `onAlarm` runs on the event loop of the calling thread: once after each `set`, at its moment or as soon as
    /// somebody sets the clock. Where the system has no such alarm it never runs.
    explicit WallClockAlarm(std::function<void()> onAlarm);

    ~WallClockAlarm();
    WallClockAlarm(const WallClockAlarm&) = delete;
    WallClockAlarm& operator=(const WallClockAlarm&) = delete;

    /// Asks for the alarm at a moment, in place of the one that was asked for before. A moment in the past is due at
    /// once.
    void set(const QDateTime& moment);

private:
    void ring();

    std::function<void()> m_onAlarm;
    int m_descriptor;
    std::optional<QSocketNotifier> m_notifier;
};

} // namespace quillary
