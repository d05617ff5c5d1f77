#pragma once

#include "QuillaryCore/Unicode/GraphemeClusters.h"

#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <unicode/regex.h>

#include <memory>
#include <optional>
#include <utility>

/// The rules of Markdown blocks written down from above, character by character and level by level, as slowly as they
/// read: what the parser is compared with. The result is a text that tells the tree.
namespace quillary::MarkdownReference {

using namespace Qt::StringLiterals;

/// A line as its characters.
using Line = QStringList;
using Lines = QList<Line>;

inline Line characters(const QString& text) {
    Line line;
    ClusterWalker walker(text);
    while (!walker.atEnd()) {
        line.append(walker.next().toString());
    }
    return line;
}

inline bool isBlankCharacter(const QString& character) {
    return character == u" "_s || character == u"\t"_s;
}

inline bool isBlank(const Line& line) {
    return std::all_of(line.begin(), line.end(), isBlankCharacter);
}

inline Line trimmed(Line line) {
    while (!line.isEmpty() && isBlankCharacter(line.first())) {
        line.removeFirst();
    }
    while (!line.isEmpty() && isBlankCharacter(line.last())) {
        line.removeLast();
    }
    return line;
}

inline QString joined(const Line& line) {
    return line.join(QString());
}

inline qsizetype indentation(const Line& line) {
    qsizetype count = 0;
    while (count < line.size() && line[count] == u" "_s) {
        ++count;
    }
    return count;
}

inline Line expandLeadingTabs(const Line& line) {
    if (line.isEmpty() || !isBlankCharacter(line.first())) {
        return line;
    }
    qsizetype column = 0;
    qsizetype i = 0;
    for (; i < line.size() && isBlankCharacter(line[i]); ++i) {
        column += line[i] == u" "_s ? 1 : 4 - column % 4;
    }
    // A mark behind a tab joins the space that the tab became.
    return characters(QString(column, u' ') + joined(line.mid(i)));
}

inline qsizetype run(const Line& line, const QString& character) {
    qsizetype count = 0;
    while (count < line.size() && line[count] == character) {
        ++count;
    }
    return count;
}

struct Fence {
    QString marker;
    qsizetype length;
    qsizetype indent;
    QString info;
};

inline std::optional<Fence> fence(const Line& line) {
    const qsizetype indent = indentation(line);
    if (indent > 3) {
        return std::nullopt;
    }
    const Line rest = line.mid(indent);
    if (rest.isEmpty() || (rest.first() != u"`"_s && rest.first() != u"~"_s)) {
        return std::nullopt;
    }
    const qsizetype length = run(rest, rest.first());
    QString info = joined(rest.mid(length));
    const auto isWhitespace = [](QChar c) { return c == u'\t' || c.category() == QChar::Separator_Space; };
    while (!info.isEmpty() && isWhitespace(info.front())) {
        info.remove(0, 1);
    }
    while (!info.isEmpty() && isWhitespace(info.back())) {
        info.chop(1);
    }
    if (length < 3 || (rest.first() == u"`"_s && characters(info).contains(u"`"_s))) {
        return std::nullopt;
    }
    return Fence{rest.first(), length, indent, info};
}

inline std::optional<std::pair<qsizetype, QString>> parseATXHeading(const Line& line) {
    const qsizetype indent = indentation(line);
    const Line rest = line.mid(indent);
    const qsizetype level = run(rest, u"#"_s);
    if (indent > 3 || level < 1 || level > 6 || (level < rest.size() && rest[level] != u" "_s)) {
        return std::nullopt;
    }
    QString text = joined(trimmed(rest.mid(level)));
    UErrorCode status = U_ZERO_ERROR;
    const icu::UnicodeString input(QStringView(text).utf16(), static_cast<int32_t>(text.size()));
    icu::RegexMatcher matcher(icu::UnicodeString(u"(^|\\s+)#+$"), input, 0, status);
    if (matcher.find()) {
        text.truncate(matcher.start(status));
    }
    return std::pair(level, text);
}

inline bool isThematicBreak(const Line& line) {
    Line rest = line;
    rest.removeAll(u" "_s);
    return indentation(line) <= 3 && rest.size() >= 3 && (u"-*_"_s).contains(rest.first()) &&
           rest.count(rest.first()) == rest.size();
}

inline bool isQuoteLine(const Line& line) {
    const qsizetype indent = indentation(line);
    return indent <= 3 && indent < line.size() && line[indent] == u">"_s;
}

struct ListMarker {
    qsizetype indent = 0;
    bool ordered = false;
    qsizetype number = 0;
    qsizetype contentOffset = 0;
    Line content;
};

inline std::optional<ListMarker> listMarker(const Line& line) {
    ListMarker marker;
    marker.indent = indentation(line);
    const Line rest = line.mid(marker.indent);
    if (rest.isEmpty()) {
        return std::nullopt;
    }
    qsizetype length = 1;
    const bool bullet = (u"-*+"_s).contains(rest.first());
    if (!bullet) {
        QString digits;
        for (const QString& character : rest) {
            if (character.size() != 1 || character < u"0"_s || character > u"9"_s) {
                break;
            }
            digits += character;
        }
        if (digits.isEmpty() || digits.size() > 9 || digits.size() == rest.size() ||
            (rest[digits.size()] != u"."_s && rest[digits.size()] != u")"_s)) {
            return std::nullopt;
        }
        marker.number = digits.toInt();
        length = digits.size() + 1;
    }
    const Line after = rest.mid(length);
    if (!after.isEmpty() && after.first() != u" "_s) {
        return std::nullopt;
    }
    const qsizetype spaces = run(after, u" "_s);
    const qsizetype width = spaces >= 1 && spaces <= 4 ? spaces : 1;
    marker.contentOffset = marker.indent + length + width;
    marker.content = after.mid(std::min(spaces, width));
    marker.ordered = marker.number > 0 || !bullet;
    return marker;
}

inline Lines splitTableRow(const Line& line) {
    Line text = trimmed(line);
    if (!text.isEmpty() && text.first() == u"|"_s) {
        text.removeFirst();
    }
    if (!text.isEmpty() && text.last() == u"|"_s && !(text.size() >= 2 && text[text.size() - 2] == u"\\"_s)) {
        text.removeLast();
    }
    Lines cells;
    Line cell;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == u"\\"_s && i + 1 < text.size() && text[i + 1] == u"|"_s) {
            cell.append(u"|"_s);
            ++i;
        } else if (text[i] == u"|"_s) {
            cells.append(trimmed(cell));
            cell.clear();
        } else {
            cell.append(text[i]);
        }
    }
    cells.append(trimmed(cell));
    return cells;
}

