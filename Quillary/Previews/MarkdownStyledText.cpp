#include "Quillary/Previews/MarkdownStyledText.h"

#include "QuillaryCore/Formats/MarkdownInline.h"

#include <algorithm>
#include <utility>

namespace quillary {

MarkdownStyledText MarkdownStyledText::of(QStringView raw) {
    MarkdownStyledText styled;
    QList<MarkdownRun> runs = MarkdownInline::attributed(raw);
    if (runs.size() == 1) {
        styled.text = runs.first().text;
    } else {
        styled.text.reserve(raw.size());
    }
    styled.runs.reserve(static_cast<std::size_t>(runs.size()));
    // Runs of one link differ in other marks; they stay one link.
    std::optional<QString> link;
    for (const MarkdownRun& run : std::as_const(runs)) {
        if (run.link && run.link != link) {
            styled.links.append(*run.link);
        }
        link = run.link;
        const qsizetype start = styled.runs.empty() ? 0 : styled.runs.back().start + styled.runs.back().length;
        styled.runs.push_back({start, run.text.size(), run.emphasis, run.strong, run.strike, run.code,
                               link ? styled.links.size() - 1 : -1});
        if (runs.size() > 1) {
            styled.text += run.text;
        }
    }
    return styled;
}

MarkdownStyledText MarkdownStyledText::sliced(qsizetype start, qsizetype length) const {
    MarkdownStyledText part;
    part.text = text.sliced(start, length);
    part.links = links;
    const qsizetype end = start + length;
    auto run = std::partition_point(runs.begin(), runs.end(), [start](const Run& candidate) {
        return candidate.start + candidate.length <= start;
    });
    for (; run != runs.end() && run->start < end; ++run) {
        Run cut = *run;
        const qsizetype first = std::max(run->start, start);
        cut.start = first - start;
        cut.length = std::min(run->start + run->length, end) - first;
        part.runs.push_back(cut);
    }
    return part;
}

} // namespace quillary
