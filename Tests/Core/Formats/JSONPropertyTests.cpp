#include "QuillaryCore/Formats/JSONFormatter.h"
#include "QuillaryCore/Formats/JSONParser.h"
#include "QuillaryCore/Formats/JSONTree.h"

#include "Tests/Core/Formats/JSONReference.h"

#include <QDirIterator>
#include <QFile>

#include <gtest/gtest.h>

#include <random>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

std::string parsedOutline(const QByteArray& text) {
    const auto value = JSONParser::parse(text);
    return value ? JSONReference::outline(*value) : value.error().description().toStdString();
}

/// Texts that are nearly JSON: tokens, sound and unsound, put together at random.
class TokenGenerator {
public:
    explicit TokenGenerator(unsigned seed) : m_random(seed) {}

    QByteArray text() {
        QByteArray result = m_random() % 16 == 0 ? "\xEF\xBB\xBF" : "";
        if (m_random() % 2 == 0) {
            appendValue(result, 0);
            damage(result);
        } else {
            const unsigned count = m_random() % 12;
            for (unsigned i = 0; i < count; ++i) {
                result += pick(structure());
            }
        }
        return result;
    }

private:
    using Tokens = std::vector<QByteArray>;

    static const Tokens& structure() {
        static const Tokens tokens = {"{",
                                      "}",
                                      "[",
                                      "]",
                                      ":",
                                      ",",
                                      "\"a\"",
                                      "\"\\u0041\"",
                                      "1",
                                      "-0.5e3",
                                      "true",
                                      "null",
                                      "fals",
                                      " ",
                                      "\n",
                                      "\r\n",
                                      "\"\\u",
                                      "\"\\x\"",
                                      "\xC3\xA0",
                                      "\xFF",
                                      "01",
                                      "\"b\":2",
                                      "\"\\uD83D\\u0041\"",
                                      "-"};
        return tokens;
    }

    static const Tokens& blanks() {
        static const Tokens tokens = {"", "", "", " ", "\n", "\t", "\r\n  ", QByteArray(20, ' ')};
        return tokens;
    }

    static const Tokens& numbers() {
        static const Tokens tokens = {"0",
                                      "-0",
                                      "7",
                                      "1.50",
                                      "-12.25e+10",
                                      "1E-7",
                                      "123456789012345678",
                                      "0.1e1",
                                      "99999999999999999999.000000000001"};
        return tokens;
    }

    static const Tokens& pieces() {
        static const Tokens tokens = {"a",
                                      "chiave",
                                      "\xC3\xA0",
                                      "\xF0\x9F\x91\xA8\xE2\x80\x8D\xF0\x9F\x91\xA9",
                                      "\\n",
                                      "\\\"",
                                      "\\\\",
                                      "\\u00e8",
                                      "\\uD83D",
                                      "\\uDE00",
                                      "\\uD83D\\uDE00",
                                      "\xEF\xBB\xBF",
                                      "e\xCC\x81",
                                      "a longer piece of text that goes beyond a block",
                                      "\xE2\x82",
                                      "\xED\xA0\x80",
                                      "\x7F",
                                      "\\/"};
        return tokens;
    }

    const QByteArray& pick(const Tokens& tokens) { return tokens[m_random() % tokens.size()]; }

    void appendString(QByteArray& result) {
        result += '"';
        for (unsigned i = m_random() % 5; i > 0; --i) {
            result += pick(pieces());
        }
        result += '"';
    }

    void appendContainer(QByteArray& result, int depth, bool isObject) {
        result += isObject ? '{' : '[';
        const unsigned count = m_random() % 5;
        for (unsigned i = 0; i < count; ++i) {
            result += (i > 0 ? "," : "") + pick(blanks());
            if (isObject) {
                appendString(result);
                result += pick(blanks()) + ':' + pick(blanks());
            }
            appendValue(result, depth + 1);
        }
        result += pick(blanks()) + (isObject ? '}' : ']');
    }

    void appendValue(QByteArray& result, int depth) {
        result += pick(blanks());
        switch (m_random() % (depth < 6 ? 8 : 5)) {
        case 0:
            result += "true";
            break;
        case 1:
            result += "false";
            break;
        case 2:
            result += "null";
            break;
        case 3:
            result += pick(numbers());
            break;
        case 4:
            appendString(result);
            break;
        case 5:
            appendContainer(result, depth, false);
            break;
        default:
            appendContainer(result, depth, true);
        }
        result += pick(blanks());
    }

