#include "DetailTest.h"
#include "Quillary/Comparison/DiffView.h"
#include "Quillary/Detail/PlaceholderView.h"
#include "Quillary/Detail/SelectionPanel.h"
#include "Quillary/Detail/StatusBar.h"
#include "Quillary/Editor/EditorView.h"
#include "Quillary/Editor/FindBar.h"
#include "Quillary/Editor/ZoomableTextView.h"
#include "Quillary/Previews/NotePreview.h"
#include "Quillary/State/NoteDocument.h"

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

class DetailViewTest : public DetailTest {
protected:
    DetailViewTest() : DetailTest({{u"a.md"_s, u"alfa"_s}, {u"b.md"_s, u"beta"_s}, {u"c.md"_s, u"gamma"_s}}) {}

    template <typename Pane>
    bool shows() const {
        return qobject_cast<Pane*>(m_view.pane()) != nullptr;
    }

    bool showsStatus() const { return m_view.findChild<StatusBar*>()->isVisible(); }
};

const QString hints = u"⌘N  nuova nota\n⇧⌘N  dagli appunti"_s;

} // namespace

TEST(DetailViewOfNothing, SaysThatThereIsNoNote) {
    NotesFolder folder({});
    const DetailView view(folder.store(), folder.settings(), folder.find(), folder.solo());
    EXPECT_EQ(shownTexts(*view.pane()), QStringList({u"Nessuna nota"_s, hints}));
}

TEST_F(DetailViewTest, MakesWhatMostRunsNeverShowWhenItIsFirstShown) {
    EXPECT_EQ(m_view.findChild<NotePreview*>(), nullptr);
    EXPECT_EQ(m_view.findChild<SelectionPanel*>(), nullptr);
    EXPECT_EQ(m_view.findChild<DiffView*>(), nullptr);

    store().selectedItem()->setShowsPreview(true);
    auto* const preview = m_view.findChild<NotePreview*>();
    EXPECT_EQ(m_view.pane(), preview);
    selectAll({u"a"_s, u"b"_s});
    auto* const selection = m_view.findChild<SelectionPanel*>();
    EXPECT_EQ(m_view.pane(), selection);
    store().showDiff();
    auto* const comparison = m_view.findChild<DiffView*>();
    EXPECT_EQ(m_view.pane(), comparison);

    store().clearMultiSelection();
    EXPECT_EQ(m_view.pane(), preview);
    selectAll({u"b"_s, u"c"_s});
    EXPECT_EQ(m_view.pane(), selection);
    store().showDiff();
    EXPECT_EQ(m_view.pane(), comparison);
}

TEST_F(DetailViewTest, SaysThatNoNoteIsSelected) {
    store().setSelectedID(std::nullopt);
    EXPECT_EQ(shownTexts(*m_view.pane()), QStringList({u"Nessuna nota selezionata"_s, hints}));
    EXPECT_FALSE(showsStatus());
}

TEST_F(DetailViewTest, SaysWhyANoteCanNotBeOpened) {
    QFile large(m_folder.path(u"b.md"_s));
    ASSERT_TRUE(large.resize(33'554'433));
    NotesFolder other({});
    AppSettings& settings = m_folder.settings();
    NotesStore fresh(&settings);
    FindController find(fresh);
    SoloController solo(settings);
    const DetailView view(fresh, settings, find, solo);
    for (const NoteItemPtr& note : fresh.notes()) {
        if (note->title() == u"b"_s) {
            fresh.setSelectedID(note->id());
        }
    }
    const QStringList texts = shownTexts(*view.pane());
    ASSERT_EQ(texts.size(), 2);
    EXPECT_EQ(texts.at(0), u"Impossibile aprire la nota"_s);
    EXPECT_TRUE(texts.at(1).startsWith(u"«b.md» è troppo grande per essere aperto ("_s));
    EXPECT_NE(buttonOf(view, u"Fai clic per rinominare"_s), nullptr);
}

TEST_F(DetailViewTest, ShowsTheTextOfTheSelectedNoteWithItsStatus) {
    EXPECT_TRUE(shows<EditorView>());
    EXPECT_TRUE(showsStatus());
}

