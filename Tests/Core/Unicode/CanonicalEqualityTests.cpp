#include "QuillaryCore/Unicode/CanonicalEquality.h"

#include <gtest/gtest.h>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

struct Pair {
    QString a;
    QString b;
};

const Pair equivalentPairs[] = {
    {u""_s, QString()},
    {u"nota"_s, u"nota"_s},
    {u"perch\u00E9"_s, u"perche\u0301"_s},
    {u"\u212B"_s, u"A\u030A"_s},
    {u"\u037E"_s, u";"_s},
    {u"q\u0323\u0307"_s, u"q\u0307\u0323"_s},
    {u"\uD55C"_s, u"\u1112\u1161\u11AB"_s},
    {u"\uF900"_s, u"\u8C48"_s},
};

const Pair differentPairs[] = {
    {u"nota"_s, u"Nota"_s},
    {u"e"_s, u"\u00E9"_s},
    {u""_s, u"\u0301"_s},
    {u"\uFB01"_s, u"fi"_s},
    {u"q\u0301\u0300"_s, u"q\u0300\u0301"_s},
    {u"a\u00AD"_s, u"a"_s},
};

} // namespace

TEST(CanonicalEquality, OfTheSameCharactersHoweverComposed) {
    for (const auto& [a, b] : equivalentPairs) {
        SCOPED_TRACE(a.toStdString());
        EXPECT_TRUE(canonicallyEqual(a, b));
        EXPECT_TRUE(canonicallyEqual(b, a));
        EXPECT_EQ(canonicalForm(a), canonicalForm(b));
        EXPECT_EQ(CanonicalName(a), CanonicalName(b));
        EXPECT_EQ(qHash(CanonicalName(a)), qHash(CanonicalName(b)));
    }
}

TEST(CanonicalEquality, NotOfCaseLigaturesOrMarksInAnotherOrder) {
    for (const auto& [a, b] : differentPairs) {
        SCOPED_TRACE(a.toStdString());
        EXPECT_FALSE(canonicallyEqual(a, b));
        EXPECT_FALSE(canonicallyEqual(b, a));
        EXPECT_NE(quillary::canonicalForm(a), canonicalForm(b));
        EXPECT_FALSE(CanonicalName(a) == CanonicalName(b));
    }
}

TEST(CanonicalEquality, TheFormIsComposed) {
    EXPECT_EQ(canonicalForm(u"perche\u0301"), u"perch\u00E9");
    EXPECT_EQ(canonicalForm(u"solo ASCII"), u"solo ASCII");
    EXPECT_EQ(canonicalForm({}), QString());
}

TEST(CanonicalEquality, LoneSurrogatesStay) {
    const QString name = u"e\u0301"_s + QChar(0xDC80) + QChar(0xD800);
    EXPECT_EQ(canonicalForm(name), u"\u00E9"_s + QChar(0xDC80) + QChar(0xD800));
    EXPECT_FALSE(canonicallyEqual(QString(QChar(0xDC80)), QString(QChar(0xDC81))));
    EXPECT_TRUE(canonicallyEqual(name, canonicalForm(name)));
}

TEST(CanonicalEquality, AMapByNameFindsEverySpellingAndKeepsTheFirst) {
    QHash<CanonicalName, int> map;
    map.insert(u"caffe\u0300"_s, 1);
    map.insert(u"caff\u00E8"_s, 2);
    EXPECT_EQ(map.size(), 1);
    EXPECT_EQ(map.value(u"caff\u00E8"_s), 2);
    EXPECT_EQ(map.cbegin().key().text(), u"caffe\u0300"_s);
}

TEST(CanonicalEquality, TellsTextsInCanonicalForm) {
    for (const QStringView text : {u"", u"perch\u00E9", u"\u4E2D\u03BB\u1EC7", u"\U0001F600"}) {
        EXPECT_TRUE(isCanonicalForm(text)) << text.toUtf8().constData();
    }
    for (const QStringView text : {u"perche\u0301", u"\u212B", u"q\u0307\u0323"}) {
        EXPECT_FALSE(isCanonicalForm(text)) << text.toUtf8().constData();
        EXPECT_NE(canonicalForm(text), text);
    }
}

} // namespace quillary
