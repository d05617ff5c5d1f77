#include "Quillary/Comparison/DiffChunks.h"

#include "QuillaryCore/Unicode/GraphemeClusters.h"

#include <algorithm>

namespace quillary::DiffChunks {

namespace {

/// How far before its latest place a chunk may end.
constexpr qsizetype reach = 200;

qsizetype border(QStringView line, qsizetype chunk) {
    const qsizetype latest = chunk * length;
    if (latest <= 0 || latest >= line.size()) {
        return std::clamp<qsizetype>(latest, 0, line.size());
    }
    // What is further away has no say, so that a line's chunks cost no more than what they show.
    const qsizetype start = latest - reach;
    const QStringView around = line.sliced(start, std::min(2 * reach, line.size() - start));
    for (qsizetype end = reach; end > 0; --end) {
        if (around[end - 1].isSpace() && isClusterBoundary(around, end)) {
            return start + end;
        }
    }
    const qsizetype between = isClusterBoundary(around, reach) ? reach : previousClusterBoundary(around, reach);
    if (between > 0) {
        return start + between;
    }
    return line[latest].isLowSurrogate() && line[latest - 1].isHighSurrogate() ? latest - 1 : latest;
}

} // namespace

qsizetype count(QStringView line) {
    return std::max<qsizetype>(1, (line.size() + length - 1) / length);
}

TextRange range(QStringView line, qsizetype chunk) {
    const qsizetype start = border(line, chunk);
    return {start, border(line, chunk + 1) - start};
}

} // namespace quillary::DiffChunks
