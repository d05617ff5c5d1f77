#include "Quillary/Platform/StatusNotifierHost.h"

#include "FakeStatusNotifierWatcher.h"
#include "PrivateBus.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

#include <memory>

using namespace quillary;
using namespace Qt::StringLiterals;

TEST(StatusNotifierHost, IsPresentOnceTheDesktopSaysSo) {
    PrivateBus bus;
    const FakeStatusNotifierWatcher watcher(bus.connection(), true);
    const StatusNotifierHost host(bus.connection());
    EXPECT_FALSE(host.isPresent());
    QSignalSpy changed(&host, &StatusNotifierHost::isPresentChanged);
    ASSERT_TRUE(changed.wait());
    EXPECT_TRUE(host.isPresent());
}

TEST(StatusNotifierHost, AppearsWithADesktopThatStartsLater) {
    PrivateBus bus;
    const StatusNotifierHost host(bus.connection());
    QSignalSpy changed(&host, &StatusNotifierHost::isPresentChanged);
    auto watcher = std::make_unique<FakeStatusNotifierWatcher>(bus.connection(), true);
    ASSERT_TRUE(changed.wait());
    EXPECT_TRUE(host.isPresent());

    watcher.reset();
    ASSERT_TRUE(changed.wait());
    EXPECT_FALSE(host.isPresent());

    watcher = std::make_unique<FakeStatusNotifierWatcher>(bus.connection(), true);
    ASSERT_TRUE(changed.wait());
    EXPECT_TRUE(host.isPresent());
}

TEST(StatusNotifierHost, FollowsThePanelThatComesAndGoes) {
    PrivateBus bus;
    FakeStatusNotifierWatcher watcher(bus.connection(), false);
    const StatusNotifierHost host(bus.connection());
    QSignalSpy changed(&host, &StatusNotifierHost::isPresentChanged);
    // Signals come in their order, so that a second one tells that the first one came.
    watcher.setHost(false);
    watcher.setHost(true);
    ASSERT_TRUE(changed.wait());
    EXPECT_TRUE(host.isPresent());
    EXPECT_EQ(changed.count(), 1);

    watcher.setHost(false);
    ASSERT_TRUE(changed.wait());
    EXPECT_FALSE(host.isPresent());
}

TEST(StatusNotifierHost, GoesWithTheBus) {
    PrivateBus bus;
    const FakeStatusNotifierWatcher watcher(bus.connection(), true);
    const StatusNotifierHost host(bus.connection());
    QSignalSpy changed(&host, &StatusNotifierHost::isPresentChanged);
    ASSERT_TRUE(changed.wait());
    bus.end();
    ASSERT_TRUE(changed.wait());
    EXPECT_FALSE(host.isPresent());
}

TEST(StatusNotifierHost, IsAbsentWithoutABus) {
    const StatusNotifierHost host(QDBusConnection(u"no such connection"_s));
    EXPECT_FALSE(host.isPresent());
}
