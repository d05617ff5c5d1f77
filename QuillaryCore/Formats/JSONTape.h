#pragma once

#include <QtGlobal>

#include <cstdlib>
#include <memory>
#include <utility>

namespace quillary {

/// The structure of a JSON text: one 64-bit word a value, in the order of the text. Strings and numbers are offsets of
/// their first byte in the text, where they end of themselves; of an object's member the key's word comes first. A
/// container that holds something has two words: how many children it has, and the position past its last one.
class JSONTape {
public:
    enum class Tag : quint8 {
        object,
        array,
        emptyObject,
        emptyArray,
        asciiString,   ///< neither escapes nor bytes beyond ASCII
        plainString,   ///< well-formed UTF-8 without escapes
        encodedString, ///< to be decoded: it holds escapes or ill-formed bytes
        number,
        yes,
        no,
        null,
    };

    /// An empty tape for a text of so many bytes.
    explicit JSONTape(qsizetype textSize) { grow(textSize / 6 + 16); }

    JSONTape(JSONTape&& other) noexcept
        : m_words(std::move(other.m_words)),
          m_size(std::exchange(other.m_size, 0)),
          m_capacity(std::exchange(other.m_capacity, 0)) {}

    JSONTape& operator=(JSONTape&&) = delete;

    qsizetype size() const { return m_size; }

    Tag tag(qsizetype position) const { return static_cast<Tag>(word(position) & tagMask); }

    /// An offset in the text, or the number of children.
    qsizetype payload(qsizetype position) const { return static_cast<qsizetype>(word(position) >> tagBits); }

    bool isFullContainer(qsizetype position) const { return tag(position) <= Tag::array; }

    /// The position of the first child of a container that holds something: its value, or its key in an object.
    static qsizetype firstChild(qsizetype position) { return position + 2; }

    /// The position after the value that stands here.
    qsizetype next(qsizetype position) const {
        return isFullContainer(position) ? static_cast<qsizetype>(word(position + 1)) : position + 1;
    }

    void append(Tag tag, qsizetype payload) {
        if (m_size == m_capacity) {
            grow(m_capacity + m_capacity / 2);
        }
        m_words.get()[m_size++] = packed(tag, payload);
    }

    /// Begins a container that will hold something; what is appended until it is closed lies in it.
    qsizetype open(Tag tag) {
        append(tag, 0);
        append(tag, 0);
        return m_size - 2;
    }

    void close(qsizetype position, qsizetype childCount) {
        m_words.get()[position] = packed(tag(position), childCount);
        m_words.get()[position + 1] = static_cast<quint64>(m_size);
    }

    /// Gives back what was allocated in advance.
    void squeeze() { grow(m_size); }

private:
    static constexpr int tagBits = 4;
    static constexpr quint64 tagMask = (1U << tagBits) - 1;

    struct Free {
        void operator()(quint64* words) const { std::free(words); }
    };

    static quint64 packed(Tag tag, qsizetype payload) {
        return static_cast<quint64>(payload) << tagBits | static_cast<quint64>(tag);
    }

    quint64 word(qsizetype position) const { return m_words.get()[position]; }

    // Blocks of this size are moved by remapping their pages, so that growing a big tape copies nothing.
    void grow(qsizetype capacity) {
        auto* const words =
            static_cast<quint64*>(std::realloc(m_words.get(), static_cast<std::size_t>(capacity) * sizeof(quint64)));
        Q_CHECK_PTR(words);
        static_cast<void>(m_words.release());
        m_words.reset(words);
        m_capacity = capacity;
    }

    std::unique_ptr<quint64[], Free> m_words;
    qsizetype m_size = 0;
    qsizetype m_capacity = 0;
};

} // namespace quillary
