#include "QuillaryCore/Compare/TextDiff.h"
#include "ShortestScriptReference.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

/// Lines of a few words, some of them alike but for a word, some equivalent and not the same, with all line ends.
class RandomTexts {
public:
    explicit RandomTexts(unsigned seed) : m_random(seed) {}

    QString text() {
        QString text;
        for (std::size_t i = m_random() % 30; i > 0; --i) {
            text += line() + m_ends[m_random() % m_ends.size()];
        }
        return m_random() % 2 == 0 ? text : text + line();
    }

    QString line() {
        QString line;
        for (std::size_t i = m_random() % 5; i > 0; --i) {
            line += m_words[m_random() % m_words.size()];
        }
        return line;
    }

private:
    const std::vector<QString> m_ends = {u"\n"_s, u"\n"_s, u"\r\n"_s, u"\r"_s};
    const std::vector<QString> m_words = {u"a"_s,      u" "_s,  u"bc"_s, u"perch\u00E9"_s,   u"perche\u0301"_s,
                                          u" !"_s,     u"\t"_s, u"12"_s, u"\U0001F1EE"_s,    QString(QChar(0xD800)),
                                          u"\u0301"_s, u"_"_s,  u"\r"_s, u"q\u0323\u0307"_s, u"q\u0307\u0323"_s};
    std::mt19937 m_random;
};

std::vector<QString> forms(const QList<QStringView>& lines) {
    std::vector<QString> result;
    for (const QStringView line : lines) {
        result.push_back(canonicalForm(line));
    }
    return result;
}

QString joined(const DiffSegments& segments) {
    QString text;
    for (const DiffSegment& segment : segments) {
        text += segment.text;
    }
    return text;
}

/// Segments are not empty, alternate, and are the line; or one of them is all of it, unmarked.
void expectSegmentsOf(QStringView line, const DiffSegments& segments, DiffRow::Kind kind) {
    ASSERT_EQ(joined(segments), line);
    const bool isWhole = segments.size() == 1 && !segments[0].isChanged;
    ASSERT_TRUE(isWhole || kind == DiffRow::Kind::changed);
    qsizetype start = 0;
    for (qsizetype i = 0; i < segments.size() && !isWhole; ++i) {
        ASSERT_FALSE(segments[i].text.isEmpty());
        ASSERT_TRUE(i == 0 || segments[i].isChanged != segments[i - 1].isChanged);
        ASSERT_EQ(segments.indexAt(start), i);
        start += segments[i].text.size();
        ASSERT_EQ(segments.indexAt(start - 1), i);
    }
}

/// The tokens of a line with the marks of its segments.
struct MarkedTokens {
    MarkedTokens(const QString& line, const QList<DiffSegment>& segments) {
        qsizetype length = 0;
        std::vector<bool> isChangedAt;
        for (const DiffSegment& segment : segments) {
            areSegmentsOfTheLine &= segment.text == QStringView(line).mid(length, segment.text.size());
            length += segment.text.size();
            isChangedAt.resize(static_cast<std::size_t>(length), segment.isChanged);
        }
        areSegmentsOfTheLine &= length == line.size();
        const QList<QStringView> tokens = TextDiff::tokens(line);
        forms = ::forms(tokens);
        std::vector<bool> changed;
        std::size_t start = 0;
        for (const QStringView token : tokens) {
            changed.push_back(isChangedAt.at(start));
            start += static_cast<std::size_t>(token.size());
        }
        unchanged = static_cast<std::size_t>(std::count(changed.begin(), changed.end(), false));
        for (std::size_t i = 1; i + 1 < changed.size(); ++i) {
            if (tokens[static_cast<qsizetype>(i)].front().isSpace() && changed[i - 1] && changed[i + 1]) {
                ++(changed[i] ? blanksInside : blanksBetween);
            }
        }
    }

    bool areSegmentsOfTheLine = true;
    std::vector<QString> forms;
    std::size_t unchanged = 0;
    /// Blanks between two changed tokens: those that are changed too, of themselves or not, and those that are not.
    std::size_t blanksInside = 0;
    std::size_t blanksBetween = 0;
};

} // namespace

