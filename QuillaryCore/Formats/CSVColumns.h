#pragma once

#include "QuillaryCore/Formats/CSVTable.h"

#include <QList>
#include <QString>

/// What the preview of a table derives from it, by a sample of its first 300 rows.
namespace quillary::CSVColumns {

/// The width of each column, in the unit of `baseSize`, the editor's font size: room for its longest cell in
/// characters, between 56 and 360.
QList<double> widths(const CSVTable& table, double baseSize);

/// The columns, ascending, whose cells below the first row are numbers, the empty ones left out and not all empty.
/// A comma is as good as a dot.
QList<qsizetype> numeric(const CSVTable& table);

/// Whether the text as a whole reads as a floating-point number of the C language's form, a comma being as good as a
/// dot: decimal or hexadecimal digits, an exponent, "inf", "infinity" and "nan", in any case and with any sign.
bool isNumber(QStringView text);

/// How many rows there are below the header, if there is one.
qsizetype dataRowCount(const CSVTable& table, bool firstRowIsHeader);

/// The line above the grid: the rows, the columns and the delimiter.
QString summary(const CSVTable& table, bool firstRowIsHeader);

} // namespace quillary::CSVColumns
