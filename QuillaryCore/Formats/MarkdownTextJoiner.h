#pragma once

#include "QuillaryCore/Formats/MarkdownTree.h"

#include <functional>
#include <utility>

namespace quillary {

/// Joins the lines of a block by line feeds. Lines that follow each other in the source like that stay there; only what
/// has to be put together is copied.
class MarkdownTextJoiner {
public:
    explicit MarkdownTextJoiner(MarkdownTree& tree) : m_tree(tree) {}

    bool isEmpty() const { return m_lines == 0; }

    void add(QStringView line) {
        m_lengthBefore = m_text.length;
        if (m_lines++ == 0) {
            m_text = stored(line);
        } else if (continuesSource(line)) {
            m_text.length += 1 + line.size();
        } else {
            moveToJoined();
            m_tree.joined.append(u'\n');
            m_tree.joined.append(line);
            m_text.length += 1 + line.size();
        }
    }

    /// The line that was added last.
    QStringView lastLine() const {
        const QStringView text = m_tree.view(m_text.start, m_text.length);
        return m_lines > 1 ? text.sliced(m_lengthBefore + 1) : text;
    }

    /// Takes back the line that was added last. Once.
    void removeLast() {
        m_text.length = m_lengthBefore;
        --m_lines;
    }

    /// Gives the text and begins another.
    MarkdownTree::Text take() {
        m_lines = 0;
        const Stretch text = std::exchange(m_text, {});
        return MarkdownTree::Text::of(text.start, text.length);
    }

    /// Keeps a stretch of text as it is.
    MarkdownTree::Text store(QStringView text) {
        const Stretch stretch = stored(text);
        return MarkdownTree::Text::of(stretch.start, stretch.length);
    }

    /// Whether the text is a stretch of the source.
    bool isInSource(QStringView text) const {
        const char16_t* source = QStringView(m_tree.source).utf16();
        return !std::less<>()(text.utf16(), source) && !std::less<>()(source + m_tree.source.size(), text.utf16());
    }

private:
    struct Stretch {
        qsizetype start = 0;
        qsizetype length = 0;
    };

    Stretch stored(QStringView text) {
        if (isInSource(text)) {
            return {text.utf16() - QStringView(m_tree.source).utf16(), text.size()};
        }
        m_tree.joined.append(text);
        return {~(m_tree.joined.size() - text.size()), text.size()};
    }

    bool continuesSource(QStringView line) const {
        if (m_text.start < 0 || !isInSource(line)) {
            return false;
        }
        const QStringView source = m_tree.source;
        const qsizetype end = m_text.start + m_text.length;
        return line.utf16() == source.utf16() + end + 1 && source[end] == u'\n';
    }

    void moveToJoined() {
        if (m_text.start >= 0) {
            const QStringView text = m_tree.view(m_text.start, m_text.length);
            m_text.start = ~m_tree.joined.size();
            m_tree.joined.append(text);
        }
    }

    MarkdownTree& m_tree;
    Stretch m_text;
    qsizetype m_lengthBefore = 0;
    qsizetype m_lines = 0;
};

} // namespace quillary
