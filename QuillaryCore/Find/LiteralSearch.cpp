#include "QuillaryCore/Find/LiteralSearch.h"

#include "QuillaryCore/Find/FoldedText.h"
#include "QuillaryCore/Unicode/RegularExpression.h"

#include <algorithm>
#include <vector>

namespace quillary {

namespace {

using case_folding::Folding;

bool holdsLoneSurrogate(QStringView text) {
    return !text.isValidUtf16();
}

/// How long the longest proper beginning of each beginning of a text is that also ends it.
std::vector<qsizetype> borders(QStringView text) {
    std::vector<qsizetype> result(static_cast<std::size_t>(text.size()) + 1, 0);
    qsizetype border = 0;
    for (qsizetype i = 1; i < text.size(); ++i) {
        while (border > 0 && text[i] != text[border]) {
            border = result[static_cast<std::size_t>(border)];
        }
        border += text[i] == text[border] ? 1 : 0;
        result[static_cast<std::size_t>(i) + 1] = border;
    }
    return result;
}

} // namespace

/// One search of one text.
class LiteralSearch::Run {
public:
    Run(const LiteralSearch& search, QStringView text, const Accept& accept)
        : m_search(search),
          m_literal(search.m_literal),
          m_text(text),
          m_accept(accept),
          m_singleFoldings(search.m_caseSensitive ? nullptr : case_folding::singleFoldings().data()) {}

    void scanForAnchor(const LiteralAnchor& anchor);
    void read(qsizetype from);

private:
    bool tryAt(qsizetype anchorPosition, qsizetype anchorOffset);
    std::optional<qsizetype> startBefore(qsizetype position, qsizetype foldedLength);
    std::optional<qsizetype> endFrom(qsizetype start);
    bool offer(TextRange range);

