#pragma once

#include "QuillaryCore/Text/TextReplacement.h"

#include <QString>

#include <span>
#include <vector>

namespace quillary {

/// A text in pages of some thousand units, with an index of offsets and of lines over them. It stores any units as they
/// are and tells nobody.
///
/// A text comes in as one string that stays shared with whoever else holds it: pages are slices of it until they are
/// edited, and only an edited page gets a copy of its own. The slices together never hold a string of more than twice
/// their size alive. No page begins within CR LF or a surrogate pair.
///
/// The index is mended when it is asked, from the first edited page on; nothing here is safe for use from two threads.
class TextPages {
public:
    static constexpr qsizetype defaultPageUnits = 16'384;

    /// `pageUnits`, at least 8, is the greatest length of a page.
    explicit TextPages(QString text, qsizetype pageUnits = defaultPageUnits);

    qsizetype length() const { return m_length; }

    char16_t unitAt(qsizetype offset) const;

    /// The whole text: one copy after an edit, whose slices the pages then become; else the string that is there.
    QString text() const;
    QString text(TextRange range) const;

    /// The longest stretches in one piece of memory from `offset` on and up to `offset`.
    QStringView chunkAt(qsizetype offset) const;
    QStringView chunkBefore(qsizetype offset) const;

    bool equals(QStringView other) const;

    void setText(QString text);

    /// Replaces disjoint ranges in ascending order, all given in the unchanged text, each page being rebuilt once. Only
    /// a single text may be a part of this one.
    void replace(std::span<const TextReplacementView> replacements);

    qsizetype lineCount() const;
    qsizetype lineAt(qsizetype offset) const;

    /// Where a line begins; for the line count itself, the end of the text.
    qsizetype lineStart(qsizetype line) const;

private:
    struct Page {
        QString own; // null while the page is a slice of the shared string
        const char16_t* units = nullptr;
        qsizetype length = 0;
        qsizetype start = 0;        // true of the first m_startsKnown pages
        qsizetype firstLine = 0;    // terminators before the page; true of the first m_linesKnown pages
        qsizetype terminators = -1; // -1 until they are counted

        QStringView view() const { return {units, length}; }

        qsizetype end() const { return start + length; }
    };

    /// Whether two units must lie in one page: CR LF and surrogate pairs.
    static bool belongTogether(char16_t unit, char16_t next);

    /// What a page has when many are made at once, so that there is room to type, and what it is joined with a
    /// neighbour below.
    qsizetype usualUnits() const { return m_pageUnits * 3 / 4; }

    qsizetype leastUnits() const { return m_pageUnits / 4; }

    void layOutPages() const;

    const Page& page(qsizetype index) const { return m_pages[static_cast<std::size_t>(index)]; }

    qsizetype pageCount() const { return static_cast<qsizetype>(m_pages.size()); }

    qsizetype pageAt(qsizetype offset) const;
    void knowStartsUpTo(qsizetype pageIndex) const;
    void countLinesUpTo(qsizetype pageIndex) const;
    const std::vector<qsizetype>& lineEndsIn(qsizetype pageIndex) const;
    void forgetIndexFrom(qsizetype pageIndex);

    bool replaceInPage(const TextReplacementView& replacement);
    void replaceInRun(std::span<const TextReplacementView> replacements);
    void appendViews(qsizetype from, qsizetype to, std::vector<QStringView>& views) const;
    std::vector<Page> cut(std::span<const QStringView> views, qsizetype length) const;
    void splice(qsizetype first, qsizetype last, std::vector<Page> pages);
    void releaseShared();

    qsizetype m_pageUnits;
    qsizetype m_length;
    mutable QString m_shared;
    mutable bool m_isFlat = true; // the shared string is the text
    mutable qsizetype m_sharedUnits = 0;
    mutable std::vector<Page> m_pages; // empty until it is needed
    mutable qsizetype m_startsKnown = 0;
    mutable qsizetype m_linesKnown = 0;
    mutable qsizetype m_lastAsked = 0; // a page that is likely to be asked for again
    mutable qsizetype m_endsPage = -1; // the page whose line ends are listed
    mutable std::vector<qsizetype> m_ends;
};

} // namespace quillary
