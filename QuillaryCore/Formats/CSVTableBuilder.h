#pragma once

#include "QuillaryCore/Formats/CSVTable.h"

namespace quillary {

/// Puts a table together from front to back: stretches of the source into fields, fields into rows.
class CSVTableBuilder {
public:
    CSVTableBuilder(const QString& source, char32_t delimiter) : m_table(delimiter) {
        m_table.m_source = source;
        // Room for the usual density; what isn't written to is never given by the system.
        m_table.m_fields.reserve(static_cast<std::size_t>(source.size() / 8 + 1));
    }

    /// Ends a field that is this stretch of the source and nothing else.
    void addField(qsizetype start, qsizetype length) { push(start, length); }

    /// Adds a stretch of the source to the field that is being assembled.
    void addPiece(qsizetype start, qsizetype length) {
        if (length == 0) {
            return;
        }
        if (m_length == 0) {
            m_start = start;
            m_length = length;
            return;
        }
        if (m_start >= 0) {
            const qsizetype first = m_table.m_assembled.size();
            m_table.m_assembled.append(QStringView(m_table.m_source).sliced(m_start, m_length));
            m_start = ~first;
        }
        m_table.m_assembled.append(QStringView(m_table.m_source).sliced(start, length));
        m_length += length;
    }

    /// Ends the field that was assembled.
    void endAssembledField() {
        push(m_start, m_length);
        m_start = 0;
        m_length = 0;
    }

    /// Whether the row that is being read has fields.
    bool hasFields() const { return fieldCount() > m_rowStart; }

    /// Ends a row with the fields since the last one. A row of one empty field is a blank line and dropped.
    void endRow() {
        const qsizetype length = fieldCount() - m_rowStart;
        if (length == 1 && m_table.m_fields.back().length == 0) {
            m_table.m_fields.pop_back();
            return;
        }
        m_rowStart += length;
        m_table.m_rowEnds.push_back(static_cast<quint32>(m_rowStart));
        m_table.m_columnCount = std::max(m_table.m_columnCount, length);
    }

    CSVTable take() && {
        // A text of nothing but separators has several times the usual fields, and half of their room may be spare.
        m_table.m_fields.shrink_to_fit();
        m_table.m_rowEnds.shrink_to_fit();
        return std::move(m_table);
    }

private:
    void push(qsizetype start, qsizetype length) {
        m_table.m_fields.push_back({static_cast<qint32>(start), static_cast<qint32>(length)});
    }

    qsizetype fieldCount() const { return static_cast<qsizetype>(m_table.m_fields.size()); }

    CSVTable m_table;
    /// The field that is being assembled, as CSVTable::Field has it.
    qsizetype m_start = 0;
    qsizetype m_length = 0;
    qsizetype m_rowStart = 0;
};

} // namespace quillary