inline std::optional<QString> parseTableSeparator(const Line& line) {
    if (!line.contains(u"|"_s)) {
        return std::nullopt;
    }
    QString alignments;
    for (const Line& cell : splitTableRow(line)) {
        if (!cell.contains(u"-"_s) || cell.count(u"-"_s) + cell.count(u":"_s) != cell.size()) {
            return std::nullopt;
        }
        const bool left = cell.first() == u":"_s;
        const bool right = cell.last() == u":"_s;
        alignments += left && right ? u'c' : (right ? u't' : u'l');
    }
    return alignments;
}

inline int setextLevel(const Line& line) {
    const Line text = trimmed(line);
    if (indentation(line) > 3 || text.isEmpty()) {
        return 0;
    }
    return text.count(u"="_s) == text.size() ? 1 : (text.count(u"-"_s) == text.size() ? 2 : 0);
}

/// Text in brackets, so that a tree can be told in one line.
inline QString quoted(QStringView text) {
    QString result = u"\u2039"_s;
    for (const QChar unit : text) {
        result += unit == u'\n' ? u"\u21B5"_s : QString(unit);
    }
    return result + u"\u203A"_s;
}

inline QString parseBlocks(const Lines& lines);

inline std::optional<QString> parseTable(const Lines& lines, qsizetype i, qsizetype& next) {
    if (i + 1 >= lines.size() || !lines[i].contains(u"|"_s)) {
        return std::nullopt;
    }
    const std::optional<QString> alignments = parseTableSeparator(lines[i + 1]);
    const Lines header = splitTableRow(lines[i]);
    if (!alignments || header.size() != alignments->size()) {
        return std::nullopt;
    }
    QString result = u"table("_s + *alignments;
    const auto addRow = [&](const Lines& row) {
        result += u';';
        for (qsizetype c = 0; c < header.size(); ++c) {
            result += quoted(c < row.size() ? joined(row[c]) : QString());
        }
    };
    addRow(header);
    for (next = i + 2; next < lines.size() && !isBlank(lines[next]) && lines[next].contains(u"|"_s); ++next) {
        addRow(splitTableRow(lines[next]));
    }
    return result + u')';
}

