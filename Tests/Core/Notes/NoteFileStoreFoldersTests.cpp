#include "Tests/Core/Notes/NoteFileStoreTest.h"

#include <cerrno>

namespace quillary {

using namespace Qt::StringLiterals;
using test::TestDirectory;

namespace {

class NoteFileStoreFolders : public test::NoteFileStoreTest {};

TEST_F(NoteFileStoreFolders, CreatesAFolderUnderAFreeName) {
    directory.write("Lavoro", "a file blocks the name too");
    const std::pair<QString, QString> cases[] = {
        {u""_s, u"Nuova cartella"_s},      {u""_s, u"Nuova cartella 2"_s},
        {u"..."_s, u"Nuova cartella 3"_s}, {u"Casa"_s, u"Casa"_s},
        {u"Casa"_s, u"Casa 2"_s},          {u"a/b"_s, u"a-b"_s},
        {u"Lavoro"_s, u"Lavoro 2"_s},      {u" x "_s, u"x"_s},
        {u".hidden"_s, u"hidden"_s},       {u"casa"_s, u"casa"_s},
    };
    for (const auto& [asked, got] : cases) {
        const auto name = store.createFolder(asked);
        ASSERT_TRUE(name);
        EXPECT_EQ(*name, got);
        EXPECT_EQ(fileStatus(store.folderURL(got))->kind, FileKind::directory);
    }
    EXPECT_EQ(folders().size(), qsizetype(std::size(cases)));
}

TEST_F(NoteFileStoreFolders, FitsALongNameIntoWhatTheFileSystemTakes) {
    const QString name = u"漢"_s.repeated(120);
    EXPECT_EQ(store.createFolder(name).value(), u"漢"_s.repeated(85));
    EXPECT_EQ(store.createFolder(name).value(), QString(u"漢"_s.repeated(84) + u" 2"_s));
}

TEST_F(NoteFileStoreFolders, CreatesTheDirectoryOfAFolder) {
    const NoteFileStore fresh(directory.path("one/two"));
    EXPECT_EQ(fresh.createFolder(u"Lavoro").value(), u"Lavoro"_s);
    EXPECT_TRUE(directory.has("one/two/Lavoro"));
}

TEST_F(NoteFileStoreFolders, ReportsAFolderThatCannotBeMade) {
    ::chmod(directory.bytes().constData(), 0555);
    {
        const test::WithoutPrivileges user;
        EXPECT_EQ(systemCode(store.createFolder(u"a")), EACCES);
    }
    ::chmod(directory.bytes().constData(), 0755);
    EXPECT_EQ(directory.names(), QList<QByteArray>{});
}

TEST_F(NoteFileStoreFolders, RenamesAFolderWithItsNotes) {
    directory.makeDirectory("Lavoro");
    directory.write("Lavoro/a.md", "a");
    EXPECT_EQ(store.renameFolder(u"Lavoro"_s, u"Casa").value(), u"Casa"_s);
    EXPECT_EQ(directory.read("Casa/a.md"), "a");
    EXPECT_EQ(folders(), QStringList{u"Casa"_s});
    EXPECT_EQ(store.renameFolder(u"Casa"_s, u"casa").value(), u"casa"_s) << "a change of case alone is carried out";
    EXPECT_EQ(folders(), QStringList{u"casa"_s});
    EXPECT_EQ(store.renameFolder(u"casa"_s, u"x/y").value(), u"x-y"_s);
    directory.makeDirectory("caf\xE9");
    EXPECT_EQ(store.renameFolder(FilePath::textFromBytes("caf\xE9"), u"caffè").value(), u"caffè"_s);
    EXPECT_EQ(folders(), (QStringList{u"caffè"_s, u"x-y"_s}));
}

TEST_F(NoteFileStoreFolders, TouchesNothingWhenTheNameStays) {
    const FilePath folder = directory.makeDirectory("Lavoro");
    const FileStatus before = *fileStatus(folder);
    EXPECT_EQ(store.renameFolder(u"Lavoro"_s, u"Lavoro").value(), u"Lavoro"_s);
    EXPECT_EQ(store.renameFolder(u"Lavoro"_s, u" Lavoro ").value(), u"Lavoro"_s);
    EXPECT_EQ(*fileStatus(folder), before);
    directory.makeDirectory("caffe\xCC\x80");
    EXPECT_EQ(store.renameFolder(u"caffe\u0300"_s, u"caff\u00E8").value(), u"caffe\u0300"_s)
        << "composed otherwise it is the same name";
    EXPECT_EQ(directory.names(), (QList<QByteArray>{"Lavoro", "caffe\xCC\x80"}));
}

TEST_F(NoteFileStoreFolders, NumbersARenamedFolderRatherThanReplaceAnother) {
    directory.makeDirectory("Lavoro");
    directory.makeDirectory("Casa");
    EXPECT_EQ(store.renameFolder(u"Lavoro"_s, u"Casa").value(), u"Casa 2"_s);
    directory.write("x", "a file");
    EXPECT_EQ(store.renameFolder(u"Casa"_s, u"x").value(), u"x 2"_s);
    EXPECT_EQ(folders(), (QStringList{u"Casa 2"_s, u"x 2"_s}));
}

TEST_F(NoteFileStoreFolders, DoesNotReplaceAFolderOfTheSameLettersInAnotherCase) {
    directory.makeDirectory("Casa");
    directory.makeDirectory("casa");
    EXPECT_EQ(systemCode(store.renameFolder(u"Casa"_s, u"casa")), EEXIST);
    EXPECT_EQ(folders(), (QStringList{u"Casa"_s, u"casa"_s}));
}

TEST_F(NoteFileStoreFolders, RefusesANameWithNothingUsable) {
    directory.makeDirectory("Lavoro");
    for (const char16_t* const name : {u"", u"...", u"  "}) {
        EXPECT_EQ(ownError(store.renameFolder(u"Lavoro"_s, name)), NoteStoreError::invalidName());
    }
    EXPECT_EQ(systemCode(store.renameFolder(u"absent"_s, u"x")), ENOENT);
    EXPECT_EQ(folders(), QStringList{u"Lavoro"_s});
}

TEST_F(NoteFileStoreFolders, RefusesToRenameAFolderToANameUnderWhichItWouldNotBeListed) {
    directory.makeDirectory("Lavoro");
    directory.makeDirectory("y.app");
    const QString tooLong = u"漢"_s.repeated(83) + u"aa.apple"_s;
    for (const QString& name :
         {u"x.app"_s, u" x.APP "_s, u"y.app"_s, u"x.bundle"_s, u"x.Framework"_s, u"x.rtfd"_s, tooLong}) {
        EXPECT_EQ(ownError(store.renameFolder(u"Lavoro"_s, name)), NoteStoreError::invalidName()) << name.toStdString();
    }
    QString folder = u"Lavoro"_s;
    for (const QString& name : {u"app"_s, u"x.apps"_s, u"x.app.d"_s, u".app"_s, u"casa.md"_s}) {
        const auto renamed = store.renameFolder(folder, name);
        ASSERT_TRUE(renamed);
        folder = *renamed;
        EXPECT_TRUE(folders().contains(folder)) << folder.toStdString();
    }
}

TEST_F(NoteFileStoreFolders, TrashesAFolderWithItsNotes) {
    directory.makeDirectory("Lavoro");
    directory.write("Lavoro/a.md", "a");
    ASSERT_TRUE(store.deleteFolder(u"Lavoro"_s, false));
    EXPECT_EQ(directory.names(), QList<QByteArray>{});
    EXPECT_EQ(home.read("Trash/files/Lavoro/a.md"), "a");
}

TEST_F(NoteFileStoreFolders, RescuesTheNotesOfAFolderOnly) {
    directory.write("a.md", "top");
    directory.makeDirectory("Lavoro");
    directory.write("Lavoro/a.md", "a");
    directory.write("Lavoro/b.MD", "b");
    directory.write("Lavoro/c.pdf", "c");
    directory.write("Lavoro/.hidden.md", "h");
    directory.makeDirectory("Lavoro/deep");
    directory.write("Lavoro/deep/d.md", "d");
    ASSERT_TRUE(store.deleteFolder(u"Lavoro"_s, true));
    EXPECT_EQ(directory.names(), (QList<QByteArray>{"a 2.md", "a.md", "b.MD"}));
    EXPECT_EQ(directory.read("a.md"), "top");
    EXPECT_EQ(directory.read("a 2.md"), "a");
    EXPECT_EQ(TestDirectory::namesIn(home.path("Trash/files/Lavoro")),
              (QList<QByteArray>{".hidden.md", "c.pdf", "deep"}));
    EXPECT_EQ(home.read("Trash/files/Lavoro/deep/d.md"), "d");
}

TEST_F(NoteFileStoreFolders, TakesNothingButAnEntryForAFolder) {
    directory.write("a.md", "a");
    directory.makeDirectory("Lavoro");
    directory.makeDirectory("Lavoro/deep");
    for (const QString& name : {u""_s, u"."_s, u".."_s, u"Lavoro/deep"_s, u"Lavoro/"_s, u"/"_s}) {
        for (const bool keepingNotes : {false, true}) {
            EXPECT_EQ(systemCode(store.deleteFolder(name, keepingNotes)), ENOENT) << name.toStdString();
        }
        EXPECT_EQ(systemCode(store.renameFolder(name, u"x")), ENOENT) << name.toStdString();
    }
    EXPECT_EQ(directory.names(), (QList<QByteArray>{"Lavoro", "a.md"}));
    EXPECT_TRUE(directory.has("Lavoro/deep"));
}

TEST_F(NoteFileStoreFolders, KeepsAFolderWhoseNotesCannotBeListedOrMoved) {
    ::chmod(directory.bytes().constData(), 0777);
    directory.makeDirectory("Lavoro");
    directory.write("Lavoro/a.md", "a");
    const FilePath folder = directory.path("Lavoro");
    for (const auto& [mode, code] : {std::pair(0000, EACCES), std::pair(0555, EACCES)}) {
        ::chmod(folder.bytes().constData(), mode_t(mode));
        const test::WithoutPrivileges user;
        EXPECT_EQ(systemCode(store.deleteFolder(u"Lavoro"_s, true)), code) << mode;
    }
    ::chmod(folder.bytes().constData(), 0755);
    EXPECT_EQ(directory.read("Lavoro/a.md"), "a");
    EXPECT_EQ(directory.names(), QList<QByteArray>{"Lavoro"});
    EXPECT_EQ(trashed(), QList<QByteArray>{});
    EXPECT_EQ(systemCode(store.deleteFolder(u"absent"_s, true)), ENOENT);
    EXPECT_EQ(systemCode(store.deleteFolder(u"absent"_s, false)), ENOENT);
}

TEST_F(NoteFileStoreFolders, LeavesTheRestInAFolderFromTheFirstNoteOnThatCannotBeMoved) {
    if (!test::canMakeFilesOfOthers()) {
        GTEST_SKIP() << test::noOtherOwner;
    }
    constexpr unsigned user = test::WithoutPrivileges::nobody;
    ::chmod(directory.bytes().constData(), 0777);
    const FilePath folder = directory.makeDirectory("Lavoro");
    for (int i = 0; i < 7; ++i) {
        const FilePath note = directory.write("Lavoro/" + QByteArray::number(i) + ".md");
        ASSERT_EQ(::chown(note.bytes().constData(), user, user), 0);
    }
    // Where the sticky bit is set, a file may be moved by its owner alone.
    ::chmod(folder.bytes().constData(), 01777);
    const QList<NoteFileInfo> notes = store.listNotes().value();
    ASSERT_EQ(notes.size(), 7);
    constexpr qsizetype stuck = 3;
    ASSERT_EQ(::chown(notes[stuck].url.bytes().constData(), 0, 0), 0);
    {
        const test::WithoutPrivileges privileges;
        EXPECT_EQ(systemCode(store.deleteFolder(u"Lavoro"_s, true)), EPERM);
    }
    for (qsizetype i = 0; i < notes.size(); ++i) {
        const QByteArray name = notes[i].url.fileName().toUtf8();
        EXPECT_EQ(directory.has(name), i < stuck) << i;
        EXPECT_EQ(directory.has("Lavoro/" + name), i >= stuck) << i;
    }
    EXPECT_EQ(trashed(), QList<QByteArray>{});
}

TEST_F(NoteFileStoreFolders, ReportsAFolderThatCannotGoToTheTrash) {
    directory.makeDirectory("Lavoro");
    directory.write("Lavoro/a.md", "a");
    ::chmod(directory.bytes().constData(), 0555);
    {
        const test::WithoutPrivileges user;
        EXPECT_EQ(systemCode(store.deleteFolder(u"Lavoro"_s, false)), EACCES);
    }
    ::chmod(directory.bytes().constData(), 0755);
    EXPECT_EQ(directory.read("Lavoro/a.md"), "a");
}

} // namespace

} // namespace quillary
