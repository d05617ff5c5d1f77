#include "QuillaryCore/Formats/MarkdownTableRow.h"

#include "QuillaryCore/Formats/MarkdownCharacters.h"

#include <algorithm>

namespace quillary::MarkdownTableRow {

namespace {

using MarkdownCharacters::isAt;
using MarkdownCharacters::trimmed;

bool isEscapedBarAt(QStringView text, qsizetype position) {
    return isAt(text, position, u'\\') && isAt(text, position + 1, u'|');
}

/// Without surrounding spaces and tabs, and then without the bars at both ends.
QStringView withoutOuterBars(QStringView line) {
    line = trimmed(line);
    if (isAt(line, 0, u'|')) {
        line = line.sliced(1);
    }
    if (!line.isEmpty() && isAt(line, line.size() - 1, u'|') &&
        !(line.size() >= 2 && isEscapedBarAt(line, line.size() - 2))) {
        line.chop(1);
    }
    return line;
}

std::optional<MarkdownTree::Alignment> alignment(QStringView cell) {
    if (!cell.contains(u'-') ||
        !std::all_of(cell.begin(), cell.end(), [](QChar unit) { return unit == u'-' || unit == u':'; })) {
        return std::nullopt;
    }
    if (cell.back() != u':') {
        return MarkdownTree::Alignment::leading;
    }
    return cell.front() == u':' ? MarkdownTree::Alignment::center : MarkdownTree::Alignment::trailing;
}

} // namespace

void split(QStringView line, std::vector<Cell>& cells) {
    cells.clear();
    line = withoutOuterBars(line);
    qsizetype start = 0;
    bool hasEscapedBars = false;
    for (qsizetype i = 0; i < line.size(); ++i) {
        if (line[i] == u'\\' && isEscapedBarAt(line, i)) {
            hasEscapedBars = true;
            ++i;
        } else if (isAt(line, i, u'|')) {
            cells.push_back({trimmed(line.sliced(start, i - start)), hasEscapedBars});
            start = i + 1;
            hasEscapedBars = false;
        }
    }
    cells.push_back({trimmed(line.sliced(start)), hasEscapedBars});
}

QString unescaped(QStringView cell) {
    QString text;
    text.reserve(cell.size());
    for (qsizetype i = 0; i < cell.size(); ++i) {
        if (isEscapedBarAt(cell, i)) {
            ++i;
        }
        text.append(cell[i]);
    }
    return text;
}

bool readSeparator(QStringView line, std::vector<MarkdownTree::Alignment>& alignments) {
    alignments.clear();
    if (!line.contains(u'|')) {
        return false;
    }
    line = withoutOuterBars(line);
    while (true) {
        const qsizetype bar = line.indexOf(u'|');
        // Whatever else the cell holds, an escaped or composed bar included, it makes the line no separator.
        const std::optional<MarkdownTree::Alignment> found = alignment(trimmed(bar < 0 ? line : line.first(bar)));
        if (!found) {
            return false;
        }
        alignments.push_back(*found);
        if (bar < 0) {
            return true;
        }
        line = line.sliced(bar + 1);
    }
}

} // namespace quillary::MarkdownTableRow
