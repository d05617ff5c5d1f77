#include "Fuzz/FuzzText.h"
#include "QuillaryCore/Formats/CSVColumns.h"
#include "QuillaryCore/Formats/CSVParser.h"

#include "Tests/Core/Formats/CSVReference.h"

using namespace quillary;

namespace {

void checkTable(const CSVTable& table, const CSVReference::Rows& expected) {
    fuzz::require(table.rowCount() == expected.size(), "the rules give as many rows");
    qsizetype longest = 0;
    for (qsizetype r = 0; r < table.rowCount(); ++r) {
        const CSVTable::Row row = table.row(r);
        fuzz::require(row.size() == expected[r].size(), "the rules give as many fields");
        for (qsizetype c = 0; c < row.size(); ++c) {
            fuzz::require(row[c] == expected[r][c], "the rules give the same field");
        }
        longest = std::max(longest, row.size());
    }
    fuzz::require(table.columnCount() == longest, "columnCount is the longest row");
}

} // namespace

/// The first byte chooses a delimiter, the others are the text.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const QString text = fuzz::textFrom(data + 1, size - 1);
    const char32_t detected = CSVParser::detectDelimiter(text);
    fuzz::require(detected == CSVReference::detectDelimiter(text), "the rules detect the same delimiter");

    const CSVTable table = CSVParser::parse(text);
    fuzz::require(table.delimiter() == detected, "the detected delimiter is used");
    checkTable(table, CSVReference::parse(text, detected));

    const char32_t given = data[0] < 0x80 ? data[0] : U'\U0001F600';
    checkTable(CSVParser::parse(text, given), CSVReference::parse(text, given));

    const QList<double> widths = CSVColumns::widths(table, 13);
    const QList<qsizetype> numeric = CSVColumns::numeric(table);
    fuzz::require(widths.size() == table.columnCount(), "each column has a width");
    fuzz::require(numeric.isEmpty() || numeric.last() < table.columnCount(), "numeric columns are columns");
    return 0;
}
