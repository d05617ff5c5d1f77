#pragma once

#include "QuillaryCore/Text/TextRange.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace quillary {

/// A layer of ranges beside a text, each with an attribute, a colour for instance: they touch neither the text nor its
/// history. Ranges of a layer do not overlap; a later one takes its place from those before it. Neighbours with equal
/// attributes stay apart.
///
/// The ranges behind the last change are kept as they were before a common shift, so that a key costs the ranges
/// between it and the key before, not all that stand behind it.
template <typename Attribute>
class AttributeRanges {
public:
    struct Span {
        TextRange range;
        Attribute attribute{};

        friend bool operator==(const Span&, const Span&) = default;
    };

    bool isEmpty() const { return m_spans.empty(); }

    /// The number of spans.
    qsizetype count() const { return static_cast<qsizetype>(m_spans.size()); }

    void clear() { setAll({}); }

    /// Replaces the whole layer. Spans in ascending order that do not overlap are taken over as they are; any others
    /// are added one by one, and empty ones left out.
    void setAll(std::vector<Span> spans);

    /// Gives a range an attribute. Costs the logarithm of the layer's size, but where it must make room among others.
    void add(TextRange range, Attribute attribute);

    /// Takes the attributes off a range.
    void remove(TextRange range) { exchange(range, {}); }

    /// Follows a change of the text: what stands behind it moves along, what surrounds it grows or shrinks, what it cut
    /// into keeps the rest, and what was typed at an edge has no attribute.
    void follow(const TextChange& change);

    /// The spans that have units in common with a range, in ascending order and in their whole length.
    std::vector<Span> within(TextRange range) const;

private:
    TextRange rangeAt(std::size_t index) const {
        const TextRange& stored = m_spans[index].range;
        return {stored.location + (index >= m_shiftedFrom ? m_shift : 0), stored.length};
    }

    std::size_t firstEndingBehind(qsizetype offset) const {
        return firstWithout([&](TextRange range) { return range.end() <= offset; });
    }

    std::size_t firstStartingFrom(qsizetype offset) const {
        return firstWithout([&](TextRange range) { return range.location < offset; });
    }

    template <typename Condition>
    std::size_t firstWithout(Condition condition) const;
    void shiftFrom(std::size_t index);
    void exchange(TextRange range, const std::vector<Span>& spans);
    void replaceSpans(std::size_t first, std::size_t last, const std::vector<Span>& spans);

    std::vector<Span> m_spans;
    std::size_t m_shiftedFrom = 0; // from this one on the spans stand m_shift further than it says
    qsizetype m_shift = 0;
};

template <typename Attribute>
void AttributeRanges<Attribute>::setAll(std::vector<Span> spans) {
    m_spans.clear();
    m_shiftedFrom = 0;
    m_shift = 0;
    qsizetype behind = 0;
    const bool isInOrder = std::all_of(spans.begin(), spans.end(), [&](const Span& span) {
        return !span.range.isEmpty() && span.range.location >= std::exchange(behind, span.range.end());
    });
    if (isInOrder) {
        m_spans = std::move(spans);
        return;
    }
    for (const Span& span : spans) {
        add(span.range, span.attribute);
    }
}

template <typename Attribute>
void AttributeRanges<Attribute>::add(TextRange range, Attribute attribute) {
    if (range.isEmpty()) {
        return;
    }
    const std::size_t first = firstEndingBehind(range.location);
    if (first == m_spans.size()) {
        shiftFrom(first);
        m_spans.push_back({range, std::move(attribute)});
        m_shiftedFrom = m_spans.size();
    } else if (rangeAt(first) == range) {
        m_spans[first].attribute = std::move(attribute);
    } else {
        exchange(range, {{range, std::move(attribute)}});
    }
}

