#pragma once

#include "QuillaryCore/Text/TextRange.h"

#include <QRgb>

#include <span>
#include <vector>

namespace quillary {

/// Colours for ranges of a text, kept beside it: they touch neither the text nor its history. Ranges do not overlap;
/// a later one takes its place from those before it.
class AttributeLayer {
public:
    struct Span {
        TextRange range;
        QRgb color = 0;

        friend bool operator==(const Span&, const Span&) = default;
    };

    bool isEmpty() const { return m_spans.empty(); }

    void clear() { m_spans.clear(); }

    /// Gives a range a colour. At the end of what is there, where most calls come, this costs nothing.
    void add(TextRange range, QRgb color);

    /// Takes the colour off a range.
    void remove(TextRange range);

    /// Follows a change of the text: what stands behind it moves along, what surrounds it grows or shrinks, what was
    /// typed at an edge stays uncoloured.
    void shift(const TextChange& change);

    /// The spans that have units in common with a range, in order.
    std::span<const Span> within(TextRange range) const;

private:
    std::vector<Span> m_spans;
};

} // namespace quillary
