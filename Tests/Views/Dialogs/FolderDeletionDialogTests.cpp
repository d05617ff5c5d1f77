#include "Quillary/Dialogs/FolderDeletionDialog.h"

#include "DialogTest.h"

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

class FolderDeletionDialogTest : public DialogTest {
protected:
    FolderDeletionDialogTest()
        : DialogTest({{u"a.md"_s, u"alfa"_s},
                      {u"Una/b.md"_s, u"beta"_s},
                      {u"Due/c.md"_s, u"gamma"_s},
                      {u"Due/d.md"_s, u"delta"_s}}) {
        QDir().mkpath(m_folder.path(u"Vuota"_s));
        store().refreshFromDisk();
        new FolderDeletionDialog(store(), &m_window);
    }

    void ask(const QString& folder) {
        store().setPendingFolderDeletion(folder);
        ASSERT_TRUE(isAsking());
    }
};

} // namespace

TEST_F(FolderDeletionDialogTest, AsksForAnEmptyFolder) {
    EXPECT_EQ(dialog(), nullptr) << "it is made when it first asks";
    ask(u"Vuota"_s);
    EXPECT_EQ(texts(), QStringList({u"Eliminare la cartella «Vuota»?"_s, u"La cartella è vuota."_s}));
    EXPECT_EQ(buttons(), QStringList({u"Sposta nel Cestino"_s, u"Annulla"_s}));
    click(u"Sposta nel Cestino"_s);
    EXPECT_FALSE(QFile::exists(m_folder.path(u"Vuota"_s)));
    EXPECT_FALSE(isAsking());
}

TEST_F(FolderDeletionDialogTest, OffersToKeepTheNotes) {
    ask(u"Una"_s);
    EXPECT_EQ(texts(), QStringList({u"Eliminare la cartella «Una»?"_s,
                                    u"Contiene 1 nota. Puoi tenerla spostandola fuori dalla cartella."_s}));
    EXPECT_EQ(buttons(),
              QStringList({u"Elimina la cartella, tieni le note"_s, u"Sposta tutto nel Cestino"_s, u"Annulla"_s}));
    store().setPendingFolderDeletion(std::nullopt);
    EXPECT_FALSE(isAsking());

    ask(u"Due"_s);
    EXPECT_EQ(texts().last(), u"Contiene 2 note. Puoi tenerle spostandole fuori dalla cartella."_s);
    click(u"Elimina la cartella, tieni le note"_s);
    EXPECT_TRUE(QFile::exists(m_folder.path(u"c.md"_s)));
    EXPECT_TRUE(QFile::exists(m_folder.path(u"d.md"_s)));
    EXPECT_FALSE(QFile::exists(m_folder.path(u"Due"_s)));
    EXPECT_FALSE(isAsking());
    EXPECT_EQ(store().pendingFolderDeletion(), std::nullopt);
}

TEST_F(FolderDeletionDialogTest, MovesEverythingToTheTrash) {
    ask(u"Due"_s);
    click(u"Sposta tutto nel Cestino"_s);
    EXPECT_FALSE(QFile::exists(m_folder.path(u"Due"_s)));
    EXPECT_EQ(store().notes().size(), 2);
}

TEST_F(FolderDeletionDialogTest, EveryOtherWayOutKeepsTheFolder) {
    const QList<std::function<void()>> ways = {
        [this] { press(Qt::Key_Escape); },
        [this] { press(Qt::Key_Return); },
        [this] { click(u"Annulla"_s); },
        [this] { dialog()->close(); },
    };
    for (const std::function<void()>& leave : ways) {
        ask(u"Due"_s);
        leave();
        EXPECT_FALSE(isAsking());
        EXPECT_EQ(store().pendingFolderDeletion(), std::nullopt);
        EXPECT_TRUE(QFile::exists(m_folder.path(u"Due/c.md"_s)));
    }
}

TEST_F(FolderDeletionDialogTest, TheKeyboardAloneReachesEveryAnswer) {
    ask(u"Due"_s);
    QStringList reached;
    for (int count = 0; count < 3; ++count) {
        reached.append(qobject_cast<QPushButton*>(dialog()->focusWidget())->text());
        press(Qt::Key_Tab);
    }
    EXPECT_EQ(reached,
              QStringList({u"Annulla"_s, u"Elimina la cartella, tieni le note"_s, u"Sposta tutto nel Cestino"_s}));
    press(Qt::Key_Tab);
    press(Qt::Key_Space);
    EXPECT_TRUE(QFile::exists(m_folder.path(u"c.md"_s)));
}

TEST_F(FolderDeletionDialogTest, OffersWhatItDidWhenItCameUp) {
    ask(u"Una"_s);
    ASSERT_TRUE(QFile::remove(m_folder.path(u"Una/b.md"_s)));
    store().refreshFromDisk();
    EXPECT_EQ(buttons().size(), 3);
    EXPECT_EQ(texts().last(), u"Contiene 1 nota. Puoi tenerla spostandola fuori dalla cartella."_s);
    click(u"Sposta tutto nel Cestino"_s);
    EXPECT_FALSE(QFile::exists(m_folder.path(u"Una"_s)));
}
