#include "QuillaryCore/Compare/CanonicalNumbers.h"

#include <QStringList>

#include <gtest/gtest.h>

using namespace quillary;
using namespace Qt::StringLiterals;

TEST(CanonicalNumbers, NumbersTextsInTheOrderInWhichTheyCome) {
    CanonicalNumbers numbers(4, true);
    EXPECT_EQ(numbers.add(u"b"), 0);
    EXPECT_EQ(numbers.add(u""), 1);
    EXPECT_EQ(numbers.add(u"b"), 0);
    EXPECT_EQ(numbers.add(u"a"), 2);
    EXPECT_EQ(numbers.count(), 3);
    EXPECT_EQ(numbers.find(u"a"), 2);
    EXPECT_EQ(numbers.find(u"A"), CanonicalNumbers::none);
}

TEST(CanonicalNumbers, GivesEquivalentTextsOneNumber) {
    CanonicalNumbers numbers(4, false);
    EXPECT_EQ(numbers.add(u"perch\u00E9"), 0);
    EXPECT_EQ(numbers.add(u"perche\u0301"), 0);
    EXPECT_EQ(numbers.add(u"perche"), 1);
    EXPECT_EQ(numbers.find(u"perche\u0301"), 0);
    EXPECT_EQ(numbers.find(u"e\u0301"), CanonicalNumbers::none);
    // Marks of different classes in either order, and a letter with a canonical form that is another one.
    EXPECT_EQ(numbers.add(u"q\u0323\u0307"), numbers.add(u"q\u0307\u0323"));
    EXPECT_EQ(numbers.find(u"\u212B"), CanonicalNumbers::none);
}

TEST(CanonicalNumbers, AGuessChangesNoAnswer) {
    CanonicalNumbers numbers(2, false);
    numbers.add(u"a\u0300");
    numbers.add(u"b");
    for (const qint32 guess : {CanonicalNumbers::none, 0, 1, 2}) {
        EXPECT_EQ(numbers.find(u"\u00E0", guess), 0);
        EXPECT_EQ(numbers.find(u"b", guess), 1);
        EXPECT_EQ(numbers.find(u"c", guess), CanonicalNumbers::none);
    }
}

TEST(CanonicalNumbers, KeepsManyTextsApart) {
    QStringList texts;
    for (int i = 0; i < 5000; ++i) {
        texts.append(QString::number(i * 7919));
    }
    CanonicalNumbers numbers(texts.size(), true);
    for (int i = 0; i < texts.size(); ++i) {
        EXPECT_EQ(numbers.add(texts[i]), i);
    }
    for (int i = 0; i < texts.size(); ++i) {
        EXPECT_EQ(numbers.find(QString(texts[i])), i);
    }
}
