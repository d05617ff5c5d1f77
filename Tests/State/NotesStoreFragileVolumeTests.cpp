#include "Quillary/State/NoteDocument.h"
#include "QuillaryCore/Notes/FileError.h"

#include "Tests/State/NotesStoreTest.h"
#include "Tests/State/Waiting.h"
#include "Tests/Support/FragileVolume.h"

#include <QTimer>

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <optional>
#include <thread>

namespace quillary::test {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// A store on a volume as a share on a bad network is one. What other programs do there goes by `behind`, and nobody
/// is told of it.
class NotesStoreFragileVolume : public NotesStoreTest {
protected:
    NotesStoreFragileVolume() { mount(); }

    void SetUp() override {
        if (!volume->isMounted()) {
            GTEST_SKIP() << noVolume;
        }
    }

    void mount() { volume.emplace(directory.path().bytes(), behind.path().bytes()); }

    /// As when the user, or the system itself, connects it again.
    void mountAgain() {
        volume.reset();
        mount();
        ASSERT_TRUE(volume->isMounted());
    }

    /// Whether the next edit of a note is saved by itself.
    bool isSavedAfterTheNextEdit(const NoteItemPtr& item, const QString& text) const {
        type(item, text);
        return waitUntil([&item] { return !item->isDirty(); }) && behind.contents(pathOf(item)) == text.toUtf8();
    }

    static QString pathOf(const NoteItemPtr& item) {
        return (item->folder() ? *item->folder() + u'/' : QString()) + item->fileName();
    }

