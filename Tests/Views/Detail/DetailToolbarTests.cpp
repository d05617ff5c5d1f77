#include "DetailTest.h"
#include "Quillary/Detail/CopyContentButton.h"
#include "Quillary/Detail/FormatMenuButton.h"
#include "Quillary/Detail/HiddenSystemTitle.h"
#include "Quillary/Keyboard/ShortcutAction.h"
#include "Quillary/Theme/SymbolLabel.h"
#include "QuillaryCore/Notes/NoteFormat.h"

#include <QElapsedTimer>
#include <QMenu>
#include <QSignalSpy>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

class DetailToolbarTest : public DetailTest {
protected:
    DetailToolbarTest()
        : DetailTest({{u"a.md"_s, u"alfa"_s},
                      {u"b.txt"_s, u"beta"_s},
                      {u"c.json"_s, u"{}"_s},
                      {u"grande.md"_s, QString(1'000'001, u'x')}}) {}

    FormatMenuButton* formatButton() const { return m_view.findChild<FormatMenuButton*>(); }

    CopyContentButton* copyButton() const { return m_view.findChild<CopyContentButton*>(); }

    QAction* checkedFormat() const {
        Q_EMIT formatButton()->menu()->aboutToShow();
        QList<QAction*> checked = formatButton()->menu()->actions();
        checked.removeIf([](const QAction* action) { return !action->isChecked(); });
        return checked.size() == 1 ? checked.first() : nullptr;
    }
};

} // namespace

TEST_F(DetailToolbarTest, TheFormatMenuListsAllFormatsAndMarksThePresentOne) {
    QStringList names;
    for (const NoteFormat format : allNoteFormats) {
        names.append(displayName(format));
    }
    QStringList items;
    for (const QAction* const action : formatButton()->menu()->actions()) {
        items.append(action->text());
    }
    EXPECT_EQ(items, names);
    EXPECT_EQ(formatButton()->toolTip(), u"Formato della nota"_s);
    EXPECT_EQ(formatButton()->text(), u"MD"_s);
    ASSERT_NE(checkedFormat(), nullptr);
    EXPECT_EQ(checkedFormat()->text(), displayName(NoteFormat::markdown));

    select(u"c"_s);
    EXPECT_EQ(formatButton()->text(), u"JSON"_s);
    EXPECT_EQ(checkedFormat()->text(), displayName(NoteFormat::json));
}

TEST_F(DetailToolbarTest, EachFormatCanBeChosenAndShowsItsBadge) {
    select(u"b"_s);
    const QList<QAction*> actions = formatButton()->menu()->actions();
    ASSERT_EQ(actions.size(), static_cast<qsizetype>(std::size(allNoteFormats)));
    qsizetype index = 0;
    for (const NoteFormat format : allNoteFormats) {
        actions[index]->trigger();
        EXPECT_EQ(store().selectedItem()->format(), format);
        EXPECT_EQ(store().selectedItem()->title(), u"b"_s);
        EXPECT_EQ(formatButton()->text(), badge(format));
        EXPECT_EQ(checkedFormat(), actions[index]);
        ++index;
    }
    actions.last()->trigger();
    EXPECT_EQ(checkedFormat(), actions.last()) << "the present one again";
    EXPECT_EQ(store().errorMessage(), std::nullopt);
}

TEST_F(DetailToolbarTest, TheKeyboardAloneChangesTheFormat) {
    formatButton()->setFocus(Qt::TabFocusReason);
    QMenu* const menu = formatButton()->menu();
    // The menu runs a loop of its own.
    QTimer::singleShot(0, menu, [menu] {
        ASSERT_TRUE(QTest::qWaitFor([menu] { return menu->isVisible(); }));
        menu->setActiveAction(menu->actions().first());
        QTest::keyClick(menu, Qt::Key_Down);
        QTest::keyClick(menu, Qt::Key_Down);
        QTest::keyClick(menu, Qt::Key_Down);
        QTest::keyClick(menu, Qt::Key_Return);
    });
    QTest::keyClick(formatButton(), Qt::Key_Space);
    EXPECT_TRUE(QTest::qWaitFor([this] { return QFile::exists(m_folder.path(u"a.csv"_s)); }));
    EXPECT_EQ(formatButton()->text(), u"CSV"_s);
    EXPECT_EQ(formatButton()->accessibleDescription(), displayName(NoteFormat::csv));
}

TEST_F(DetailToolbarTest, WithoutANoteThereIsNoFormat) {
    store().setSelectedID(std::nullopt);
    EXPECT_TRUE(formatButton()->isHidden());
    EXPECT_FALSE(copyButton()->isEnabled());
    ASSERT_NE(button(u"Anteprima formattata (⇧⌘P)"_s), nullptr);
    EXPECT_FALSE(button(u"Anteprima formattata (⇧⌘P)"_s)->isEnabled());
}