    /// Half of the time, cuts it, or takes out, doubles or changes one byte.
    void damage(QByteArray& result) {
        const qsizetype place = static_cast<qsizetype>(m_random() % static_cast<std::size_t>(result.size()));
        switch (m_random() % 8) {
        case 0:
            result.truncate(place);
            break;
        case 1:
            result.remove(place, 1);
            break;
        case 2:
            result.insert(place, result[place]);
            break;
        case 3:
            result[place] = static_cast<char>(m_random());
            break;
        default:
            break;
        }
    }

    std::mt19937 m_random;
};

class RandomJSON : public testing::TestWithParam<unsigned> {};

TEST_P(RandomJSON, IsReadAsThePlainWay) {
    TokenGenerator generator(GetParam());
    int accepted = 0;
    for (int i = 0; i < 20'000; ++i) {
        const QByteArray text = generator.text();
        const std::string expected = JSONReference::parsed(text.toStdString());
        ASSERT_EQ(parsedOutline(text), expected) << text.toStdString();
        accepted += expected.starts_with("Riga") ? 0 : 1;
    }
    EXPECT_GT(accepted, 4'000);
    EXPECT_LT(accepted, 16'000);
}

TEST_P(RandomJSON, SurvivesBeingWritten) {
    TokenGenerator generator(GetParam());
    for (int i = 0; i < 5'000; ++i) {
        const auto value = JSONParser::parse(generator.text());
        if (!value) {
            continue;
        }
        const QString minified = JSONFormatter::minified(*value);
        const QString pretty = JSONFormatter::prettyPrinted(*value, 2);
        ASSERT_EQ(JSONParser::parse(minified).value(), *value) << minified.toStdString();
        ASSERT_EQ(JSONParser::parse(pretty).value(), *value) << pretty.toStdString();
        ASSERT_EQ(JSONFormatter::minified(JSONParser::parse(pretty).value()), minified);
        ASSERT_EQ(JSONFormatter::prettyPrinted(JSONParser::parse(minified).value(), 2), pretty);
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomJSON, testing::Values(1U, 2U, 3U));

/// Reads the files of a directory, and counts them.
void expectReadAsThePlainWay(const QString& directory, int& files) {
    constexpr int mostFiles = 300;
    constexpr qint64 mostBytes = 20'000'000;
    qint64 bytes = 0;
    QDirIterator names(directory, {u"*.json"_s}, QDir::Files | QDir::NoSymLinks, QDirIterator::Subdirectories);
    while (names.hasNext() && files < mostFiles && bytes < mostBytes) {
        QFile file(names.next());
        if (!file.open(QIODevice::ReadOnly)) {
            continue;
        }
        const QByteArray text = file.read(2'000'000);
        ++files;
        bytes += text.size();
        SCOPED_TRACE(file.fileName().toStdString());
        ASSERT_EQ(parsedOutline(text), JSONReference::parsed(text.toStdString()));
        const auto value = JSONParser::parse(text);
        if (!value) {
            continue;
        }
        ASSERT_EQ(JSONParser::parse(JSONFormatter::minified(*value)).value(), *value);
        ASSERT_EQ(JSONParser::parse(JSONFormatter::prettyPrinted(*value, 2)).value(), *value);
        const auto rows = JSONTree::rows(*value, [](const JSONPath&, qint64) { return true; });
        qsizetype children = 1;
        for (const JSONTreeRow row : rows) {
            children += row.value().childCount();
        }
        ASSERT_EQ(rows.size(), children);
    }
}

TEST(JSONFiles, AreReadAsThePlainWayAndSurviveBeingWritten) {
    int own = 0;
    expectReadAsThePlainWay(QStringLiteral(OWN_JSON_FILES), own);
    EXPECT_GT(own, 10);
    // Whatever the packages on the machine brought, if any: written by many programs, and some of it not JSON at all.
    int others = 0;
    expectReadAsThePlainWay(u"/usr/share"_s, others);
    RecordProperty("files", own + others);
}

} // namespace

} // namespace quillary
