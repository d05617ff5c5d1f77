#include "QuillaryCore/Notes/FileName.h"

#include "QuillaryCore/Platform/FilePath.h"
#include "QuillaryCore/Unicode/GraphemeClusters.h"

#include <gtest/gtest.h>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

TEST(FileName, NumbersFromTheSecondOn) {
    EXPECT_EQ(numberedFileName(u"Nota"_s, 1, u".md"), u"Nota.md"_s);
    EXPECT_EQ(numberedFileName(u"Nota"_s, 2, u".md"), u"Nota 2.md"_s);
    EXPECT_EQ(numberedFileName(u"Nota"_s, 1'000'000'000'000, u".md"), u"Nota 1000000000000.md"_s);
    EXPECT_EQ(numberedFileName(u"Nuova cartella"_s, 3, u""), u"Nuova cartella 3"_s);
}

TEST(FileName, CutsABaseThatIsTooLongBetweenCharacters) {
    const QString family = u"👨‍👩‍👧‍👦"_s; // 25 bytes
    const QString zalgo = u'a' + QString(10, QChar(0x0301));
    const std::pair<QString, qint64> cases[] = {
        {QString(120, u'x'), 1},    {family.repeated(120), 1},       {family.repeated(120), 2},
        {u"漢"_s.repeated(120), 1}, {u"漢"_s.repeated(120), 12},     {u"xè"_s.repeated(60), 1},
        {zalgo.repeated(120), 1},   {u"e\u0300"_s.repeated(120), 7}, {QString(252, u'x'), 1},
        {QString(253, u'x'), 1},    {u"a "_s.repeated(200), 1},
    };
    for (const auto& [base, number] : cases) {
        const QString name = numberedFileName(base, number, u".md");
        const QString tail = number > 1 ? u" %1.md"_s.arg(number) : u".md"_s;
        ASSERT_TRUE(name.endsWith(tail)) << name.toStdString();
        const QString kept = name.chopped(tail.size());
        EXPECT_TRUE(base.startsWith(kept));
        EXPECT_FALSE(kept.isEmpty());
        EXPECT_FALSE(kept.endsWith(u' '));
        EXPECT_TRUE(isClusterBoundary(base, kept.size()));
        const qsizetype bytes = FilePath::bytesFromText(name).size();
        EXPECT_LE(bytes, 255);
        const qsizetype next = nextClusterBoundary(base, kept.size());
        if (kept.size() < base.size() && !base[kept.size()].isSpace()) {
            const qsizetype more =
                FilePath::bytesFromText(QStringView(base).sliced(kept.size(), next - kept.size())).size();
            EXPECT_GT(bytes + more, 255) << "no more is cut than must be";
        }
    }
}

TEST(FileName, CutsWithinACharacterThatIsLongerThanAName) {
    const QString monster = u'a' + QString(400, QChar(0x0301));
    const QString name = numberedFileName(monster, 2, u".md");
    EXPECT_EQ(FilePath::bytesFromText(name).size(), 254) << "124 marks of two bytes, and a letter";
    EXPECT_TRUE(name.startsWith(u"a\u0301"_s));
    EXPECT_TRUE(name.endsWith(u" 2.md"_s));
    const QString marks = u"😀"_s + QString(400, QChar(0x0301));
    EXPECT_TRUE(numberedFileName(marks, 1, u".md").startsWith(u"😀\u0301"_s));
}

TEST(FileName, CountsABytesOwnFormAsOneByte) {
    const QString name = FilePath::textFromBytes(QByteArray(252, '\xE8'));
    EXPECT_EQ(FilePath::bytesFromText(numberedFileName(name, 1, u".md")), QByteArray(252, '\xE8') + ".md");
    EXPECT_EQ(FilePath::bytesFromText(numberedFileName(name, 2, u".md")), QByteArray(250, '\xE8') + " 2.md");
}

} // namespace

} // namespace quillary
