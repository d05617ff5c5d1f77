#include "Quillary/Platform/BusEnd.h"

namespace quillary {

using namespace Qt::StringLiterals;

BusEnd::BusEnd(QDBusConnection bus, QObject* parent) : QObject(parent) {
    bus.connect({}, u"/org/freedesktop/DBus/Local"_s, u"org.freedesktop.DBus.Local"_s, u"Disconnected"_s, this,
                SIGNAL(reached()));
}

} // namespace quillary