inline bool opensBlock(const Line& line) {
    return fence(line) || parseATXHeading(line) || isThematicBreak(line) || isQuoteLine(line);
}

inline QString parseFencedCode(const Lines& lines, qsizetype i, const Fence& fence, qsizetype& next) {
    QStringList code;
    for (next = i + 1; next < lines.size(); ++next) {
        const Line& line = lines[next];
        const Line text = trimmed(line);
        if (indentation(line) <= 3 && text.size() >= fence.length && text.count(fence.marker) == text.size()) {
            ++next;
            break;
        }
        code.append(joined(line.mid(std::min(indentation(line), fence.indent))));
    }
    const Line info = characters(fence.info);
    Line word;
    for (qsizetype c = 0; c < info.size() && info[c] != u" "_s; ++c) {
        word.append(info[c]);
    }
    return u"code("_s + (word.isEmpty() ? u"-"_s : quoted(joined(word))) + quoted(code.join(u'\n')) + u')';
}

inline QString parseQuote(const Lines& lines, qsizetype i, qsizetype& next) {
    Lines collected;
    for (next = i; next < lines.size(); ++next) {
        const Line& line = lines[next];
        if (isQuoteLine(line)) {
            Line rest = line.mid(indentation(line) + 1);
            if (!rest.isEmpty() && rest.first() == u" "_s) {
                rest.removeFirst();
            }
            collected.append(rest);
        } else if (isBlank(line) || isBlank(collected.last()) || opensBlock(line) || listMarker(line)) {
            break;
        } else {
            collected.append(line);
        }
    }
    return u"quote("_s + parseBlocks(collected) + u')';
}

inline Lines collectItemLines(const Lines& lines, qsizetype i, const ListMarker& marker, qsizetype& next) {
    Lines item{marker.content};
    for (next = i + 1; next < lines.size(); ++next) {
        const Line& line = lines[next];
        if (isBlank(line)) {
            qsizetype k = next;
            while (k < lines.size() && isBlank(lines[k])) {
                ++k;
            }
            if (k == lines.size() || indentation(lines[k]) < marker.contentOffset) {
                break;
            }
            for (; next < k; ++next) {
                item.append(Line());
            }
            --next;
        } else if (indentation(line) >= marker.contentOffset) {
            item.append(line.mid(marker.contentOffset));
        } else if (const std::optional<ListMarker> own = listMarker(line)) {
            if (own->indent < marker.indent + 2) {
                break;
            }
            item.append(line.mid(indentation(line)));
        } else if (isBlank(item.last()) || opensBlock(line)) {
            break;
        } else {
            item.append(trimmed(line));
        }
    }
    return item;
}

