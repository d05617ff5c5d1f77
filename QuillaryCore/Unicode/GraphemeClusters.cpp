#include "QuillaryCore/Unicode/GraphemeClusters.h"

#include "QuillaryCore/Unicode/Icu.h"

#include <unicode/brkiter.h>

#include <utility>

namespace quillary {

namespace {

/// Below U+0300 nothing extends or joins its neighbours: between two such units there is a boundary, but for CR LF.
constexpr char16_t firstCombining = 0x300;

bool isSimple(QChar unit) {
    return unit.unicode() < firstCombining;
}

bool areCrLf(QChar first, QChar second) {
    return first == u'\r' && second == u'\n';
}

std::unique_ptr<icu::BreakIterator> newIterator() {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::BreakIterator> iterator(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    icu_support::require(status, "find grapheme clusters");
    return iterator;
}

/// An iterator over one text, lent by the thread, which keeps one for the next who asks.
class LentIterator {
public:
    explicit LentIterator(QStringView text) : m_iterator(spare() ? std::move(spare()) : newIterator()) {
        UErrorCode status = U_ZERO_ERROR;
        icu_support::TextAlias alias(text);
        m_iterator->setText(alias.get(), status);
        icu_support::require(status, "set a text");
    }

    ~LentIterator() { spare() = std::move(m_iterator); }

    LentIterator(const LentIterator&) = delete;
    LentIterator& operator=(const LentIterator&) = delete;

    icu::BreakIterator* operator->() { return m_iterator.get(); }

private:
    static std::unique_ptr<icu::BreakIterator>& spare() {
        thread_local std::unique_ptr<icu::BreakIterator> iterator;
        return iterator;
    }

    std::unique_ptr<icu::BreakIterator> m_iterator;
};

} // namespace

qsizetype nextClusterBoundary(QStringView text, qsizetype offset) {
    if (offset >= text.size() - 1) {
        return text.size();
    }
    if (offset < 0) {
        return 0;
    }
    const QChar here = text[offset];
    const QChar next = text[offset + 1];
    if (isSimple(here) && isSimple(next)) {
        return areCrLf(here, next) ? offset + 2 : offset + 1;
    }
    return LentIterator(text)->following(static_cast<int32_t>(offset));
}

qsizetype previousClusterBoundary(QStringView text, qsizetype offset) {
    if (offset > text.size()) {
        return text.size();
    }
    if (offset <= 1) {
        return 0;
    }
    const QChar last = text[offset - 1];
    const QChar before = text[offset - 2];
    if (isSimple(last) && isSimple(before)) {
        return areCrLf(before, last) ? offset - 2 : offset - 1;
    }
    // ICU moves a position within a surrogate pair to its front, which would hide that as an answer.
    const bool withinPair = offset < text.size() && last.isHighSurrogate() && text[offset].isLowSurrogate();
    return LentIterator(text)->preceding(static_cast<int32_t>(withinPair ? offset + 1 : offset));
}

bool isClusterBoundary(QStringView text, qsizetype offset) {
    if (offset <= 0 || offset >= text.size()) {
        return offset == 0 || offset == text.size();
    }
    const QChar before = text[offset - 1];
    const QChar after = text[offset];
    if (isSimple(before) && isSimple(after)) {
        return !areCrLf(before, after);
    }
    return LentIterator(text)->isBoundary(static_cast<int32_t>(offset));
}

qsizetype clusterCount(QStringView text, qsizetype upTo) {
    ClusterWalker walker(text);
    qsizetype count = 0;
    while (!walker.atEnd()) {
        walker.next();
        ++count;
        if (count > upTo) {
            break;
        }
    }
    return count;
}

QStringView clusterPrefix(QStringView text, qsizetype clusters) {
    ClusterWalker walker(text);
    for (qsizetype i = 0; i < clusters && !walker.atEnd(); ++i) {
        walker.next();
    }
    return text.first(walker.position());
}

class ClusterWalker::Boundaries {
public:
    explicit Boundaries(QStringView text) : m_iterator(text) {}

    // Asked from front to back, ICU goes on from what it knows and never looks back twice.
    qsizetype following(qsizetype offset) { return m_iterator->following(static_cast<int32_t>(offset)); }

private:
    LentIterator m_iterator;
};

ClusterWalker::ClusterWalker(QStringView text, qsizetype start) : m_text(text), m_position(start) {}

ClusterWalker::~ClusterWalker() = default;

QStringView ClusterWalker::next() {
    const qsizetype start = m_position;
    if (start >= m_text.size() - 1) {
        m_position = m_text.size();
    } else if (isSimple(m_text[start]) && isSimple(m_text[start + 1])) {
        m_position = start + (areCrLf(m_text[start], m_text[start + 1]) ? 2 : 1);
    } else {
        if (!m_boundaries) {
            m_boundaries = std::make_unique<Boundaries>(m_text);
        }
        m_position = m_boundaries->following(start);
    }
    return m_text.sliced(start, m_position - start);
}

} // namespace quillary
