#include "QuillaryCore/Text/TextPages.h"

#include "QuillaryCore/Text/LineTerminators.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace quillary {

TextPages::TextPages(QString text, qsizetype pageUnits)
    : m_pageUnits(pageUnits), m_length(text.size()), m_shared(std::move(text)) {
    Q_ASSERT(pageUnits >= 8);
    // Decoders reserve for the worst case, and a note that is never edited should cost its text.
    if (m_shared.isDetached() && m_shared.capacity() - m_length > m_length / 4) {
        m_shared.squeeze();
    }
}

bool TextPages::belongTogether(char16_t unit, char16_t next) {
    return (unit == u'\r' && next == u'\n') || (QChar::isHighSurrogate(unit) && QChar::isLowSurrogate(next));
}

char16_t TextPages::unitAt(qsizetype offset) const {
    Q_ASSERT(offset >= 0 && offset < m_length);
    if (m_isFlat) {
        return m_shared.at(offset).unicode();
    }
    const Page& holder = page(pageAt(offset));
    return holder.units[offset - holder.start];
}

QString TextPages::text() const {
    if (!m_isFlat) {
        QString whole(m_length, Qt::Uninitialized);
        char16_t* target = reinterpret_cast<char16_t*>(whole.data());
        for (Page& each : m_pages) {
            std::memcpy(target, each.units, static_cast<std::size_t>(each.length) * sizeof(char16_t));
            each.units = target;
            each.own = QString();
            target += each.length;
        }
        m_shared = std::move(whole);
        m_sharedUnits = m_length;
        m_isFlat = true;
    }
    return m_shared;
}

QString TextPages::text(TextRange range) const {
    Q_ASSERT(range.location >= 0 && range.length >= 0 && range.end() <= m_length);
    if (m_isFlat) {
        return m_shared.mid(range.location, range.length);
    }
    QString result(range.length, Qt::Uninitialized);
    char16_t* target = reinterpret_cast<char16_t*>(result.data());
    for (qsizetype offset = range.location; offset < range.end();) {
        const QStringView chunk = chunkAt(offset).left(range.end() - offset);
        std::memcpy(target, chunk.utf16(), static_cast<std::size_t>(chunk.size()) * sizeof(char16_t));
        target += chunk.size();
        offset += chunk.size();
    }
    return result;
}

QStringView TextPages::chunkAt(qsizetype offset) const {
    Q_ASSERT(offset >= 0 && offset <= m_length);
    if (m_isFlat) {
        return QStringView(m_shared).sliced(offset);
    }
    const Page& holder = page(pageAt(offset));
    return holder.view().sliced(offset - holder.start);
}

QStringView TextPages::chunkBefore(qsizetype offset) const {
    Q_ASSERT(offset >= 0 && offset <= m_length);
    if (m_isFlat) {
        return QStringView(m_shared).first(offset);
    }
    const Page& holder = page(pageAt(std::max<qsizetype>(offset - 1, 0)));
    return holder.view().first(offset - holder.start);
}

bool TextPages::equals(QStringView other) const {
    if (other.size() != m_length) {
        return false;
    }
    if (m_isFlat) {
        return other.utf16() == QStringView(m_shared).utf16() || other == m_shared;
    }
    for (const Page& each : m_pages) {
        if (other.first(each.length) != each.view()) {
            return false;
        }
        other = other.sliced(each.length);
    }
    return true;
}

void TextPages::setText(QString text) {
    *this = TextPages(std::move(text), m_pageUnits);
}

qsizetype TextPages::lineCount() const {
    layOutPages();
    countLinesUpTo(pageCount() - 1);
    return m_pages.back().firstLine + m_pages.back().terminators + 1;
}

qsizetype TextPages::lineAt(qsizetype offset) const {
    const qsizetype index = pageAt(offset);
    countLinesUpTo(index);
    const Page& holder = page(index);
    const qsizetype position = offset - holder.start;
    if (m_endsPage == index) {
        return holder.firstLine + (std::upper_bound(m_ends.begin(), m_ends.end(), position) - m_ends.begin());
    }
    // A list of the ends would cost more than it gives if the next question is about another page.
    const QStringView before = holder.view().first(position);
    const bool isWithinCrLf =
        position > 0 && position < holder.length && before.back() == u'\r' && holder.units[position] == u'\n';
    return holder.firstLine + lineTerminatorCount(before) - (isWithinCrLf ? 1 : 0);
}

