#include "QuillaryCore/Formats/MarkdownParser.h"

#include "QuillaryCore/Formats/MarkdownBlockReader.h"
#include "QuillaryCore/Formats/UnitMask.h"

namespace quillary::MarkdownParser {

namespace {

constexpr qsizetype tabWidth = 4;

/// Reads the lines of a text, tabs in their leading whitespace expanded.
class LineReader {
public:
    LineReader(const QString& text, MarkdownBlockReader& blocks) : m_text(text), m_blocks(blocks) {}

    void readAll() {
        const UnitMask<2> lineEnds(u'\n', u'\r');
        const char16_t* units = m_text.utf16();
        qsizetype start = 0;
        for (qsizetype block = 0; block < m_text.size(); block += lineEnds.blockSize) {
            quint64 mask = lineEnds(units + block, m_text.size() - block);
            for (; mask != 0; mask &= mask - 1) {
                const qsizetype end = block + std::countr_zero(mask);
                // The line feed of a pair was read with its carriage return.
                if (end >= start) {
                    read(m_text.sliced(start, end - start));
                    start = end + (m_text.sliced(end).startsWith(u"\r\n") ? 2 : 1);
                }
            }
        }
        read(m_text.sliced(start));
    }

private:
    void read(QStringView line) {
        qsizetype end = 0;
        bool hasTabs = false;
        while (end < line.size() && MarkdownCharacters::isBlank(line[end])) {
            hasTabs |= line[end] == u'\t';
            ++end;
        }
        m_blocks.read(hasTabs ? expanded(line, end) : line);
    }

    /// The line with the whitespace before `end` made of spaces. A space that carries a mark ends that whitespace.
    QStringView expanded(QStringView line, qsizetype end) {
        if (line[end - 1] == u' ' && !MarkdownCharacters::standsAlone(line, end - 1)) {
            --end;
        }
        qsizetype column = 0;
        for (const QChar unit : line.first(end)) {
            column += unit == u'\t' ? tabWidth - column % tabWidth : 1;
        }
        m_expanded.fill(u' ', column);
        m_expanded.append(line.sliced(end));
        return m_expanded;
    }

    QStringView m_text;
    MarkdownBlockReader& m_blocks;
    QString m_expanded;
};

} // namespace

MarkdownBlocks parse(const QString& text) {
    const auto tree = std::make_shared<MarkdownTree>();
    tree->source = text;
    MarkdownBlockReader blocks(*tree);
    LineReader(text, blocks).readAll();
    blocks.finish();
    return {tree, 0, tree->nodes.size()};
}

} // namespace quillary::MarkdownParser
