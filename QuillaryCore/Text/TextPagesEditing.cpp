#include "QuillaryCore/Text/TextPages.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace quillary {

namespace {

// What a page gets over its length when it becomes its own, so that the next keys need no new memory.
constexpr qsizetype roomToType = 256;

} // namespace

void TextPages::replace(std::span<const TextReplacementView> replacements) {
    // From the last page to the first, so that offsets in the unchanged text and the index before them stay true.
    for (std::size_t behind = replacements.size(); behind > 0;) {
        std::size_t first = behind - 1;
        qsizetype pageIndex = pageAt(replacements[first].range.location);
        while (first > 0 && pageAt(replacements[first - 1].range.end()) >= pageIndex) {
            --first;
            pageIndex = pageAt(replacements[first].range.location);
        }
        const std::span<const TextReplacementView> run = replacements.subspan(first, behind - first);
        if (run.size() > 1 || !replaceInPage(run.front())) {
            replaceInRun(run);
        }
        behind = first;
    }
    releaseShared();
}

// The common case: what a page begins and ends with stays, and it neither bursts nor becomes too small.
bool TextPages::replaceInPage(const TextReplacementView& replacement) {
    const auto& [range, text] = replacement;
    const qsizetype index = pageAt(range.location);
    Page& holder = m_pages[static_cast<std::size_t>(index)];
    const qsizetype position = range.location - holder.start;
    const qsizetype rest = holder.length - position - range.length;
    const qsizetype length = position + text.size() + rest;
    if (rest < 0 || (position == 0 && index > 0) || (rest == 0 && index + 1 < pageCount()) || length > m_pageUnits ||
        (length < leastUnits() && pageCount() > 1)) {
        return false;
    }
    if (holder.own.isNull()) {
        QString own;
        own.reserve(length + std::min(roomToType, m_pageUnits));
        own.append(holder.view().first(position)).append(text).append(holder.view().last(rest));
        holder.own = std::move(own);
        m_sharedUnits -= holder.length;
    } else {
        holder.own.replace(position, range.length, text.data(), text.size());
    }
    holder.units = QStringView(holder.own).utf16();
    holder.length = length;
    holder.terminators = -1;
    m_length += text.size() - range.length;
    forgetIndexFrom(index);
    return true;
}

// Joins the pages that the replacements touch with the texts that come, and with neighbours where the result would be
// too small or would tear units apart that belong together, and cuts the whole into pages anew.
void TextPages::replaceInRun(std::span<const TextReplacementView> replacements) {
    qsizetype first = pageAt(replacements.front().range.location);
    qsizetype last = pageAt(replacements.back().range.end());
    std::vector<QStringView> views;
    qsizetype offset = page(first).start;
    qsizetype growth = 0;
    for (const auto& [range, text] : replacements) {
        appendViews(offset, range.location, views);
        if (!text.isEmpty()) {
            views.push_back(text);
        }
        offset = range.end();
        growth += text.size() - range.length;
    }
    appendViews(offset, page(last).end(), views);
    qsizetype length = page(last).end() - page(first).start + growth;

    const auto mustJoin = [&](QStringView left, QStringView right) {
        return length < leastUnits() || belongTogether(left.back().unicode(), right.front().unicode());
    };
    while (first > 0 || last + 1 < pageCount()) {
        if (first > 0 && (views.empty() || mustJoin(page(first - 1).view(), views.front()))) {
            views.insert(views.begin(), page(--first).view());
            length += views.front().size();
        } else if (last + 1 < pageCount() && (views.empty() || mustJoin(views.back(), page(last + 1).view()))) {
            views.push_back(page(++last).view());
            length += views.back().size();
        } else {
            break;
        }
    }
    splice(first, last, cut(views, length));
    m_length += growth;
}

void TextPages::appendViews(qsizetype from, qsizetype to, std::vector<QStringView>& views) const {
    for (qsizetype index = pageAt(from); from < to; ++index) {
        const qsizetype end = std::min(to, page(index).end());
        views.push_back(page(index).view().sliced(from - page(index).start, end - from));
        from = end;
    }
}

std::vector<TextPages::Page> TextPages::cut(std::span<const QStringView> views, qsizetype length) const {
    const qsizetype count = length > m_pageUnits ? (length + usualUnits() - 1) / usualUnits() : 1;
    std::vector<Page> pages;
    pages.reserve(static_cast<std::size_t>(count));
    auto view = views.begin();
    QStringView rest = view == views.end() ? QStringView() : *view;
    qsizetype done = 0;
    for (qsizetype i = 1; i <= count; ++i) {
        const qsizetype end = length * i / count;
        QString own;
        own.reserve(std::max<qsizetype>(end - done, 0) + 2);
        const auto take = [&](qsizetype units) {
            own.append(rest.first(units));
            done += units;
            rest = rest.sliced(units);
            if (rest.isEmpty() && view != views.end() && ++view != views.end()) {
                rest = *view;
            }
        };
        while (done < end) {
            take(std::min(rest.size(), end - done));
        }
        if (!own.isEmpty() && !rest.isEmpty() && belongTogether(own.back().unicode(), rest.front().unicode())) {
            take(1);
        }
        if (!own.isEmpty() || count == 1) {
            const QStringView units = own;
            pages.push_back({std::move(own), units.utf16(), units.size()});
        }
    }
    return pages;
}

void TextPages::splice(qsizetype first, qsizetype last, std::vector<Page> pages) {
    const auto from = m_pages.begin() + first;
    const auto to = m_pages.begin() + last + 1;
    for (auto old = from; old != to; ++old) {
        m_sharedUnits -= old->own.isNull() ? old->length : 0;
    }
    const auto common = std::min(to - from, static_cast<std::ptrdiff_t>(pages.size()));
    std::move(pages.begin(), pages.begin() + common, from);
    if (from + common != to) {
        m_pages.erase(from + common, to);
    } else {
        m_pages.insert(to, std::make_move_iterator(pages.begin() + common), std::make_move_iterator(pages.end()));
    }
    forgetIndexFrom(first);
}

// Copies the last slices of a string of which less than half is in use. The edits that made the other pages their own
// have paid for it.
void TextPages::releaseShared() {
    if (m_isFlat || m_sharedUnits >= m_shared.size() / 2) {
        return;
    }
    for (Page& each : m_pages) {
        if (each.own.isNull()) {
            each.own = each.view().toString();
            each.units = QStringView(each.own).utf16();
        }
    }
    m_sharedUnits = 0;
    m_shared = QString();
}

} // namespace quillary
