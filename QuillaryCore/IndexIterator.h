#pragma once

#include <QtGlobal>

#include <cstddef>
#include <iterator>

namespace quillary {

/// Goes through a sequence that makes its elements when `operator[]` asks for them. The sequence must outlive it.
template <typename Sequence, typename Element>
class IndexIterator {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = Element;
    using difference_type = std::ptrdiff_t;
    using pointer = void;
    using reference = Element;

    IndexIterator(const Sequence* sequence, qsizetype index) : m_sequence(sequence), m_index(index) {}

    Element operator*() const { return (*m_sequence)[m_index]; }

    IndexIterator& operator++() {
        ++m_index;
        return *this;
    }

    friend bool operator==(const IndexIterator& a, const IndexIterator& b) { return a.m_index == b.m_index; }

private:
    const Sequence* m_sequence;
    qsizetype m_index;
};

} // namespace quillary
