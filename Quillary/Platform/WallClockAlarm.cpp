#include "Quillary/Platform/WallClockAlarm.h"

#include <QDateTime>

#include <algorithm>
#include <cerrno>
#include <sys/timerfd.h>
#include <unistd.h>
#include <utility>

namespace quillary {

WallClockAlarm::WallClockAlarm(std::function<void()> onAlarm)
    : m_onAlarm(std::move(onAlarm)), m_descriptor(timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC)) {
    if (m_descriptor >= 0) {
        m_notifier.emplace(m_descriptor, QSocketNotifier::Read);
        QObject::connect(&*m_notifier, &QSocketNotifier::activated, &*m_notifier, [this] { ring(); });
    }
}

WallClockAlarm::~WallClockAlarm() {
    if (m_notifier) {
        m_notifier->setEnabled(false);
        close(m_descriptor);
    }
}

void WallClockAlarm::set(const QDateTime& moment) {
    if (!m_notifier) {
        return;
    }
    constexpr qint64 millisecondsOfASecond = 1'000;
    constexpr qint64 nanosecondsOfAMillisecond = 1'000'000;
    // Zero would mean no alarm at all.
    const qint64 milliseconds = std::max<qint64>(1, moment.toMSecsSinceEpoch());
    itimerspec alarm = {};
    alarm.it_value.tv_sec = milliseconds / millisecondsOfASecond;
    alarm.it_value.tv_nsec = milliseconds % millisecondsOfASecond * nanosecondsOfAMillisecond;
    timerfd_settime(m_descriptor, TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &alarm, nullptr);
}

void WallClockAlarm::ring() {
    quint64 count = 0;
    // The clock was set: the read fails, once (timerfd_create(2)).
    if (read(m_descriptor, &count, sizeof count) == sizeof count || errno == ECANCELED) {
        m_onAlarm();
    }
}

} // namespace quillary
