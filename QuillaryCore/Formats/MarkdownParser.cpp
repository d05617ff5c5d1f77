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
        const UnitMask<3> marks(u'\n', u'\r', u'|');
        const char16_t* units = m_text.utf16();
        qsizetype start = 0;
        bool hasBar = false;
        for (qsizetype block = 0; block < m_text.size(); block += marks.blockSize) {
            quint64 mask = marks(units + block, m_text.size() - block);
            for (; mask != 0; mask &= mask - 1) {
                const qsizetype end = block + std::countr_zero(mask);
                if (units[end] == u'|') {
                    hasBar = true;
                } else if (end >= start) {
                    // The line feed of a pair goes with its carriage return, and is passed over when it comes.
                    read(m_text.sliced(start, end - start), hasBar);
                    hasBar = false;
                    const bool isPair = units[end] == u'\r' && end + 1 < m_text.size() && units[end + 1] == u'\n';
                    start = end + (isPair ? 2 : 1);
                }
            }
        }
        read(m_text.sliced(start), hasBar);
    }

private:
    void read(QStringView line, bool hasBar) {
        qsizetype end = 0;
        bool hasTabs = false;
        while (end < line.size() && MarkdownCharacters::isBlank(line[end])) {
            hasTabs |= line[end] == u'\t';
            ++end;
        }
        m_blocks.read(hasTabs ? expanded(line, end) : line, hasBar);
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
    // Room for the usual density; what isn't written to is never given by the system.
    tree->nodes.reserve(static_cast<std::size_t>(text.size() / 32 + 8));
    MarkdownBlockReader blocks(*tree);
    LineReader(text, blocks).readAll();
    blocks.finish();
    // A text of nothing but marks has several times the usual nodes, and half of their room may be spare.
    tree->nodes.shrink_to_fit();
    tree->cells.shrink_to_fit();
    tree->lines.shrink_to_fit();
    tree->alignments.shrink_to_fit();
    tree->tables.shrink_to_fit();
    tree->languages.shrink_to_fit();
    return {tree, 0, tree->nodes.size()};
}

} // namespace quillary::MarkdownParser
