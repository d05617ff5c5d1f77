#include "Quillary/Platform/DesktopColorScheme.h"

#include "PrivateBus.h"

#include <QDBusMessage>
#include <QDBusVariant>
#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

constexpr uint noPreference = 0;
constexpr uint preferDark = 1;
constexpr uint preferLight = 2;

QString portalPath() {
    return u"/org/freedesktop/portal/desktop"_s;
}

/// What a desktop's portal does: Read gives the value wrapped twice, SettingChanged once.
class Portal : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    Portal(QDBusConnection bus, uint scheme) : m_bus(std::move(bus)), m_scheme(scheme) {
        m_bus.registerObject(portalPath(), this, QDBusConnection::ExportAllSlots);
        m_bus.registerService(u"org.freedesktop.portal.Desktop"_s);
    }

    void change(const QString& nameSpace, const QString& key, uint value) {
        QDBusMessage signal =
            QDBusMessage::createSignal(portalPath(), u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s);
        signal << nameSpace << key << QVariant::fromValue(QDBusVariant(value));
        m_bus.send(signal);
    }

public Q_SLOTS:

    // NOLINTNEXTLINE(readability-identifier-naming): the interface's own name
    QDBusVariant Read(const QString& nameSpace, const QString& key) {
        const bool known = nameSpace == "org.freedesktop.appearance"_L1 && key == "color-scheme"_L1;
        return QDBusVariant(QVariant::fromValue(QDBusVariant(known ? m_scheme : 77U)));
    }

private:
    QDBusConnection m_bus;
    uint m_scheme;
};

} // namespace

TEST(DesktopColorScheme, IsDarkOnceThePortalSaysSo) {
    PrivateBus bus;
    Portal portal(bus.connection(), preferDark);
    DesktopColorScheme scheme(bus.connection());
    EXPECT_FALSE(scheme.prefersDark());
    QSignalSpy changed(&scheme, &DesktopColorScheme::prefersDarkChanged);
    ASSERT_TRUE(changed.wait());
    EXPECT_TRUE(scheme.prefersDark());
}

TEST(DesktopColorScheme, FollowsChangesAndTellsOnlyOfRealOnes) {
    PrivateBus bus;
    Portal portal(bus.connection(), noPreference);
    DesktopColorScheme scheme(bus.connection());
    QSignalSpy changed(&scheme, &DesktopColorScheme::prefersDarkChanged);
    const QString appearance = u"org.freedesktop.appearance"_s;
    const QString key = u"color-scheme"_s;

    portal.change(u"org.gnome.desktop.interface"_s, key, preferDark);
    portal.change(appearance, u"accent-color"_s, preferDark);
    portal.change(appearance, key, preferLight);
    portal.change(appearance, key, preferDark);
    ASSERT_TRUE(changed.wait());
    EXPECT_EQ(changed.size(), 1);
    EXPECT_TRUE(scheme.prefersDark());

    portal.change(appearance, key, noPreference);
    ASSERT_TRUE(changed.wait());
    EXPECT_FALSE(scheme.prefersDark());
}

TEST(DesktopColorScheme, StaysLightWithoutABus) {
    DesktopColorScheme scheme(QDBusConnection(u"no such connection"_s));
    EXPECT_FALSE(scheme.prefersDark());
}

#include "DesktopColorSchemeTests.moc"
