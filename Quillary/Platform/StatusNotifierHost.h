#pragma once

#include "Quillary/Platform/BusEnd.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>

namespace quillary {

/// Whether a panel of the desktop shows status items at this moment, followed live: panels start after programs do, end
/// and come back. Source: org.kde.StatusNotifierWatcher of the StatusNotifierItem specification.
class StatusNotifierHost : public QObject {
    Q_OBJECT

public:
    explicit StatusNotifierHost(QDBusConnection bus = QDBusConnection::sessionBus(), QObject* parent = nullptr);

    /// False until the first answer has come.
    bool isPresent() const { return m_isPresent; }

Q_SIGNALS:
    void isPresentChanged();

private:
    Q_SLOT void ask();
    void setPresent(bool isPresent);

    QDBusConnection m_bus;
    QDBusServiceWatcher m_service;
    BusEnd m_end;
    int m_questions = 0;
    bool m_isPresent = false;
};

} // namespace quillary
