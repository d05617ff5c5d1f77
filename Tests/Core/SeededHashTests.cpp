#include "QuillaryCore/SeededHash.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <array>
#include <set>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

/// Texts of every length up to some steps, each with every single unit changed in its lowest and its highest bit.
QStringList nearTexts() {
    QStringList texts;
    for (qsizetype size = 0; size <= 40; ++size) {
        const QString text(size, u'a');
        texts.append(text);
        for (qsizetype i = 0; i < size; ++i) {
            for (const char16_t bit : {u'\x0001', u'\x8000'}) {
                QString other = text;
                other[i] = QChar(other[i].unicode() ^ bit);
                texts.append(other);
            }
        }
    }
    return texts;
}

} // namespace

TEST(SeededHash, TellsNearTextsApart) {
    const SeededHash hash(1);
    const QStringList texts = nearTexts();
    std::set<quint64> hashes;
    std::set<quint32> highHalves;
    for (const QString& text : texts) {
        hashes.insert(hash(text));
        highHalves.insert(static_cast<quint32>(hash(text) >> 32));
    }
    EXPECT_EQ(hashes.size(), static_cast<std::size_t>(texts.size()));
    EXPECT_EQ(highHalves.size(), static_cast<std::size_t>(texts.size()));
}

TEST(SeededHash, TellsNearNamesApart) {
    const SeededHash hash(1);
    std::set<quint64> hashes;
    std::size_t names = 0;
    for (qsizetype size = 0; size <= 40; ++size) {
        const QByteArray name(size, 'a');
        hashes.insert(hash(name));
        ++names;
        for (qsizetype i = 0; i < size; ++i) {
            QByteArray other = name;
            other[i] = 'b';
            hashes.insert(hash(other));
            ++names;
        }
    }
    EXPECT_EQ(hashes.size(), names);
}

TEST(SeededHash, IsTheSameWhereverTheTextLies) {
    const SeededHash hash(1);
    const QString text = u"Una riga di testo, perch\u00E9 no"_s;
    for (qsizetype size = 0; size <= text.size(); ++size) {
        const quint64 expected = hash(QStringView(text).first(size));
        for (qsizetype offset = 0; offset < 8; ++offset) {
            // What stands before and behind it is another text each time.
            const QString around = QString(offset, u'x') + text.first(size) + QString(9 - offset, u'y');
            EXPECT_EQ(hash(QStringView(around).sliced(offset, size)), expected) << size << ' ' << offset;
        }
    }
}

TEST(SeededHash, SpreadsOverTheLowBits) {
    constexpr std::size_t buckets = 256;
    constexpr int texts = 100 * buckets;
    std::array<int, buckets> counts{};
    const SeededHash hash(1);
    for (int i = 0; i < texts; ++i) {
        ++counts[hash(QString::number(i)) % buckets];
    }
    // Ten standard deviations from the hundred that each would have.
    for (const int count : counts) {
        EXPECT_GT(count, 0);
        EXPECT_LT(count, 200);
    }
}

TEST(SeededHash, AnotherSeedGivesOtherHashes) {
    const QStringList texts = nearTexts();
    for (const QString& text : texts) {
        EXPECT_NE(SeededHash(1)(text), SeededHash(2)(text));
        EXPECT_NE(SeededHash(0)(text), SeededHash(1)(text));
    }
}

TEST(SeededHash, NoBlockHidesTheOthers) {
    // A block that is known to make a product zero would give all texts with it one hash.
    const auto blockOf = [](quint64 bits) {
        QString block;
        for (int shift = 0; shift < 64; shift += 16) {
            block += QChar(static_cast<char16_t>(bits >> shift));
        }
        return block;
    };
    for (const quint64 seed : {0ULL, 1ULL, 0ULL - 0x9E37'79B9'7F4A'7C15ULL, ~0ULL}) {
        const SeededHash hash(seed);
        for (const quint64 bits :
             {0ULL, 1ULL, 0x9E37'79B9'7F4A'7C15ULL, 0xBF58'476D'1CE4'E5B9ULL, 0x94D0'49BB'1331'11EBULL, ~0ULL}) {
            const QString block = blockOf(bits);
            for (const char16_t unit : {u'a', u'\0'}) {
                const QString other(4, QChar(unit));
                const auto hashBetween = [&](char16_t before, const QString& first, const QString& second) {
                    const QString text = QString(8, QChar(before)) + first + second + u"z";
                    return hash(text);
                };
                EXPECT_NE(hashBetween(u'1', block, other), hashBetween(u'2', block, other));
                EXPECT_NE(hashBetween(u'1', other, block), hashBetween(u'2', other, block));
                EXPECT_NE(hashBetween(u'1', block, block), hashBetween(u'2', block, block));
            }
        }
    }
}