    /// Runs something that asks the volume, and has the volume come to its end in it in each place where it can, until
    /// it comes to its own end without; or only in each so many-th place. `look` follows each time, before and after
    /// the volume came back.
    template <typename Work, typename Look>
    void endEverywhere(FragileVolume::End end, Work work, Look look, int step = 1) {
        for (int request = 0;; request += step) {
            SCOPED_TRACE(request);
            ASSERT_LT(request, 1'000) << "there is no end to it";
            volume->endAtRequest(request, end);
            work();
            if (!volume->hasEnded()) {
                volume->endAtRequest(FragileVolume::never, end);
                ASSERT_GT(request, 0);
                return;
            }
            look();
            mountAgain();
            look();
            if (HasFailure()) {
                return;
            }
        }
    }

    NotesDirectory behind;
    std::optional<FragileVolume> volume;
};

TEST_F(NotesStoreFragileVolume, ANoteWhoseDateIsFoundNewerWhenItIsReadGoesToItsPlace) {
    // One that is asked for each name anew.
    volume.reset();
    volume.emplace(directory.path().bytes(), behind.path().bytes(), VolumeTraits{.ignoresCase = true});
    ASSERT_TRUE(volume->isMounted());
    behind.write(u"a.md"_s);
    behind.write(u"b.md"_s);
    behind.setModified(u"a.md"_s, moment(2));
    behind.setModified(u"b.md"_s, moment(1));
    openStore(NoteSortOrder::modified);
    ASSERT_EQ(titles(), QStringList({u"a"_s, u"b"_s}));
    behind.write(u"b.md"_s, "dopo");
    behind.setModified(u"b.md"_s, moment(3));

    select(u"b"_s);

    EXPECT_EQ(note(u"b"_s)->document()->text(), u"dopo");
    EXPECT_TRUE(waitUntil([this] { return titles() == QStringList({u"b"_s, u"a"_s}); }));
}

TEST_F(NotesStoreFragileVolume, ASlowOneOnlyTakesLonger) {
    behind.makeFolder(u"Casa"_s);
    behind.write(u"Casa/a.md"_s, "prima");
    behind.write(u"b.md"_s, "prima");
    volume->setDelay(2ms);
    openStore();
    EXPECT_EQ(titles(), QStringList({u"a"_s, u"b"_s}));
    ASSERT_TRUE(waitUntil([this] { return allTextsAreLoaded(); }));

    const NoteItemPtr a = note(u"a"_s);
    EXPECT_TRUE(isSavedAfterTheNextEdit(a, u"dopo"_s));
    store->rename(*a, u"c"_s);
    store->move({note(u"b"_s)}, u"Casa"_s);
    const NoteItemPtr made = store->makeNote(u"d"_s, u"nuova"_s);
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(store->errorMessage(), std::nullopt);
    EXPECT_EQ(behind.contents(u"Casa/c.md"_s), "dopo");
    EXPECT_EQ(behind.contents(u"Casa/b.md"_s), "prima");
    EXPECT_EQ(behind.contents(pathOf(made)), "nuova");
}

TEST_F(NotesStoreFragileVolume, ANoteMoreCostsAListingTwoRequests) {
    const auto requestsOfAListing = [this] {
        const NoteFileStore files(directory.path());
        const int before = volume->requests();
        EXPECT_TRUE(files.list());
        return volume->requests() - before;
    };
    constexpr int notes = 20;
    const auto add = [this](const QString& title) {
        for (int i = 0; i < notes; ++i) {
            behind.write(title + QString::number(i) + u".md"_s);
        }
    };
    add(u"a"_s);
    const int few = requestsOfAListing();
    mountAgain();
    add(u"b"_s);
    // Its facts and its creation date; and a longer directory may come in more pieces.
    EXPECT_LE(requestsOfAListing() - few, 2 * notes + 2);
}

TEST_F(NotesStoreFragileVolume, TextsThatNeverComeHoldNobodyWhoWrites) {
    for (const QString& title : {u"a"_s, u"b"_s, u"c"_s}) {
        behind.write(title + u".md"_s, title.toUtf8());
    }
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    ASSERT_EQ(store->selectedItem(), a);
    volume->hang();
    // Every key puts the save off, so that only the background asks for anything.
    QString text;
    QTimer keys;
    QObject::connect(&keys, &QTimer::timeout, &keys, [&] {
        text += u'x';
        type(a, text);
        store->setSearchQuery(text.size() % 2 == 0 ? QString() : u"x"_s);
    });
    keys.start(10ms);
    ASSERT_TRUE(waitUntil([this] { return volume->holdsRequest(); }));
    constexpr qsizetype someKeys = 20;
    ASSERT_TRUE(waitUntil([&text, end = text.size() + someKeys] { return text.size() >= end; }));
    keys.stop();
    EXPECT_FALSE(allTextsAreLoaded());
    EXPECT_EQ(a->document()->text(), text);
    EXPECT_TRUE(a->isDirty());

    volume->die();
    EXPECT_FALSE(store->save(*a));
    EXPECT_TRUE(a->isDirty());
    mountAgain();
    EXPECT_TRUE(waitUntil([this] { return allTextsAreLoaded(); }));
    EXPECT_EQ(note(u"a"_s), a);
    EXPECT_EQ(note(u"c"_s)->document()->text(), u"c");
    EXPECT_TRUE(isSavedAfterTheNextEdit(a, text + u'!'));
}

TEST_F(NotesStoreFragileVolume, ASaveThatHangsUntilTheConnectionIsCutSaysSoAndKeepsTheText) {
    behind.write(u"a.md"_s, "prima");
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    type(a, u"dopo"_s);
    volume->hang();
    std::thread network([this] {
        volume->waitForHeldRequest();
        volume->die();
    });
    EXPECT_FALSE(store->save(*a));
    network.join();
    EXPECT_EQ(failure(), u"Impossibile salvare «a».");
    EXPECT_TRUE(a->isDirty());
    EXPECT_EQ(behind.contents(u"a.md"_s), "prima");

    store->setErrorMessage({});
    EXPECT_FALSE(store->save(*a));
    EXPECT_EQ(store->errorMessage(), u"Impossibile salvare «a».\n"_s + SystemError{ENOTCONN}.localizedDescription());
    store->refreshFromDisk();
    EXPECT_EQ(note(u"a"_s), a);

    // Whoever turns to another program saves, also what nobody has touched since.
    mountAgain();
    store->saveDirtyNotes();
    EXPECT_FALSE(a->isDirty());
    EXPECT_EQ(behind.contents(u"a.md"_s), "dopo");
}

TEST_F(NotesStoreFragileVolume, WhatIsTypedBeforeTheFirstListingIsSavedBeforeIt) {
    volume->die();
    openStore();
    ASSERT_TRUE(store->notes().isEmpty());
    mountAgain();
    const NoteItemPtr made = store->makeNote(u"a"_s, {});
    ASSERT_NE(made, nullptr);
    type(made, u"scritto"_s);
    store->refreshFromDisk();
    EXPECT_EQ(behind.contents(u"a.md"_s), "scritto");
    ASSERT_NE(note(u"a"_s), nullptr);
    store->ensureLoaded(*note(u"a"_s));
    EXPECT_EQ(note(u"a"_s)->document()->text(), u"scritto");
}

TEST_F(NotesStoreFragileVolume, ANoteWhoseNameChangesInCaseOnlyIsListedOnce) {
    volume.reset();
    volume.emplace(directory.path().bytes(), behind.path().bytes(), VolumeTraits{.ignoresCase = true});
    ASSERT_TRUE(volume->isMounted());
    behind.write(u"nota.md"_s);
    openStore();
    ASSERT_EQ(titles(), QStringList(u"nota"_s));
    behind.rename(u"nota.md"_s, u"Nota.md"_s);
    ASSERT_TRUE(directory.exists(u"nota.md"_s)) << "by either name";
    store->refreshFromDisk();
    EXPECT_EQ(titles(), QStringList(u"Nota"_s));
}

TEST_F(NotesStoreFragileVolume, NotesOfAFolderThatCanNotBeReachedForAMomentStay) {
    volume.reset();
    directory.makeFolder(u"Casa"_s);
    behind.write(u"a.md"_s, "prima");
    volume.emplace(directory.path(u"Casa"_s).bytes(), behind.path().bytes());
    ASSERT_TRUE(volume->isMounted());
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    ASSERT_NE(a, nullptr);
    store->ensureLoaded(*a);
    type(a, u"dopo"_s);
    volume->die();

    store->refreshFromDisk();
    EXPECT_EQ(note(u"a"_s), a);
    EXPECT_FALSE(store->save(*a));
    store->refreshFromDisk();
    EXPECT_EQ(note(u"a"_s), a);
    EXPECT_TRUE(a->isDirty());

    volume.reset();
    volume.emplace(directory.path(u"Casa"_s).bytes(), behind.path().bytes());
    ASSERT_TRUE(volume->isMounted());
    EXPECT_TRUE(store->save(*a));
    EXPECT_EQ(behind.contents(u"a.md"_s), "dopo");
}

// The end of a volume, everywhere.

class NotesStoreVolumeEnd : public NotesStoreFragileVolume, public testing::WithParamInterface<FragileVolume::End> {
protected:
    void SetUp() override { NotesStoreFragileVolume::SetUp(); }
};

INSTANTIATE_TEST_SUITE_P(NotesStore, NotesStoreVolumeEnd,
                         testing::Values(FragileVolume::End::death, FragileVolume::End::unmount),
                         [](const auto& instance) {
                             return instance.param == FragileVolume::End::death ? "Death" : "Unmount";
                         });

TEST_P(NotesStoreVolumeEnd, InARefreshLetsNothingBeForgotten) {
    behind.makeFolder(u"Casa"_s);
    behind.makeFolder(u"Ufficio"_s);
    behind.write(u"Casa/a.md"_s, "prima");
    behind.write(u"Ufficio/b.md"_s, "prima");
    behind.write(u"c.md"_s, "prima");
    openStore();
    ASSERT_TRUE(waitUntil([this] { return allTextsAreLoaded(); }));
    const QList<NoteItemPtr> notes = store->notes();
    const QStringList folders = store->folders();
    const NoteItemPtr a = note(u"a"_s);
    store->toggleCollapsed(u"Ufficio"_s);
    type(a, u"non salvato"_s);

    endEverywhere(
        GetParam(), [this] { store->refreshFromDisk(); },
        [&] {
            EXPECT_TRUE(store->notes() == notes) << qPrintable(titles().join(u", "_s));
            EXPECT_EQ(store->folders(), folders);
            EXPECT_EQ(store->collapsedFolders(), QSet<QString>{u"Ufficio"_s});
            EXPECT_EQ(a->document()->text(), u"non salvato");
            EXPECT_TRUE(a->isDirty());
        });
    EXPECT_TRUE(isSavedAfterTheNextEdit(a, u"salvato"_s));
}

TEST_P(NotesStoreVolumeEnd, InASaveLeavesTheFileWholeAndTheTextInTheEditor) {
    behind.write(u"a.md"_s, "prima");
    openStore();
    const NoteItemPtr a = note(u"a"_s);
    QByteArray before;
    QString text;
    endEverywhere(
        GetParam(),
        [&] {
            before = behind.contents(u"a.md"_s);
            // Longer than one request can be.
            text = QString::number(volume->requests()) + u" testo"_s.repeated(40'000);
            type(a, text);
            store->save(*a);
        },
        [&] {
            const QByteArray after = behind.contents(u"a.md"_s);
            EXPECT_TRUE(after == before || after == text.toUtf8());
            EXPECT_TRUE(a->isDirty() || after == text.toUtf8());
            EXPECT_EQ(note(u"a"_s), a);
            EXPECT_EQ(a->document()->text(), text);
        });
    EXPECT_TRUE(behind.contents(u"a.md"_s) == text.toUtf8());
    EXPECT_FALSE(a->isDirty());
}

TEST_P(NotesStoreVolumeEnd, AtTheStartIsOverWhenTheVolumeIsBack) {
    behind.makeFolder(u"Casa"_s);
    behind.makeFolder(u"Ufficio"_s);
    behind.write(u"Casa/a.md"_s, "a");
    behind.write(u"b.md"_s, "b");
    const QByteArray arrangement = R"({"folderOrder":["Ufficio","Casa"]})";
    behind.write(u".quillary.json"_s, arrangement);
    const auto isComplete = [this] {
        return titles() == QStringList({u"a"_s, u"b"_s}) && store->folders() == QStringList({u"Ufficio"_s, u"Casa"_s});
    };
    endEverywhere(
        GetParam(),
        [this] {
            store.reset();
            openStore();
        },
        [&] {
            if (!volume->hasEnded()) {
                EXPECT_TRUE(waitUntil(isComplete));
                // What couldn't be read when it was selected is read when it is selected again.
                for (const NoteItemPtr& item : store->notes()) {
                    store->ensureLoaded(*item);
                }
                EXPECT_TRUE(allTextsAreLoaded());
            }
        },
        // Each place costs the quiet time of the watcher.
        2);
    EXPECT_TRUE(isComplete());
    EXPECT_EQ(behind.contents(u".quillary.json"_s), arrangement);
}

} // namespace quillary::test
