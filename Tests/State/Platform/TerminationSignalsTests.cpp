#include "Quillary/Platform/TerminationSignals.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

using namespace quillary;

class TerminationSignalsOf : public testing::TestWithParam<int> {};

TEST_P(TerminationSignalsOf, ArriveInTheEventLoop) {
    TerminationSignals::block();
    TerminationSignals signals;
    QSignalSpy received(&signals, &TerminationSignals::received);
    kill(getpid(), GetParam());
    ASSERT_TRUE(received.wait());
    EXPECT_EQ(received.constFirst().constFirst().toInt(), GetParam());
}

INSTANTIATE_TEST_SUITE_P(Each, TerminationSignalsOf, testing::Values(SIGTERM, SIGINT, SIGHUP));

TEST(TerminationSignals, TheSecondOneEndsTheProcess) {
    const pid_t child = fork();
    if (child == 0) {
        TerminationSignals::block();
        TerminationSignals signals;
        QObject::connect(&signals, &TerminationSignals::received, [] { raise(SIGTERM); });
        kill(getpid(), SIGTERM);
        while (true) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), SIGTERM);
}
