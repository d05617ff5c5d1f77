#include "Quillary/Platform/MountWatcher.h"

#include "Tests/State/NotesDirectory.h"
#include "Tests/State/Waiting.h"
#include "Tests/Support/OwnMounts.h"

#include <gtest/gtest.h>

#include <sys/mount.h>

namespace quillary::test {

using namespace Qt::StringLiterals;

TEST(MountWatcher, TellsOfMountsAndOfTheirEnd) {
    const NotesDirectory directory;
    directory.makeFolder(u"Disco"_s);
    const QByteArray path = directory.path(u"Disco"_s).bytes();
    int changes = 0;
    const auto watcher = MountWatcher::watch([&changes] { ++changes; });
    ASSERT_NE(watcher, nullptr);
    runEventLoop(std::chrono::milliseconds(20));
    ASSERT_EQ(changes, 0);

    if (mount("none", path.constData(), "tmpfs", 0, nullptr) != 0) {
        GTEST_SKIP() << noMounts;
    }
    EXPECT_TRUE(waitUntil([&changes] { return changes > 0; }));

    changes = 0;
    ASSERT_EQ(umount(path.constData()), 0);
    EXPECT_TRUE(waitUntil([&changes] { return changes > 0; }));
}

} // namespace quillary::test