    const LiteralSearch& m_search;
    QStringView m_literal;
    QStringView m_text;
    const Accept& m_accept;
    /// What most letters are compared by; null where case matters.
    const char16_t* m_singleFoldings;
    /// Where the last occurrence ends.
    qsizetype m_end = 0;
    /// Units that were compared and did not lead to an occurrence.
    qsizetype m_wasted = 0;
};

std::optional<LiteralSearch> LiteralSearch::make(const QString& literal, bool caseSensitive, bool wholeWord) {
    if (literal.isEmpty() || holdsLoneSurrogate(literal)) {
        return std::nullopt;
    }
    LiteralSearch search;
    search.m_caseSensitive = caseSensitive;
    search.m_wholeWord = wholeWord;
    search.m_literal = caseSensitive ? literal : case_folding::fold(literal);
    search.m_anchors =
        caseSensitive ? LiteralAnchors::exact(search.m_literal) : LiteralAnchors::folded(search.m_literal);
    return search;
}

void LiteralSearch::forEach(QStringView text, const Accept& accept) const {
    Run run(*this, text, accept);
    if (m_anchors.isEmpty()) {
        run.read(0);
    } else {
        run.scanForAnchor(m_anchors.rarest(text));
    }
}

void LiteralSearch::Run::scanForAnchor(const LiteralAnchor& anchor) {
    // Comparing in vain may cost as much as reading, and a little more before it is noticed.
    constexpr qsizetype wasteAllowed = 4096;
    const qsizetype origin = m_search.m_caseSensitive ? anchor.offset : 0;
    if (m_text.size() <= origin) {
        return;
    }
    qsizetype readFrom = -1;
    const auto accept = [&](qsizetype position) {
        if (m_wasted > position + wasteAllowed) {
            readFrom = m_end;
            return true;
        }
        return !tryAt(position + origin, anchor.offset);
    };
    const QStringView scanned = m_text.sliced(origin);
    if (anchor.second) {
        scanForPair(scanned, anchor.first, *anchor.second, anchor.distance, {}, accept);
    } else {
        scanForAny(scanned, std::span(&anchor.first, 1), accept);
    }
    if (readFrom >= 0) {
        read(readFrom);
    }
}

/// Looks for an occurrence with the anchor at a position. False if enough were found.
bool LiteralSearch::Run::tryAt(qsizetype anchorPosition, qsizetype anchorOffset) {
    if (anchorPosition < m_end) {
        return true;
    }
    const std::optional<qsizetype> start = startBefore(anchorPosition, anchorOffset);
    if (!start || *start < m_end) {
        return true;
    }
    const std::optional<qsizetype> end = endFrom(*start);
    return !end || offer({*start, *end - *start});
}

/// Where an occurrence begins whose first `foldedLength` units stand before a position.
std::optional<qsizetype> LiteralSearch::Run::startBefore(qsizetype position, qsizetype foldedLength) {
    if (m_search.m_caseSensitive) {
        return position - foldedLength;
    }
    qsizetype left = foldedLength;
    while (left > 0 && position > 0) {
        if (const char16_t single = m_singleFoldings[m_text[position - 1].unicode()]; single != 0) {
            ++m_wasted;
            if (m_literal[left - 1] != QChar(single)) {
                return std::nullopt;
            }
            --left;
            --position;
            continue;
        }
        const Folding folding = case_folding::foldPrevious(m_text, position);
        ++m_wasted;
        left -= folding.size();
        if (left < 0 || m_literal.sliced(left, folding.size()) != QStringView(folding.data(), folding.size())) {
            return std::nullopt;
        }
    }
    return left == 0 ? std::optional(position) : std::nullopt;
}

/// Where an occurrence ends that begins at a position.
std::optional<qsizetype> LiteralSearch::Run::endFrom(qsizetype start) {
    const qsizetype length = m_literal.size();
    if (m_search.m_caseSensitive) {
        if (start + length > m_text.size()) {
            return std::nullopt;
        }
        const QStringView there = m_text.sliced(start, length);
        const auto* const differing = std::mismatch(m_literal.begin(), m_literal.end(), there.begin()).first;
        m_wasted += differing - m_literal.begin();
        return differing == m_literal.end() ? std::optional(start + length) : std::nullopt;
    }
    qsizetype position = start;
    for (qsizetype matched = 0; matched < length;) {
        if (position == m_text.size()) {
            return std::nullopt;
        }
        ++m_wasted;
        if (const char16_t single = m_singleFoldings[m_text[position].unicode()]; single != 0) {
            if (m_literal[matched] != QChar(single)) {
                return std::nullopt;
            }
            ++matched;
            ++position;
            continue;
        }
        const Folding folding = case_folding::foldNext(m_text, position);
        if (matched + folding.size() > length ||
            m_literal.sliced(matched, folding.size()) != QStringView(folding.data(), folding.size())) {
            return std::nullopt;
        }
        matched += folding.size();
    }
    return position;
}

/// Hands an occurrence out, if it is wanted. False if enough were found.
bool LiteralSearch::Run::offer(TextRange range) {
    if (m_search.m_wholeWord && (!isWordBoundary(m_text, range.location) || !isWordBoundary(m_text, range.end()))) {
        return true;
    }
    m_end = range.end();
    m_wasted -= m_literal.size();
    return m_accept(range);
}

/// Reads the folded text unit by unit. An occurrence begins with the folding of a letter and ends with one.
void LiteralSearch::Run::read(qsizetype from) {
    const std::vector<qsizetype> border = borders(m_literal);
    // For each of the last units, where its letter begins; -1 if it is not the first one of a folding.
    std::vector<qsizetype> starts(static_cast<std::size_t>(m_literal.size()), -1);
    std::size_t slot = 0;
    qsizetype matched = 0;
    for (qsizetype position = from; position < m_text.size();) {
        const qsizetype letter = position;
        Folding folding;
        if (m_search.m_caseSensitive) {
            folding.append(m_text[position++].unicode());
        } else {
            folding = case_folding::foldNext(m_text, position);
        }
        for (qsizetype i = 0; i < folding.size(); ++i) {
            starts[slot] = i == 0 ? letter : -1;
            slot = slot + 1 == starts.size() ? 0 : slot + 1;
            while (matched > 0 && (matched == m_literal.size() || m_literal[matched] != QChar(folding[i]))) {
                matched = border[static_cast<std::size_t>(matched)];
            }
            matched += m_literal[matched] == QChar(folding[i]) ? 1 : 0;
        }
        // The oldest of the last units is the first of the occurrence.
        const qsizetype start = starts[slot];
        if (matched == m_literal.size() && start >= m_end && !offer({start, position - start})) {
            return;
        }
    }
}

} // namespace quillary
