#include "PeerTable.h"
#include "QuillaryCore/Text/AttributeRanges.h"
#include "QuillaryCore/Text/TextStorage.h"
#include "QuillaryCore/Text/UndoManager.h"

#include <QGuiApplication>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextLayout>

#include <malloc.h>
#include <map>
#include <random>

/// Editing in 32 MiB beside Qt's document and beside a bare string, and what a loaded text costs in memory.

namespace {

using namespace quillary;
using namespace Qt::StringLiterals;

constexpr qsizetype largeUnits = 32 * 1024 * 1024;
constexpr int keys = 50;
constexpr int lookups = 10'000;

QString linesOf(qsizetype units) {
    QString text;
    text.reserve(units);
    for (int line = 0; text.size() < units; ++line) {
        text += u"Riga %1 di un testo come tanti, lunga poco meno di sessanta\n"_s.arg(line, 6);
    }
    text.truncate(units);
    return text;
}

double allocatedBytes() {
    const auto information = mallinfo2();
    return static_cast<double>(information.uordblks) + static_cast<double>(information.hblkhd);
}

/// The documents that the tasks work on, loaded once.
struct Loaded {
    explicit Loaded(const QString& text) : storage(text), string(text) {}

    TextStorage storage;
    UndoManager history{storage};
    QTextDocument document;
    QString string;
};

void compareKeys(Loaded& loaded, const char* place, double part) {
    const auto at = [&](qsizetype length) { return static_cast<qsizetype>(static_cast<double>(length) * part); };
    const auto typeInStorage = [&] {
        qsizetype caret = at(loaded.storage.length());
        for (int key = 0; key < keys; ++key, ++caret) {
            loaded.history.replace({caret, 0}, u"x", EditKind::typing, {caret, caret});
        }
        loaded.history.breakCoalescing();
    };
    const auto typeInDocument = [&] {
        QTextCursor cursor(&loaded.document);
        cursor.setPosition(static_cast<int>(at(loaded.document.characterCount() - 1)));
        for (int key = 0; key < keys; ++key) {
            cursor.insertText(u"x"_s);
        }
    };
    const auto typeInString = [&] {
        qsizetype caret = at(loaded.string.size());
        for (int key = 0; key < keys; ++key, ++caret) {
            loaded.string.insert(caret, u'x');
        }
    };
    const QByteArray task = QByteArray::number(keys) + " keys at the " + place + " of 32 MiB";
    compareWithPeer(task.constData(), "QTextDocument", 1.0, 1.5, typeInStorage, typeInDocument);
    if (part < 1) {
        // At its end a bare string has nothing to move.
        compareWithPeer(task.constData(), "QString::insert", 1.0, 1.5, typeInStorage, typeInString);
    }
}

void compareScatteredKeys(Loaded& loaded) {
    const auto scatter = [](qsizetype length, auto&& type) {
        std::mt19937 random(1);
        std::uniform_int_distribution<qsizetype> offset(0, length);
        for (int key = 0; key < 1000; ++key) {
            type(offset(random));
        }
    };
    compareWithPeer(
        "1,000 keys anywhere in 32 MiB", "QTextDocument", 1.0, 1.5,
        [&] {
            scatter(loaded.storage.length(), [&](qsizetype offset) {
                loaded.history.replace({offset, 0}, u"x", EditKind::typing, {offset, offset});
            });
        },
        [&] {
            QTextCursor cursor(&loaded.document);
            scatter(loaded.document.characterCount() - 2, [&](qsizetype offset) {
                cursor.setPosition(static_cast<int>(offset));
                cursor.insertText(u"x"_s);
            });
        });
}

void compareLookups(Loaded& loaded) {
    qsizetype sum = 0;
    const auto count = loaded.storage.lineCount();
    compareWithPeer(
        "a key, then 10,000 lines by offset", "QTextDocument::findBlock", 1.0, 2.0,
        [&] {
            loaded.history.replace({0, 0}, u"x", EditKind::other, {});
            for (qsizetype i = 0; i < lookups; ++i) {
                sum += loaded.storage.lineAt(loaded.storage.length() / lookups * i);
            }
        },
        [&] {
            QTextCursor(&loaded.document).insertText(u"x"_s);
            const int length = loaded.document.characterCount();
            for (int i = 0; i < lookups; ++i) {
                sum += loaded.document.findBlock(length / lookups * i).blockNumber();
            }
        });
    compareWithPeer(
        "a key, then 100,000 lines one after another", "QTextDocument::findBlockByNumber", 1.0, 2.0,
        [&] {
            loaded.history.replace({0, 0}, u"x", EditKind::other, {});
            for (qsizetype line = count / 2; line < count / 2 + 100'000; ++line) {
                sum += loaded.storage.lineContents(line).length;
            }
        },
        [&] {
            QTextCursor(&loaded.document).insertText(u"x"_s);
            for (int line = static_cast<int>(count / 2); line < count / 2 + 100'000; ++line) {
                sum += loaded.document.findBlockByNumber(line).length();
            }
        });
    keep(sum);
}

void compareReading(Loaded& loaded) {
    const auto read = [&] {
        loaded.history.replace({0, 0}, u"x", EditKind::other, {});
        keep(loaded.storage.text());
    };
    compareWithPeer("a key, then all of 32 MiB as a string", "QTextDocument::toPlainText", 0.7, 1.0, read, [&] {
        QTextCursor(&loaded.document).insertText(u"x"_s);
        keep(loaded.document.toPlainText());
    });
    compareWithPeer("a key, then all of 32 MiB as a string", "a copy of the QString", 1.0, 2.0, read, [&] {
        QString copy = loaded.string;
        copy.detach();
        keep(copy);
    });
}

void compareLoading(const QString& text) {
    compareWithPeer(
        "32 MiB loaded, lines counted", "a list of QString::indexOf('\\n')", 0.5, 1.0,
        [&] {
            const TextStorage storage(text);
            keep(storage.lineCount());
        },
        [&] {
            std::vector<qsizetype> ends;
            for (qsizetype end = text.indexOf(u'\n'); end >= 0; end = text.indexOf(u'\n', end + 1)) {
                ends.push_back(end);
            }
            keep(ends.size());
        });
}

void compareReplacingAll(const char* task, qsizetype units) {
    const QString text = linesOf(units);
    std::vector<TextReplacement> replacements;
    for (qsizetype i = 0; i < 10'000; ++i) {
        replacements.push_back({{units / 10'000 * i, 4}, u"parola"_s});
    }
    TextStorage storage(text);
    UndoManager history(storage);
    QTextDocument document;
    document.setPlainText(text);
    compareWithPeer(
        task, "QTextDocument, one edit block", 0.2, 0.5,
        [&] {
            history.replaceAll(replacements, {});
            history.undo();
        },
        [&] {
            QTextCursor cursor(&document);
            cursor.beginEditBlock();
            for (auto each = replacements.rbegin(); each != replacements.rend(); ++each) {
                cursor.setPosition(static_cast<int>(each->range.location));
                cursor.setPosition(static_cast<int>(each->range.end()), QTextCursor::KeepAnchor);
                cursor.insertText(each->text);
            }
            cursor.endEditBlock();
            document.undo();
        });
}

void compareColors() {
    constexpr qsizetype colors = 20'000;
    std::vector<AttributeRanges<int>::Span> spans;
    QList<QTextLayout::FormatRange> formats;
    for (qsizetype i = 0; i < colors; ++i) {
        spans.push_back({{i * 15, 9}, static_cast<int>(i % 16)});
        formats.append({static_cast<int>(i) * 15, 9, {}});
    }
    AttributeRanges<int> ranges;
    QList<QTextLayout::FormatRange> list;
    compareWithPeer(
        "20,000 colours set", "a copy of QTextLayout's formats", 1.0, 1.5, [&] { ranges.setAll(spans); },
        [&] {
            list = formats;
            list.detach();
        });
    compareWithPeer(
        "1,000 keys amid 20,000 colours", "each format shifted", 0.1, 0.5,
        [&] {
            for (int key = 0; key < 1000; ++key) {
                ranges.follow({colors * 7 + key, 0, 1});
            }
        },
        [&] {
            for (int key = 0; key < 1000; ++key) {
                for (QTextLayout::FormatRange& format : list) {
                    format.start += format.start >= static_cast<int>(colors) * 7 + key ? 1 : 0;
                }
            }
        });
    compareWithPeer(
        "20,000 colours changed one by one", "a std::map by start", 0.5, 1.0,
        [&] {
            for (const auto& [range, attribute] : spans) {
                ranges.add(range, attribute);
            }
        },
        [&] {
            std::map<qsizetype, AttributeRanges<int>::Span> map;
            for (const auto& span : spans) {
                map[span.range.location] = span;
            }
            keep(map.size());
        });
}

void printMemory(const char* what, double bytes) {
    reportFigure(what, bytes / static_cast<double>(largeUnits), "bytes a unit");
}

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QGuiApplication application(argc, argv);
    const double atFirst = allocatedBytes();
    QString text = linesOf(largeUnits);
    compareLoading(text);
    {
        TextStorage storage(std::move(text));
        keep(storage.lineCount());
        printMemory("32 MiB loaded, lines counted", allocatedBytes() - atFirst);
        UndoManager history(storage);
        for (qsizetype i = 0; i < 1000; ++i) {
            history.replace({largeUnits / 1000 * i, 0}, u"x", EditKind::other, {});
        }
        printMemory("the same after 1,000 edits all over", allocatedBytes() - atFirst);
        for (qsizetype i = 0; i < 10'000; ++i) {
            history.replace({largeUnits / 10'000 * i, 0}, u"x", EditKind::other, {});
        }
        printMemory("the same after 10,000 edits more", allocatedBytes() - atFirst);
    }
    text = linesOf(largeUnits);
    const double before = allocatedBytes();
    Loaded loaded(text);
    loaded.document.setPlainText(text);
    printMemory("32 MiB in a QTextDocument", allocatedBytes() - before);
    loaded.string.detach();

    compareKeys(loaded, "start", 0);
    compareKeys(loaded, "middle", 0.5);
    compareKeys(loaded, "end", 1);
    compareScatteredKeys(loaded);
    compareLookups(loaded);
    compareReading(loaded);
    compareReplacingAll("10,000 replaced in 1 MB, and undone", 1'000'000);
    compareReplacingAll("10,000 replaced in 30 MB, and undone", 30'000'000);
    compareColors();
    return 0;
}
