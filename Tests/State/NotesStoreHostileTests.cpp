#include "Quillary/State/NoteDocument.h"

#include "Tests/State/NotesStoreTest.h"
#include "Tests/State/Waiting.h"
#include "Tests/Support/SystemConditions.h"

#include <QDir>
#include <QFile>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <functional>
#include <optional>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace quillary::test {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// A file system in the place of a directory, seen by this program alone.
class Volume {
public:
    static constexpr const char* inMemory = "tmpfs";

    /// A new one, or another view of a directory that is there.
    Volume(const FilePath& place, const QByteArray& source, const char* options = nullptr)
        : m_place(place.bytes()),
          m_isMounted(mount(source.constData(), m_place.constData(), source == inMemory ? inMemory : nullptr,
                            source == inMemory ? 0 : MS_BIND, options) == 0) {}

    Volume(const Volume&) = delete;
    Volume& operator=(const Volume&) = delete;

    ~Volume() { unmount(); }

    bool isMounted() const { return m_isMounted; }

    void unmount() {
        if (std::exchange(m_isMounted, false)) {
            umount2(m_place.constData(), MNT_DETACH);
        }
    }

    [[nodiscard]] bool setReadOnly(bool isReadOnly) const {
        return mount(nullptr, m_place.constData(), nullptr, MS_REMOUNT | (isReadOnly ? MS_RDONLY : 0), nullptr) == 0;
    }

private:
    QByteArray m_place;
    bool m_isMounted;
};

/// Writes until there is no room left.
void fill(const FilePath& path) {
    const int descriptor = open(path.bytes().constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
    ASSERT_GE(descriptor, 0);
    constexpr std::size_t pieceSize = 4096;
    const QByteArray piece(pieceSize, 'x');
    while (write(descriptor, piece.constData(), pieceSize) > 0) {
    }
    EXPECT_EQ(errno, ENOSPC);
    close(descriptor);
}

qsizetype openDescriptors() {
    return QDir(u"/proc/self/fd"_s).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::System).size();
}

/// For as long as it lives, the process can open nothing more.
class NoMoreDescriptors {
public:
    NoMoreDescriptors() {
        getrlimit(RLIMIT_NOFILE, &m_before);
        const int next = dup(0);
        close(next);
        const rlimit limit{static_cast<rlim_t>(next), m_before.rlim_max};
        setrlimit(RLIMIT_NOFILE, &limit);
    }

    NoMoreDescriptors(const NoMoreDescriptors&) = delete;
    NoMoreDescriptors& operator=(const NoMoreDescriptors&) = delete;

    ~NoMoreDescriptors() { setrlimit(RLIMIT_NOFILE, &m_before); }

private:
    rlimit m_before{};
};

} // namespace

