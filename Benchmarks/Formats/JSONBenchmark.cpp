#include "PeerTable.h"
#include "QuillaryCore/Formats/JSONFormatter.h"
#include "QuillaryCore/Formats/JSONParser.h"
#include "QuillaryCore/Formats/JSONTree.h"

#include <malloc.h>
#include <random>
#include <rapidjson/document.h>

/// Reading JSON into a full value beside RapidJSON, which is told to keep numbers as text and to check its UTF-8 as we
/// do, and then what the peer has no like of.

namespace {

using namespace quillary;

constexpr qsizetype megabyte = 1'000'000;

/// Texts of one kind, the same in every run.
class TextMaker {
public:
    QByteArray mixed(qsizetype size, bool isPretty) {
        QByteArray text = "[";
        const QByteArray lineBreak = isPretty ? "\n    " : "";
        const QByteArray colon = isPretty ? ": " : ":";
        while (text.size() < size) {
            text += (text.size() > 1 ? "," : "") + QByteArray(isPretty ? "\n  " : "") + '{';
            const auto member = [&](const char* name, const QByteArray& value, bool isLast = false) {
                text += lineBreak + '"' + name + '"' + colon + value + (isLast ? "" : ",");
            };
            member("id", QByteArray::number(m_random() % 1'000'000));
            member("name", quoted(words(2 + m_random() % 3)));
            member("email", quoted(words(1) + "@example.org"));
            member("active", m_random() % 2 == 0 ? "true" : "false");
            member("balance", real());
            member("tags", '[' + quoted(words(1)) + (isPretty ? ", " : ",") + quoted(words(1)) + ']');
            member("parent", "null");
            member("place", "{\"lat\"" + colon + real() + (isPretty ? ", " : ",") + "\"lon\"" + colon + real() + '}');
            const QByteArray escapes = m_random() % 4 == 0 ? "\\n\\\"citt\xC3\xA0\\\"" : "";
            member("note", quoted(words(8 + m_random() % 12) + escapes), true);
            text += (isPretty ? "\n  }" : "}");
        }
        return text + (isPretty ? "\n]\n" : "]");
    }

