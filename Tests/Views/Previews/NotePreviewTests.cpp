#include "Quillary/Previews/NotePreview.h"

#include "../NotesFolder.h"
#include "Quillary/Editor/EditorView.h"
#include "Quillary/Editor/ZoomableTextView.h"
#include "Quillary/Previews/CSVPreview.h"
#include "Quillary/Previews/JSONPreview.h"
#include "Quillary/Previews/MarkdownPreview.h"
#include "Quillary/State/AppActions.h"
#include "Quillary/State/Desktop.h"
#include "Quillary/State/NoteDocument.h"
#include "QuillaryCore/Text/TextStorage.h"
#include "QuillaryCore/Text/UndoManager.h"

#include <QPushButton>
#include <QTest>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

/// A desktop that remembers what it was asked to open.
class RememberingDesktop : public Desktop {
public:
    void beep() override { ++beeps; }

    std::optional<QString> clipboardText() const override { return std::nullopt; }

    void setClipboardText(const QString&) override {}

    QList<FilePath> chooseFiles(const QString&, const QString&) override { return {}; }

    std::optional<FilePath> chooseDirectory(const FilePath&, const QString&) override { return std::nullopt; }

    std::optional<FilePath> chooseDestination(const QString&) override { return std::nullopt; }

    void open(const FilePath& path) override { opened.append(path.text()); }

    void openURL(const QString& url) override { openedUrls.append(url); }

    void reveal(const FilePath&) override {}

    int beeps = 0;
    QStringList opened;
    QStringList openedUrls;
};

/// The preview on show, over notes of all kinds.
class NotePreviewOf : public testing::Test {
protected:
    NotePreviewOf() {
        AppActions::shared().desktop = &m_desktop;
        m_preview.resize(500, 400);
        m_preview.show();
        if (!QTest::qWaitForWindowExposed(&m_preview)) {
            ADD_FAILURE() << "the view is not exposed";
        }
    }

    NotesStore& store() { return m_folder.store(); }

    NoteItem& select(const QString& title) {
        const NoteItemPtr note = m_folder.note(title);
        store().setSelectedID(note->id());
        return *note;
    }

    template <typename Preview>
    Preview* shown() {
        return qobject_cast<Preview*>(m_preview.preview());
    }

    void edit(NoteItem& note, const QString& text) {
        TextStorage& storage = note.document()->storage();
        storage.replace({0, storage.length()}, text);
    }

    /// The first words of the Markdown preview.
    QString firstRow() { return shown<MarkdownPreview>()->rowText(0); }

    NotesFolder m_folder = NotesFolder({{u"a.md"_s, u"# Titolo\n\ntesto"_s},
                                        {u"b.json"_s, u"{\"k\":1}"_s},
                                        {u"c.csv"_s, u"x,y\n1,2\n"_s},
                                        {u"d.txt"_s, u"testo"_s},
                                        {u"e.md"_s, u"[a](a.md) altro"_s},
                                        {u"lunga.md"_s, QString(1'000'001, u'x')}});
    RememberingDesktop m_desktop;
    NotePreview m_preview{m_folder.store(), m_folder.settings()};
};

} // namespace

TEST_F(NotePreviewOf, TheFormatChoosesThePreview) {
    select(u"a"_s);
    EXPECT_NE(shown<MarkdownPreview>(), nullptr);
    select(u"b"_s);
    EXPECT_NE(shown<JSONPreview>(), nullptr);
    select(u"c"_s);
    EXPECT_NE(shown<CSVPreview>(), nullptr);
}

TEST_F(NotePreviewOf, OtherFormatsAndTextsThatAreTooLongHaveNone) {
    select(u"d"_s);
    EXPECT_EQ(m_preview.preview(), nullptr);
    select(u"lunga"_s);
    EXPECT_EQ(m_preview.preview(), nullptr);
    store().setSelectedID(std::nullopt);
    EXPECT_EQ(m_preview.preview(), nullptr);
}

TEST_F(NotePreviewOf, FollowsTheText) {
    NoteItem& note = select(u"a"_s);
    EXPECT_EQ(firstRow(), u"Titolo"_s);
    QWidget* const before = m_preview.preview();
    edit(note, u"# Altroo\n\ntesto"_s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return firstRow() == u"Altroo"_s; }));
    EXPECT_EQ(m_preview.preview(), before) << "the same view, with its place";

    store().replaceText(note, u"# Terzo"_s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return firstRow() == u"Terzo"_s; }));
}

TEST_F(NotePreviewOf, FollowsTheSizeOfTheFont) {
    select(u"a"_s);
    m_folder.settings().setFontSize(20);
    ASSERT_TRUE(QTest::qWaitFor([&] { return shown<MarkdownPreview>()->baseSize() == 20; }));
}

TEST_F(NotePreviewOf, FollowsTheFormat) {
    NoteItem& note = select(u"c"_s);
    store().changeFormat(note, NoteFormat::markdown);
    ASSERT_TRUE(QTest::qWaitFor([&] { return shown<MarkdownPreview>() != nullptr; }));
    store().changeFormat(note, NoteFormat::plain);
    ASSERT_TRUE(QTest::qWaitFor([&] { return m_preview.preview() == nullptr; }));
}

