#include "Quillary/Shell/ActivationQueue.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QStringList>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <memory>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

class ActivationQueueTest : public testing::Test {
protected:
    void append(const QString& name) {
        queue->append([this, name] { log.append(name); });
    }

    /// Says what the window system says when the user comes and goes.
    static void applicationBecomes(Qt::ApplicationState state) { Q_EMIT qGuiApp->applicationStateChanged(state); }

    QStringList log;
    std::unique_ptr<ActivationQueue> queue = std::make_unique<ActivationQueue>();
};

} // namespace

TEST_F(ActivationQueueTest, RunsItsCommandsInOrderOnceTheApplicationBecomesActive) {
    append(u"one"_s);
    append(u"two"_s);
    applicationBecomes(Qt::ApplicationInactive);
    EXPECT_EQ(log, QStringList());

    applicationBecomes(Qt::ApplicationActive);
    EXPECT_EQ(log, QStringList({u"one"_s, u"two"_s}));

    applicationBecomes(Qt::ApplicationActive);
    EXPECT_EQ(log.size(), 2) << "each runs once";
}

TEST_F(ActivationQueueTest, RunsThemAnywayAfterAMoment) {
    append(u"one"_s);
    append(u"two"_s);
    EXPECT_TRUE(QTest::qWaitFor([this] { return !log.isEmpty(); }));
    EXPECT_EQ(log, QStringList({u"one"_s, u"two"_s}));
    applicationBecomes(Qt::ApplicationActive);
    EXPECT_EQ(log.size(), 2);
}

TEST_F(ActivationQueueTest, RunsThemBeforeTheApplicationEnds) {
    append(u"one"_s);
    QTimer::singleShot(0, qApp, [] { QCoreApplication::quit(); });
    QCoreApplication::exec();
    EXPECT_EQ(log, QStringList(u"one"_s));
}

TEST_F(ActivationQueueTest, ACommandThatLetsEventsThroughKeepsTheOrder) {
    queue->append([this] {
        append(u"three"_s);
        applicationBecomes(Qt::ApplicationActive);
        log.append(u"end of one"_s);
    });
    append(u"two"_s);
    applicationBecomes(Qt::ApplicationActive);
    EXPECT_EQ(log, QStringList({u"two"_s, u"three"_s, u"end of one"_s}));
}

TEST_F(ActivationQueueTest, RunsNothingOnceItHasGone) {
    append(u"one"_s);
    queue.reset();
    applicationBecomes(Qt::ApplicationActive);
    EXPECT_EQ(log, QStringList());
}