TEST_F(DetailViewTest, ThePreviewTakesThePlaceOfTheEditor) {
    ZoomableTextView* const text = m_view.findChild<EditorView*>()->textView();
    text->setFocus();
    store().togglePreview();
    EXPECT_TRUE(shows<NotePreview>());
    EXPECT_TRUE(showsStatus());
    ASSERT_NE(m_view.focusWidget(), nullptr);
    EXPECT_TRUE(m_view.pane()->isAncestorOf(m_view.focusWidget()));

    select(u"b"_s);
    EXPECT_TRUE(shows<EditorView>());
    select(u"a"_s);
    EXPECT_TRUE(shows<NotePreview>());

    store().togglePreview();
    EXPECT_TRUE(shows<EditorView>());
    EXPECT_TRUE(QTest::qWaitFor([text] { return text->hasFocus(); }));
}

TEST_F(DetailViewTest, APreviewTakesTheFocusOnlyFromTheEditorOrWhenItIsAskedFor) {
    QAbstractButton* const copy = button(u"Copia il contenuto negli appunti (⌥⌘C)"_s);
    copy->setFocus();
    store().togglePreview();
    EXPECT_TRUE(copy->hasFocus());
    store().raiseEditorFocusToken();
    ASSERT_NE(m_view.window()->focusWidget(), nullptr);
    EXPECT_TRUE(m_view.pane()->isAncestorOf(m_view.window()->focusWidget()));
}

TEST_F(DetailViewTest, WhatAPreviewChangesCanBeUndoneInTheEditor) {
    store().togglePreview();
    store().replaceText(*store().selectedItem(), u"altro"_s);
    EXPECT_EQ(store().selectedItem()->document()->text(), u"altro"_s);
    store().togglePreview();
    m_view.findChild<EditorView*>()->textView()->undo();
    EXPECT_EQ(store().selectedItem()->document()->text(), u"alfa"_s);
}

TEST_F(DetailViewTest, ANoteThatOutgrowsItsPreviewShowsTheEditorAndKeepsItsFlag) {
    store().togglePreview();
    ASSERT_TRUE(shows<NotePreview>());
    store().replaceText(*store().selectedItem(), QString(1'000'001, u'x'));
    EXPECT_TRUE(shows<EditorView>());
    EXPECT_TRUE(store().selectedItem()->showsPreview());
    store().replaceText(*store().selectedItem(), u"corto"_s);
    EXPECT_TRUE(shows<NotePreview>());
}

TEST_F(DetailViewTest, SeveralNotesTakeThePlaceOfTheEditor) {
    selectAll({u"a"_s, u"b"_s});
    EXPECT_TRUE(shows<SelectionPanel>());
    EXPECT_FALSE(showsStatus());
    EXPECT_TRUE(m_view.findChild<EditorView*>()->textView()->isReadOnly());

    store().clearMultiSelection();
    EXPECT_TRUE(shows<EditorView>());
    EXPECT_FALSE(m_view.findChild<EditorView*>()->textView()->isReadOnly());
    EXPECT_TRUE(QTest::qWaitFor([this] { return m_view.findChild<EditorView*>()->textView()->hasFocus(); }));
}

TEST_F(DetailViewTest, TheFindBarIsThereOnlyAboveTheEditor) {
    const auto isThere = [this] {
        const auto* const bar = m_view.findChild<FindBar*>();
        return bar != nullptr && bar->isVisible();
    };
    EXPECT_FALSE(isThere());
    m_folder.find().show(false);
    EXPECT_TRUE(isThere());
    store().togglePreview();
    EXPECT_FALSE(isThere());
    store().togglePreview();
    m_folder.find().show(false);
    EXPECT_TRUE(isThere());
    selectAll({u"a"_s, u"b"_s});
    EXPECT_FALSE(isThere());
    store().clearMultiSelection();
    m_folder.find().show(false);
    EXPECT_TRUE(isThere());
    store().setSelectedID(std::nullopt);
    EXPECT_FALSE(isThere());
}

TEST_F(DetailViewTest, NotesOfASelectionThatHaveGoneDoNotCount) {
    selectAll({u"a"_s, u"b"_s, u"c"_s});
    ASSERT_TRUE(QFile::remove(m_folder.path(u"b.md"_s)));
    store().refreshFromDisk();
    EXPECT_TRUE(shows<SelectionPanel>());
    EXPECT_TRUE(shownTexts(m_view).contains(u"2 note selezionate"_s));
    EXPECT_NE(button(u"Confronta differenze"_s), nullptr);
}

TEST_F(DetailViewTest, KeysOfThePanelAreNoKeysOfTheEditor) {
    EXPECT_FALSE(m_view.performKey(Qt::Key_Return));
    selectAll({u"a"_s, u"b"_s});
    EXPECT_FALSE(m_view.performKey(Qt::Key_A));
    EXPECT_TRUE(m_view.performKey(Qt::Key_Escape));
    EXPECT_TRUE(shows<EditorView>());
}