TEST_F(NotePreviewOf, BuildsNothingWhileItIsHidden) {
    NoteItem& note = select(u"a"_s);
    m_preview.hide();
    edit(note, u"# Nuovo"_s);
    select(u"b"_s);
    EXPECT_EQ(m_preview.preview(), nullptr);
    select(u"a"_s);
    EXPECT_EQ(m_preview.preview(), nullptr);
    m_preview.show();
    EXPECT_EQ(firstRow(), u"Nuovo"_s);
}

TEST_F(NotePreviewOf, ALinkToANoteSelectsIt) {
    NoteItem& note = select(u"e"_s);
    note.setShowsPreview(true);
    EXPECT_TRUE(shown<MarkdownPreview>()->followLink(u"a.md"_s));
    EXPECT_EQ(store().selectedItem(), m_folder.note(u"a"_s));
    EXPECT_TRUE(m_folder.note(u"a"_s)->showsPreview());
    EXPECT_EQ(firstRow(), u"Titolo"_s);
}

TEST_F(NotePreviewOf, ALinkToTheWebGoesToTheDesktop) {
    select(u"e"_s);
    EXPECT_FALSE(shown<MarkdownPreview>()->followLink(u"https://esempio.it/?a=b"_s));
    EXPECT_EQ(m_desktop.openedUrls, QStringList(u"https://esempio.it/?a=b"_s));
}

TEST_F(NotePreviewOf, ALinkToAnotherFileOpensItAndToNoneBeeps) {
    select(u"e"_s);
    m_folder.write(u"immagine.png"_s, u"x"_s);
    EXPECT_TRUE(shown<MarkdownPreview>()->followLink(u"immagine.png"_s));
    EXPECT_EQ(m_desktop.opened, QStringList(m_folder.path(u"immagine.png"_s)));
    EXPECT_FALSE(shown<MarkdownPreview>()->followLink(u"manca.png"_s));
    EXPECT_EQ(m_desktop.beeps, 1);
    EXPECT_EQ(store().selectedItem(), m_folder.note(u"e"_s));
}

TEST_F(NotePreviewOf, FormattingChangesTheNoteAndThePreview) {
    NoteItem& note = select(u"b"_s);
    EditorView editor(&store(), &m_folder.settings(), &m_folder.find());
    editor.show();
    ASSERT_NE(editor.textView(), nullptr);
    QPushButton* format = nullptr;
    for (QPushButton* const button : m_preview.findChildren<QPushButton*>()) {
        format = button->text() == u"Formatta testo"_s ? button : format;
    }
    ASSERT_NE(format, nullptr);
    EXPECT_TRUE(format->isEnabled());
    QTest::mouseClick(format, Qt::LeftButton);
    EXPECT_EQ(note.document()->text(), u"{\n  \"k\": 1\n}"_s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !format->isEnabled(); }));

    note.document()->undoManager().undo();
    EXPECT_EQ(note.document()->text(), u"{\"k\":1}"_s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return format->isEnabled(); }));
}

TEST_F(NotePreviewOf, TheKeyboardGoesToThePreview) {
    select(u"a"_s);
    m_preview.activateWindow();
    m_preview.setFocus();
    EXPECT_EQ(m_preview.focusProxy(), m_preview.preview());
}

TEST_F(NotePreviewOf, TheKeyboardStaysInThePreviewWhateverItShows) {
    NoteItem& table = select(u"c"_s);
    m_preview.activateWindow();
    m_preview.setFocus();
    const auto hasFocus = [this] {
        const QWidget* const focused = m_preview.window()->focusWidget();
        return focused != nullptr && (focused == m_preview.preview() || m_preview.preview()->isAncestorOf(focused));
    };
    EXPECT_TRUE(hasFocus());
    edit(table, QString());
    ASSERT_TRUE(QTest::qWaitFor([&] { return shown<CSVPreview>()->table().rowCount() == 0; }));
    EXPECT_TRUE(hasFocus()) << "a table without rows";

    NoteItem& note = select(u"e"_s);
    EXPECT_TRUE(hasFocus()) << "another format";
    note.setShowsPreview(true);
    shown<MarkdownPreview>()->followLink(u"a.md"_s);
    EXPECT_EQ(firstRow(), u"Titolo"_s);
    EXPECT_TRUE(hasFocus()) << "another note of the same format";

    NoteItem& json = select(u"b"_s);
    EXPECT_TRUE(hasFocus());
    for (const QString& text : {u"{"_s, u"["_s, u"[1]"_s, u"]"_s}) {
        edit(json, text);
        ASSERT_TRUE(QTest::qWaitFor(
            [&] { return shown<JSONPreview>()->parsed().hasValue() == (text == u"[1]"_s) || !hasFocus(); }));
        QCoreApplication::sendPostedEvents();
        EXPECT_TRUE(hasFocus()) << text.toStdString();
    }
}
