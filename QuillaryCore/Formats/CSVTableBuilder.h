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
    void addField(qsizetype start, qsizetype length) { m_table.m_fields.push_back({start, length}); }

    /// Adds a stretch of the source to the field that is being assembled.
    void addPiece(qsizetype start, qsizetype length) {
        if (length == 0) {
            return;
        }
        if (m_piece.length == 0) {
            m_piece = {start, length};
            return;
        }
        if (m_piece.start >= 0) {
            const qsizetype first = m_table.m_assembled.size();
            m_table.m_assembled.append(QStringView(m_table.m_source).sliced(m_piece.start, m_piece.length));
            m_piece.start = ~first;
        }
        m_table.m_assembled.append(QStringView(m_table.m_source).sliced(start, length));
        m_piece.length += length;
    }

    /// Ends the field that was assembled.
    void endAssembledField() {
        m_table.m_fields.push_back(m_piece);
        m_piece = {};
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
        m_table.m_rowEnds.push_back(m_rowStart);
        m_table.m_columnCount = std::max(m_table.m_columnCount, length);
    }

    CSVTable take() && { return std::move(m_table); }

private:
    qsizetype fieldCount() const { return static_cast<qsizetype>(m_table.m_fields.size()); }

    CSVTable m_table;
    CSVTable::Field m_piece;
    qsizetype m_rowStart = 0;
};

} // namespace quillary
