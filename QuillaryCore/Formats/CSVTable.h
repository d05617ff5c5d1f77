#pragma once

#include <QString>
#include <QStringView>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <vector>

namespace quillary {

/// Rows of texts, as they were read: rows of different lengths stay so.
///
/// The table shares the text it was read from, and nearly every field is a stretch of it; only fields that quotes cut
/// into pieces are kept on their own. Views of fields are good for as long as the table is, and stay good in copies
/// of it.
class CSVTable {
public:
    /// A field: where it begins in the source, or, below zero, ~where it begins among the assembled fields. There may
    /// be one for each unit of the text, so that it is kept small; the numbers suffice for every text below 1 GiB.
    struct Field {
        qint32 start = 0;
        qint32 length = 0;
    };

    /// One row: a range of texts.
    class Row {
    public:
        class Iterator {
        public:
            using iterator_category = std::input_iterator_tag;
            using value_type = QStringView;
            using difference_type = std::ptrdiff_t;
            using pointer = void;
            using reference = QStringView;

            Iterator(const CSVTable* table, const Field* field) : m_table(table), m_field(field) {}

            QStringView operator*() const { return m_table->text(*m_field); }

            Iterator& operator++() {
                ++m_field;
                return *this;
            }

            friend bool operator==(const Iterator& a, const Iterator& b) { return a.m_field == b.m_field; }

        private:
            const CSVTable* m_table;
            const Field* m_field;
        };

        Row(const CSVTable* table, const Field* first, const Field* last)
            : m_table(table), m_first(first), m_last(last) {}

        qsizetype size() const { return m_last - m_first; }

        QStringView operator[](qsizetype column) const { return m_table->text(m_first[column]); }

        Iterator begin() const { return {m_table, m_first}; }

        Iterator end() const { return {m_table, m_last}; }

    private:
        const CSVTable* m_table;
        const Field* m_first;
        const Field* m_last;
    };

    /// No rows.
    explicit CSVTable(char32_t delimiter = U',') : m_delimiter(delimiter) {}

    qsizetype rowCount() const { return static_cast<qsizetype>(m_rowEnds.size()); }

    /// The row at this index, which must be there. It is good for as long as this table is.
    Row row(qsizetype index) const {
        const std::size_t at = static_cast<std::size_t>(index);
        const Field* fields = m_fields.data();
        return {this, fields + (index > 0 ? m_rowEnds[at - 1] : 0), fields + m_rowEnds[at]};
    }

    /// The length of the longest row; 0 for no rows.
    qsizetype columnCount() const { return m_columnCount; }

    /// The Unicode scalar that separates the fields.
    char32_t delimiter() const { return m_delimiter; }

    /// Equal rows and the same delimiter.
    friend bool operator==(const CSVTable& a, const CSVTable& b);

private:
    friend class CSVTableBuilder;

    QStringView text(const Field& field) const {
        const QString& holder = field.start >= 0 ? m_source : m_assembled;
        return QStringView(holder).sliced(field.start >= 0 ? field.start : ~field.start, field.length);
    }

    QString m_source;
    QString m_assembled;
    std::vector<Field> m_fields;
    /// For each row the number of fields up to its end.
    std::vector<quint32> m_rowEnds;
    qsizetype m_columnCount = 0;
    char32_t m_delimiter;
};

} // namespace quillary
