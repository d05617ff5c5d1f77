#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace quillary {

/// A raw text of Markdown without its marks, with what they said beside it. A text may be nothing but runs, so that
/// they are kept small.
struct MarkdownStyledText {
    struct Run {
        qint32 start = 0;
        qint32 length = 0;
        bool emphasis = false;
        bool strong = false;
        bool strike = false;
        bool code = false;
        /// Its place among the links, or -1.
        qint32 link = -1;

        qint32 end() const { return start + length; }

        /// Whether the two differ in nothing but their place.
        bool looksLike(const Run& other) const {
            return emphasis == other.emphasis && strong == other.strong && strike == other.strike &&
                   code == other.code && link == other.link;
        }
    };

    /// A stretch of it, with the links that lie in it or reach into it.
    MarkdownStyledText sliced(qsizetype start, qsizetype length) const;

    QString text;
    /// In order, without gaps; neighbours look different.
    std::vector<Run> runs;
    /// Where the links lead, as written; neighbouring links to the same place are one.
    QStringList links;
};

static_assert(sizeof(MarkdownStyledText::Run) == 16);

} // namespace quillary