class NotesStoreHostile : public NotesStoreTest {
protected:
    /// Everything that lies in the directory, hidden entries included.
    QStringList entries() const {
        return QDir(directory.path().text()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    /// Whether the next edit of a dirty note is saved by itself.
    bool isSavedAfterTheNextEdit(const NoteItemPtr& item, const QString& text) const {
        type(item, text);
        return waitUntil([&item] { return !item->isDirty(); }) && directory.contents(item->fileName()) == text.toUtf8();
    }

    /// The second line of the failure on screen: the system's own words.
    QString reason() const { return store->errorMessage().value_or(QString()).section(u'\n', 1); }
};

// Disks.

TEST_F(NotesStoreHostile, AFullDiskKeepsTheOldTextOnDiskAndTheNewOneInTheEditor) {
    const Volume volume(directory.path(), Volume::inMemory, "size=256k");
    if (!volume.isMounted()) {
        GTEST_SKIP() << noMounts;
    }
    directory.write(u"a.md"_s, "prima");
    fill(directory.path(u"pieno.bin"_s));
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    const QStringList before = entries();
    const QString text = u"dopo "_s.repeated(10'000);
    type(a, text);

    ASSERT_TRUE(waitUntil([this] { return store->errorMessage().has_value(); }));
    EXPECT_EQ(failure(), u"Impossibile salvare «a».");
    EXPECT_EQ(reason(), (SystemError{ENOSPC}.localizedDescription()));
    EXPECT_TRUE(a->isDirty());
    EXPECT_EQ(a->document()->text(), text);
    EXPECT_EQ(directory.contents(u"a.md"_s), "prima");
    EXPECT_EQ(store->makeNote(u"b"_s, text), nullptr);
    EXPECT_EQ(entries(), before);
    EXPECT_EQ(titles(), QStringList(u"a"_s));

    directory.remove(u"pieno.bin"_s);
    EXPECT_TRUE(isSavedAfterTheNextEdit(a, text + u'!'));
}

TEST_F(NotesStoreHostile, AVolumeThatBecomesReadOnlyRefusesEverythingAndLosesNothing) {
    const Volume volume(directory.path(), Volume::inMemory);
    if (!volume.isMounted()) {
        GTEST_SKIP() << noMounts;
    }
    directory.makeFolder(u"Casa"_s);
    directory.write(u"a.md"_s, "prima");
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    const QStringList before = entries();
    ASSERT_TRUE(volume.setReadOnly(true));

    type(a, u"dopo"_s);
    EXPECT_FALSE(store->save(*a));
    EXPECT_EQ(reason(), (SystemError{EROFS}.localizedDescription()));
    const std::function<void()> commands[] = {
        [&] { store->rename(*a, u"b"_s); },
        [&] { store->changeFormat(*a, NoteFormat::json); },
        [&] { store->move({a}, u"Casa"_s); },
        [&] { store->place({a}, u"Casa"_s, nullptr); },
        [&] { store->moveToTrash({a}); },
        [&] { store->makeNote(u"c"_s); },
        [&] { store->createFolder({a}); },
        [&] { store->renameFolder(u"Casa"_s, u"Dimora"_s); },
        [&] { store->deleteFolder(u"Casa"_s, true); },
        [&] { store->toggleCollapsed(u"Casa"_s); },
    };
    for (std::size_t i = 0; i < std::size(commands); ++i) {
        SCOPED_TRACE(i);
        store->setErrorMessage({});
        commands[i]();
        EXPECT_TRUE(store->errorMessage().has_value());
        EXPECT_EQ(note(u"a"_s), a);
        EXPECT_EQ(a->fileName(), u"a.md");
        EXPECT_TRUE(a->isDirty());
        EXPECT_EQ(store->folders(), QStringList(u"Casa"_s));
    }
    EXPECT_EQ(entries(), before);
    EXPECT_EQ(directory.contents(u"a.md"_s), "prima");

    ASSERT_TRUE(volume.setReadOnly(false));
    EXPECT_TRUE(isSavedAfterTheNextEdit(a, u"dopo ancora"_s));
}

/// A store whose directory is the mount point of a volume.
class NotesStoreMountPoint : public NotesStoreHostile {
protected:
    void SetUp() override {
        if (!contents.isMounted()) {
            GTEST_SKIP() << noMounts;
        }
        mount();
    }

    void mount() {
        volume.emplace(directory.path(), contents.path());
        ASSERT_TRUE(volume->isMounted());
    }

    /// Opens the store over a note in a folder and one at the top.
    void openTwoNotes() {
        directory.makeFolder(u"Casa"_s);
        directory.write(u"Casa/a.md"_s, "prima");
        directory.write(u"b.md"_s, "prima");
        openStore();
    }

    const MountedFileSystem contents = MountedFileSystem::inMemory({});
    std::optional<Volume> volume;
};

TEST_F(NotesStoreMountPoint, AVolumeThatGoesAwayFromItsMountPointKeepsItsNotesAndComesBack) {
    openTwoNotes();
    const NoteItemPtr b = note(u"b"_s);
    select(u"b"_s);
    b->setDirty(true);

    // What is left is an empty directory, which can be listed.
    volume->unmount();
    runEventLoop(400ms);
    store->refreshFromDisk();
    ASSERT_TRUE(entries().isEmpty());
    EXPECT_EQ(titles(), QStringList({u"a"_s, u"b"_s}));
    EXPECT_EQ(store->folders(), QStringList(u"Casa"_s));
    EXPECT_EQ(store->selectedItem(), b);
    EXPECT_TRUE(b->isDirty());
    EXPECT_EQ(store->errorMessage(), std::nullopt);

    mount();
    directory.write(u"c.md"_s);
    ASSERT_TRUE(waitUntil([this] { return note(u"c"_s) != nullptr; }));
    EXPECT_EQ(note(u"b"_s), b);
    EXPECT_TRUE(isSavedAfterTheNextEdit(b, u"dopo"_s));

    directory.write(u"Casa/d.md"_s);
    EXPECT_TRUE(waitUntil([this] { return note(u"d"_s) != nullptr; }));
}

TEST_F(NotesStoreMountPoint, NothingIsPutWhereAnUnmountedVolumeWas) {
    openTwoNotes();
    const QList<NoteItemPtr> notes = store->notes();
    const NoteItemPtr b = note(u"b"_s);
    store->ensureLoaded(*b);
    type(b, u"dopo"_s);

    volume->unmount();
    EXPECT_FALSE(store->save(*b));
    EXPECT_EQ(failure(), u"Impossibile salvare «b».");
    EXPECT_EQ(store->makeNote(u"c"_s, u"testo"_s), nullptr);
    EXPECT_EQ(failure(), u"Impossibile creare la nota.");
    EXPECT_EQ(store->createFolder({}), std::nullopt);
    EXPECT_EQ(failure(), u"Impossibile creare la cartella.");
    store->toggleCollapsed(u"Casa"_s);
    EXPECT_EQ(failure(), u"Impossibile salvare l'ordine delle cartelle.");
    EXPECT_TRUE(entries().isEmpty());
    store->refreshFromDisk();
    EXPECT_EQ(store->notes(), notes);
    EXPECT_TRUE(b->isDirty());

    mount();
    EXPECT_NE(store->makeNote(u"c"_s, u"testo"_s), nullptr);
    EXPECT_TRUE(store->save(*b));
    EXPECT_EQ(directory.contents(u"b.md"_s), "dopo");
    EXPECT_EQ(titles(), QStringList({u"a"_s, u"b"_s, u"c"_s}));
}

TEST_F(NotesStoreHostile, AVolumeThatIsBackAsAnotherOneTakesANewNoteAtOnce) {
    Volume volume(directory.path(), Volume::inMemory);
    if (!volume.isMounted()) {
        GTEST_SKIP() << noMounts;
    }
    directory.write(u"a.md"_s);
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    volume.unmount();
    const Volume again(directory.path(), Volume::inMemory);
    directory.write(u"a.md"_s);
    EXPECT_NE(store->makeNote(u"b"_s, u"testo"_s), nullptr);
    EXPECT_EQ(store->errorMessage(), std::nullopt);
    EXPECT_EQ(note(u"a"_s), a);
    EXPECT_EQ(directory.contents(u"b.md"_s), "testo");
}

TEST_F(NotesStoreMountPoint, ADirectoryIsNotMadeAnewWhereItsVolumeWas) {
    directory.makeFolder(u"Note"_s);
    directory.write(u"Note/a.md"_s);
    openStore();
    store->changeDirectory(directory.path(u"Note"_s));
    ASSERT_EQ(titles(), QStringList(u"a"_s));

    volume->unmount();
    EXPECT_EQ(store->makeNote(u"b"_s, u"testo"_s), nullptr);
    EXPECT_TRUE(entries().isEmpty());
    EXPECT_EQ(titles(), QStringList(u"a"_s));
}

TEST_F(NotesStoreHostile, ADirectoryThatWasRemovedIsMadeAnewForANewNote) {
    directory.write(u"a.md"_s);
    openStore();
    ASSERT_TRUE(QDir(directory.path().text()).removeRecursively());
    EXPECT_NE(store->makeNote(u"b"_s, u"testo"_s), nullptr);
    EXPECT_EQ(directory.contents(u"b.md"_s), "testo");
}

TEST_F(NotesStoreHostile, AVolumeThatIsMountedLateIsListedByItself) {
    openStore();
    ASSERT_TRUE(store->notes().isEmpty());
    const MountedFileSystem contents = MountedFileSystem::inMemory({});
    if (!contents.isMounted()) {
        GTEST_SKIP() << noMounts;
    }
    ASSERT_TRUE(QFile(QFile::decodeName(contents.path()) + u"/a.md"_s).open(QIODevice::WriteOnly));

    const Volume volume(directory.path(), contents.path());
    ASSERT_TRUE(waitUntil([this] { return note(u"a"_s) != nullptr; }));

    directory.write(u"b.md"_s);
    EXPECT_TRUE(waitUntil([this] { return note(u"b"_s) != nullptr; }));
}

TEST_F(NotesStoreHostile, ADirectoryThatIsEmptiedOnTheSameDiskIsEmpty) {
    directory.write(u"a.md"_s);
    openStore();

    directory.remove(u""_s);
    QDir().mkdir(directory.path().text());

    EXPECT_TRUE(waitUntil([this] { return store->notes().isEmpty(); }));
}

// Rights.

TEST_F(NotesStoreHostile, RightsThatAreLostAndGivenBackCostNoText) {
    directory.write(u"a.md"_s, "prima");
    const QByteArray path = directory.path().bytes();
    ASSERT_EQ(chmod(directory.path().parent().bytes().constData(), 0755), 0);
    ASSERT_EQ(chmod(path.constData(), 0777), 0);
    ASSERT_EQ(chmod(directory.path(u"a.md"_s).bytes().constData(), 0666), 0);
    std::optional<WithoutPrivileges> user(std::in_place);
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    type(a, u"dopo"_s);
    const auto setMode = [&](mode_t mode) {
        user.reset();
        EXPECT_EQ(chmod(path.constData(), mode), 0);
        user.emplace();
    };

    setMode(0000);
    EXPECT_FALSE(store->save(*a));
    EXPECT_EQ(reason(), (SystemError{EACCES}.localizedDescription()));
    runEventLoop(400ms);
    EXPECT_EQ(note(u"a"_s), a);
    EXPECT_TRUE(a->isDirty());
    EXPECT_EQ(a->document()->text(), u"dopo");

    // The rights of the directory are a change in the one above it.
    setMode(0777);
    directory.write(u"b.md"_s);
    ASSERT_TRUE(waitUntil([this] { return note(u"b"_s) != nullptr; }));
    EXPECT_EQ(note(u"a"_s), a);
    EXPECT_TRUE(isSavedAfterTheNextEdit(a, u"dopo ancora"_s));
}

TEST_F(NotesStoreHostile, AFolderThatCanNotBeOpenedIsListedWithoutItsNotesUntilARefreshCanOpenIt) {
    directory.makeFolder(u"Chiusa"_s);
    directory.write(u"Chiusa/a.md"_s);
    directory.write(u"b.md"_s);
    const QByteArray closed = directory.path(u"Chiusa"_s).bytes();
    ASSERT_EQ(chmod(directory.path().parent().bytes().constData(), 0755), 0);
    ASSERT_EQ(chmod(closed.constData(), 0000), 0);
    {
        const WithoutPrivileges user;
        openStore();
    }
    EXPECT_EQ(store->folders(), QStringList(u"Chiusa"_s));
    EXPECT_EQ(titles(), QStringList(u"b"_s));
    EXPECT_EQ(store->errorMessage(), std::nullopt);

    ASSERT_EQ(chmod(closed.constData(), 0755), 0);
    store->refreshFromDisk();
    EXPECT_EQ(titles(), QStringList({u"a"_s, u"b"_s}));

    // That its rights changed the directory above it tells; from then on the folder tells by itself.
    letTheWatcherCatchUp();
    directory.write(u"Chiusa/c.md"_s);
    EXPECT_TRUE(waitUntil([this] { return note(u"c"_s) != nullptr; }));
}

// Numbers.

TEST_F(NotesStoreHostile, AThousandFoldersAreListedAndWatched) {
    constexpr int folders = 1'000;
    for (int i = 0; i < folders; ++i) {
        directory.makeFolder(u"Cartella %1"_s.arg(i));
        directory.write(u"Cartella %1/nota %1.md"_s.arg(i));
    }
    const qsizetype before = openDescriptors();
    openStore();
    EXPECT_EQ(store->folders().size(), folders);
    EXPECT_EQ(store->notes().size(), folders);
    EXPECT_LT(openDescriptors() - before, 10);

    directory.write(u"Cartella 999/altra.md"_s);
    directory.remove(u"Cartella 500"_s);

    EXPECT_TRUE(waitUntil([this] { return note(u"altra"_s) != nullptr && note(u"nota 500"_s) == nullptr; }));
    EXPECT_EQ(store->folders().size(), folders - 1);
}

TEST_F(NotesStoreHostile, AStormOfChangesDisturbsNobodyWhoTypesAndIsSeenToItsEnd) {
    directory.write(u"a.md"_s, "prima");
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    constexpr int files = 250;
    std::atomic<bool> isOver = false;
    std::thread storm([&] {
        for (int i = 0; i < files; ++i) {
            directory.write(u"tempesta %1.md"_s.arg(i), QByteArray::number(i));
            directory.replace(u"tempesta %1.md"_s.arg(i), QByteArray::number(i + 1));
            directory.rename(u"tempesta %1.md"_s.arg(i), u"tempesta %1.txt"_s.arg(i));
            if (i % 2 == 0) {
                directory.remove(u"tempesta %1.txt"_s.arg(i));
            }
            std::this_thread::sleep_for(3ms);
        }
        isOver = true;
    });
    QString text;
    while (!isOver) {
        text += u'x';
        type(a, text);
        runEventLoop(20ms);
    }
    storm.join();

    ASSERT_TRUE(waitUntil([&] { return !a->isDirty() && store->notes().size() == 1 + files / 2; }));
    EXPECT_EQ(directory.contents(u"a.md"_s), text.toUtf8());
    EXPECT_EQ(a->document()->text(), text);
    EXPECT_EQ(note(u"a"_s), a);
    ASSERT_TRUE(waitUntil([this] { return allTextsAreLoaded(); }));
    for (const NoteItemPtr& item : store->notes()) {
        if (item != a) {
            EXPECT_EQ(item->document()->text(), QString::number(item->title().section(u' ', 1).toInt() + 1));
        }
    }
}

TEST_F(NotesStoreHostile, MoreEventsThanTheSystemKeepsAreNoReasonToMissTheLast) {
    QFile limit(u"/proc/sys/fs/inotify/max_queued_events"_s);
    ASSERT_TRUE(limit.open(QIODevice::ReadOnly));
    const int kept = limit.readAll().trimmed().toInt();
    if (kept > 100'000) {
        GTEST_SKIP() << "the system keeps more events than a test can make: see fs.inotify.max_queued_events";
    }
    openStore();
    directory.write(u"x.md"_s);
    const QByteArray one = directory.path(u"x.md"_s).bytes();
    const QByteArray other = directory.path(u"y.md"_s).bytes();

    // Each of these is two events, and nobody takes them in meanwhile.
    for (int i = 0; i < kept; ++i) {
        ASSERT_EQ(rename((i % 2 == 0 ? one : other).constData(), (i % 2 == 0 ? other : one).constData()), 0);
    }
    directory.write(u"ultima.md"_s);

    EXPECT_TRUE(waitUntil([this] { return note(u"ultima"_s) != nullptr; }));
}

TEST_F(NotesStoreHostile, AProcessThatCanOpenNothingMoreKeepsItsNotesAndTheirTexts) {
    directory.write(u"a.md"_s, "prima");
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    ASSERT_TRUE(waitUntil([this] { return allTextsAreLoaded(); }));
    type(a, u"dopo"_s);
    {
        const NoMoreDescriptors limit;
        EXPECT_FALSE(store->save(*a));
        EXPECT_EQ(store->makeNote(u"b"_s), nullptr);
        store->refreshFromDisk();
    }
    EXPECT_EQ(titles(), QStringList(u"a"_s));
    EXPECT_TRUE(a->isDirty());
    EXPECT_TRUE(isSavedAfterTheNextEdit(a, u"dopo ancora"_s));

    directory.write(u"c.md"_s);
    EXPECT_TRUE(waitUntil([this] { return note(u"c"_s) != nullptr; }));
}

TEST_F(NotesStoreHostile, NoDescriptorIsLeftOpenByWhatSucceedsOrFails) {
    directory.makeFolder(u"Casa"_s);
    directory.makeFolder(u"Altre"_s);
    directory.write(u"a.md"_s, "prima");
    openStore();
    ASSERT_TRUE(waitUntil([this] { return allTextsAreLoaded(); }));
    const qsizetype before = openDescriptors();
    const QByteArray here = directory.path().bytes();
    const QByteArray away = here + "-via";

    for (int round = 0; round < 20; ++round) {
        type(note(u"a"_s), QString::number(round));
        store->saveDirtyNotes();
        store->makeNote(u"b"_s);
        store->move({note(u"b"_s)}, u"Casa"_s);
        store->moveToTrash({note(u"b"_s)});
        store->rename(*note(u"a"_s), u".."_s);
        store->rename(*note(store->notes().first()->title()), u"a"_s);
        directory.rename(u"Casa"_s, u"Dimora"_s);
        store->refreshFromDisk();
        directory.rename(u"Dimora"_s, u"Casa"_s);
        store->refreshFromDisk();
        store->changeDirectory(directory.path(u"Altre"_s));
        store->changeDirectory(directory.path());
        ASSERT_EQ(rename(here.constData(), away.constData()), 0);
        store->refreshFromDisk();
        store->saveDirtyNotes();
        ASSERT_EQ(rename(away.constData(), here.constData()), 0);
        store->refreshFromDisk();
    }

    EXPECT_EQ(openDescriptors(), before);
}

// Clocks.

TEST_F(NotesStoreHostile, AFileOfTheFutureIsSavedWithTheDateOfTodayAndFollowedFromThenOn) {
    directory.write(u"a.md"_s, "prima");
    const Moment future = now() + std::chrono::hours(24 * 365 * 50);
    directory.setModified(u"a.md"_s, future);
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    ASSERT_EQ(a->modified(), future);

    // As after a clock that was set back: the new date is the older one.
    type(a, u"dopo"_s);
    ASSERT_TRUE(store->save(*a));
    EXPECT_LT(a->modified(), future);
    store->refreshFromDisk();
    EXPECT_EQ(a->document()->text(), u"dopo");

    runEventLoop(20ms);
    directory.write(u"a.md"_s, "da fuori");
    EXPECT_TRUE(waitUntil([&a] { return a->document()->text() == u"da fuori"; }));
}

} // namespace quillary::test
