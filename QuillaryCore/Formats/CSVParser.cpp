#include "QuillaryCore/Formats/CSVParser.h"

#include "QuillaryCore/Formats/CSVTableBuilder.h"
#include "QuillaryCore/Formats/UnitMask.h"

#include <limits>

namespace quillary::CSVParser {

namespace {

constexpr int detectionLines = 10;

/// A scalar as it stands in UTF-16. A surrogate is no scalar and stands nowhere.
class DelimiterUnits {
public:
    explicit DelimiterUnits(char32_t scalar)
        : m_first(QChar::requiresSurrogates(scalar) ? QChar::highSurrogate(scalar) : static_cast<char16_t>(scalar)),
          m_second(QChar::requiresSurrogates(scalar) ? QChar::lowSurrogate(scalar) : u'\0'),
          m_length(QChar::isSurrogate(scalar) ? 0 : (QChar::requiresSurrogates(scalar) ? 2 : 1)) {}

    char16_t first() const { return m_first; }

    qsizetype length() const { return m_length; }

    bool isAt(const char16_t* units, qsizetype position, qsizetype size) const {
        return units[position] == m_first &&
               (m_length == 1 || (m_length == 2 && position + 1 < size && units[position + 1] == m_second));
    }

private:
    char16_t m_first;
    char16_t m_second;
    qsizetype m_length;
};

/// The reader: it stops at delimiters, quotes and line ends only, and takes what is between them as it is.
class Reader {
public:
    Reader(const QString& text, char32_t delimiter)
        : m_units(QStringView(text).utf16()), m_size(text.size()), m_delimiter(delimiter), m_builder(text, delimiter) {}

    CSVTable read() && {
        const UnitMask<4> marks(m_delimiter.first(), u'"', u'\n', u'\r');
        for (qsizetype block = 0; block < m_size; block += marks.blockSize) {
            quint64 mask = marks(m_units + block, m_size - block);
            for (; mask != 0; mask &= mask - 1) {
                const qsizetype position = block + std::countr_zero(mask);
                if (position >= m_next) {
                    read(position);
                }
            }
        }
        finish();
        return std::move(m_builder).take();
    }

private:
    void read(qsizetype position) {
        const char16_t unit = m_units[position];
        if (m_inQuotes) {
            if (unit == u'"') {
                readQuoteInQuotes(position);
            }
        } else if (unit == u'"' && fieldIsEmpty(position)) {
            m_inQuotes = true;
            m_assembling = true;
            m_start = position + 1;
        } else if (m_delimiter.isAt(m_units, position, m_size)) {
            endField(position, m_delimiter.length());
        } else if (unit == u'\n') {
            endRow(position, 1);
        } else if (unit == u'\r') {
            endRow(position, position + 1 < m_size && m_units[position + 1] == u'\n' ? 2 : 1);
        }
    }

    void readQuoteInQuotes(qsizetype position) {
        if (position + 1 < m_size && m_units[position + 1] == u'"') {
            // One of the two stays in the field.
            m_builder.addPiece(m_start, position + 1 - m_start);
            m_start = position + 2;
            m_next = m_start;
            return;
        }
        m_builder.addPiece(m_start, position - m_start);
        m_start = position + 1;
        m_inQuotes = false;
    }

    /// A quote opens where nothing of the field was read. Behind a closing quote there is never another one: two of
    /// them are a doubled one.
    bool fieldIsEmpty(qsizetype position) const { return position == m_start && !m_assembling; }

    void endField(qsizetype end, qsizetype skip) {
        if (m_assembling) {
            m_builder.addPiece(m_start, end - m_start);
            m_builder.endAssembledField();
            m_assembling = false;
        } else {
            m_builder.addField(m_start, end - m_start);
        }
        m_start = end + skip;
        m_next = m_start;
    }

    void endRow(qsizetype end, qsizetype skip) {
        endField(end, skip);
        m_builder.endRow();
    }

    void finish() {
        // A field that only opened quotes is empty, and an empty row without a field is none.
        if (m_start < m_size || m_assembling || m_builder.hasFields()) {
            endRow(m_size, 0);
        }
    }

    const char16_t* m_units;
    qsizetype m_size;
    DelimiterUnits m_delimiter;
    CSVTableBuilder m_builder;
    /// Where the field, or its piece after a quote, begins.
    qsizetype m_start = 0;
    /// What stands before was read as the second half of something.
    qsizetype m_next = 0;
    bool m_inQuotes = false;
    bool m_assembling = false;
};

bool isNewline(char16_t unit) {
    return (unit >= u'\n' && unit <= u'\r') || unit == u'\u0085' || unit == u'\u2028' || unit == u'\u2029';
}

/// How often each candidate stands in a line, by the rule of occurrences.
using Counts = std::array<qsizetype, candidateDelimiters.size()>;

/// Counts in the line from `position` on and gives where it ends.
qsizetype countLine(QStringView text, qsizetype position, Counts& counts) {
    bool inQuotes = false;
    for (; position < text.size(); ++position) {
        const char16_t unit = text[position].unicode();
        if (isNewline(unit)) {
            break;
        }
        if (unit == u'"') {
            inQuotes = !inQuotes;
        } else if (!inQuotes) {
            for (std::size_t i = 0; i < candidateDelimiters.size(); ++i) {
                counts[i] += unit == candidateDelimiters[i];
            }
        }
    }
    return position;
}

} // namespace

CSVTable parse(const QString& text) {
    return parse(text, detectDelimiter(text));
}

CSVTable parse(const QString& text, char32_t delimiter) {
    return Reader(text, delimiter).read();
}

char32_t detectDelimiter(QStringView text) {
    Counts least;
    least.fill(std::numeric_limits<qsizetype>::max());
    Counts most{};
    int lines = 0;
    for (qsizetype position = 0; position < text.size() && lines < detectionLines; ++position) {
        const qsizetype start = position;
        Counts counts{};
        position = countLine(text, position, counts);
        if (position == start) {
            continue;
        }
        ++lines;
        for (std::size_t i = 0; i < counts.size(); ++i) {
            least[i] = std::min(least[i], counts[i]);
            most[i] = std::max(most[i], counts[i]);
        }
    }

    char32_t best = candidateDelimiters.front();
    qsizetype bestScore = 0;
    for (std::size_t i = 0; lines > 0 && i < least.size(); ++i) {
        const qsizetype score = least[i] * (least[i] == most[i] ? 10 : 1);
        if (least[i] >= 1 && bestScore < score) {
            best = candidateDelimiters[i];
            bestScore = score;
        }
    }
    return best;
}

qsizetype occurrences(char32_t scalar, QStringView line) {
    const DelimiterUnits units(scalar);
    const char16_t* data = line.utf16();
    qsizetype count = 0;
    bool inQuotes = false;
    for (qsizetype i = 0; i < line.size(); ++i) {
        if (data[i] == u'"') {
            inQuotes = !inQuotes;
        } else if (!inQuotes && units.isAt(data, i, line.size())) {
            ++count;
        }
    }
    return count;
}

} // namespace quillary::CSVParser
