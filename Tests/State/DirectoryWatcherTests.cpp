#include "Quillary/Platform/DirectoryWatcher.h"

#include "Tests/State/NotesDirectory.h"
#include "Tests/State/Waiting.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <functional>
#include <sys/resource.h>
#include <thread>

namespace quillary::test {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class DirectoryWatcherTest : public testing::Test {
protected:
    void watch(const FilePath& path) {
        watcher = DirectoryWatcher::watch(path, [this] { ++changes; });
        ASSERT_NE(watcher, nullptr);
    }

    bool isTold() {
        return waitUntil([this] { return changes > 0; });
    }

    NotesDirectory directory;
    std::unique_ptr<DirectoryWatcher> watcher;
    int changes = 0;
};

struct Change {
    const char* name;
    std::function<void(const NotesDirectory&)> make;
};

void PrintTo(const Change& change, std::ostream* out) {
    *out << change.name;
}

class DirectoryWatcherChanges : public DirectoryWatcherTest, public testing::WithParamInterface<Change> {};

TEST_P(DirectoryWatcherChanges, AreTold) {
    directory.write(u"a.md"_s);
    directory.makeFolder(u"Sotto"_s);
    directory.write(u"Sotto/b.md"_s);
    watch(directory.path());

    GetParam().make(directory);

    EXPECT_TRUE(isTold());
}

INSTANTIATE_TEST_SUITE_P(
    All, DirectoryWatcherChanges,
    testing::Values(Change{"Creation", [](const NotesDirectory& d) { d.write(u"neu.md"_s); }},
                    Change{"Deletion", [](const NotesDirectory& d) { d.remove(u"a.md"_s); }},
                    Change{"Renaming", [](const NotesDirectory& d) { d.rename(u"a.md"_s, u"c.md"_s); }},
                    Change{"MoveIn", [](const NotesDirectory& d) { d.rename(u"Sotto/b.md"_s, u"b.md"_s); }},
                    Change{"MoveOut", [](const NotesDirectory& d) { d.rename(u"a.md"_s, u"Sotto/a.md"_s); }},
                    Change{"MoveOverAnother", [](const NotesDirectory& d) { d.replace(u"a.md"_s, "x"); }},
                    Change{"RewriteInPlace", [](const NotesDirectory& d) { d.write(u"a.md"_s, "neu"); }},
                    Change{"DateAlone", [](const NotesDirectory& d) { d.setModified(u"a.md"_s, moment(1)); }},
                    Change{"NewFolder", [](const NotesDirectory& d) { d.makeFolder(u"Neu"_s); }},
                    Change{"FolderGone", [](const NotesDirectory& d) { d.remove(u"Sotto"_s); }}),
    [](const auto& parameter) { return std::string(parameter.param.name); });

TEST_F(DirectoryWatcherTest, SeesNeitherHiddenEntriesNorSubdirectories) {
    directory.makeFolder(u"Sotto"_s);
    watch(directory.path());

    directory.write(u".quillary.json"_s);
    directory.write(u".nascosto.md"_s);
    directory.remove(u".nascosto.md"_s);
    directory.write(u"Sotto/b.md"_s);
    runEventLoop(50ms);
    EXPECT_EQ(changes, 0);

    directory.write(u"a.md"_s);
    EXPECT_TRUE(isTold());
}

TEST_F(DirectoryWatcherTest, SeesHiddenEntriesOnDemand) {
    watcher = DirectoryWatcher::watch(
        directory.path(), [this] { ++changes; }, DirectoryWatcher::Entries::all);

    directory.write(u".nascosto.md"_s);

    EXPECT_TRUE(isTold());
}

TEST_F(DirectoryWatcherTest, TellsOnceOfEventsThatCameTogether) {
    watch(directory.path());
    for (int i = 0; i < 10; ++i) {
        directory.write(QString::number(i) + u".md"_s);
    }

    ASSERT_TRUE(isTold());

    EXPECT_EQ(changes, 1);
}

TEST_F(DirectoryWatcherTest, IsCurrentWhileThePathLeadsToItsDirectory) {
    directory.makeFolder(u"Sotto"_s);
    watch(directory.path(u"Sotto"_s));
    EXPECT_TRUE(watcher->isCurrent());
    EXPECT_EQ(watcher->directory(), directory.path(u"Sotto"_s));

    directory.remove(u"Sotto"_s);
    EXPECT_TRUE(isTold());
    EXPECT_FALSE(watcher->isCurrent());

    directory.makeFolder(u"Sotto"_s);
    EXPECT_FALSE(watcher->isCurrent());
}

TEST_F(DirectoryWatcherTest, TellsOfItsDirectorysMoveAndDoesNotFollowIt) {
    directory.makeFolder(u"Sotto"_s);
    watch(directory.path(u"Sotto"_s));

    directory.rename(u"Sotto"_s, u"Altro"_s);
    ASSERT_TRUE(isTold());
    EXPECT_FALSE(watcher->isCurrent());

    changes = 0;
    directory.write(u"Altro/a.md"_s);
    runEventLoop(50ms);
    EXPECT_EQ(changes, 0);
}

TEST_F(DirectoryWatcherTest, IsNotCurrentAfterTheMoveOfADirectoryAbove) {
    directory.makeFolder(u"Sopra"_s);
    directory.makeFolder(u"Sopra/Sotto"_s);
    watch(directory.path(u"Sopra/Sotto"_s));

    directory.rename(u"Sopra"_s, u"Altrove"_s);

    EXPECT_FALSE(watcher->isCurrent());
}

TEST_F(DirectoryWatcherTest, IsNotMadeForWhatIsNoDirectory) {
    directory.write(u"a.md"_s);

    EXPECT_EQ(DirectoryWatcher::watch(directory.path(u"manca"_s), [] {}), nullptr);
    EXPECT_EQ(DirectoryWatcher::watch(directory.path(u"a.md"_s), [] {}), nullptr);
}

TEST_F(DirectoryWatcherTest, IsNotMadeWhenTheSystemRefuses) {
    rlimit old = {};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &old), 0);
    rlimit none = old;
    none.rlim_cur = 0;
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);

    const auto refused = DirectoryWatcher::watch(directory.path(), [] {});

    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &old), 0);
    EXPECT_EQ(refused, nullptr);
}