TEST_F(DetailToolbarTest, ThePreviewButtonSaysWhatItWouldDo) {
    QAbstractButton* const preview = button(u"Anteprima formattata (⇧⌘P)"_s);
    ASSERT_NE(preview, nullptr);
    EXPECT_TRUE(preview->isEnabled());
    EXPECT_FALSE(preview->isChecked());

    QTest::mouseClick(preview, Qt::LeftButton);
    EXPECT_TRUE(store().selectedItem()->showsPreview());
    EXPECT_TRUE(preview->isChecked());
    EXPECT_EQ(preview->toolTip(), u"Torna all'editor (⇧⌘P)"_s);
    EXPECT_EQ(preview->accessibleName(), preview->toolTip());

    const qint64 token = store().editorFocusToken();
    QTest::mouseClick(preview, Qt::LeftButton);
    EXPECT_FALSE(store().selectedItem()->showsPreview());
    EXPECT_FALSE(preview->isChecked());
    EXPECT_EQ(store().editorFocusToken(), token + 1);
    EXPECT_EQ(preview->toolTip(), u"Anteprima formattata (⇧⌘P)"_s);
}

TEST_F(DetailToolbarTest, ThePreviewButtonFollowsTheCommandsShortcut) {
    m_folder.settings().setShortcut(std::nullopt, ShortcutAction::togglePreview);
    EXPECT_NE(button(u"Anteprima formattata"_s), nullptr);
    m_folder.settings().resetShortcut(ShortcutAction::togglePreview);
    EXPECT_NE(button(u"Anteprima formattata (⇧⌘P)"_s), nullptr);
}

TEST_F(DetailToolbarTest, ThePreviewButtonIsDisabledWhereThereIsNoPreview) {
    QAbstractButton* const preview = button(u"Anteprima formattata (⇧⌘P)"_s);
    select(u"b"_s);
    EXPECT_FALSE(preview->isEnabled());
    EXPECT_EQ(preview->toolTip(), u"Anteprima formattata (⇧⌘P)"_s);
    store().changeFormat(*store().selectedItem(), NoteFormat::csv);
    EXPECT_TRUE(preview->isEnabled());
    select(u"grande"_s);
    EXPECT_FALSE(preview->isEnabled());
    EXPECT_EQ(preview->toolTip(), u"Anteprima disattivata per le note oltre 1 MB"_s);
}

TEST_F(DetailToolbarTest, ALargeNoteOfAFormatWithoutPreviewIsNotDisabledByItsSize) {
    select(u"grande"_s);
    store().changeFormat(*store().selectedItem(), NoteFormat::plain);
    EXPECT_NE(button(u"Anteprima formattata (⇧⌘P)"_s), nullptr);
}

TEST_F(DetailToolbarTest, CopyPutsTheTextOnTheClipboardAndShowsItForAMoment) {
    EXPECT_TRUE(shows(*copyButton(), Symbol::copy));
    QElapsedTimer sinceFirstClick;
    sinceFirstClick.start();
    click(u"Copia il contenuto negli appunti (⌥⌘C)"_s);
    EXPECT_EQ(m_desktop.clipboard, u"alfa"_s);
    EXPECT_TRUE(copyButton()->didCopy());
    EXPECT_TRUE(shows(*copyButton(), Symbol::check));

    m_desktop.clipboard = u"altro"_s;
    click(u"Copia il contenuto negli appunti (⌥⌘C)"_s);
    EXPECT_EQ(m_desktop.clipboard, u"alfa"_s);
    EXPECT_TRUE(copyButton()->didCopy());
    ASSERT_TRUE(QTest::qWaitFor([this] { return !copyButton()->didCopy(); }));
    EXPECT_GE(sinceFirstClick.elapsed(), 1200);
    EXPECT_TRUE(shows(*copyButton(), Symbol::copy));
}

TEST_F(DetailToolbarTest, SeveralNotesAreCountedAndAComparisonIsNamed) {
    selectAll({u"a"_s, u"b"_s, u"c"_s});
    EXPECT_TRUE(shownTexts(m_view).contains(u"3 note selezionate"_s));
    const auto* const image = m_view.findChild<SymbolLabel*>();
    EXPECT_TRUE(image->isVisible());
    EXPECT_EQ(image->symbol(), Symbol::checklist);
    EXPECT_EQ(button(u"Fai clic per rinominare"_s), nullptr);
    EXPECT_FALSE(copyButton()->isEnabled());

    selectAll({u"a"_s, u"b"_s});
    EXPECT_TRUE(shownTexts(m_view).contains(u"2 note selezionate"_s));
    store().showDiff();
    EXPECT_TRUE(shownTexts(m_view).contains(u"Confronto"_s));
    EXPECT_EQ(image->symbol(), Symbol::comparison);

    store().clearMultiSelection();
    EXPECT_FALSE(shownTexts(m_view).contains(u"Confronto"_s));
    EXPECT_FALSE(image->isVisible());
    EXPECT_NE(button(u"Fai clic per rinominare"_s), nullptr);
}

TEST_F(DetailToolbarTest, TheWindowHasTheTitleForTheDesktop) {
    QWidget window;
    new HiddenSystemTitle(store(), &window);
    EXPECT_EQ(window.windowTitle(), u"a"_s);
    store().rename(*store().selectedItem(), u"con [*] stella"_s);
    // Doubled, the mark stands for itself in the frame.
    EXPECT_EQ(window.windowTitle(), u"con [*][*] stella"_s);
    select(u"b"_s);
    EXPECT_EQ(window.windowTitle(), u"b"_s);
    store().setSelectedID(std::nullopt);
    EXPECT_EQ(window.windowTitle(), u"Quillary"_s);
}
