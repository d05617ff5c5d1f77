#include "Quillary/Platform/DesktopColorScheme.h"

#include "FakePortal.h"
#include "PrivateBus.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

constexpr uint noPreference = 0;
constexpr uint preferDark = 1;
constexpr uint preferLight = 2;

} // namespace

TEST(DesktopColorScheme, IsDarkOnceThePortalSaysSo) {
    PrivateBus bus;
    FakePortal portal(bus.connection(), preferDark);
    DesktopColorScheme scheme(bus.connection());
    EXPECT_FALSE(scheme.prefersDark());
    QSignalSpy changed(&scheme, &DesktopColorScheme::prefersDarkChanged);
    ASSERT_TRUE(changed.wait());
    EXPECT_TRUE(scheme.prefersDark());
}

TEST(DesktopColorScheme, FollowsChangesAndTellsOnlyOfRealOnes) {
    PrivateBus bus;
    FakePortal portal(bus.connection(), noPreference);
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

TEST(DesktopColorScheme, TellsOfHigherContrastAtTheStartAndWhenItChanges) {
    constexpr uint higher = 1;
    PrivateBus bus;
    FakePortal portal(bus.connection(), noPreference, higher);
    DesktopColorScheme scheme(bus.connection());
    EXPECT_FALSE(scheme.prefersHighContrast());
    QSignalSpy changed(&scheme, &DesktopColorScheme::prefersHighContrastChanged);
    QSignalSpy schemeChanged(&scheme, &DesktopColorScheme::prefersDarkChanged);
    ASSERT_TRUE(changed.wait());
    EXPECT_TRUE(scheme.prefersHighContrast());
    EXPECT_FALSE(scheme.prefersDark());

    const QString appearance = u"org.freedesktop.appearance"_s;
    portal.change(u"org.gnome.desktop.a11y"_s, u"contrast"_s, noPreference);
    portal.change(appearance, u"contrast"_s, higher);
    portal.change(appearance, u"contrast"_s, noPreference);
    ASSERT_TRUE(changed.wait());
    EXPECT_EQ(changed.size(), 2);
    EXPECT_FALSE(scheme.prefersHighContrast());
    EXPECT_TRUE(schemeChanged.isEmpty());
}

TEST(DesktopColorScheme, StaysLightWithoutABus) {
    DesktopColorScheme scheme(QDBusConnection(u"no such connection"_s));
    EXPECT_FALSE(scheme.prefersDark());
}
