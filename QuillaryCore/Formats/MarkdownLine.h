#pragma once

#include "QuillaryCore/Formats/MarkdownCharacters.h"

#include <QStringView>

#include <optional>

namespace quillary {

/// A line as the blocks around it leave it: what is left of it, a view. Its leading whitespace, tabs at the line's
/// start being expanded, is spaces; positions count units, which in a run of spaces are characters and columns.
class MarkdownLine {
public:
    MarkdownLine() : m_isBlank(true) {}

    explicit MarkdownLine(QStringView text)
        : m_text(text),
          m_indent(MarkdownCharacters::indentation(text)),
          m_isBlank(MarkdownCharacters::isBlank(text.sliced(m_indent))) {}

    QStringView text() const { return m_text; }

    /// Without its indentation.
    QStringView content() const { return m_text.sliced(m_indent); }

    /// The number of leading space characters.
    qsizetype indent() const { return m_indent; }

    /// Whether there are only spaces and tabs.
    bool isBlank() const { return m_isBlank; }

    /// Whether it was made by `trimmed`.
    bool isTrimmed() const { return m_isTrimmed; }

    /// Without that many of its leading spaces.
    MarkdownLine withoutColumns(qsizetype count) const {
        return {m_text.sliced(count), m_indent - count, m_isBlank, m_isTrimmed};
    }

    /// Without surrounding spaces and tabs.
    MarkdownLine trimmed() const {
        MarkdownLine line(MarkdownCharacters::trimmed(m_text));
        line.m_isTrimmed = true;
        return line;
    }

private:
    MarkdownLine(QStringView text, qsizetype indent, bool isBlank, bool isTrimmed)
        : m_text(text), m_indent(indent), m_isBlank(isBlank), m_isTrimmed(isTrimmed) {}

    QStringView m_text;
    qsizetype m_indent = 0;
    bool m_isBlank;
    bool m_isTrimmed = false;
};

} // namespace quillary
