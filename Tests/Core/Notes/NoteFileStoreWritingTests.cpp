#include "QuillaryCore/Platform/CreationDate.h"

#include "Tests/Core/Notes/NoteFileStoreTest.h"

#include <atomic>
#include <cerrno>
#include <thread>

namespace quillary {

using namespace Qt::StringLiterals;
using test::TestDirectory;

namespace {

class NoteFileStoreWriting : public test::NoteFileStoreTest {};

TEST_F(NoteFileStoreWriting, WritesUTF8WithoutAMark) {
    const std::pair<QByteArray, QByteArray> cases[] = {
        {"\xEF\xBB\xBF"
         "text",
         "text"},
        {"perch\xE9", "perch\xC3\xA9"},
        {QByteArray("\xFF\xFE\xE8\0", 4), "\xC3\xA8"},
        {"a\r\nb\rc\n", "a\r\nb\rc\n"},
        {QByteArray("a\0b", 3), QByteArray("a\0b", 3)},
        {"", ""},
    };
    for (const auto& [before, after] : cases) {
        const FilePath url = directory.write("a.md", before);
        ASSERT_TRUE(store.write(*store.read(url), url));
        EXPECT_EQ(directory.read("a.md"), after);
    }
}

TEST_F(NoteFileStoreWriting, GivesTheModificationDateThatTheFileHasFromThenOn) {
    const FilePath url = directory.write("a.md", "old");
    TestDirectory::setTimes(url, 1'000'000'000);
    const Moment before = now() - std::chrono::seconds(1);
    const auto modified = store.write(u"new", url);
    ASSERT_TRUE(modified);
    EXPECT_GE(*modified, before);
    EXPECT_LE(*modified, now());
    EXPECT_EQ(*modified, store.info(url)->modified);
}

TEST_F(NoteFileStoreWriting, KeepsTheCreationDateThroughSavesRenamesAndMoves) {
    directory.makeDirectory("Lavoro");
    FilePath url = directory.write("a.md", "old");
    const Moment created = store.info(url)->created;
    ASSERT_NE(created, distantPast);
    for (const char16_t* const text : {u"one", u"two", u"three"}) {
        ASSERT_TRUE(store.write(text, url));
        EXPECT_EQ(store.info(url)->created, created);
    }
    url = *store.rename(url, u"b");
    ASSERT_TRUE(store.write(u"four", url));
    url = *store.moveNote(url, u"Lavoro"_s);
    ASSERT_TRUE(store.write(u"five", url));
    url = *store.changeFormat(url, NoteFormat::json);
    ASSERT_TRUE(store.write(u"six", url));
    EXPECT_EQ(relativePath(url), "Lavoro/b.json");
    EXPECT_EQ(store.info(url)->created, created);
}

TEST_F(NoteFileStoreWriting, MakesANoteThatIsNotThere) {
    const FilePath url = directory.path("new.md");
    const auto modified = store.write(u"text", url);
    ASSERT_TRUE(modified);
    EXPECT_EQ(directory.read("new.md"), "text");
    EXPECT_EQ(store.info(url)->created, fileStatus(url)->born.value_or(distantPast)) << "no other date is given to it";
    EXPECT_TRUE(TestDirectory::attribute(url, creation_date::attributeName).isNull());
    EXPECT_EQ(systemCode(store.write(u"text", directory.path("absent/new.md"))), ENOENT);
}

TEST_F(NoteFileStoreWriting, TakesTextInStretches) {
    const QString text = u"è😀"_s.repeated(50'000);
    const FilePath url = directory.path("a.md");
    for (const qsizetype size : {qsizetype(1), qsizetype(7), qsizetype(65'536), text.size()}) {
        qsizetype at = 0;
        ASSERT_TRUE(store.write(
            [&] {
                const QStringView chunk = QStringView(text).sliced(at, std::min(size, text.size() - at));
                at += chunk.size();
                return chunk;
            },
            url));
        EXPECT_EQ(directory.read("a.md"), text.toUtf8()) << size;
    }
}

TEST_F(NoteFileStoreWriting, WritesMoreThanItReads) {
    const FilePath url = directory.path("a.md");
    const QString chunk(qsizetype(1024) * 1024, u'x');
    int chunks = 0;
    ASSERT_TRUE(store.write([&] { return chunks++ < 33 ? QStringView(chunk) : QStringView(); }, url));
    EXPECT_EQ(store.info(url)->size, 34'603'008);
    EXPECT_EQ(ownError(store.read(url)), NoteStoreError::fileTooLarge(u"a.md"_s, 34'603'008));
}

TEST_F(NoteFileStoreWriting, WritesReplacementCharactersForLoneSurrogates) {
    const FilePath url = directory.path("a.md");
    ASSERT_TRUE(store.write(QString(u"a"_s + QChar(0xD800)), url));
    EXPECT_EQ(*store.read(url), u"a\uFFFD"_s);
}

TEST_F(NoteFileStoreWriting, SavesFilesOfEveryName) {
    const QByteArray names[] = {"-rf.md",       "a\nb.md",     "caf\xE9.md",
                                "e\xCC\x80.md", "\xC3\xA8.md", QByteArray(252, 'n') + ".md"};
    for (const QByteArray& name : names) {
        const FilePath url = directory.write(name, "old");
        ASSERT_TRUE(store.write(FilePath::textFromBytes(name.toHex()), url));
    }
    for (const QByteArray& name : names) {
        EXPECT_EQ(directory.read(name), name.toHex());
    }
    EXPECT_EQ(directory.names().size(), qsizetype(std::size(names)));
}

TEST_F(NoteFileStoreWriting, LeavesTheOldTextWhenSavingFails) {
    const FilePath url = directory.write("a.md", "old");
    ::chmod(url.bytes().constData(), 0666);
    {
        const test::FileSizeLimit limit(10'000);
        EXPECT_EQ(systemCode(store.write(QString(1'000'000, u'x'), url)), EFBIG);
    }
    ::chmod(directory.bytes().constData(), 0555);
    {
        const test::WithoutPrivileges user;
        EXPECT_EQ(systemCode(store.write(u"new", url)), EACCES) << "in a directory that may not be written";
    }
    ::chmod(directory.bytes().constData(), 0755);
    EXPECT_EQ(directory.read("a.md"), "old");
    EXPECT_EQ(directory.names(), QList<QByteArray>{"a.md"});
}

TEST_F(NoteFileStoreWriting, LeavesALinkAndWhatItLeadsToAlone) {
    directory.write("target.md", "target");
    const FilePath link = directory.makeLink("link.md", "target.md");
    EXPECT_EQ(systemCode(store.write(u"new", link)), ELOOP);
    EXPECT_EQ(directory.read("target.md"), "target");
    EXPECT_EQ(fileStatus(link)->kind, FileKind::symbolicLink);
}

TEST_F(NoteFileStoreWriting, CreatesANote) {
    directory.makeDirectory("Lavoro");
    EXPECT_EQ(relative(store.createNote(u"a/b:c", NoteFormat::plain, u"testo è", std::nullopt)), "a-b-c.txt");
    EXPECT_EQ(directory.read("a-b-c.txt"), "testo \xC3\xA8");
    EXPECT_EQ(relative(store.createNote(u"a", NoteFormat::markdown, u"", u"Lavoro"_s)), "Lavoro/a.md");
    EXPECT_EQ(relative(store.createNote(u"...", NoteFormat::plain, u"", std::nullopt)), "Senza titolo.txt");
    EXPECT_EQ(relative(store.createNote(u"", NoteFormat::plain, u"", std::nullopt)), "Senza titolo 2.txt");
    EXPECT_EQ(relative(store.createNote(u"  ", NoteFormat::plain, u"", std::nullopt)), "Senza titolo 3.txt");
    EXPECT_EQ(relative(store.createNote(u"Senza titolo", NoteFormat::json, u"", std::nullopt)), "Senza titolo.json");
}

TEST_F(NoteFileStoreWriting, CreatesTheDirectoryOfANoteButNoFolder) {
    const NoteFileStore fresh(directory.path("one/two"));
    ASSERT_TRUE(fresh.createNote(u"a", NoteFormat::plain, u"text", std::nullopt));
    EXPECT_EQ(directory.read("one/two/a.txt"), "text");
    const auto refused = fresh.createNote(u"a", NoteFormat::markdown, u"", u"Lavoro"_s);
    EXPECT_EQ(ownError(refused), NoteStoreError::creationFailed(u"a.md"_s));
    EXPECT_EQ(localizedDescription(refused.error()), u"Impossibile creare «a.md»."_s);
    EXPECT_EQ(TestDirectory::namesIn(directory.path("one/two")), QList<QByteArray>{"a.txt"});
}

TEST_F(NoteFileStoreWriting, ReportsANoteThatCannotBeCreated) {
    ::chmod(directory.bytes().constData(), 0555);
    {
        const test::WithoutPrivileges user;
        EXPECT_EQ(ownError(store.createNote(u"a", NoteFormat::plain, u"", std::nullopt)),
                  NoteStoreError::creationFailed(u"a.txt"_s));
        EXPECT_EQ(systemCode(NoteFileStore(directory.path("d")).createNote(u"a", NoteFormat::plain, u"", std::nullopt)),
                  EACCES)
            << "a directory that can't be made is the system's failure";
    }
    ::chmod(directory.bytes().constData(), 0755);
    {
        const test::FileSizeLimit limit(10);
        EXPECT_EQ(ownError(store.createNote(u"a", NoteFormat::plain, QString(100, u'x'), std::nullopt)),
                  NoteStoreError::creationFailed(u"a.txt"_s));
    }
    EXPECT_EQ(directory.names(), QList<QByteArray>{});
}

TEST_F(NoteFileStoreWriting, CreatesManyNotesOfOneTitleAtOnce) {
    constexpr int threads = 4;
    constexpr int each = 25;
    std::atomic<int> made = 0;
    {
        std::vector<std::jthread> workers;
        workers.reserve(threads);
        for (int i = 0; i < threads; ++i) {
            workers.emplace_back([&, i] {
                for (int j = 0; j < each; ++j) {
                    made += store.createNote(u"Nota", NoteFormat::plain, QString::number(i), std::nullopt) ? 1 : 0;
                }
            });
        }
    }
    EXPECT_EQ(made, threads * each);
    EXPECT_EQ(listed().size(), threads * each) << "none took another's place";
}

TEST_F(NoteFileStoreWriting, MovesANoteToTheTrash) {
    const FilePath url = directory.write("a.md", "text");
    ASSERT_TRUE(store.moveToTrash(url));
    EXPECT_EQ(directory.names(), QList<QByteArray>{});
    EXPECT_EQ(trashed(), QList<QByteArray>{"a.md"});
    EXPECT_EQ(home.read("Trash/files/a.md"), "text");
    EXPECT_EQ(systemCode(store.moveToTrash(url)), ENOENT);
}

} // namespace

} // namespace quillary
