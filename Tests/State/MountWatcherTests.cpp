#include "Quillary/Platform/MountWatcher.h"

#include "Tests/State/NotesDirectory.h"
#include "Tests/State/Waiting.h"

#include <gtest/gtest.h>

#include <sched.h>
#include <sys/mount.h>

namespace quillary::test {

using namespace Qt::StringLiterals;

TEST(MountWatcher, TellsOfMountsAndOfTheirEnd) {
    // Mounts of this process alone; not every place where tests run allows that.
    if (unshare(CLONE_NEWNS) != 0 || mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) {
        GTEST_SKIP() << "no right to mount";
    }
    const NotesDirectory directory;
    directory.makeFolder(u"Disco"_s);
    const QByteArray path = directory.path(u"Disco"_s).bytes();
    int changes = 0;
    const auto watcher = MountWatcher::watch([&changes] { ++changes; });
    ASSERT_NE(watcher, nullptr);
    runEventLoop(std::chrono::milliseconds(20));
    ASSERT_EQ(changes, 0);

    ASSERT_EQ(mount("none", path.constData(), "tmpfs", 0, nullptr), 0);
    EXPECT_TRUE(waitUntil([&changes] { return changes > 0; }));

    changes = 0;
    ASSERT_EQ(umount(path.constData()), 0);
    EXPECT_TRUE(waitUntil([&changes] { return changes > 0; }));
}

} // namespace quillary::test
