#include "Quillary/State/NoteDocument.h"

#include "QuillaryCore/Text/TextStorage.h"
#include "QuillaryCore/Text/UndoManager.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace quillary::test {

using namespace Qt::StringLiterals;

namespace {

class FakeView : public NoteTextView {
public:
    NoteDocument* shownDocument() const override { return nullptr; }

    TextSelection selection() const override { return {}; }

    bool replaceText(TextRange, const QString&) override { return false; }

    void resetHighlightedLanguage() override { ++resets; }

    int resets = 0;
};

} // namespace

TEST(NoteDocument, IsItsTextBeforeAndAfterItsFirstUse) {
    NoteDocument document(u"prima\r\nseconda\u00A0"_s);
    EXPECT_EQ(document.text(), u"prima\r\nseconda\u00A0");
    EXPECT_EQ(document.length(), 15);
    EXPECT_EQ(document.text({7, 7}), u"seconda");
    EXPECT_TRUE(document.equals(u"prima\r\nseconda\u00A0"));
    EXPECT_FALSE(document.equals(u"prima"));

    EXPECT_EQ(document.storage().length(), 15);

    EXPECT_EQ(document.text(), u"prima\r\nseconda\u00A0");
    EXPECT_EQ(document.length(), 15);
    EXPECT_EQ(document.text({7, 7}), u"seconda");
    EXPECT_TRUE(document.equals(u"prima\r\nseconda\u00A0"));
    EXPECT_FALSE(document.equals(u"prima"));
}

TEST(NoteDocument, KeepsOneStorageAndOneUndoManager) {
    NoteDocument document(u"testo"_s);
    TextStorage& storage = document.storage();
    UndoManager& undoManager = document.undoManager();

    document.replaceAll(u"altro"_s);

    EXPECT_EQ(&document.storage(), &storage);
    EXPECT_EQ(&document.undoManager(), &undoManager);
}

TEST(NoteDocument, StartsUnpaintedAtTheOriginWithoutAView) {
    const NoteDocument document(u"testo"_s);

    EXPECT_EQ(document.scrollOrigin, QPointF());
    EXPECT_EQ(document.appliedStyle, std::nullopt);
    EXPECT_EQ(document.editorView.get(), nullptr);
}

TEST(NoteDocument, AReplacementFromOutsideCanNotBeUndoneNorAnythingBeforeIt) {
    NoteDocument document(u"testo"_s);
    document.undoManager().replace({5, 0}, u"!", EditKind::typing, {5, 5});
    ASSERT_TRUE(document.undoManager().canUndo());

    document.replaceAll(u"da fuori"_s);

    EXPECT_EQ(document.text(), u"da fuori");
    EXPECT_FALSE(document.undoManager().canUndo());
    EXPECT_FALSE(document.undoManager().canRedo());
}

TEST(NoteDocument, AReplacementFromOutsideIsOneChange) {
    NoteDocument document(u"testo"_s);
    const QSignalSpy spy(&document.storage(), &TextStorage::changed);

    document.replaceAll(u"da fuori"_s);

    EXPECT_EQ(spy.count(), 1);
}

TEST(NoteDocument, AReplacementFromOutsideIsStyledAndColouredAnew) {
    FakeView view;
    NoteDocument document(u"testo"_s);
    document.appliedStyle = EditorStyle();
    document.editorView = &view;

    document.replaceAll(u"da fuori"_s);

    EXPECT_EQ(document.appliedStyle, std::nullopt);
    EXPECT_EQ(view.resets, 1);
}

TEST(NoteDocument, ReplacesATextThatWasNeverShown) {
    NoteDocument document(u"testo"_s);

    document.replaceAll(u"da fuori"_s);

    EXPECT_EQ(document.text(), u"da fuori");
    EXPECT_EQ(document.storage().text(), u"da fuori");
}

TEST(NoteDocument, ForgetsAViewThatGoes) {
    NoteDocument document(u"testo"_s);
    {
        FakeView view;
        document.editorView = &view;
        EXPECT_EQ(document.editorView.get(), &view);
    }
    EXPECT_EQ(document.editorView.get(), nullptr);

    document.replaceAll(u"da fuori"_s);

    EXPECT_EQ(document.text(), u"da fuori");
}

} // namespace quillary::test
