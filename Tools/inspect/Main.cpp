#include "Tools/inspect/Sections.h"

#include <QJsonDocument>

#include <chrono>
#include <cstdio>
#include <iostream>
#include <string>

namespace quillary::inspect {

namespace {

using namespace Qt::StringLiterals;

OperationTable allOperations() {
    OperationTable table;
    addNotesOperations(table);
    addJSONOperations(table);
    addCSVOperations(table);
    addDiffOperations(table);
    addMarkdownOperations(table);
    addHighlighterOperations(table);
    addSearchOperations(table);
    addSidebarLayoutOperations(table);
    addShortcutsOperations(table);
    addSoloOperations(table);
    addFilesOperations(table);
    return table;
}

QByteArray errorAnswer(const QString& error) {
    AnswerWriter writer;
    writer.beginObject();
    writer.member(u"error", error);
    writer.endObject();
    return writer.bytes();
}

/// Qt's reader drops a byte order mark at the start of a text, unless it is written by its number.
QByteArray withMarksByNumber(const QByteArray& line) {
    constexpr QByteArrayView markAtStart("\"\xEF\xBB\xBF");
    return line.contains(markAtStart) ? QByteArray(line).replace(markAtStart, QByteArrayView("\"\\ufeff")) : line;
}

QByteArray answer(const OperationTable& table, const QByteArray& line) {
    const QJsonDocument document = QJsonDocument::fromJson(withMarksByNumber(line));
    if (!document.isObject()) {
        return errorAnswer(u"not a JSON object"_s);
    }
    Arguments arguments(document.object());
    const QString name = arguments.text(u"op"_s);
    const bool quiet = arguments.has(u"quiet"_s) && arguments.boolean(u"quiet"_s);
    const std::optional<qint64> repeat = arguments.optionalInteger(u"repeat"_s);
    if (repeat && *repeat < 1) {
        arguments.fail(u"repeat must be at least 1"_s);
    }
    if (arguments.error()) {
        return errorAnswer(*arguments.error());
    }
    const auto operation = table.constFind(name);
    if (operation == table.cend()) {
        return errorAnswer(u"unknown op: "_s + name);
    }
    const Prepared prepared = (*operation)(arguments);
    if (arguments.error()) {
        return errorAnswer(*arguments.error());
    }

    std::vector<double> seconds;
    for (qint64 i = 0; i < repeat.value_or(1); ++i) {
        const auto start = std::chrono::steady_clock::now();
        prepared.run();
        seconds.push_back(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }

    AnswerWriter writer;
    writer.beginObject();
    if (!quiet) {
        prepared.write(writer);
    }
    if (quiet || repeat) {
        writer.key(u"seconds");
        writer.beginArray();
        for (const double each : seconds) {
            writer.real(each);
        }
        writer.endArray();
    }
    writer.endObject();
    return writer.bytes();
}

} // namespace

} // namespace quillary::inspect

int main() {
    std::ios::sync_with_stdio(false);
    const quillary::inspect::OperationTable table = quillary::inspect::allOperations();
    std::string line;
    while (std::getline(std::cin, line)) {
        const QByteArray answer =
            quillary::inspect::answer(table, QByteArray::fromRawData(line.data(), static_cast<qsizetype>(line.size())));
        std::fwrite(answer.constData(), 1, static_cast<std::size_t>(answer.size()), stdout);
        std::fputc('\n', stdout);
        std::fflush(stdout);
    }
    return 0;
}
