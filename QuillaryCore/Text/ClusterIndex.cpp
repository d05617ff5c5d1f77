#include "QuillaryCore/Text/ClusterIndex.h"

#include "QuillaryCore/Text/TextPages.h"
#include "QuillaryCore/Unicode/ClusterRestart.h"
#include "QuillaryCore/Unicode/GraphemeClusters.h"

#include <algorithm>

namespace quillary {

namespace {

/// What a search may cost, in units, before its result is worth remembering.
constexpr qsizetype costly = 256;

/// How far a first look reaches behind the unit in question: few clusters are longer.
constexpr qsizetype firstLook = 64;

/// Below this one a unit is a cluster of its own beside its like, but for CR LF.
constexpr char16_t firstJoiningUnit = 0x300;

char32_t lastPointOf(QStringView text) {
    const char16_t last = text.back().unicode();
    if (text.size() > 1 && QChar::isLowSurrogate(last) && text[text.size() - 2].isHighSurrogate()) {
        return QChar::surrogateToUcs4(text[text.size() - 2].unicode(), last);
    }
    return last;
}

char32_t firstPointOf(QStringView text) {
    const char16_t first = text.front().unicode();
    if (text.size() > 1 && QChar::isHighSurrogate(first) && text[1].isLowSurrogate()) {
        return QChar::surrogateToUcs4(first, text[1].unicode());
    }
    return first;
}

} // namespace

TextRange ClusterIndex::clusterAt(const TextPages& pages, qsizetype offset) {
    const QStringView ahead = pages.chunkAt(offset);
    const char16_t here = ahead.front().unicode();
    const char16_t next = ahead.size() > 1              ? ahead[1].unicode()
                          : offset + 1 < pages.length() ? pages.unitAt(offset + 1)
                                                        : u' ';
    const char16_t before = offset > 0 ? pages.unitAt(offset - 1) : u' ';
    if (here < firstJoiningUnit && next < firstJoiningUnit && before < firstJoiningUnit) {
        if (here == u'\n' && before == u'\r') {
            return {offset - 1, 2};
        }
        return {offset, here == u'\r' && next == u'\n' ? 2 : 1};
    }

    const TextRange* const known = lastKnownAt(offset);
    if (known && known->end() > offset) {
        return *known;
    }
    return search(pages, restartBefore(pages, offset, known ? known->end() : 0), offset);
}

void ClusterIndex::forgetFrom(qsizetype offset) {
    // Where a cluster ends depends on the code point behind it.
    const auto firstDoubtful = std::partition_point(
        m_known.begin(), m_known.end(), [&](const TextRange& cluster) { return cluster.end() + 2 <= offset; });
    m_known.erase(firstDoubtful, m_known.end());
}

// The nearest place at or before an offset where a cluster surely begins, `floor` being one.
qsizetype ClusterIndex::restartBefore(const TextPages& pages, qsizetype offset, qsizetype floor) {
    if (offset > floor && QChar::isLowSurrogate(pages.unitAt(offset)) &&
        QChar::isHighSurrogate(pages.unitAt(offset - 1))) {
        --offset;
    }
    char32_t after = firstPointOf(pages.chunkAt(offset));
    while (offset > floor) {
        for (QStringView chunk = pages.chunkBefore(offset); !chunk.isEmpty() && offset > floor;) {
            const char32_t before = lastPointOf(chunk);
            if (isClusterRestart(before, after)) {
                return offset;
            }
            const qsizetype units = QChar::requiresSurrogates(before) ? 2 : 1;
            chunk.chop(units);
            offset -= units;
            after = before;
        }
    }
    return floor;
}

// Goes from boundary to boundary, from `start`, which is one, to the cluster that holds the unit at `offset`.
TextRange ClusterIndex::search(const TextPages& pages, qsizetype start, qsizetype offset) {
    qsizetype remembered = start;
    for (qsizetype end = offset + firstLook;; end += end - start) {
        end = std::min(end, pages.length());
        if (end < pages.length() && QChar::isHighSurrogate(pages.unitAt(end - 1))) {
            ++end;
        }
        const QStringView chunk = pages.chunkAt(start);
        const QString joined = chunk.size() < end - start ? pages.text({start, end - start}) : QString();
        const QStringView window = joined.isNull() ? chunk.first(end - start) : QStringView(joined);
        const qsizetype base = start;
        for (ClusterWalker walker(window); !walker.atEnd();) {
            start = base + walker.position();
            const TextRange cluster{start, walker.next().size()};
            if (walker.atEnd() && end < pages.length()) {
                break; // it may go on behind the window
            }
            if (cluster.end() - remembered >= costly) {
                remember(cluster);
                remembered = cluster.end();
            }
            if (cluster.end() > offset) {
                return cluster;
            }
        }
    }
}

const TextRange* ClusterIndex::lastKnownAt(qsizetype offset) const {
    const auto behind = std::partition_point(m_known.begin(), m_known.end(),
                                             [&](const TextRange& cluster) { return cluster.location <= offset; });
    return behind == m_known.begin() ? nullptr : &*(behind - 1);
}

void ClusterIndex::remember(TextRange cluster) {
    const auto place = std::partition_point(m_known.begin(), m_known.end(),
                                            [&](const TextRange& other) { return other.location < cluster.location; });
    if (place == m_known.end() || place->location != cluster.location) {
        m_known.insert(place, cluster);
    }
}

} // namespace quillary
