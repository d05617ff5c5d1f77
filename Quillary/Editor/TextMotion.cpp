#include "Quillary/Editor/TextMotion.h"

#include <QChar>
#include <QStringView>

#include <algorithm>

namespace quillary::TextMotion {

namespace {

bool isBlank(const TextStorage& text, qsizetype position) {
    return QChar(text.unitAt(position)).isSpace();
}

bool isPunctuation(const TextStorage& text, qsizetype position) {
    constexpr QStringView marks = u".,?!@#$:;-<>[](){}=/+%&^*'\"`~|\\";
    return marks.contains(QChar(text.unitAt(position)));
}

bool isWord(const TextStorage& text, qsizetype position) {
    return !isBlank(text, position) && !isPunctuation(text, position);
}

} // namespace

qsizetype nextWord(const TextStorage& text, qsizetype position) {
    const qsizetype line = text.lineAt(position);
    const qsizetype end = text.lineContents(line).end();
    if (position >= end) {
        return text.lineRange(line).end();
    }
    const auto isRun = isPunctuation(text, position) ? isPunctuation : isWord;
    while (position < end && isRun(text, position)) {
        ++position;
    }
    while (position < end && isBlank(text, position)) {
        ++position;
    }
    return text.clusterBoundaryAtOrAfter(position);
}

qsizetype previousWord(const TextStorage& text, qsizetype position) {
    const qsizetype line = text.lineAt(position);
    const qsizetype start = text.lineRange(line).location;
    if (position == start) {
        return line == 0 ? 0 : text.lineContents(line - 1).end();
    }
    while (position > start && isBlank(text, position - 1)) {
        --position;
    }
    const auto isRun = position > start && isPunctuation(text, position - 1) ? isPunctuation : isWord;
    while (position > start && isRun(text, position - 1)) {
        --position;
    }
    return text.clusterBoundaryAtOrBefore(position);
}

TextRange wordAt(const TextStorage& text, qsizetype position) {
    const TextRange line = text.lineContents(text.lineAt(position));
    qsizetype start = position;
    if (position > line.location) {
        if (position < line.end()) {
            start = previousWord(text, position + 1);
        } else if (isWord(text, position - 1)) {
            start = previousWord(text, position);
        }
    }
    qsizetype end = start;
    if (end < line.end()) {
        const auto isRun = isPunctuation(text, end) ? isPunctuation : isWord;
        while (end < line.end() && isRun(text, end)) {
            ++end;
        }
    }
    end = text.clusterBoundaryAtOrAfter(end);
    return {start, end - start};
}

} // namespace quillary::TextMotion
