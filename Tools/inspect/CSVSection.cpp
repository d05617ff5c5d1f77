#include "QuillaryCore/Formats/CSVColumns.h"
#include "QuillaryCore/Formats/CSVParser.h"
#include "QuillaryCore/Formats/FormatDetector.h"
#include "Tools/inspect/Sections.h"

namespace quillary::inspect {

namespace {

using namespace Qt::StringLiterals;

QString scalarText(char32_t scalar) {
    return QString::fromUcs4(&scalar, 1);
}

std::optional<char32_t> delimiterArgument(Arguments& arguments) {
    const std::optional<QString> text = arguments.optionalText(u"delimiter"_s);
    if (!text) {
        return std::nullopt;
    }
    const QList<uint> scalars = text->toUcs4();
    if (scalars.size() != 1) {
        arguments.fail(u"delimiter must be one character"_s);
        return std::nullopt;
    }
    return scalars.first();
}

Prepared csvParse(Arguments& arguments) {
    const QString text = arguments.text(u"text"_s);
    const std::optional<char32_t> delimiter = delimiterArgument(arguments);
    return prepared([=] { return delimiter ? CSVParser::parse(text, *delimiter) : CSVParser::parse(text); },
                    [](AnswerWriter& answer, const CSVTable& table) {
                        answer.member(u"delimiter", scalarText(table.delimiter()));
                        answer.key(u"rows");
                        answer.beginArray();
                        for (qsizetype row = 0; row < table.rowCount(); ++row) {
                            answer.beginArray();
                            for (const QStringView field : table.row(row)) {
                                answer.text(field);
                            }
                            answer.endArray();
                        }
                        answer.endArray();
                        answer.member(u"columnCount", table.columnCount());
                    });
}

Prepared csvDetectDelimiter(Arguments& arguments) {
    const QString text = arguments.text(u"text"_s);
    return prepared(
        [=] { return CSVParser::detectDelimiter(text); },
        [](AnswerWriter& answer, char32_t delimiter) { answer.member(u"delimiter", scalarText(delimiter)); });
}

struct CSVColumnFacts {
    QList<double> widths;
    QList<qsizetype> numeric;
    QString summary;
    QString summaryPlain;
};

Prepared csvColumns(Arguments& arguments) {
    const QString text = arguments.text(u"text"_s);
    const double baseSize = arguments.real(u"baseSize"_s);
    return prepared(
        [=] {
            const CSVTable table = CSVParser::parse(text);
            return CSVColumnFacts{CSVColumns::widths(table, baseSize), CSVColumns::numeric(table),
                                  CSVColumns::summary(table, true), CSVColumns::summary(table, false)};
        },
        [](AnswerWriter& answer, const CSVColumnFacts& result) {
            answer.key(u"widths");
            answer.beginArray();
            for (const double width : result.widths) {
                answer.real(width);
            }
            answer.endArray();
            answer.key(u"numericColumns");
            answer.beginArray();
            for (const qsizetype column : result.numeric) {
                answer.integer(column);
            }
            answer.endArray();
            answer.member(u"summary", result.summary);
            answer.member(u"summaryPlain", result.summaryPlain);
        });
}

Prepared detectFormat(Arguments& arguments) {
    const QString text = arguments.text(u"text"_s);
    return prepared([=] { return FormatDetector::detect(text); },
                    [](AnswerWriter& answer, std::optional<NoteFormat> format) {
                        if (format) {
                            answer.member(u"format", rawValue(*format));
                        } else {
                            answer.nullMember(u"format");
                        }
                    });
}

} // namespace

void addCSVOperations(OperationTable& table) {
    table.insert(u"csv.parse"_s, csvParse);
    table.insert(u"csv.detectDelimiter"_s, csvDetectDelimiter);
    table.insert(u"csv.columns"_s, csvColumns);
    table.insert(u"detect"_s, detectFormat);
}

} // namespace quillary::inspect
