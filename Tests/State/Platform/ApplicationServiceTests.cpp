#include "Quillary/Platform/ApplicationService.h"

#include "PrivateBus.h"

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QList>
#include <QSignalSpy>
#include <QVariantList>
#include <QVariantMap>

#include <gtest/gtest.h>

#include <thread>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

/// What `claim` of another process gives; the first one's event loop runs on meanwhile.
Claim claimElsewhere(PrivateBus& bus, const QVariantMap& platformData = {}) {
    Claim claim = Claim::noBus;
    std::atomic_bool done = false;
    std::thread other([&, connection = bus.connection()] {
        ApplicationService service(connection);
        claim = service.claim(platformData);
        done = true;
    });
    while (!done) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    }
    other.join();
    return claim;
}

} // namespace

TEST(ApplicationService, TheFirstStartTakesTheName) {
    PrivateBus bus;
    ApplicationService service(bus.connection());
    EXPECT_EQ(service.claim(), Claim::first);
}

TEST(ApplicationService, ASecondStartActivatesTheFirstAndSaysSo) {
    PrivateBus bus;
    ApplicationService first(bus.connection());
    ASSERT_EQ(first.claim(), Claim::first);
    QSignalSpy activated(&first, &ApplicationService::activated);

    qputenv("XDG_ACTIVATION_TOKEN", "a-token");
    qputenv("DESKTOP_STARTUP_ID", "a-launcher_TIME1");
    const QVariantMap platformData = ApplicationService::ownPlatformData();
    qunsetenv("XDG_ACTIVATION_TOKEN");
    qunsetenv("DESKTOP_STARTUP_ID");
    EXPECT_EQ(claimElsewhere(bus, platformData), Claim::handedOver);

    ASSERT_EQ(activated.size(), 1);
    EXPECT_EQ(activated.constFirst(), QVariantList({u"a-token"_s, u"a-launcher_TIME1"_s}));
}

TEST(ApplicationService, TheNameIsFreeAgainOnceTheFirstHasEnded) {
    PrivateBus bus;
    {
        ApplicationService first(bus.connection());
        ASSERT_EQ(first.claim(), Claim::first);
    }
    EXPECT_EQ(claimElsewhere(bus), Claim::first);
}

TEST(ApplicationService, TellsWhenTheBusEnds) {
    PrivateBus bus;
    ApplicationService service(bus.connection());
    ASSERT_EQ(service.claim(), Claim::first);
    QSignalSpy lost(&service, &ApplicationService::lost);
    bus.end();
    ASSERT_TRUE(lost.wait());
}

TEST(ApplicationService, WithoutABusEveryStartRunsByItself) {
    ApplicationService service(QDBusConnection(u"no such connection"_s));
    EXPECT_EQ(service.claim(), Claim::noBus);
}

TEST(ApplicationService, OpenAndActionsBringTheWindowUpTooAndActionsSayTheirName) {
    PrivateBus bus;
    ApplicationService service(bus.connection());
    ASSERT_EQ(service.claim(), Claim::first);
    QSignalSpy activated(&service, &ApplicationService::activated);
    QSignalSpy actions(&service, &ApplicationService::actionActivated);
    QDBusConnection caller = bus.connection();
    const auto call = [&caller](const QString& method, const QVariantList& arguments) {
        QDBusMessage message = QDBusMessage::createMethodCall(u"app.quillary.Quillary"_s, u"/app/quillary/Quillary"_s,
                                                              u"org.freedesktop.Application"_s, method);
        message.setArguments(arguments);
        QDBusPendingCallWatcher watcher(caller.asyncCall(message));
        QSignalSpy finished(&watcher, &QDBusPendingCallWatcher::finished);
        finished.wait();
        return !watcher.isError();
    };
    const QVariantMap platformData{{u"activation-token"_s, u"a-token"_s}, {u"desktop-startup-id"_s, u"an-id"_s}};
    EXPECT_TRUE(call(u"Open"_s, {QStringList(), platformData}));
    EXPECT_TRUE(call(u"ActivateAction"_s, {u"new-note"_s, QVariantList(), platformData}));
    const QVariantList said{u"a-token"_s, u"an-id"_s};
    EXPECT_EQ(activated, QList<QVariantList>({said, said}));
    ASSERT_EQ(actions.size(), 1);
    EXPECT_EQ(actions.constFirst().constFirst().toString(), u"new-note"_s);
}
