#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QObject>

namespace quillary {

inline QString portalPath() {
    using namespace Qt::StringLiterals;
    return u"/org/freedesktop/portal/desktop"_s;
}

/// What a desktop's portal does: Read gives the value wrapped twice, SettingChanged once.
class FakePortal : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    FakePortal(QDBusConnection bus, uint scheme, uint contrast = 0)
        : m_bus(std::move(bus)), m_scheme(scheme), m_contrast(contrast) {
        m_bus.registerObject(portalPath(), this, QDBusConnection::ExportAllSlots);
        using namespace Qt::StringLiterals;
        m_bus.registerService(u"org.freedesktop.portal.Desktop"_s);
    }

    void change(const QString& nameSpace, const QString& key, uint value) {
        using namespace Qt::StringLiterals;
        if (isColorScheme(nameSpace, key)) {
            m_scheme = value;
        } else if (isContrast(nameSpace, key)) {
            m_contrast = value;
        }
        QDBusMessage signal =
            QDBusMessage::createSignal(portalPath(), u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s);
        signal << nameSpace << key << QVariant::fromValue(QDBusVariant(value));
        m_bus.send(signal);
    }

public Q_SLOTS:

    // NOLINTNEXTLINE(readability-identifier-naming): the interface's own name
    QDBusVariant Read(const QString& nameSpace, const QString& key) {
        using namespace Qt::StringLiterals;
        const uint value = isColorScheme(nameSpace, key) ? m_scheme : isContrast(nameSpace, key) ? m_contrast : 77U;
        return QDBusVariant(QVariant::fromValue(QDBusVariant(value)));
    }

private:
    static bool isColorScheme(const QString& nameSpace, const QString& key) {
        using namespace Qt::StringLiterals;
        return nameSpace == "org.freedesktop.appearance"_L1 && key == "color-scheme"_L1;
    }

    static bool isContrast(const QString& nameSpace, const QString& key) {
        using namespace Qt::StringLiterals;
        return nameSpace == "org.freedesktop.appearance"_L1 && key == "contrast"_L1;
    }

    QDBusConnection m_bus;
    uint m_scheme;
    uint m_contrast;
};

} // namespace quillary
