#include "QuillaryCore/Text/TextStorage.h"

#include <QStringList>

#include <gmock/gmock.h>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

std::string shown(const QString& text) {
    return testing::PrintToString(text.toUtf8().toPercentEncoding().toStdString());
}

/// What a storage announced.
class Announcements {
public:
    explicit Announcements(const TextStorage& storage) {
        QObject::connect(&storage, &TextStorage::changed, &m_context,
                         [this](const TextChange& change) { m_changes.push_back(change); });
    }

    std::vector<TextChange> take() { return std::exchange(m_changes, {}); }

private:
    QObject m_context;
    std::vector<TextChange> m_changes;
};

TEST(TextStorage, SharesTheStringUntilTheFirstEdit) {
    const QString text = u"una riga\r\ne un'altra"_s.repeated(5000);
    const TextStorage storage(text);
    EXPECT_EQ(storage.text().constData(), text.constData());
    storage.lineCount();
    storage.nextCluster(7);
    EXPECT_EQ(storage.text().constData(), text.constData());
    EXPECT_EQ(storage.text({0, text.size()}).constData(), text.constData());
}

TEST(TextStorage, LeavesTheStringOfOthersAlone) {
    const QString text = u"abc"_s.repeated(10'000);
    const QString expected = u"abc"_s.repeated(10'000);
    TextStorage storage(text);
    storage.replace({1, 1}, u"x");
    const QString first = storage.text();
    storage.replace({1, 1}, u"y");
    EXPECT_EQ(text, expected);
    EXPECT_EQ(first, u"axc"_s + text.mid(3));
    EXPECT_EQ(storage.text(), u"ayc"_s + text.mid(3));
}

TEST(TextStorage, CopiesTheWholeOnceAChange) {
    TextStorage storage(u"abc"_s.repeated(10'000));
    storage.replace({0, 0}, u"x");
    const QString whole = storage.text();
    EXPECT_EQ(storage.text().constData(), whole.constData());
    storage.replace({0, 1}, u"");
    EXPECT_EQ(storage.text(), whole.mid(1));
}

TEST(TextStorage, LetsGoOfAStringThatEditsHaveReplaced) {
    // A string that is no literal tells by its reference count who holds it.
    QString text = u"abcd"_s.repeated(100'000);
    TextStorage storage(text);
    EXPECT_FALSE(text.isDetached());
    for (qsizetype offset = 0; offset < text.size() / 4 * 3; offset += 1000) {
        storage.replace({offset, 1}, u"x");
    }
    EXPECT_TRUE(text.isDetached());
    storage.setText({});
    EXPECT_TRUE(storage.equals(u""));
}

TEST(TextStorage, HoldsOnToTheStringThatItGave) {
    TextStorage storage(u"abcd"_s.repeated(100'000));
    for (qsizetype offset = 0; offset < storage.length(); offset += 1000) {
        storage.replace({offset, 1}, u"x");
    }
    QString text = storage.text();
    storage.replace({0, 1}, u"y");
    EXPECT_FALSE(text.isDetached());
}

TEST(TextStorage, GivesBackTheRoomThatADecoderReserved) {
    QString text = u"testo"_s;
    text.reserve(1'000'000);
    const TextStorage storage(std::move(text));
    EXPECT_LT(storage.text().capacity(), 1000);
}

TEST(TextStorage, KeepsEveryUnitAsItIs) {
    const QString text = u"\uFEFFa\0b\u00A0\uFFFC\uFEFF\r\n\r\u2028e\u0301\U0001F469\u200D\U0001F469"_s +
                         QChar(0xFDD0) + QChar(0xFDD1) + QChar(0xFFFF) + QChar(0xD800);
    TextStorage storage(text);
    storage.replace({1, 0}, u"x");
    QString expected = text;
    EXPECT_EQ(storage.text(), expected.insert(1, u'x'));
}

struct LineCase {
    QString text;
    std::vector<QString> lines;
};

TEST(TextStorage, CountsOneLineMoreThanTerminators) {
    const LineCase cases[] = {
        {u""_s, {u""_s}},
        {u"a"_s, {u"a"_s}},
        {u"\n"_s, {u"\n"_s, u""_s}},
        {u"a\r\nb"_s, {u"a\r\n"_s, u"b"_s}},
        {u"a\n\rb"_s, {u"a\n"_s, u"\r"_s, u"b"_s}},
        {u"\r\r\n\n"_s, {u"\r"_s, u"\r\n"_s, u"\n"_s, u""_s}},
        {u"a\u2028b\u2029c\u0085d\ve\ff"_s, {u"a\u2028"_s, u"b\u2029"_s, u"c\u0085"_s, u"d\v"_s, u"e\f"_s, u"f"_s}},
        {u"\t\u00A0\u001C\u001D\u001E"_s, {u"\t\u00A0\u001C\u001D\u001E"_s}},
    };
    for (const auto& [text, lines] : cases) {
        const TextStorage storage(text);
        ASSERT_EQ(storage.lineCount(), static_cast<qsizetype>(lines.size())) << shown(text);
        qsizetype offset = 0;
        for (qsizetype line = 0; line < storage.lineCount(); ++line) {
            const QString& expected = lines[static_cast<std::size_t>(line)];
            EXPECT_EQ(storage.lineRange(line), (TextRange{offset, expected.size()})) << shown(text);
            for (qsizetype i = 0; i < expected.size(); ++i) {
                EXPECT_EQ(storage.lineAt(offset + i), line) << shown(text);
            }
            offset += expected.size();
        }
        EXPECT_EQ(storage.lineAt(offset), storage.lineCount() - 1) << shown(text);
    }
}

TEST(TextStorage, GivesALineWithoutItsTerminator) {
    const TextStorage storage(u"uno\r\ndue\rtre\u2029\n\r\n"_s);
    const QStringList contents = {u"uno"_s, u"due"_s, u"tre"_s, u""_s, u""_s, u""_s};
    ASSERT_EQ(storage.lineCount(), contents.size());
    for (qsizetype line = 0; line < contents.size(); ++line) {
        EXPECT_EQ(storage.text(storage.lineContents(line)), contents[line]);
    }
}

TEST(TextStorage, JoinsAndPartsCrLf) {
    TextStorage storage(u"a\r"_s);
    EXPECT_EQ(storage.lineCount(), 2);
    storage.replace({2, 0}, u"\nb");
    EXPECT_EQ(storage.lineCount(), 2);
    EXPECT_EQ(storage.lineAt(2), 0);
    storage.replace({2, 0}, u"x");
    EXPECT_EQ(storage.lineCount(), 3);
    storage.replace({2, 1}, u"");
    EXPECT_EQ(storage.lineCount(), 2);
    storage.replace({1, 1}, u"");
    EXPECT_EQ(storage.lineRange(0), (TextRange{0, 2}));
}

TEST(TextStorage, NeverTearsCrLfOrAPairApartBetweenPages) {
    for (const QString& pair : {u"\r\n"_s, u"\U0001F600"_s}) {
        for (qsizetype shift = 0; shift < 9; ++shift) {
            TextStorage storage(QString(shift, u'a') + pair.repeated(200), 8);
            storage.replace({storage.length(), 0}, pair.repeated(50));
            storage.replace({shift, 0}, pair.repeated(50));
            for (qsizetype offset = shift; offset < storage.length(); offset += 2) {
                EXPECT_GE(storage.chunkAt(offset).size(), 2);
                EXPECT_EQ(storage.nextCluster(offset), offset + 2);
            }
            EXPECT_EQ(storage.lineCount(), pair == u"\r\n"_s ? 301 : 1);
        }
    }
}

struct EnterCase {
    QString text;
    qsizetype offset;
    QString terminator;
};

TEST(TextStorage, GivesEnterTheTerminatorOfItsOwnLine) {
    const EnterCase cases[] = {
        {u""_s, 0, u"\n"_s},
        {u"una riga"_s, 3, u"\n"_s},
        {u"a\r\nb\nc"_s, 0, u"\r\n"_s},
        {u"a\r\nb\nc"_s, 1, u"\r\n"_s},
        {u"a\r\nb\nc"_s, 2, u"\r\n"_s},
        {u"a\r\nb\nc"_s, 3, u"\n"_s},
        {u"a\nb\r\nc"_s, 5, u"\r\n"_s},
        {u"a\nb\r\n"_s, 5, u"\r\n"_s},
        {u"a\nb\r"_s, 4, u"\r"_s},
        {u"a\u2028b"_s, 3, u"\u2028"_s},
        {u"a\u2029b\n"_s, 1, u"\u2029"_s},
        {u"a\u0085"_s, 2, u"\u0085"_s},
        {u"a\vb\fc"_s, 3, u"\f"_s},
        {u"a\vb\fc"_s, 0, u"\v"_s},
    };
    for (const auto& [text, offset, terminator] : cases) {
        EXPECT_EQ(TextStorage(text).terminatorForNewLineAt(offset), terminator) << shown(text) << offset;
    }
}

TEST(TextStorage, PutsTheReplacementCharacterForLoneSurrogates) {
    const QChar high(0xD83D);
    const QChar low(0xDE00);
    const QChar scattered[] = {low, high, low, high};
    TextStorage storage(u"ab"_s);
    storage.replace({1, 0}, QString(high));
    EXPECT_EQ(storage.text(), u"a\uFFFDb"_s);
    storage.replace({1, 1}, QString(scattered, 4));
    EXPECT_EQ(storage.text(), u"a\uFFFD\U0001F600\uFFFDb"_s);
    const TextReplacement replacements[] = {{{0, 1}, QString(low)}, {{1, 1}, QString(high)}, {{5, 1}, u"c"_s}};
    storage.replaceAll(replacements);
    EXPECT_EQ(storage.text(), u"\uFFFD\uFFFD\U0001F600\uFFFDc"_s);
}

TEST(TextStorage, ReplacesByAPartOfItself) {
    for (const qsizetype at : {qsizetype(0), qsizetype(3), qsizetype(40), qsizetype(99)}) {
        for (const qsizetype from : {qsizetype(0), qsizetype(50), qsizetype(96)}) {
            TextStorage storage(u"0123456789"_s.repeated(10), 32);
            storage.replace({2, 1}, u"x");
            QString expected = storage.text({0, 100});
            const QStringView part = storage.chunkAt(from);
            expected.replace(at, 1, part.toString());
            storage.replace({at, 1}, part);
            EXPECT_EQ(storage.text(), expected) << at << ' ' << from;
        }
    }
}

TEST(TextStorage, AnnouncesWhatItReplaced) {
    TextStorage storage(u"uno due tre"_s);
    Announcements announcements(storage);
    storage.replace({4, 3}, u"quattro");
    EXPECT_THAT(announcements.take(), testing::ElementsAre(TextChange{4, 3, 7}));
    storage.replace({0, 0}, u"");
    EXPECT_THAT(announcements.take(), testing::IsEmpty());
    storage.setText(u"altro"_s);
    EXPECT_THAT(announcements.take(), testing::ElementsAre(TextChange{0, 15, 5}));
    storage.setText(u""_s);
    storage.setText(u""_s);
    EXPECT_THAT(announcements.take(), testing::ElementsAre(TextChange{0, 5, 0}));
}

TEST(TextStorage, HasTheNewTextWhenItAnnouncesIt) {
    TextStorage storage(u"a\nb"_s);
    QString seen;
    qsizetype lines = 0;
    QObject::connect(&storage, &TextStorage::changed, &storage, [&] {
        seen = storage.text();
        lines = storage.lineCount();
    });
    storage.replace({1, 1}, u"\r\n\r\n");
    EXPECT_EQ(seen, u"a\r\n\r\nb"_s);
    EXPECT_EQ(lines, 3);
}

TEST(TextStorage, HasTheOldTextWhenItAnnouncesAChangeToCome) {
    TextStorage storage(u"abc"_s);
    QStringList seen;
    QObject::connect(&storage, &TextStorage::aboutToChange, &storage, [&] { seen.append(storage.text()); });
    storage.replace({1, 1}, u"xy");
    storage.replace({1, 0}, u"");
    storage.beginEditing();
    storage.replace({0, 1}, u"");
    storage.replace({0, 1}, u"z");
    storage.endEditing();
    storage.setText(u"altro"_s);
    EXPECT_EQ(seen, QStringList({u"abc"_s, u"axyc"_s, u"xyc"_s, u"zyc"_s}));
}

TEST(TextStorage, AnnouncesABracketAsTheSmallestCoveringChange) {
    struct Case {
        std::vector<TextReplacement> edits;
        TextChange change;
    };

    const Case cases[] = {
        {{{{2, 3}, u"x"_s}}, {2, 3, 1}},
        {{{{2, 0}, u"ab"_s}, {{4, 0}, u"cd"_s}}, {2, 0, 4}},
        {{{{8, 1}, u""_s}, {{1, 1}, u"xyz"_s}}, {1, 8, 9}},
        {{{{1, 1}, u"xyz"_s}, {{9, 2}, u""_s}}, {1, 8, 8}},
        {{{{2, 0}, u"abc"_s}, {{2, 3}, u""_s}}, {2, 0, 0}},
        {{{{5, 0}, u"ab"_s}, {{3, 6}, u""_s}}, {3, 4, 0}},
        {{{{0, 10}, u""_s}, {{0, 0}, u"nuovo"_s}}, {0, 10, 5}},
    };
    for (const auto& [edits, change] : cases) {
        TextStorage storage(u"0123456789"_s);
        Announcements announcements(storage);
        storage.beginEditing();
        for (const auto& [range, text] : edits) {
            storage.beginEditing();
            storage.replace(range, text);
            storage.endEditing();
        }
        EXPECT_THAT(announcements.take(), testing::IsEmpty());
        storage.endEditing();
        EXPECT_THAT(announcements.take(), testing::ElementsAre(change));
        storage.beginEditing();
        storage.endEditing();
        EXPECT_THAT(announcements.take(), testing::IsEmpty());
    }
}

TEST(TextStorage, TellsTheStepsOfAChangeWhileItIsAnnounced) {
    TextStorage storage(u"0123456789"_s);
    std::vector<TextChange> steps;
    QObject::connect(&storage, &TextStorage::changed, &storage,
                     [&] { steps.assign(storage.steps().begin(), storage.steps().end()); });
    storage.replace({3, 1}, u"abc");
    EXPECT_THAT(steps, testing::ElementsAre(TextChange{3, 1, 3}));
    EXPECT_TRUE(storage.steps().empty());
    const TextReplacement replacements[] = {{{0, 1}, u""_s}, {{5, 0}, u"xy"_s}, {{7, 2}, u"z"_s}};
    storage.replaceAll(replacements);
    EXPECT_THAT(steps, testing::ElementsAre(TextChange{0, 1, 0}, TextChange{4, 0, 2}, TextChange{8, 2, 1}));
    storage.beginEditing();
    storage.replace({5, 1}, u"");
    storage.replace({1, 0}, u"--");
    EXPECT_TRUE(storage.steps().empty());
    storage.endEditing();
    EXPECT_THAT(steps, testing::ElementsAre(TextChange{5, 1, 0}, TextChange{1, 0, 2}));
    storage.setText(u"altro"_s);
    EXPECT_THAT(steps, testing::ElementsAre(TextChange{0, 13, 5}));
}

TEST(TextStorage, RaisesItsRevisionWithEachChange) {
    TextStorage storage(u"abc"_s);
    const qint64 first = storage.revision();
    storage.replace({0, 0}, u"");
    EXPECT_EQ(storage.revision(), first);
    storage.beginEditing();
    storage.replace({0, 1}, u"x");
    EXPECT_GT(storage.revision(), first);
    storage.endEditing();
    const qint64 second = storage.revision();
    storage.setText(u"abc"_s);
    EXPECT_GT(storage.revision(), second);
}

TEST(TextStorage, ReplacesManyRangesAsOneChange) {
    for (const qsizetype pageUnits : {8, 64, 16'384}) {
        TextStorage storage(u"0123456789"_s, pageUnits);
        Announcements announcements(storage);
        const TextReplacement replacements[] = {
            {{1, 1}, u"uno"_s}, {{2, 0}, u"-"_s}, {{5, 0}, u""_s}, {{6, 3}, u""_s}, {{9, 1}, u"\U0001F600"_s}};
        storage.replaceAll(replacements);
        EXPECT_EQ(storage.text(), u"0uno-2345\U0001F600"_s);
        EXPECT_THAT(announcements.take(), testing::ElementsAre(TextChange{1, 9, 10}));
        storage.replaceAll({});
        EXPECT_THAT(announcements.take(), testing::IsEmpty());
    }
}

TEST(TextStorage, ReplacesTenThousandRangesInALargeText) {
    const QString block = u"parola e parola;\r\n"_s;
    TextStorage storage(block.repeated(10'000));
    std::vector<TextReplacement> replacements;
    for (qsizetype i = 0; i < 10'000; ++i) {
        replacements.push_back({{i * block.size() + 9, 6}, u"altro testo"_s});
    }
    storage.replaceAll(replacements);
    EXPECT_EQ(storage.text(), u"parola e altro testo;\r\n"_s.repeated(10'000));
    EXPECT_EQ(storage.lineCount(), 10'001);
    EXPECT_EQ(storage.lineRange(9'999), (TextRange{9'999 * 23, 23}));
}

TEST(TextStorage, IsEqualUnitByUnitOnly) {
    TextStorage storage(u"cittae\u0301"_s, 8);
    EXPECT_TRUE(storage.equals(u"cittae\u0301"));
    EXPECT_FALSE(storage.equals(u"citta\u00E9"));
    EXPECT_FALSE(storage.equals(u"cittae"));
    storage.replace({0, 0}, u"una bella ");
    EXPECT_TRUE(storage.equals(u"una bella cittae\u0301"));
    EXPECT_FALSE(storage.equals(u"una bella cittae\u0300"));
    EXPECT_FALSE(storage.equals(u"Una bella cittae\u0301"));
}

} // namespace

} // namespace quillary
