#include "Quillary/State/NoteItem.h"

#include "Quillary/State/DelayedTask.h"
#include "Quillary/State/NoteDocument.h"
#include "QuillaryCore/Notes/NoteFileInfo.h"

#include "Tests/State/NotesDirectory.h"

#include <QList>

#include <gtest/gtest.h>

#include <functional>

namespace quillary::test {

using namespace Qt::StringLiterals;

namespace {

NoteFileInfo info(const QString& path) {
    return {FilePath::fromText(path), moment(1), moment(2), 5, u"Casa"_s};
}

class Listener final : public NoteObserver {
public:
    void noteDidChange(NoteItem& item, NoteField field) override {
        items.append(&item);
        fields.append(field);
    }

    QList<NoteItem*> items;
    QList<NoteField> fields;
};

} // namespace

TEST(NoteItem, StartsWithTheFactsOfItsFileAndNothingElse) {
    const NoteItem item(info(u"/note/Casa/Spesa.md"_s));

    EXPECT_EQ(item.url().text(), u"/note/Casa/Spesa.md");
    EXPECT_EQ(item.created(), moment(1));
    EXPECT_EQ(item.modified(), moment(2));
    EXPECT_EQ(item.knownModificationDate, moment(2));
    EXPECT_EQ(item.folder(), u"Casa"_s);
    EXPECT_TRUE(item.snippet().isEmpty());
    EXPECT_EQ(item.characterCount(), 0);
    EXPECT_FALSE(item.isDirty());
    EXPECT_FALSE(item.showsPreview());
    EXPECT_EQ(item.loadError(), std::nullopt);
    EXPECT_EQ(item.revision(), 0);
    EXPECT_EQ(item.document(), nullptr);
    EXPECT_EQ(item.saveTask, nullptr);
}

TEST(NoteItem, HasAnIdOfItsOwn) {
    const NoteItem a(info(u"/note/a.md"_s));
    const NoteItem b(info(u"/note/a.md"_s));

    EXPECT_NE(a.id(), b.id());
}

TEST(NoteItem, TitleAndFormatFollowTheUrl) {
    NoteItem item(info(u"/note/Casa/Spesa.v2.MD"_s));
    EXPECT_EQ(item.title(), u"Spesa.v2");
    EXPECT_EQ(item.fileName(), u"Spesa.v2.MD");
    EXPECT_EQ(item.format(), NoteFormat::markdown);

    item.setUrl(FilePath::fromText(u"/note/Casa/Conti.csv"));

    EXPECT_EQ(item.title(), u"Conti");
    EXPECT_EQ(item.format(), NoteFormat::csv);
}

struct Preview {
    const char* name;
    qsizetype characterCount;
    bool canPreview;
};

class Previews : public testing::TestWithParam<Preview> {};

TEST_P(Previews, AreForFormatsThatHaveOneAndNotForLongTexts) {
    NoteItem item(info(u"/note/"_s + QString::fromLatin1(GetParam().name)));

    item.setCharacterCount(GetParam().characterCount);

    EXPECT_EQ(item.canPreview(), GetParam().canPreview);
}

INSTANTIATE_TEST_SUITE_P(All, Previews,
                         testing::Values(Preview{"a.md", 0, true}, Preview{"a.md", 1'000'000, true},
                                         Preview{"a.md", 1'000'001, false}, Preview{"a.json", 5, true},
                                         Preview{"a.csv", 5, true}, Preview{"a.html", 5, false},
                                         Preview{"a.txt", 5, false}, Preview{"a.css", 5, false},
                                         Preview{"a.js", 5, false}, Preview{"a.php", 5, false}));

/// An assignment that changes a field, and the field.
struct FieldChange {
    NoteField field;
    std::function<void(NoteItem&)> change;
};

class FieldChanges : public testing::TestWithParam<FieldChange> {};

TEST_P(FieldChanges, AreToldOnceAndOnlyIfTheValueDiffers) {
    NoteItem item(info(u"/note/a.md"_s));
    Listener listener;
    item.setObserver(&listener);

    GetParam().change(item);
    GetParam().change(item);

    EXPECT_EQ(listener.fields, QList<NoteField>{GetParam().field});
    EXPECT_EQ(listener.items, QList<NoteItem*>{&item});
}

INSTANTIATE_TEST_SUITE_P(
    All, FieldChanges,
    testing::Values(FieldChange{NoteField::url, [](NoteItem& i) { i.setUrl(FilePath::fromText(u"/note/b.md")); }},
                    FieldChange{NoteField::created, [](NoteItem& i) { i.setCreated(moment(7)); }},
                    FieldChange{NoteField::modified, [](NoteItem& i) { i.setModified(moment(7)); }},
                    FieldChange{NoteField::folder, [](NoteItem& i) { i.setFolder({}); }},
                    FieldChange{NoteField::snippet, [](NoteItem& i) { i.setSnippet(u"x"_s); }},
                    FieldChange{NoteField::characterCount, [](NoteItem& i) { i.setCharacterCount(3); }},
                    FieldChange{NoteField::isDirty, [](NoteItem& i) { i.setDirty(true); }},
                    FieldChange{NoteField::showsPreview, [](NoteItem& i) { i.setShowsPreview(true); }},
                    FieldChange{NoteField::loadError, [](NoteItem& i) { i.setLoadError(u"rotto"_s); }}));

TEST(NoteItem, TellsOfItsDocumentAndOfEachRevision) {
    NoteItem item(info(u"/note/a.md"_s));
    Listener listener;
    item.setObserver(&listener);

    item.setDocument(std::make_shared<NoteDocument>(u"testo"_s));
    item.raiseRevision();
    item.raiseRevision();

    EXPECT_EQ(item.revision(), 2);
    EXPECT_EQ(listener.fields, QList({NoteField::document, NoteField::revision, NoteField::revision}));
}

TEST(NoteItem, IsSilentWithoutAnObserver) {
    NoteItem item(info(u"/note/a.md"_s));
    Listener listener;
    item.setObserver(&listener);
    item.setObserver(nullptr);

    item.setDirty(true);

    EXPECT_TRUE(listener.fields.isEmpty());
}

} // namespace quillary::test
