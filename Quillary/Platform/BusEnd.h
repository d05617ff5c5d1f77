#pragma once

#include <QDBusConnection>
#include <QObject>

namespace quillary {

/// Tells when a bus ends while the program runs on, of which none of its other signals speaks. Source: the D-Bus
/// library, which sends `Disconnected` from a path of its own over the connection that was lost.
class BusEnd : public QObject {
    Q_OBJECT

public:
    explicit BusEnd(QDBusConnection bus, QObject* parent = nullptr);

Q_SIGNALS:
    void reached();
};

} // namespace quillary