TEST_F(DirectoryWatcherTest, IsSilentOnceItIsDropped) {
    watch(directory.path());
    directory.write(u"a.md"_s);
    watcher.reset();

    runEventLoop(50ms);

    EXPECT_EQ(changes, 0);
}

TEST_F(DirectoryWatcherTest, TwoWatchersOfOneDirectoryAreBothTold) {
    int others = 0;
    watch(directory.path());
    auto other = DirectoryWatcher::watch(directory.path(), [&others] { ++others; });

    directory.write(u"a.md"_s);
    ASSERT_TRUE(waitUntil([&] { return changes > 0 && others > 0; }));

    other.reset();
    changes = 0;
    directory.write(u"b.md"_s);
    EXPECT_TRUE(isTold());
}

TEST_F(DirectoryWatcherTest, MayBeDroppedByItsOwnAction) {
    bool isDropped = false;
    watcher = DirectoryWatcher::watch(directory.path(), [&] {
        watcher.reset();
        isDropped = true;
    });

    directory.write(u"a.md"_s);

    EXPECT_TRUE(waitUntil([&isDropped] { return isDropped; }));
}

TEST_F(DirectoryWatcherTest, WatchesThroughALink) {
    const QString link = directory.path().text() + u"-link"_s;
    ASSERT_TRUE(QFile::link(directory.path().text(), link));
    watch(FilePath::fromText(link));

    directory.write(u"a.md"_s);

    EXPECT_TRUE(isTold());
}

} // namespace quillary::test
