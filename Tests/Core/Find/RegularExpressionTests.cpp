#include "QuillaryCore/Unicode/RegularExpression.h"

#include <QString>

#include <gtest/gtest.h>
#include <unicode/regex.h>
#include <unicode/unistr.h>

#include <set>

namespace quillary {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

std::set<int> boundariesByPattern(const QString& text) {
    UErrorCode status = U_ZERO_ERROR;
    icu::RegexMatcher matcher(icu::UnicodeString(u"\\b"), UREGEX_MULTILINE, status);
    const icu::UnicodeString searched(text.utf16(), static_cast<int32_t>(text.size()));
    matcher.reset(searched);
    std::set<int> result;
    while (matcher.find(status)) {
        result.insert(matcher.start(status));
    }
    return result;
}

} // namespace

TEST(WordBoundary, IsWhereThePatternHasIt) {
    const QString letters =
        u"a9_ -.\u00E9\u0301\u200D\u00AD\u0903\u4E00\u0E33\u203F\n\u06DD\u0600\u20DD\u2028\u3042\u0660"_s % QChar(0);
    QStringList pieces;
    for (const QChar unit : letters) {
        pieces << QString(unit);
    }
    pieces << u"\U0001F44D"_s << u"\U00010400"_s << u"\U000E0001"_s << u"\U0001D165"_s << QString(QChar(0xD800))
           << QString();
    for (const QString& first : pieces) {
        for (const QString& second : pieces) {
            for (const QString& third : pieces) {
                const QString text = first % second % third;
                std::set<int> boundaries;
                for (int i = 0; i <= text.size(); ++i) {
                    const bool isInPair =
                        i > 0 && i < text.size() && text[i].isLowSurrogate() && text[i - 1].isHighSurrogate();
                    if (!isInPair && isWordBoundary(text, i)) {
                        boundaries.insert(i);
                    }
                }
                ASSERT_EQ(boundaries, boundariesByPattern(text)) << text.toStdString();
            }
        }
    }
}

TEST(RegularExpression, TellsGroupsThatTookNoPart) {
    const auto expression = RegularExpression::make(u"(a)|(b)()", true);
    ASSERT_TRUE(expression);
    int matches = 0;
    expression->forEach(u"b", 1s, [&](const RegularExpression::Match& match) {
        ++matches;
        EXPECT_EQ(match.groupCount(), 3);
        EXPECT_EQ(match.range(), (TextRange{0, 1}));
        EXPECT_EQ(match.group(1), std::nullopt);
        EXPECT_EQ(match.group(2), (TextRange{0, 1}));
        EXPECT_EQ(match.group(3), (TextRange{1, 0}));
        return true;
    });
    EXPECT_EQ(matches, 1);
}

TEST(RegularExpression, SharesItsPatternAmongCopies) {
    std::optional<RegularExpression> copy;
    {
        const auto expression = RegularExpression::make(u"[ab]", false);
        copy = expression;
    }
    int matches = 0;
    copy->forEach(u"A-b", 1s, [&](const RegularExpression::Match&) {
        ++matches;
        return true;
    });
    EXPECT_EQ(matches, 2);
}

TEST(RegularExpression, EndsWhenToldTo) {
    int matches = 0;
    RegularExpression::make(u".", false)->forEach(u"abcdef", 1s, [&](const RegularExpression::Match&) {
        return ++matches < 2;
    });
    EXPECT_EQ(matches, 2);
}

} // namespace quillary
