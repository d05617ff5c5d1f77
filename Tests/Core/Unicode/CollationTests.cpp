#include "QuillaryCore/Unicode/Collation.h"

#include "QuillaryCore/Unicode/InterfaceLocale.h"

#include <gtest/gtest.h>

#include <compare>
#include <random>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

int sign(int value) {
    return (value > 0) - (value < 0);
}

int keyOrder(QStringView a, QStringView b, const QString& locale) {
    CollationKeys keys(locale);
    keys.append(a);
    keys.append(b);
    const int order = keys[0] == keys[1] ? localizedStandardCompare(a, b, locale) : keys[0].compare(keys[1]);
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

} // namespace

TEST(Collation, OrdersTitlesAsAPersonWould) {
    const struct {
        QString locale;
        QStringList ascending;
    } cases[] = {
        {u"it"_s, {u"a 2"_s, u"a 10"_s}},
        {u"it"_s, {u"Nota 2"_s, u"Nota 10"_s, u"Nota 010a"_s}},
        {u"it"_s, {u"Cartella 2"_s, u"Cartella 10"_s}},
        {u"it"_s, {u"a9"_s, u"a99999999999999999999999"_s, u"a100000000000000000000000"_s}},
        {u"it"_s, {u""_s, u" "_s, u"_"_s, u"-"_s, u"1"_s, u"a"_s}},
        {u"it"_s, {u"e"_s, u"\u00E8"_s, u"f"_s}},
        {u"it"_s, {u"ea"_s, u"\u00E8b"_s, u"ec"_s}},
        {u"it"_s, {u"nota"_s, u"Nota"_s, u"nota 1"_s}},
        {u"it"_s, {u"A"_s, u"b"_s, u"C"_s}},
        {u"it"_s, {u"a"_s, u"\uFF41"_s, u"b"_s}},
        {u"it"_s, {u"\u00E4"_s, u"z"_s}},
        {u"sv"_s, {u"z"_s, u"\u00E5"_s, u"\u00E4"_s, u"\u00F6"_s}},
        {u"it_CH"_s, {u"Nota 2"_s, u"Nota 10"_s}},
        {u"en_US_POSIX"_s, {u"Nota 2"_s, u"Nota 10"_s}},
    };

    for (const auto& [locale, ascending] : cases) {
        for (qsizetype i = 0; i < ascending.size(); ++i) {
            for (qsizetype j = 0; j < ascending.size(); ++j) {
                SCOPED_TRACE(QString(ascending[i] + u" | "_s + ascending[j] + u" in "_s + locale).toStdString());
                EXPECT_EQ(sign(localizedStandardCompare(ascending[i], ascending[j], locale)),
                          sign(static_cast<int>(i - j)));
                EXPECT_EQ(keyOrder(ascending[i], ascending[j], locale), sign(static_cast<int>(i - j)));
            }
        }
    }
}

TEST(Collation, OnlyCanonicallyEquivalentTextsAreEqual) {
    EXPECT_EQ(localizedStandardCompare(u"perch\u00E9", u"perche\u0301", u"it"_s), 0);
    EXPECT_EQ(keyOrder(u"perch\u00E9", u"perche\u0301", u"it"_s), 0);
    EXPECT_NE(localizedStandardCompare(u"Nota 2", u"Nota 02", u"it"_s), 0);
    EXPECT_NE(localizedStandardCompare(u"a\u0001b", u"ab", u"it"_s), 0);
    EXPECT_EQ(localizedStandardCompare({}, u"", u"it"_s), 0);
    EXPECT_LT(localizedStandardCompare({}, u"a", u"it"_s), 0);
}

TEST(Collation, TheInterfacesLocaleDecidesWhereNoneIsNamed) {
    const QString before = interfaceLocale();
    setInterfaceLocale(u"sv"_s);
    EXPECT_GT(localizedStandardCompare(u"\u00E4", u"z"), 0);
    setInterfaceLocale(u"it"_s);
    EXPECT_LT(localizedStandardCompare(u"\u00E4", u"z"), 0);
    setInterfaceLocale(before);
}

TEST(Collation, AnUnknownLocaleOrdersAsEveryOther) {
    EXPECT_LT(localizedStandardCompare(u"a 2", u"a 10", u"no such locale"_s), 0);
    EXPECT_LT(localizedStandardCompare(u"a 2", u"a 10", QString()), 0);
}

TEST(Collation, KeysAreInTheOrderOfTheComparison) {
    const std::u32string alphabet = U"aAb 019.-_\u00E8\u00C8e\u0300\u00DFs\uFF11\u4E00\U0001F600\u00AD\u0001";
    std::mt19937 random(7);
    std::uniform_int_distribution<std::size_t> letter(0, alphabet.size() - 1);
    std::uniform_int_distribution<int> length(0, 6);
    const auto randomText = [&] {
        QString text;
        for (int i = length(random); i > 0; --i) {
            text += QString::fromUcs4(&alphabet[letter(random)], 1);
        }
        return text;
    };
    for (int round = 0; round < 5000; ++round) {
        const QString a = randomText();
        const QString b = randomText();
        SCOPED_TRACE(QString(a + u" | "_s + b).toStdString());
        ASSERT_EQ(sign(localizedStandardCompare(a, b, u"it"_s)), keyOrder(a, b, u"it"_s));
        ASSERT_EQ(sign(localizedStandardCompare(a, b, u"it"_s)), -sign(localizedStandardCompare(b, a, u"it"_s)));
    }
}

} // namespace quillary
