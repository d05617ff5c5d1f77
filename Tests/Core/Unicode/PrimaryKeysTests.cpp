#include "QuillaryCore/Unicode/PrimaryKeys.h"

#include "QuillaryCore/Unicode/Icu.h"

#include <QByteArray>

#include <gtest/gtest.h>
#include <unicode/ucol.h>
#include <unicode/uniset.h>
#include <unicode/usetiter.h>

#include <random>
#include <string>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;
using namespace std::string_literals;

std::shared_ptr<const icu::RuleBasedCollator> collator(const QString& locale) {
    UErrorCode status = U_ZERO_ERROR;
    std::shared_ptr<icu::Collator> collator(icu::Collator::createInstance(icu_support::locale(locale), status));
    collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status);
    collator->setStrength(icu::Collator::PRIMARY);
    icu_support::require(status, "open a collator");
    return std::dynamic_pointer_cast<const icu::RuleBasedCollator>(collator);
}

/// A locale's keys beside the comparison whose order they are to have.
class PrimaryOrder {
public:
    explicit PrimaryOrder(const QString& locale) : m_collator(collator(locale)), m_keys(m_collator) {}

    PrimaryKeys& keys() { return m_keys; }

    int ofKeys(QStringView a, QStringView b) {
        const QByteArray keyOfA = key(a);
        const int order = QByteArrayView(keyOfA).compare(key(b));
        return (order > 0) - (order < 0);
    }

    int ofTexts(QStringView a, QStringView b) const {
        UErrorCode status = U_ZERO_ERROR;
        const UCollationResult order =
            m_collator->compare(icu_support::units(a), static_cast<int32_t>(a.size()), icu_support::units(b),
                                static_cast<int32_t>(b.size()), status);
        icu_support::require(status, "compare texts");
        return order;
    }

private:
    QByteArray key(QStringView text) {
        std::vector<char> bytes = {'x'};
        m_keys.append(text, bytes);
        EXPECT_EQ(bytes.front(), 'x') << "what lay before the key is as it was";
        return {bytes.data() + 1, static_cast<qsizetype>(bytes.size() - 1)};
    }

    std::shared_ptr<const icu::RuleBasedCollator> m_collator;
    PrimaryKeys m_keys;
};

QString randomText(const std::u32string& alphabet, int longest, std::mt19937& random) {
    std::uniform_int_distribution<std::size_t> letter(0, alphabet.size() - 1);
    QString text;
    for (int i = std::uniform_int_distribution(0, longest)(random); i > 0; --i) {
        text += QString::fromUcs4(&alphabet[letter(random)], 1);
    }
    return text;
}

} // namespace

TEST(PrimaryKeys, LocalesOfTheRootsOrderNeedNoKeysOfICU) {
    const struct {
        const char* locale;
        bool followsRoot;
    } cases[] = {
        {"it", true},  {"it_CH", true}, {"en_GB", true}, {"de", true},  {"pt_BR", true},
        {"", true},    {"sv", false},   {"cs", false},   {"da", false}, {"en_US_POSIX", false},
        {"ru", false}, {"th", false},   {"el", false},   {"es", false}, {"de@collation=phonebook", false},
    };

    for (const auto& [locale, followsRoot] : cases) {
        EXPECT_EQ(PrimaryKeys(collator(QString::fromLatin1(locale))).followsRoot(), followsRoot) << locale;
    }
}

