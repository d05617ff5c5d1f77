#pragma once

#include "QuillaryCore/Formats/CSVTable.h"

#include <QString>
#include <QStringView>

#include <array>

/// Reads separated values of unknown dialect. Every text has a reading; nothing here fails. All work is on Unicode
/// scalars: a carriage return before a line feed and a quote before a combining mark are seen each for itself.
namespace quillary::CSVParser {

/// The delimiters that detection knows, in the order in which they win a tie.
inline constexpr std::array<char32_t, 4> candidateDelimiters{U',', U';', U'\t', U'|'};

/// Reads the text with the delimiter that detectDelimiter finds. The table shares the text.
CSVTable parse(const QString& text);

/// Reads the text with this delimiter, any Unicode scalar.
CSVTable parse(const QString& text, char32_t delimiter);

/// The candidate that separates the first ten lines that aren't empty best: one that each of them has, as often as in
/// any other if possible. A comma if there is none.
char32_t detectDelimiter(QStringView text);

/// How often the scalar stands outside quotes in a line. Each quote opens or closes; doubled ones mean nothing here.
qsizetype occurrences(char32_t scalar, QStringView line);

} // namespace quillary::CSVParser
