#include "QuillaryCore/Text/LineTerminators.h"

#include <gmock/gmock.h>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

TEST(LineTerminators, AreTheseSevenUnitsOnly) {
    const QString terminators = u"\n\v\f\r\u0085\u2028\u2029"_s;
    for (char32_t unit = 0; unit <= 0xFFFF; ++unit) {
        EXPECT_EQ(isLineTerminator(static_cast<char16_t>(unit)), terminators.contains(QChar(unit)))
            << static_cast<int>(unit);
    }
}

struct SplitText {
    QString text;
    std::vector<qsizetype> ends;
    qsizetype trailing;
};

TEST(LineTerminators, EndALineBehindThem) {
    const SplitText cases[] = {
        {u""_s, {}, 0},
        {u"a"_s, {}, 0},
        {u"\n"_s, {1}, 1},
        {u"\r"_s, {1}, 1},
        {u"\r\n"_s, {2}, 2},
        {u"\n\r"_s, {1, 2}, 1},
        {u"\r\r\n"_s, {1, 3}, 2},
        {u"\r\n\n"_s, {2, 3}, 1},
        {u"\n\r\n\r"_s, {1, 3, 4}, 1},
        {u"a\vb\fc\u0085d\u2028e\u2029f"_s, {2, 4, 6, 8, 10}, 0},
        {u"\u2028\u2029"_s, {1, 2}, 1},
        {u"\t\u000E\u0084\u2027\u202A"_s, {}, 0},
        {u"\r\u2028\n"_s, {1, 2, 3}, 1},
    };
    for (const auto& [text, ends, trailing] : cases) {
        std::vector<qsizetype> found;
        appendLineEnds(text, found);
        EXPECT_EQ(found, ends) << text.toStdString();
        EXPECT_EQ(lineTerminatorCount(text), static_cast<qsizetype>(ends.size())) << text.toStdString();
        EXPECT_EQ(trailingTerminatorLength(text), trailing) << text.toStdString();
    }
}

TEST(LineTerminators, AreCountedInTextsLongerThanOneBlockOfTheCount) {
    // The pairs lie across every possible block border, and there are more of them than sixteen bits can count.
    EXPECT_EQ(lineTerminatorCount(u"\r\n"_s.repeated(100'000)), 100'000);
    EXPECT_EQ(lineTerminatorCount(QString(u"a"_s + u"\r\n"_s.repeated(100'000))), 100'000);
    EXPECT_EQ(lineTerminatorCount(u"\r"_s.repeated(100'001)), 100'001);
}

} // namespace

} // namespace quillary