qsizetype TextPages::lineStart(qsizetype line) const {
    Q_ASSERT(line >= 0);
    if (line == 0) {
        return 0;
    }
    layOutPages();
    const auto lastLine = [](const Page& each) { return each.firstLine + each.terminators; };
    while (m_linesKnown < pageCount() && (m_linesKnown == 0 || lastLine(page(m_linesKnown - 1)) < line)) {
        countLinesUpTo(m_linesKnown);
    }
    const auto known = m_pages.begin() + m_linesKnown;
    const auto holder =
        std::partition_point(m_pages.begin(), known, [&](const Page& each) { return lastLine(each) < line; });
    if (holder == known) {
        return m_length;
    }
    const qsizetype index = holder - m_pages.begin();
    knowStartsUpTo(index);
    return holder->start + lineEndsIn(index)[static_cast<std::size_t>(line - holder->firstLine - 1)];
}

void TextPages::layOutPages() const {
    if (!m_pages.empty()) {
        return;
    }
    const char16_t* const units = QStringView(m_shared).utf16();
    const qsizetype count = std::max<qsizetype>(1, (m_length + usualUnits() - 1) / usualUnits());
    m_pages.reserve(static_cast<std::size_t>(count));
    qsizetype start = 0;
    for (qsizetype i = 1; i <= count; ++i) {
        qsizetype end = m_length * i / count;
        if (end > start && end < m_length && belongTogether(units[end - 1], units[end])) {
            ++end;
        }
        if (end > start || count == 1) {
            m_pages.push_back({{}, units + start, end - start, start});
        }
        start = end;
    }
    m_sharedUnits = m_length;
    m_startsKnown = pageCount();
    m_linesKnown = 0;
}

qsizetype TextPages::pageAt(qsizetype offset) const {
    layOutPages();
    if (m_lastAsked < m_startsKnown && page(m_lastAsked).start <= offset && offset < page(m_lastAsked).end()) {
        return m_lastAsked;
    }
    while (m_startsKnown < pageCount() && (m_startsKnown == 0 || page(m_startsKnown - 1).end() <= offset)) {
        knowStartsUpTo(m_startsKnown);
    }
    const auto known = m_pages.begin() + m_startsKnown;
    const auto behind =
        std::partition_point(m_pages.begin(), known, [&](const Page& each) { return each.start <= offset; });
    m_lastAsked = behind - m_pages.begin() - 1;
    return m_lastAsked;
}

void TextPages::knowStartsUpTo(qsizetype pageIndex) const {
    for (; m_startsKnown <= pageIndex; ++m_startsKnown) {
        m_pages[static_cast<std::size_t>(m_startsKnown)].start = m_startsKnown == 0 ? 0 : page(m_startsKnown - 1).end();
    }
}

void TextPages::countLinesUpTo(qsizetype pageIndex) const {
    for (; m_linesKnown <= pageIndex; ++m_linesKnown) {
        Page& each = m_pages[static_cast<std::size_t>(m_linesKnown)];
        if (each.terminators < 0) {
            each.terminators = lineTerminatorCount(each.view());
        }
        each.firstLine = m_linesKnown == 0 ? 0 : page(m_linesKnown - 1).firstLine + page(m_linesKnown - 1).terminators;
    }
}

const std::vector<qsizetype>& TextPages::lineEndsIn(qsizetype pageIndex) const {
    if (m_endsPage != pageIndex) {
        m_ends.clear();
        appendLineEnds(page(pageIndex).view(), m_ends);
        m_endsPage = pageIndex;
    }
    return m_ends;
}

void TextPages::forgetIndexFrom(qsizetype pageIndex) {
    m_isFlat = false;
    m_startsKnown = std::min(m_startsKnown, pageIndex);
    m_linesKnown = std::min(m_linesKnown, pageIndex);
    if (m_endsPage >= pageIndex) {
        m_endsPage = -1;
    }
}

} // namespace quillary