template <typename Attribute>
void AttributeRanges<Attribute>::follow(const TextChange& change) {
    const qsizetype removedEnd = change.offset + change.removedLength;
    const qsizetype insertedEnd = change.offset + change.insertedLength;
    const std::size_t first = firstEndingBehind(change.offset);
    const std::size_t last = std::max(first, firstStartingFrom(removedEnd));
    std::vector<Span> kept;
    for (std::size_t index = first; index < last; ++index) {
        const TextRange range = rangeAt(index);
        const qsizetype before = std::max<qsizetype>(change.offset - range.location, 0);
        const qsizetype behind = std::max<qsizetype>(range.end() - removedEnd, 0);
        if (before > 0 && behind > 0) {
            kept.push_back({{range.location, before + change.insertedLength + behind}, m_spans[index].attribute});
        } else if (before > 0) {
            kept.push_back({{range.location, before}, m_spans[index].attribute});
        } else if (behind > 0) {
            kept.push_back({{insertedEnd, behind}, m_spans[index].attribute});
        }
    }
    replaceSpans(first, last, kept);
    m_shift += change.insertedLength - change.removedLength;
}

template <typename Attribute>
auto AttributeRanges<Attribute>::within(TextRange range) const -> std::vector<Span> {
    std::vector<Span> found;
    for (std::size_t index = firstEndingBehind(range.location); index < m_spans.size(); ++index) {
        const TextRange candidate = rangeAt(index);
        if (candidate.location >= range.end()) {
            break;
        }
        found.push_back({candidate, m_spans[index].attribute});
    }
    return found;
}

// The index of the first span whose range does not meet a condition that holds for all before it and none behind.
template <typename Attribute>
template <typename Condition>
std::size_t AttributeRanges<Attribute>::firstWithout(Condition condition) const {
    std::size_t first = 0;
    for (std::size_t count = m_spans.size(); count > 0;) {
        const std::size_t half = count / 2;
        if (condition(rangeAt(first + half))) {
            first += half + 1;
            count -= half + 1;
        } else {
            count = half;
        }
    }
    return first;
}

// Makes an index the first one that is to be shifted.
template <typename Attribute>
void AttributeRanges<Attribute>::shiftFrom(std::size_t index) {
    for (; m_shiftedFrom < index; ++m_shiftedFrom) {
        m_spans[m_shiftedFrom].range.location += m_shift;
    }
    for (; m_shiftedFrom > index; --m_shiftedFrom) {
        m_spans[m_shiftedFrom - 1].range.location -= m_shift;
    }
}

// Puts spans, which lie within a range, in the place of all that the range holds; what reaches out of it stays there.
template <typename Attribute>
void AttributeRanges<Attribute>::exchange(TextRange range, const std::vector<Span>& spans) {
    if (range.isEmpty()) {
        return;
    }
    const std::size_t first = firstEndingBehind(range.location);
    const std::size_t last = std::max(first, firstStartingFrom(range.end()));
    std::vector<Span> kept;
    kept.reserve(spans.size() + 2);
    if (first < last && rangeAt(first).location < range.location) {
        const qsizetype start = rangeAt(first).location;
        kept.push_back({{start, range.location - start}, m_spans[first].attribute});
    }
    kept.insert(kept.end(), spans.begin(), spans.end());
    if (first < last && rangeAt(last - 1).end() > range.end()) {
        kept.push_back({{range.end(), rangeAt(last - 1).end() - range.end()}, m_spans[last - 1].attribute});
    }
    replaceSpans(first, last, kept);
}

// Puts spans, which are placed in the text as it is, in the place of those from `first` to before `last`; what follows
// is what is shifted then.
template <typename Attribute>
void AttributeRanges<Attribute>::replaceSpans(std::size_t first, std::size_t last, const std::vector<Span>& spans) {
    shiftFrom(last);
    const auto place = m_spans.begin() + static_cast<std::ptrdiff_t>(first);
    const std::size_t common = std::min(last - first, spans.size());
    const auto middle = std::copy_n(spans.begin(), common, place);
    const auto end = m_spans.begin() + static_cast<std::ptrdiff_t>(last);
    if (middle != end) {
        m_spans.erase(middle, end);
    } else {
        m_spans.insert(end, spans.begin() + static_cast<std::ptrdiff_t>(common), spans.end());
    }
    m_shiftedFrom = first + spans.size();
}

} // namespace quillary
