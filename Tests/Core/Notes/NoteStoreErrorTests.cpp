#include "QuillaryCore/Notes/NoteStoreError.h"

#include <gtest/gtest.h>

namespace quillary {

using namespace Qt::StringLiterals;

TEST(NoteStoreError, SaysWhatHappened) {
    EXPECT_EQ(NoteStoreError::fileTooLarge(u"a.md"_s, 40'000'000).errorDescription(),
              u"«a.md» è troppo grande per essere aperto (40 MB)."_s);
    EXPECT_EQ(NoteStoreError::creationFailed(u"Idee"_s).errorDescription(), u"Impossibile creare «Idee»."_s);
    EXPECT_EQ(NoteStoreError::invalidName().errorDescription(), u"Il nome non è valido."_s);
}

TEST(NoteStoreError, ANameMayLookLikeAPlaceInTheMessage) {
    EXPECT_EQ(NoteStoreError::fileTooLarge(u"%2 %1.md"_s, 5).errorDescription(),
              u"«%2 %1.md» è troppo grande per essere aperto (5 byte)."_s);
}

TEST(NoteStoreError, ShowsANameThatIsNoUtf8WithReplacements) {
    EXPECT_EQ(NoteStoreError::creationFailed(u"caff"_s + QChar(0xDCE8)).errorDescription(),
              u"Impossibile creare «caff\uFFFD»."_s);
}

TEST(NoteStoreError, KnowsItsKindAndPayload) {
    const NoteStoreError error = NoteStoreError::fileTooLarge(u"a.md"_s, 7);
    EXPECT_EQ(error.kind(), NoteStoreError::Kind::fileTooLarge);
    EXPECT_EQ(error.name(), u"a.md"_s);
    EXPECT_EQ(error.bytes(), 7);
    EXPECT_EQ(NoteStoreError::creationFailed(u"b"_s).kind(), NoteStoreError::Kind::creationFailed);
    EXPECT_EQ(NoteStoreError::invalidName().kind(), NoteStoreError::Kind::invalidName);
}

TEST(NoteStoreError, EqualsOneOfTheSameKindAndPayload) {
    EXPECT_EQ(NoteStoreError::fileTooLarge(u"a"_s, 7), NoteStoreError::fileTooLarge(u"a"_s, 7));
    EXPECT_NE(NoteStoreError::fileTooLarge(u"a"_s, 7), NoteStoreError::fileTooLarge(u"a"_s, 8));
    EXPECT_NE(NoteStoreError::fileTooLarge(u"a"_s, 7), NoteStoreError::fileTooLarge(u"b"_s, 7));
    EXPECT_NE(NoteStoreError::creationFailed(u""_s), NoteStoreError::invalidName());
}

} // namespace quillary
