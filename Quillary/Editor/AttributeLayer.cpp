#include "Quillary/Editor/AttributeLayer.h"

#include <algorithm>

namespace quillary {

namespace {

/// The first span of a sorted list that ends behind a position.
template <typename Spans>
auto firstEndingBehind(Spans& spans, qsizetype position) {
    return std::partition_point(spans.begin(), spans.end(),
                                [&](const AttributeLayer::Span& span) { return span.range.end() <= position; });
}

} // namespace

void AttributeLayer::add(TextRange range, QRgb color) {
    if (range.isEmpty()) {
        return;
    }
    if (m_spans.empty() || m_spans.back().range.end() <= range.location) {
        m_spans.push_back({range, color});
        return;
    }
    remove(range);
    m_spans.insert(firstEndingBehind(m_spans, range.location), {range, color});
}

void AttributeLayer::remove(TextRange range) {
    const auto first = firstEndingBehind(m_spans, range.location);
    auto last = first;
    std::vector<Span> rest;
    for (; last != m_spans.end() && last->range.location < range.end(); ++last) {
        if (last->range.location < range.location) {
            rest.push_back({{last->range.location, range.location - last->range.location}, last->color});
        }
        if (last->range.end() > range.end()) {
            rest.push_back({{range.end(), last->range.end() - range.end()}, last->color});
        }
    }
    m_spans.insert(m_spans.erase(first, last), rest.begin(), rest.end());
}

void AttributeLayer::shift(const TextChange& change) {
    const qsizetype removedEnd = change.offset + change.removedLength;
    const qsizetype growth = change.insertedLength - change.removedLength;
    const auto first = firstEndingBehind(m_spans, change.offset);
    for (auto span = first; span != m_spans.end(); ++span) {
        TextRange& range = span->range;
        if (range.location >= removedEnd) {
            range.location += growth;
        } else if (range.location < change.offset && range.end() > removedEnd) {
            range.length += growth;
        } else if (range.location < change.offset) {
            range.length = change.offset - range.location;
        } else {
            range.length = std::max<qsizetype>(range.end() - removedEnd, 0);
            range.location = change.offset + change.insertedLength;
        }
    }
    m_spans.erase(std::remove_if(first, m_spans.end(), [](const Span& span) { return span.range.isEmpty(); }),
                  m_spans.end());
}

std::span<const AttributeLayer::Span> AttributeLayer::within(TextRange range) const {
    const auto first = firstEndingBehind(m_spans, range.location);
    const auto last =
        std::partition_point(first, m_spans.end(), [&](const Span& span) { return span.range.location < range.end(); });
    return {first, last};
}

} // namespace quillary
