#include "Quillary/Editor/TextMotion.h"

#include <gtest/gtest.h>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

TEST(TextMotion, WordsArePunctuationOrAnythingElseWithTheBlanksBehind) {
    const TextStorage text(u"uno  due(tre) \nx"_s);
    const QList<qsizetype> stops = {0, 5, 8, 9, 12, 14, 15, 16};
    for (qsizetype i = 0; i + 1 < stops.size(); ++i) {
        EXPECT_EQ(TextMotion::nextWord(text, stops[i]), stops[i + 1]);
    }
    EXPECT_EQ(TextMotion::nextWord(text, 16), 16);
    const QList<qsizetype> back = {16, 15, 14, 12, 9, 8, 5, 0};
    for (qsizetype i = 0; i + 1 < back.size(); ++i) {
        EXPECT_EQ(TextMotion::previousWord(text, back[i]), back[i + 1]);
    }
    EXPECT_EQ(TextMotion::previousWord(text, 0), 0);
}

TEST(TextMotion, LinesOfEveryKindAreCrossedWhole) {
    for (const QString& terminator : {u"\r\n"_s, u"\r"_s, u"\u2028"_s, u"\u0085"_s, u"\f"_s}) {
        const TextStorage text(u"a"_s + terminator + u"b"_s);
        EXPECT_EQ(TextMotion::nextWord(text, 1), 1 + terminator.size());
        EXPECT_EQ(TextMotion::previousWord(text, 1 + terminator.size()), 1);
    }
}

TEST(TextMotion, NoResultLiesInACluster) {
    // The blank carries an accent, and so does the full stop.
    const TextStorage text(u"a \u0301b .\u0301c"_s);
    for (qsizetype position = 0; position <= text.length(); ++position) {
        const qsizetype from = text.clusterBoundaryAtOrBefore(position);
        for (const qsizetype stop : {TextMotion::nextWord(text, from), TextMotion::previousWord(text, from),
                                     TextMotion::wordAt(text, from).location, TextMotion::wordAt(text, from).end()}) {
            EXPECT_EQ(text.clusterBoundaryAtOrBefore(stop), stop);
        }
    }
}

TEST(TextMotion, TheWordAtAPosition) {
    const TextStorage text(u"uno due.\n\ntre"_s);
    EXPECT_EQ(TextMotion::wordAt(text, 0), (TextRange{0, 3}));
    EXPECT_EQ(TextMotion::wordAt(text, 5), (TextRange{4, 3}));
    EXPECT_EQ(TextMotion::wordAt(text, 7), (TextRange{7, 1}));
    EXPECT_EQ(TextMotion::wordAt(text, 9), (TextRange{9, 0}));
    EXPECT_EQ(TextMotion::wordAt(text, 13), (TextRange{10, 3}));
}

} // namespace

} // namespace quillary
