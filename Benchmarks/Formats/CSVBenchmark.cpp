#include "PeerTable.h"
#include "QuillaryCore/Formats/CSVColumns.h"
#include "QuillaryCore/Formats/CSVParser.h"

#include <csv.h>
#include <random>
#include <string>
#include <vector>

/// Reading separated values, the detection of the delimiter included, beside libcsv, which is told the delimiter and
/// fills rows of strings.

namespace {

using namespace quillary;

constexpr qsizetype megabyte = 1'000'000;

/// A table with numbers, words beyond ASCII, and a quoted field with delimiters and doubled quotes in most rows.
QByteArray table(qsizetype size) {
    static const std::vector<QByteArray> words = {"nota",   "lavoro", "citt\xC3\xA0", "domani", "perch\xC3\xA9",
                                                  "elenco", "spesa",  "pi\xC3\xB9",   "tempo",  "archivio"};
    std::mt19937 random;
    QByteArray text = "id;nome;luogo;importo;testo;attivo\n";
    while (text.size() < size) {
        const auto word = [&] { return words[random() % words.size()]; };
        text += QByteArray::number(random() % 1'000'000) + ';' + word() + ' ' + word() + ';' + word() + ';' +
                QByteArray::number(random() % 100'000) + ',' + QByteArray::number(random() % 100) + ";\"" + word() +
                "; " + word() + (random() % 3 == 0 ? " \"\"" + word() + "\"\"" : QByteArray()) + "\";" +
                (random() % 2 == 0 ? "true\n" : "false\n");
    }
    return text;
}

struct Rows {
    std::vector<std::vector<std::string>> rows;
    std::vector<std::string> row;
};

std::size_t readWithLibcsv(const QByteArray& text) {
    Rows result;
    csv_parser parser;
    csv_init(&parser, 0);
    csv_set_delim(&parser, ';');
    const auto addField = [](void* field, std::size_t size, void* rows) {
        static_cast<Rows*>(rows)->row.emplace_back(static_cast<const char*>(field), size);
    };
    const auto endRow = [](int, void* rows) {
        auto* const all = static_cast<Rows*>(rows);
        all->rows.push_back(std::move(all->row));
        all->row.clear();
    };
    csv_parse(&parser, text.constData(), static_cast<std::size_t>(text.size()), addField, endRow, &result);
    csv_fini(&parser, addField, endRow, &result);
    csv_free(&parser);
    return result.rows.size();
}

void compareReading(const char* task, const QByteArray& bytes) {
    const QString text = QString::fromUtf8(bytes);
    compareWithPeer(
        task, "libcsv into rows of strings", 0.3, 0.8, [&] { keep(CSVParser::parse(text).rowCount()); },
        [&] { keep(readWithLibcsv(bytes)); });
}

} // namespace

int main() {
    compareReading("Read 1 MB of CSV", table(megabyte));
    compareReading("Read 30 MB of CSV", table(30 * megabyte));
    return 0;
}
