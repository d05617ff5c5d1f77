#include "Quillary/State/NoteDocument.h"
#include "QuillaryCore/Text/TextStorage.h"
#include "QuillaryCore/Text/UndoManager.h"

#include "Tests/State/FilesInMemory.h"
#include "Tests/State/NotesStoreTest.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>

#include <algorithm>
#include <atomic>
#include <thread>

namespace quillary::test {

using namespace Qt::StringLiterals;

namespace {

/// Another program that makes, replaces, renames and removes files of its own among the notes, and replaces one that
/// the user types into, as fast as it can.
class ForeignWriter {
public:
    explicit ForeignWriter(const NotesDirectory& directory) : m_directory(directory), m_thread([this] { run(); }) {}

    ~ForeignWriter() { stop(); }

    ForeignWriter(const ForeignWriter&) = delete;
    ForeignWriter& operator=(const ForeignWriter&) = delete;

    void stop() {
        m_isStopped = true;
        if (m_thread.joinable()) {
            m_thread.join();
        }
    }

    int rounds() const { return m_rounds; }

private:
    void run() {
        while (!m_isStopped) {
            const QString number = QString::number(m_rounds % 20);
            const QString name = u"estranea "_s + number + u".md"_s;
            const QString folder = u"Estranea "_s + number;
            m_directory.replace(name, QByteArray("testo ") + QByteArray::number(m_rounds));
            m_directory.replace(u"contesa.md"_s, QByteArray("loro ") + QByteArray::number(m_rounds));
            m_directory.makeFolder(folder);
            m_directory.rename(name, folder + u'/' + name);
            m_directory.remove(folder);
            ++m_rounds;
        }
    }

    const NotesDirectory& m_directory;
    std::atomic<bool> m_isStopped = false;
    std::atomic<int> m_rounds = 0;
    std::thread m_thread;
};

} // namespace

class NotesStoreForeignWriter : private FilesInMemory, public NotesStoreTest {};

TEST_F(NotesStoreForeignWriter, CommandsHoldWhileAnotherProgramWritesInTheSameDirectory) {
    directory.makeFolder(u"Casa"_s);
    for (const QString& name : {u"a.md"_s, u"b.md"_s, u"c.md"_s, u"Casa/d.md"_s, u"contesa.md"_s}) {
        directory.write(name, "testo");
    }
    openStore();
    const QList<NoteItemPtr> own = {note(u"a"_s), note(u"b"_s), note(u"c"_s), note(u"d"_s)};
    const NoteItemPtr contested = note(u"contesa"_s);
    for (const NoteItemPtr& item : own) {
        store->ensureLoaded(*item);
    }
    const NoteItemPtr& edited = own.first();
    store->setSelectedID(edited->id());
    const SignalCount selections(store, &NotesStore::selectedIDChanged);
    constexpr int edits = 40;
    ForeignWriter writer(directory);

    for (int edit = 1; edit <= edits; ++edit) {
        NoteDocument& document = *edited->document();
        document.undoManager().replace({0, document.length()}, QString::number(edit), EditKind::other, {});
        store->textDidChange(*edited, document, false);
        const std::optional<QString> folder = edit % 2 == 0 ? std::optional(u"Casa"_s) : std::nullopt;
        store->move({edited}, folder);
        store->rename(*edited, u"nome "_s + QString::number(edit));
        store->changeFormat(*edited, edit % 3 == 0 ? NoteFormat::html : NoteFormat::markdown);
        store->place({own[1 + edit % 3]}, folder, edited);
        store->moveFolder(u"Casa"_s, std::nullopt);
        // A text that the user is changing wins over what the other program writes meanwhile.
        const QString ours = u"nostro "_s + QString::number(edit);
        type(contested, ours);
        store->refreshFromDisk();
        ASSERT_EQ(contested->document()->text(), ours);
        QCoreApplication::processEvents();

        ASSERT_EQ(store->selectedItem(), edited);
        ASSERT_EQ(document.text(), QString::number(edit));
        for (const NoteItemPtr& item : own) {
            ASSERT_TRUE(store->contains(*item));
            ASSERT_TRUE(
                directory.exists(item->folder() ? *item->folder() + u'/' + item->fileName() : item->fileName()));
        }
        ASSERT_EQ(store->errorMessage(), std::nullopt) << qPrintable(*store->errorMessage());
    }
    writer.stop();
    EXPECT_GT(writer.rounds(), 0);
    EXPECT_EQ(selections.count(), 0);

    type(contested, u"nostro"_s);
    EXPECT_TRUE(store->save(*contested));
    store->refreshFromDisk();
    EXPECT_EQ(directory.contents(u"contesa.md"_s), "nostro");
    EXPECT_EQ(contested->document()->text(), u"nostro");

    QStringList onDisk;
    QDirIterator files(directory.path().text(), {u"*.md"_s, u"*.html"_s}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        onDisk.append(files.next());
    }
    QStringList inMemory;
    for (const NoteItemPtr& item : store->notes()) {
        inMemory.append(item->url().text());
    }
    onDisk.sort();
    inMemory.sort();
    EXPECT_EQ(inMemory, onDisk);
    EXPECT_EQ(store->folders(), QStringList(u"Casa"_s));

    for (int edit = edits; edit > 0; --edit) {
        ASSERT_TRUE(edited->document()->undoManager().canUndo());
        edited->document()->undoManager().undo();
    }
    EXPECT_EQ(edited->document()->text(), u"testo");
}

TEST_F(NotesStoreForeignWriter, NoNoteIsForgottenWhileAnotherProgramReplacesItsFile) {
    // More than one look at a directory in memory tells of.
    constexpr int count = 2'000;
    const auto name = [](int number) -> QString { return QString::number(number) + u".md"_s; };
    for (int number = 0; number < count; ++number) {
        directory.write(name(number));
    }
    openStore();
    const QList<NoteItemPtr> notes = store->notes();
    ASSERT_EQ(notes.size(), count);
    std::atomic<bool> isStopped = false;
    std::atomic<int> replaced = 0;
    std::thread writer([&] {
        while (!isStopped) {
            directory.replace(name(replaced % count), "testo");
            ++replaced;
        }
    });

    // Long enough for each of them.
    for (int refreshes = 0; refreshes < 20 || replaced < count; ++refreshes) {
        store->refreshFromDisk();
        if (store->notes() != notes) {
            break;
        }
    }
    isStopped = true;
    writer.join();
    EXPECT_TRUE(store->notes() == notes) << store->notes().size();
}

} // namespace quillary::test
