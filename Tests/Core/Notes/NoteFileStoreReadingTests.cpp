#include "Tests/Core/Notes/NoteFileStoreTest.h"
#include "Tests/Support/FragileVolume.h"

#include <cerrno>

namespace quillary {

using namespace Qt::StringLiterals;
using test::TestDirectory;

namespace {

class NoteFileStoreReading : public test::NoteFileStoreTest {};

TEST_F(NoteFileStoreReading, ReadsTextOfEverySize) {
    // Around the size at which reading goes over to a buffer of its own.
    for (const qsizetype size : {0, 1, 4096, 65535, 65536, 65537, 200'000}) {
        QByteArray contents(size, 'x');
        if (size > 0) {
            contents.back() = 'y';
        }
        const FilePath url = directory.write("a.md", contents);
        const auto text = store.read(url);
        ASSERT_TRUE(text) << size;
        EXPECT_EQ(*text, QString::fromLatin1(contents)) << size;
    }
}

TEST_F(NoteFileStoreReading, DecodesByTheLadder) {
    const std::pair<QByteArray, QString> cases[] = {
        {"", u""_s},
        {"\xEF\xBB\xBF"
         "a",
         u"a"_s},
        {"\xE8", u"è"_s},
        {QByteArray("\xFF\xFE\xE8\0", 4), u"è"_s},
        {"\x81", u"\uFFFD"_s},
        {"a\r\nb\rc\n", u"a\r\nb\rc\n"_s},
    };
    for (const auto& [bytes, text] : cases) {
        EXPECT_EQ(*store.read(directory.write("a.md", bytes)), text) << bytes.toHex().constData();
    }
}

TEST_F(NoteFileStoreReading, ReadsTheLargestFileAndRefusesALargerOne) {
    const FilePath url = directory.write("grande.md");
    ASSERT_EQ(::truncate(url.bytes().constData(), NoteFileStore::maxReadableBytes), 0);
    const auto text = store.read(url);
    ASSERT_TRUE(text);
    EXPECT_EQ(text->size(), 33'554'432);

    ASSERT_EQ(::truncate(url.bytes().constData(), NoteFileStore::maxReadableBytes + 1), 0);
    const auto refused = store.read(url);
    EXPECT_EQ(ownError(refused), NoteStoreError::fileTooLarge(u"grande.md"_s, 33'554'433));
    EXPECT_TRUE(localizedDescription(refused.error()).startsWith(u"«grande.md» è troppo grande per essere aperto ("_s));

    EXPECT_EQ(listed(), QList<QByteArray>{"grande.md"}) << "it stays listed,";
    EXPECT_EQ(store.info(url)->size, 33'554'433);
    EXPECT_EQ(relative(store.rename(url, u"altro")), "altro.md") << "can have another name,";
    EXPECT_EQ(relative(store.changeFormat(directory.path("altro.md"), NoteFormat::plain)), "altro.txt");
    EXPECT_EQ(relative(store.importFile(directory.path("altro.txt"))), "altro 2.txt") << "be copied";
    directory.makeDirectory("Lavoro");
    EXPECT_EQ(relative(store.moveNote(directory.path("altro.txt"), u"Lavoro"_s)), "Lavoro/altro.txt") << "and be moved";
}

TEST_F(NoteFileStoreReading, FailsWithTheSystemsErrorWhereThereIsNothingToRead) {
    ::chmod(directory.bytes().constData(), 0755);
    directory.write("a.md");
    directory.makeDirectory("d.md");
    directory.makeLink("l.md", "a.md");
    ASSERT_EQ(::mkfifo(directory.path("pipe.md").bytes().constData(), 0600), 0);
    const std::pair<const char*, int> cases[] = {
        {"absent.md", ENOENT}, {"d.md", EISDIR}, {"l.md", ELOOP}, {"pipe.md", ESPIPE}, {"a.md/b.md", ENOTDIR},
    };
    for (const auto& [name, code] : cases) {
        EXPECT_EQ(systemCode(store.read(directory.path(name))), code) << name;
    }
    EXPECT_EQ(systemCode(store.read(FilePath::fromBytes("/dev/null"))), EINVAL);
    EXPECT_EQ(systemCode(store.read(FilePath::fromBytes("/dev/zero"))), EINVAL);
    ::chmod(directory.path("a.md").bytes().constData(), 0000);
    const test::WithoutPrivileges user;
    EXPECT_EQ(systemCode(store.read(directory.path("a.md"))), EACCES);
}

TEST_F(NoteFileStoreReading, ReadsTheWholeTextWhateverSizeIsExpected) {
    for (const qsizetype size : {0, 1, 40'000, 200'000}) {
        const FilePath url = directory.write("a.md", QByteArray(size, 'x'));
        for (const qint64 expected : {qint64(0), qint64(1), qint64(size), qint64(size + 1)}) {
            const auto text = store.read(url, expected);
            ASSERT_TRUE(text) << size << ' ' << expected;
            EXPECT_EQ(text->size(), size) << expected;
        }
    }
}

TEST_F(NoteFileStoreReading, TakesNoPartOfANoteForTheWhole) {
    const TestDirectory shown;
    // Below the size of the first call, and above it.
    for (const qsizetype size : {40'000, 100'000}) {
        shown.write(QByteArray::number(size) + ".md", QByteArray(size, 'x'));
    }
    test::FragileVolume volume(directory.bytes(), shown.bytes());
    if (!volume.isMounted()) {
        GTEST_SKIP() << test::noVolume;
    }
    volume.failReadsFrom(16'384);
    for (const char* const name : {"40000.md", "100000.md"}) {
        EXPECT_EQ(systemCode(store.read(directory.path(name))), EIO) << name;
    }
    volume.failReadsFrom(100'000);
    EXPECT_EQ(store.read(directory.path("40000.md"))->size(), 40'000);
}

TEST_F(NoteFileStoreReading, SeesWhatBecameOfANoteSinceItWasListed) {
    directory.write("a.md", "a");
    const FilePath url = store.listNotes()->first().url;
    ::unlink(url.bytes().constData());
    EXPECT_EQ(systemCode(store.read(url)), ENOENT);
    EXPECT_EQ(systemCode(store.info(url)), ENOENT);
    directory.makeDirectory("a.md");
    EXPECT_EQ(systemCode(store.read(url)), EISDIR);
    EXPECT_EQ(systemCode(store.info(url)), EISDIR);
    EXPECT_EQ(systemCode(store.write(u"text", url)), EISDIR);
    EXPECT_EQ(directory.names(), QList<QByteArray>{"a.md"});
}

TEST_F(NoteFileStoreReading, LoadsTheLayoutThatWasSaved) {
    EXPECT_EQ(store.loadLayout(), SidebarLayout());
    SidebarLayout layout;
    layout.folderOrder = {u"b"_s, u"à"_s};
    layout.collapsedFolders = {u"b"_s};
    layout.noteOrder.insert(QString(), {u"x.md"_s});
    ASSERT_TRUE(store.saveLayout(layout));
    EXPECT_EQ(store.loadLayout(), layout);
    EXPECT_EQ(directory.names(), QList<QByteArray>{".quillary.json"});
    const QByteArray bytes = directory.read(".quillary.json");
    ASSERT_TRUE(store.saveLayout(layout));
    EXPECT_EQ(directory.read(".quillary.json"), bytes);
    EXPECT_EQ(listed(), QList<QByteArray>{});
}

TEST_F(NoteFileStoreReading, TakesALayoutThatCannotBeReadForAnEmptyOneAndLeavesTheFile) {
    const QByteArray contents[] = {
        "",
        "{",
        "[]",
        "null",
        "{\"folderOrder\": 3}",
        "{\"folderOrder\": [\"a\"], \"folderColors\": {\"a\": \"fuchsia\"}}",
        "\xFF\xFE\x00",
        "{\"folderOrder\": [\"a\"]} x",
    };
    for (const QByteArray& each : contents) {
        directory.write(".quillary.json", each);
        EXPECT_EQ(store.loadLayout(), SidebarLayout()) << each.constData();
        EXPECT_EQ(directory.read(".quillary.json"), each);
    }
    directory.write(".quillary.json", "{}");
    EXPECT_EQ(store.loadLayout(), SidebarLayout());
    directory.write(".quillary.json", "{\"folderOrder\": [\"a\"], \"unknown\": 1, \"noteOrder\": null}");
    EXPECT_EQ(store.loadLayout().folderOrder, QStringList{u"a"_s});
    ::unlink(directory.path(".quillary.json").bytes().constData());
    directory.makeDirectory(".quillary.json");
    EXPECT_EQ(store.loadLayout(), SidebarLayout());
    EXPECT_EQ(systemCode(store.saveLayout(SidebarLayout())), EISDIR);
}

TEST_F(NoteFileStoreReading, KeepsTheOldLayoutWhenSavingFails) {
    SidebarLayout layout;
    layout.folderOrder = {u"a"_s};
    ASSERT_TRUE(store.saveLayout(layout));
    const QByteArray bytes = directory.read(".quillary.json");
    for (int i = 0; i < 1000; ++i) {
        layout.folderOrder.append(QString::number(i));
    }
    {
        const test::FileSizeLimit limit(500);
        EXPECT_EQ(systemCode(store.saveLayout(layout)), EFBIG);
    }
    EXPECT_EQ(directory.read(".quillary.json"), bytes);
    EXPECT_EQ(systemCode(NoteFileStore(directory.path("absent")).saveLayout(layout)), ENOENT);
    EXPECT_EQ(directory.names(), QList<QByteArray>{".quillary.json"});
}

} // namespace

} // namespace quillary