    QByteArray numbers(qsizetype size) {
        QByteArray text = "[";
        while (text.size() < size) {
            text += m_random() % 2 == 0 ? QByteArray::number(m_random() % 100'000) : real();
            text += ',';
        }
        return text + "0]";
    }

    QByteArray strings(qsizetype size) {
        QByteArray text = "[";
        while (text.size() < size) {
            text += quoted(words(1 + m_random() % 20)) + ',';
        }
        return text + "\"\"]";
    }

private:
    static QByteArray quoted(const QByteArray& text) { return '"' + text + '"'; }

    QByteArray words(std::size_t count) {
        static const std::vector<QByteArray> known = {"nota",       "lavoro",        "citt\xC3\xA0", "domani",  "un",
                                                      "appunto",    "perch\xC3\xA9", "riga",         "di",      "testo",
                                                      "lunga",      "idea",          "casa",         "elenco",  "spesa",
                                                      "pi\xC3\xB9", "tempo",         "riunione",     "archivio"};
        QByteArray text;
        for (std::size_t i = 0; i < count; ++i) {
            text += (i > 0 ? " " : "") + known[m_random() % known.size()];
        }
        return text;
    }

    QByteArray real() {
        return QByteArray::number(static_cast<double>(m_random()) / 1e6 - 2000, 'f',
                                  1 + static_cast<int>(m_random() % 8));
    }

    std::mt19937 m_random;
};

void compareParsing(const char* task, const QByteArray& text) {
    compareWithPeer(
        task, "RapidJSON, number texts, UTF-8 checked", 0.5, 1.0,
        [&] {
            const auto value = JSONParser::parse(text);
            keep(value.hasValue());
        },
        [&] {
            rapidjson::Document document;
            document.Parse<rapidjson::kParseNumbersAsStringsFlag | rapidjson::kParseValidateEncodingFlag>(
                text.constData(), static_cast<std::size_t>(text.size()));
            keep(document.HasParseError());
        });
}

std::size_t heldBytes() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

void printMemory(const QByteArray& text) {
    const std::size_t before = heldBytes();
    const auto value = JSONParser::parse(text);
    const std::size_t own = heldBytes() - before + static_cast<std::size_t>(text.size());
    const std::size_t peerBefore = heldBytes();
    rapidjson::Document document;
    document.Parse<rapidjson::kParseNumbersAsStringsFlag | rapidjson::kParseValidateEncodingFlag>(
        text.constData(), static_cast<std::size_t>(text.size()));
    const std::size_t peer = heldBytes() - peerBefore;
    keep(value.hasValue());
    const double size = static_cast<double>(text.size());
    reportRatio("Memory of 30 MB mixed, pretty, parsed", static_cast<double>(own) / 1e6, "MB",
                "RapidJSON, its copy of the strings", static_cast<double>(peer) / 1e6, unbounded, unbounded);
    reportFigure("The same, the text counted in", static_cast<double>(own) / size, "times the text", 2);
}

} // namespace

int main() {
    TextMaker maker;
    const QByteArray mixed = maker.mixed(megabyte, true);
    const QByteArray big = maker.mixed(30 * megabyte, true);
    compareParsing("Parse 1 MB mixed, pretty", mixed);
    compareParsing("Parse 1 MB mixed, minified", maker.mixed(megabyte, false));
    compareParsing("Parse 1 MB of numbers", maker.numbers(megabyte));
    compareParsing("Parse 1 MB of strings", maker.strings(megabyte));
    compareParsing("Parse 30 MB mixed, pretty", big);
    printMemory(big);

    const QString text = QString::fromUtf8(mixed);
    const JSONValue value = JSONParser::parse(mixed).value();
    measureAlone("Parse 1 MB mixed from UTF-16", unbounded, [&] { keep(JSONParser::parse(text).hasValue()); });
    measureAlone("Pretty-print 1 MB mixed", unbounded, [&] { keep(JSONFormatter::prettyPrinted(value, 2).size()); });
    measureAlone("Minify 1 MB mixed", unbounded, [&] { keep(JSONFormatter::minified(value).size()); });
    measureAlone("All rows of 1 MB mixed", unbounded,
                 [&] { keep(JSONTree::rows(value, [](const JSONPath&, qint64) { return true; }).size()); });
    const JSONValue flat = JSONParser::parse("[" + QByteArray("[],").repeated(333'332) + "[]]").value();
    measureAlone("All rows of 1,000,000 units of empty arrays", unbounded,
                 [&] { keep(JSONTree::rows(flat, [](const JSONPath&, qint64) { return true; }).size()); });
    const QByteArray nest = QByteArray(90, '[') + QByteArray(90, ']');
    const JSONValue nests = JSONParser::parse("[" + QByteArray(nest + ',').repeated(5'500) + "[]]").value();
    measureAlone("All rows of 1 MB in ninety levels", unbounded,
                 [&] { keep(JSONTree::rows(nests, [](const JSONPath&, qint64) { return true; }).size()); });
    const QByteArray deep = QByteArray(100, '[') + QByteArray("1,").repeated(499'900) + "1" + QByteArray(100, ']');
    const JSONValue hostile = JSONParser::parse(deep).value();
    measureAlone("Pretty-print 1 MB at a hundred levels", unbounded,
                 [&] { keep(JSONFormatter::prettyPrinted(hostile, 2).size()); });
    const QByteArray line = '[' + QByteArray("\"citt\xC3\xA0\",").repeated(111'111) + 'x';
    measureAlone("Refuse a line of 1 MB at its end", unbounded, [&] { keep(JSONParser::parse(line).hasValue()); });
    measureAlone("Refuse it and ask for the column", unbounded,
                 [&] { keep(JSONParser::parse(line).error().column()); });
    return 0;
}
