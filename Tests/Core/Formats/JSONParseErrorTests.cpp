#include "QuillaryCore/Formats/JSONParseError.h"

#include <gtest/gtest.h>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

TEST(JSONParseError, DescribesPlaceAndMessage) {
    const JSONParseError error(u"Numero non valido"_s, "[\n1.x]", 4);
    EXPECT_EQ(error.description(), u"Riga 2, colonna 3: Numero non valido"_s);
    EXPECT_EQ(error.errorDescription(), error.description());
}

TEST(JSONParseError, WritesGreatNumbersWithoutGrouping) {
    const QByteArray text = QByteArray(1233, '\n') + QByteArray(12344, ' ');
    EXPECT_EQ(JSONParseError(u"x"_s, text, text.size()).description(), u"Riga 1234, colonna 12345: x"_s);
}

TEST(JSONParseError, StaysWithinTheText) {
    const JSONParseError error(u"x"_s, "ab\nc", 100);
    EXPECT_EQ(error.line(), 2);
    EXPECT_EQ(error.column(), 2);
}

TEST(JSONParseError, IsOfTheLineThatItsLineFeedEnds) {
    const JSONParseError error(u"x"_s, "ab\ncd\n", 2);
    EXPECT_EQ(error.line(), 1);
    EXPECT_EQ(error.column(), 3);
}

TEST(JSONParseError, CountsAStretchThatEndsWithinACharacter) {
    const JSONParseError error(u"x"_s, "\xC3\xA0\xE2\x82\xAC", 4);
    EXPECT_EQ(error.column(), 3);
}

TEST(JSONParseError, IsEqualByMessageLineAndColumn) {
    const JSONParseError error(u"x"_s, "ab\nc", 3);
    EXPECT_EQ(error, JSONParseError(u"x"_s, "\nanother text", 1));
    EXPECT_NE(error, JSONParseError(u"y"_s, "ab\nc", 3));
    EXPECT_NE(error, JSONParseError(u"x"_s, "ab\nc", 4));
    EXPECT_NE(error, JSONParseError(u"x"_s, "ab\n\nc", 4));
}

} // namespace

} // namespace quillary