TEST(PrimaryKeys, HaveTheOrderOfLettersAndNumbers) {
    const struct {
        QString a;
        QString b;
        int order;
    } cases[] = {
        {u""_s, u""_s, 0},
        {u""_s, u"a"_s, -1},
        {u"a"_s, u"aa"_s, -1},
        {u"perch\u00E9"_s, u"PERCHE"_s, 0},
        {u"perch\u00E9"_s, u"perche\u0301"_s, 0},
        {u"stra\u00DFe"_s, u"strasse"_s, 0},
        {u"\u00E6"_s, u"ae"_s, 0},
        {u"\u00AD\u0001"_s, u""_s, 0},
        // A number is of no length: only what it counts decides.
        {u"Nota 2"_s, u"Nota 10"_s, -1},
        {u"Nota 10"_s, u"Nota 00010"_s, 0},
        {u"0"_s, u"000"_s, 0},
        {u"0"_s, u"1"_s, -1},
        {u"9a"_s, u"10"_s, -1},
        {u"1.10"_s, u"1.9"_s, 1},
        {u"99999999999999999999"_s, u"100000000000000000000"_s, -1},
        {u"12"_s, u"\uFF11\uFF12"_s, 0},
        {u"12"_s, u"1\u0662"_s, 0},
        {u"\u0662\u00E9"_s, u"10e"_s, -1},
        {u"\u00BD"_s, u"1"_s, 1},
        {QString(254, u'9'), u'1' + QString(254, u'0'), 1},
        {u'1' + QString(300, u'0'), u'2' + QString(300, u'0'), -1},
        // Signs, numbers, letters of Latin, of other scripts.
        {u"-"_s, u"1"_s, -1},
        {u"$"_s, u"1"_s, -1},
        {u"9"_s, u"a"_s, -1},
        {u"z"_s, u"\u03B1"_s, -1},
        {u"z"_s, u"\u4E00"_s, -1},
        {u"\U0001F600"_s, u"0"_s, -1},
        // With the dot an "l" is another letter, wherever it comes from.
        {u"l\u00B7l"_s, u"ll"_s, 0},
        {u"l\u00B7"_s, u"\u0140"_s, 0},
        // Halves of pairs, as names that are no UTF-8 have them.
        {u"a\xD800"_s, u"a"_s, 1},
        {u"a\xDCFF"_s, u"z"_s, -1},
    };

    PrimaryOrder order(u"it"_s);
    for (const auto& [a, b, expected] : cases) {
        SCOPED_TRACE(QString(a + u" | "_s + b).toStdString());
        EXPECT_EQ(order.ofTexts(a, b), expected);
        EXPECT_EQ(order.ofKeys(a, b), expected);
        EXPECT_EQ(order.ofKeys(b, a), -expected);
    }
}

TEST(PrimaryKeys, AreInTheOrderOfTheComparisonInEveryLocale) {
    std::u32string latin;
    for (char32_t letter = 0x20; letter < 0x180; ++letter) {
        latin += letter;
    }
    const std::u32string alphabets[] = {
        U"abAB 0129",
        U"lL\u00B7\u0140cCzZsShHaA\u030A\u00E5 1",
        U"019\u4E00 a\u0301\u00BD\u00B2\u2170",
        U"\u30AB\u30FC\uFF76\uFF70\u3099\u304B\u0E40\u0E01\u0915\u094D\u0627\u0654\uAC00\u1100 a1",
        U"\u0000\u0001\u00AD\u200D\uFEFF\uFFFE\U0001F600\U0001F3FD\u0301\u0316 a1"s,
        latin,
    };
    std::mt19937 random(11);
    for (const char* const locale : {"it", "en", "sv", "cs", "da", "ja", "th", "ru", "zh", "de@collation=phonebook"}) {
        PrimaryOrder order(QString::fromLatin1(locale));
        for (const std::u32string& alphabet : alphabets) {
            for (int round = 0; round < 2000; ++round) {
                QString a = randomText(alphabet, 6, random);
                const QString b = randomText(alphabet, 6, random);
                if (order.keys().followsRoot()) {
                    // In other orders ICU's comparison does not know such a digit again where the first difference is.
                    a.replace(u'9', u'\uFF19');
                }
                ASSERT_EQ(order.ofKeys(a, b), order.ofTexts(a, b))
                    << locale << ": " << a.toStdString() << " | " << b.toStdString();
            }
        }
    }
}

TEST(PrimaryKeys, LettersOfSeveralUnitsDoNotEndInTheTableOfSingleOnes) {
    UErrorCode status = U_ZERO_ERROR;
    const std::shared_ptr<const icu::RuleBasedCollator> root = collator(u"it"_s);
    icu::UnicodeSet contractions;
    ucol_getContractionsAndExpansions(root->toUCollator(), contractions.toUSet(), nullptr, true, &status);
    icu_support::require(status, "read a collator's letters");
    icu::UnicodeSet table(0, 0x17F);
    table.remove(0xB7).remove(u'0', u'9');
    ASSERT_FALSE(contractions.isEmpty());
    icu::UnicodeSetIterator letters(contractions);
    while (letters.next()) {
        const icu::UnicodeString letter = letters.getString();
        EXPECT_FALSE(table.containsAll(letter)) << icu_support::view(letter).toUtf8().toStdString();
    }
}

} // namespace quillary