inline QString makeItem(Lines lines) {
    QString mark = u" "_s;
    const Line& first = lines.first();
    const QString box = joined(first.mid(0, 3)).toLower();
    if (first.size() >= 3 && (box == u"[ ]"_s || box == u"[x]"_s) && (first.size() == 3 || first[3] == u" "_s)) {
        mark = box == u"[x]"_s ? u"+"_s : u"-"_s;
        lines.first() = trimmed(first.mid(3));
    }
    return u'[' + mark + parseBlocks(lines) + u']';
}

inline QString parseList(const Lines& lines, qsizetype i, const ListMarker& first, qsizetype& next) {
    QString result =
        (first.ordered ? u"ordered("_s : u"bullets("_s) + QString::number(std::max<qsizetype>(first.number, 1));
    ListMarker current = first;
    while (true) {
        result += makeItem(collectItemLines(lines, i, current, next));
        qsizetype k = next;
        while (k < lines.size() && isBlank(lines[k])) {
            ++k;
        }
        if (k == lines.size()) {
            break;
        }
        const std::optional<ListMarker> marker = listMarker(lines[k]);
        if (!marker || marker->ordered != first.ordered || marker->indent >= first.contentOffset) {
            break;
        }
        current = *marker;
        i = k;
    }
    return result + u')';
}

inline QString parseIndentedCode(const Lines& lines, qsizetype i, qsizetype& next) {
    QStringList code;
    for (next = i; next < lines.size() && (isBlank(lines[next]) || indentation(lines[next]) >= 4); ++next) {
        code.append(isBlank(lines[next]) ? QString() : joined(lines[next].mid(4)));
    }
    while (!code.isEmpty() && code.last().isEmpty()) {
        code.removeLast();
    }
    return u"code(-"_s + quoted(code.join(u'\n')) + u')';
}

inline QString parseParagraph(const Lines& lines, qsizetype i, qsizetype& next) {
    QStringList texts{joined(trimmed(lines[i]))};
    for (next = i + 1; next < lines.size(); ++next) {
        const Line& line = lines[next];
        qsizetype unused = 0;
        if (isBlank(line)) {
            break;
        }
        if (const int level = setextLevel(line)) {
            ++next;
            return u"h"_s + QString::number(level) + u'(' + quoted(texts.join(u'\n')) + u')';
        }
        if (opensBlock(line) || listMarker(line) || parseTable(lines, next, unused)) {
            break;
        }
        texts.append(joined(trimmed(line)));
    }
    return u"p("_s + quoted(texts.join(u'\n')) + u')';
}

inline QString parseBlocks(const Lines& lines) {
    QStringList blocks;
    qsizetype i = 0;
    while (i < lines.size()) {
        const Line& line = lines[i];
        qsizetype next = i + 1;
        if (isBlank(line)) {
            i = next;
            continue;
        }
        if (const auto opened = fence(line)) {
            blocks.append(parseFencedCode(lines, i, *opened, next));
        } else if (const auto heading = parseATXHeading(line)) {
            blocks.append(u"h"_s + QString::number(heading->first) + u'(' + quoted(heading->second) + u')');
        } else if (isThematicBreak(line)) {
            blocks.append(u"rule"_s);
        } else if (isQuoteLine(line)) {
            blocks.append(parseQuote(lines, i, next));
        } else if (const auto marker = listMarker(line)) {
            blocks.append(parseList(lines, i, *marker, next));
        } else if (const auto table = parseTable(lines, i, next)) {
            blocks.append(*table);
        } else if (indentation(line) < 4) {
            blocks.append(parseParagraph(lines, i, next));
        } else {
            blocks.append(parseIndentedCode(lines, i, next));
        }
        i = next;
    }
    return blocks.join(u' ');
}

inline QString parse(QString text) {
    text.replace(u"\r\n"_s, u"\n"_s);
    text.replace(u'\r', u'\n');
    Lines lines;
    for (const QString& line : text.split(u'\n')) {
        lines.append(expandLeadingTabs(characters(line)));
    }
    return parseBlocks(lines);
}

} // namespace quillary::MarkdownReference
