#pragma once

#include <QString>

#include <vector>

namespace quillary {

/// The lines of a text, without their ends. LF and CR LF end a line, a lone CR is part of it; an end behind the last
/// line adds none, and the empty text has no line. Texts are below 2^31 units, as everywhere where ICU reads them.
class TextLines {
public:
    TextLines() = default;

    /// Shares the text and keeps where its lines begin: four bytes a line.
    explicit TextLines(QString text);

    qsizetype count() const { return m_starts.empty() ? 0 : static_cast<qsizetype>(m_starts.size()) - 1; }

    /// The line at this index, which must be there. The view is good for as long as the text is.
    QStringView operator[](qsizetype index) const {
        const std::size_t at = static_cast<std::size_t>(index);
        const qsizetype start = m_starts[at];
        qsizetype end = m_starts[at + 1] - 1;
        if (end < m_text.size() && end > start && m_text[end - 1] == u'\r') {
            --end;
        }
        return QStringView(m_text).sliced(start, end - start);
    }

    const QString& text() const { return m_text; }

private:
    QString m_text;
    /// Of each line and, as if one followed, behind the last one's end.
    std::vector<quint32> m_starts;
};

} // namespace quillary
