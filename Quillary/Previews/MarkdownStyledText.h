#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

#include <vector>

namespace quillary {

/// A raw text of Markdown without its marks, with what they said beside it.
struct MarkdownStyledText {
    struct Run {
        qsizetype start = 0;
        qsizetype length = 0;
        bool emphasis = false;
        bool strong = false;
        bool strike = false;
        bool code = false;
        /// Its place among the links, or -1.
        qsizetype link = -1;
    };

    /// Reads the inline marks of a text.
    static MarkdownStyledText of(QStringView raw);

    /// A stretch of it.
    MarkdownStyledText sliced(qsizetype start, qsizetype length) const;

    QString text;
    /// In order, without gaps.
    std::vector<Run> runs;
    /// Where the links lead, as written.
    QStringList links;
};

} // namespace quillary
