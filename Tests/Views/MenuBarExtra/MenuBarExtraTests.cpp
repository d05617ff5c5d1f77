#include "Quillary/MenuBarExtra/MenuBarExtra.h"

#include "../NotesFolder.h"

#include "Tests/State/Platform/FakeStatusNotifierWatcher.h"
#include "Tests/State/Platform/PrivateBus.h"

#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>

using namespace quillary;
using namespace Qt::StringLiterals;

TEST(MenuBarExtra, IsThereWhileTheUserWantsItAndAPanelShowsIt) {
    PrivateBus bus;
    NotesFolder folder({{u"a.md"_s, u"alfa"_s}});
    auto watcher = std::make_unique<FakeStatusNotifierWatcher>(bus.connection(), true);
    MenuBarExtra extra(&folder.store(), &folder.settings(), bus.connection());
    EXPECT_FALSE(extra.isShown());
    ASSERT_TRUE(QTest::qWaitFor([&] { return extra.isShown(); }));

    const QSignalSpy changed(&extra, &MenuBarExtra::isShownChanged);
    folder.settings().setShowsMenuBarExtra(false);
    EXPECT_FALSE(extra.isShown());
    folder.settings().setShowsMenuBarExtra(true);
    EXPECT_TRUE(extra.isShown());
    EXPECT_EQ(changed.count(), 2);

    watcher.reset();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !extra.isShown(); }));
    watcher = std::make_unique<FakeStatusNotifierWatcher>(bus.connection(), true);
    EXPECT_TRUE(QTest::qWaitFor([&] { return extra.isShown(); }));
}

TEST(MenuBarExtra, StaysAwayWhenTheUserDoesNotWantIt) {
    PrivateBus bus;
    NotesFolder folder({{u"a.md"_s, u"alfa"_s}});
    folder.settings().setShowsMenuBarExtra(false);
    FakeStatusNotifierWatcher watcher(bus.connection(), true);
    const StatusNotifierHost host(bus.connection());
    MenuBarExtra extra(&folder.store(), &folder.settings(), bus.connection());
    ASSERT_TRUE(QTest::qWaitFor([&] { return host.isPresent(); }));
    EXPECT_FALSE(extra.isShown());
}

TEST(MenuBarExtra, PassesTheWishForTheSettingsOn) {
    NotesFolder folder({});
    MenuBarExtra extra(&folder.store(), &folder.settings(), QDBusConnection(u"no such connection"_s));
    const QSignalSpy requests(&extra, &MenuBarExtra::settingsRequested);
    Q_EMIT extra.content().settingsRequested();
    EXPECT_EQ(requests.count(), 1);
}
