#pragma once

#include "QuillaryCore/Formats/ByteBlock.h"

namespace quillary {

/// Looks over UTF-8 in blocks. Sequences of two and three bytes are recognised by their bit masks alone; where other or
/// ill-formed ones stand it only says that it is not certain.
class UTF8BlockCheck {
public:
    bool isASCII() const { return m_isASCII; }

    /// Whether all that was added is well-formed for certain.
    bool isCertain() const { return m_isCertain; }

    /// Adds the first `size` bytes of a block.
    void add(const ByteBlock& block, int size) {
        const quint32 added = (1U << size) - 1;
        const quint32 beyondASCII = block.beyondASCII() & added;
        if ((beyondASCII | m_awaited) == 0) {
            return;
        }
        m_isASCII = false;
        // The bytes behind E0, ED and F0 to F4 have narrower bounds than continuation bytes have.
        const quint32 leadsOfTwo = block.between('\xC2', '\xDF') & added;
        const quint32 leadsOfThree = block.between('\xE1', '\xEF') & ~block.equalTo('\xED') & added;
        const quint32 continuations = block.between('\x80', '\xBF') & added;
        const quint32 awaited = m_awaited | (leadsOfTwo | leadsOfThree) << 1 | leadsOfThree << 2;
        m_isCertain = m_isCertain && beyondASCII == (leadsOfTwo | leadsOfThree | continuations) &&
                      continuations == (awaited & added);
        m_awaited = awaited >> size;
    }

    /// Adds one byte.
    void add(char byte) {
        if (static_cast<signed char>(byte) < 0) {
            m_isASCII = m_isCertain = false;
        }
    }

    /// Says that no sequence goes on here.
    void end() {
        m_isCertain = m_isCertain && m_awaited == 0;
        m_awaited = 0;
    }

private:
    bool m_isASCII = true;
    bool m_isCertain = true;
    /// The places of the next bytes where continuation bytes must stand.
    quint32 m_awaited = 0;
};

} // namespace quillary