TEST(TextDiffProperties, BothTextsComeBackFromTheRowsAndTheScriptIsShortest) {
    for (unsigned seed = 0; seed < 400; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        RandomTexts random(seed);
        const QString oldText = random.text();
        const QString newText = random.text();
        const QList<QStringView> oldLines = TextDiff::lines(oldText);
        const QList<QStringView> newLines = TextDiff::lines(newText);
        const TextDiffResult result = TextDiff::compare(oldText, newText);

        qsizetype oldCount = 0;
        qsizetype newCount = 0;
        std::size_t unchanged = 0;
        for (const DiffRow& row : result.rows) {
            ASSERT_EQ(row.oldSide.has_value(), row.kind != DiffRow::Kind::added);
            ASSERT_EQ(row.newSide.has_value(), row.kind != DiffRow::Kind::removed);
            if (row.oldSide) {
                ASSERT_EQ(row.oldSide->number, oldCount + 1);
                ASSERT_NO_FATAL_FAILURE(expectSegmentsOf(oldLines[oldCount++], row.oldSide->segments, row.kind));
            }
            if (row.newSide) {
                ASSERT_EQ(row.newSide->number, newCount + 1);
                ASSERT_NO_FATAL_FAILURE(expectSegmentsOf(newLines[newCount++], row.newSide->segments, row.kind));
            }
            if (row.kind == DiffRow::Kind::unchanged) {
                ASSERT_TRUE(canonicallyEqual(row.oldSide->segments.line(), row.newSide->segments.line()));
                ++unchanged;
            }
        }
        ASSERT_EQ(oldCount, oldLines.size());
        ASSERT_EQ(newCount, newLines.size());
        ASSERT_EQ(unchanged, longestCommonSubsequence(forms(oldLines), forms(newLines)));
    }
}

TEST(TextDiffProperties, TheScriptAgreesWithTheRows) {
    for (unsigned seed = 1000; seed < 1200; ++seed) {
        RandomTexts random(seed);
        const QString oldText = random.text();
        const QString newText = random.text();
        const QList<QStringView> oldLines = TextDiff::lines(oldText);
        const QList<QStringView> newLines = TextDiff::lines(newText);
        const QList<TextDiff::Operation> script =
            TextDiff::operations({oldLines.constData(), static_cast<std::size_t>(oldLines.size())},
                                 {newLines.constData(), static_cast<std::size_t>(newLines.size())});
        DiffStats lines;
        for (const TextDiff::Operation& operation : script) {
            lines.removed += std::holds_alternative<TextDiff::Removed>(operation) ? 1 : 0;
            lines.added += std::holds_alternative<TextDiff::Added>(operation) ? 1 : 0;
        }
        const DiffStats stats = TextDiff::compare(oldText, newText).stats;
        ASSERT_EQ(lines.removed, stats.removed + stats.changed) << "seed " << seed;
        ASSERT_EQ(lines.added, stats.added + stats.changed) << "seed " << seed;
    }
}

TEST(TextDiffProperties, WordSegmentsKeepALongestCommonSubsequenceOfWords) {
    int marked = 0;
    for (unsigned seed = 0; seed < 600; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        RandomTexts random(seed);
        // A common part, so that the lines are not too different to be marked.
        const QString common = random.line() + random.line();
        const QString oldLine = random.line() + common + random.line();
        const QString newLine = random.line() + common + random.line();
        const TextDiff::WordSegments segments = TextDiff::wordSegments(oldLine, newLine);
        const MarkedTokens oldTokens(oldLine, segments.oldSegments);
        const MarkedTokens newTokens(newLine, segments.newSegments);
        ASSERT_TRUE(oldTokens.areSegmentsOfTheLine && newTokens.areSegmentsOfTheLine);

        const std::size_t most = longestCommonSubsequence(oldTokens.forms, newTokens.forms);
        const auto isWhole = [](const MarkedTokens& side) { return side.unchanged == side.forms.size(); };
        if (isWhole(oldTokens) && isWhole(newTokens) && oldTokens.forms != newTokens.forms) {
            // Without marks: too little in common.
            ASSERT_LT(most, std::max(oldTokens.forms.size(), newTokens.forms.size()));
            continue;
        }
        ++marked;
        for (const MarkedTokens& side : {oldTokens, newTokens}) {
            ASSERT_LE(side.unchanged, most);
            ASSERT_GE(side.unchanged + side.blanksInside, most);
            ASSERT_EQ(side.blanksBetween, 0U);
        }
    }
    EXPECT_GT(marked, 200);
}
