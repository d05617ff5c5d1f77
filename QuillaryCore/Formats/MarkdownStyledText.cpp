#include "QuillaryCore/Formats/MarkdownStyledText.h"

#include <algorithm>

namespace quillary {

MarkdownStyledText MarkdownStyledText::sliced(qsizetype start, qsizetype length) const {
    MarkdownStyledText part;
    part.text = text.sliced(start, length);
    const auto first = static_cast<qint32>(start);
    const auto end = static_cast<qint32>(start + length);
    auto run = std::partition_point(runs.begin(), runs.end(),
                                    [first](const Run& candidate) { return candidate.end() <= first; });
    qint32 firstLink = -1;
    for (; run != runs.end() && run->start < end; ++run) {
        Run cut = *run;
        const qint32 from = std::max(run->start, first);
        cut.start = from - first;
        cut.length = std::min(run->end(), end) - from;
        if (run->link >= 0) {
            firstLink = firstLink < 0 ? run->link : firstLink;
            cut.link = run->link - firstLink;
            if (cut.link == part.links.size()) {
                part.links.append(links[run->link]);
            }
        }
        part.runs.push_back(cut);
    }
    return part;
}

} // namespace quillary
