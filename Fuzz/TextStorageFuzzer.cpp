#include "QuillaryCore/Text/TextStorage.h"

#include "QuillaryCore/Text/UndoManager.h"
#include "QuillaryCore/Unicode/GraphemeClusters.h"

#include "Tests/Core/Text/PlainText.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

/// Reads the input as a list of edits, undos and redos of a text in the smallest pages, and compares all that the
/// storage answers with a plain string after each.

namespace {

using namespace quillary;

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

/// The input, from front to back; zeros when it is over.
class Input {
public:
    Input(const uint8_t* data, size_t size) : m_data(data), m_end(data + size) {}

    bool isOver() const { return m_data == m_end; }

    qsizetype number(qsizetype greatest) {
        const qsizetype value = byte() * 256 + byte();
        return value % (greatest + 1);
    }

    QString text() {
        static constexpr char16_t units[] =
            u"ab \n\r\n\r\u2028\u2029\u0085\v\f\u00A0\uFFFC\uFEFF\uFDD0\uFDD1\u0301\u200D"
            u"\U0001F469\U0001F1EE\U0001F3FD\u0915\u094D\u1100\u1161\u0600";
        QString result;
        for (int length = byte() % 24; length > 0; --length) {
            const int value = byte();
            result += value < 224 ? QChar(units[static_cast<std::size_t>(value) % std::size(units)])
                                  : QChar(value * 256 + byte());
        }
        return result;
    }

private:
    int byte() { return isOver() ? 0 : *m_data++; }

    const uint8_t* m_data;
    const uint8_t* m_end;
};

/// What a storage makes of a text that comes in.
QString repaired(QString text) {
    const QString original = text;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool isSecond = i > 0 && original[i].isLowSurrogate() && original[i - 1].isHighSurrogate();
        const bool isFirst = i + 1 < text.size() && original[i].isHighSurrogate() && original[i + 1].isLowSurrogate();
        if (original[i].isSurrogate() && !isFirst && !isSecond) {
            text[i] = QChar::ReplacementCharacter;
        }
    }
    return text;
}

void compare(const TextStorage& storage, const PlainText& model, qsizetype offset) {
    const QString& text = model.text;
    require(storage.length() == text.size() && storage.equals(text));
    require(storage.text({0, text.size()}) == text);
    const std::vector<qsizetype> starts = model.lineStarts();
    require(storage.lineCount() == static_cast<qsizetype>(starts.size()));
    const qsizetype line = std::upper_bound(starts.begin(), starts.end(), offset) - starts.begin() - 1;
    require(storage.lineAt(offset) == line);
    require(storage.lineRange(line).location == starts[static_cast<std::size_t>(line)]);
    require(storage.lineContents(line).end() <= storage.lineRange(line).end());
    const bool isBoundary = isClusterBoundary(text, offset);
    const qsizetype next = offset == text.size() ? offset : nextClusterBoundary(text, offset);
    const qsizetype previous = offset == 0 ? 0 : previousClusterBoundary(text, offset);
    require(storage.nextCluster(offset) == next && storage.previousCluster(offset) == previous);
    require(storage.clusterBoundaryAtOrAfter(offset) == (isBoundary ? offset : next));
    require(storage.clusterBoundaryAtOrBefore(offset) == (isBoundary ? offset : previous));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Input input(data, size);
    PlainText model{input.text()};
    TextStorage storage(model.text, 8 + input.number(24));
    UndoManager history(storage);
    // The joining of edits is what the tests of the history are for: here each is a step.
    std::vector<QString> past;
    std::vector<QString> future;
    while (!input.isOver()) {
        const auto length = [&] { return model.text.size(); };
        switch (input.number(7)) {
        case 0:
            require(history.undo().has_value() == !past.empty());
            if (!past.empty()) {
                future.push_back(std::exchange(model.text, past.back()));
                past.pop_back();
            }
            break;
        case 1:
            require(history.redo().has_value() == !future.empty());
            if (!future.empty()) {
                past.push_back(std::exchange(model.text, future.back()));
                future.pop_back();
            }
            break;
        case 2:
            require(storage.text() == model.text);
            break;
        case 3: {
            std::vector<TextReplacement> replacements;
            PlainText next = model;
            qsizetype growth = 0;
            bool changes = false;
            for (qsizetype offset = input.number(length()); offset <= length() && !input.isOver();) {
                const TextRange range{offset, input.number(std::min<qsizetype>(4, length() - offset))};
                const QString text = input.text();
                replacements.push_back({range, text});
                next.replace({range.location + growth, range.length}, repaired(text));
                growth += text.size() - range.length;
                offset = range.end() + input.number(16);
                changes = changes || !range.isEmpty() || !text.isEmpty();
            }
            history.replaceAll(replacements, {});
            if (changes) {
                past.push_back(std::exchange(model.text, next.text));
                future.clear();
            }
            break;
        }
        default: {
            const qsizetype location = input.number(length());
            const TextRange range{location, input.number(std::min<qsizetype>(12, length() - location))};
            const QString text = input.text();
            if (!range.isEmpty() || !text.isEmpty()) {
                past.push_back(model.text);
                future.clear();
            }
            history.replace(range, text, EditKind::other, {});
            model.replace(range, repaired(text));
        }
        }
        compare(storage, model, input.number(length()));
    }
    return 0;
}
