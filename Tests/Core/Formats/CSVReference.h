#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

/// The rules of separated values written down scalar by scalar, as slowly as they read: what the parser is compared
/// with.
namespace quillary::CSVReference {

using Rows = QList<QStringList>;

/// The scalars of a text; a lone surrogate stands for itself.
inline QList<char32_t> scalars(QStringView text) {
    QList<char32_t> result;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool isPair = text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        result.append(isPair ? QChar::surrogateToUcs4(text[i], text[i + 1]) : text[i].unicode());
        i += isPair ? 1 : 0;
    }
    return result;
}

inline void endRow(QStringList& row, QString& field, Rows& rows) {
    row.append(field);
    field.clear();
    if (row.size() != 1 || !row.first().isEmpty()) {
        rows.append(row);
    }
    row.clear();
}

inline Rows parse(QStringView text, char32_t delimiter) {
    const QList<char32_t> units = scalars(text);
    Rows rows;
    QStringList row;
    QString field;
    bool inQuotes = false;
    for (qsizetype i = 0; i < units.size(); ++i) {
        const char32_t c = units[i];
        const bool isLast = i + 1 == units.size();
        const char32_t n = isLast ? U'\0' : units[i + 1];
        if (inQuotes) {
            if (c == U'"' && n == U'"') {
                field.append(u'"');
                ++i;
            } else if (c == U'"' && isLast) {
                break;
            } else if (c == U'"') {
                inQuotes = false;
            } else {
                field.append(QChar::fromUcs4(c));
            }
        } else if (c == U'"' && field.isEmpty()) {
            inQuotes = true;
        } else if (c == delimiter) {
            row.append(field);
            field.clear();
        } else if (c == U'\n') {
            endRow(row, field, rows);
        } else if (c == U'\r') {
            if (n == U'\n') {
                ++i;
            }
            endRow(row, field, rows);
        } else {
            field.append(QChar::fromUcs4(c));
        }
    }
    if (!field.isEmpty() || !row.isEmpty()) {
        endRow(row, field, rows);
    }
    return rows;
}

inline QStringList firstTenLines(QStringView text) {
    QStringList lines;
    QString line;
    for (const QChar unit : text) {
        if ((unit >= u'\n' && unit <= u'\r') || unit == QChar(0x85) || unit == QChar(0x2028) || unit == QChar(0x2029)) {
            lines.append(line);
            line.clear();
        } else {
            line.append(unit);
        }
    }
    lines.append(line);
    lines.removeAll(QString());
    return lines.mid(0, 10);
}

inline qsizetype occurrences(char32_t scalar, const QString& line) {
    qsizetype count = 0;
    bool inQuotes = false;
    for (const char32_t each : scalars(line)) {
        if (each == U'"') {
            inQuotes = !inQuotes;
        } else if (each == scalar && !inQuotes) {
            ++count;
        }
    }
    return count;
}

inline char32_t detectDelimiter(QStringView text) {
    const QStringList lines = firstTenLines(text);
    char32_t best = U',';
    qsizetype bestScore = 0;
    for (const char32_t candidate : {U',', U';', U'\t', U'|'}) {
        QList<qsizetype> counts;
        for (const QString& line : lines) {
            counts.append(occurrences(candidate, line));
        }
        if (counts.isEmpty()) {
            continue;
        }
        const auto [least, most] = std::minmax_element(counts.begin(), counts.end());
        const qsizetype score = *least * (*least == *most ? 10 : 1);
        if (*least >= 1 && bestScore < score) {
            best = candidate;
            bestScore = score;
        }
    }
    return best;
}

} // namespace quillary::CSVReference
