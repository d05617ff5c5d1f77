#include "Quillary/State/DelayedTask.h"

#include "Tests/State/Waiting.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>

namespace quillary::test {

using namespace std::chrono_literals;

TEST(DelayedTask, RunsOnceAfterItsDelay) {
    int runs = 0;
    DelayedTask task(50ms, [&runs] { ++runs; });

    const auto start = std::chrono::steady_clock::now();
    task.restart();
    EXPECT_TRUE(task.isPending());
    ASSERT_TRUE(waitUntil([&runs] { return runs > 0; }));

    EXPECT_GE(std::chrono::steady_clock::now() - start, 50ms);
    EXPECT_FALSE(task.isPending());
    runEventLoop(120ms);
    EXPECT_EQ(runs, 1);
}

TEST(DelayedTask, WaitsTheWholeDelayAnewWhenAskedAgain) {
    int runs = 0;
    std::chrono::steady_clock::time_point lastStart;
    DelayedTask task(60ms, [&] {
        ++runs;
        EXPECT_GE(std::chrono::steady_clock::now() - lastStart, 60ms);
    });
    for (int i = 0; i < 10; ++i) {
        lastStart = std::chrono::steady_clock::now();
        task.restart();
        runEventLoop(10ms);
    }

    EXPECT_TRUE(waitUntil([&runs] { return runs > 0; }));
}

TEST(DelayedTask, DoesNotRunAfterACancellation) {
    int runs = 0;
    DelayedTask task(10ms, [&runs] { ++runs; });
    task.restart();
    task.cancel();

    runEventLoop(50ms);

    EXPECT_EQ(runs, 0);
    EXPECT_FALSE(task.isPending());
}

TEST(DelayedTask, RunsAgainAfterACancellation) {
    int runs = 0;
    DelayedTask task(10ms, [&runs] { ++runs; });
    task.restart();
    task.cancel();
    task.restart();

    EXPECT_TRUE(waitUntil([&runs] { return runs == 1; }));
}

TEST(DelayedTask, DiesWithItsOwner) {
    int runs = 0;
    auto task = std::make_unique<DelayedTask>(10ms, [&runs] { ++runs; });
    task->restart();
    task.reset();

    runEventLoop(50ms);

    EXPECT_EQ(runs, 0);
}

TEST(DelayedTask, MayEndItselfInItsAction) {
    std::unique_ptr<DelayedTask> task;
    bool hasRun = false;
    task = std::make_unique<DelayedTask>(1ms, [&] {
        task.reset();
        hasRun = true;
    });
    task->restart();

    ASSERT_TRUE(waitUntil([&hasRun] { return hasRun; }));

    EXPECT_EQ(task, nullptr);
}

} // namespace quillary::test
