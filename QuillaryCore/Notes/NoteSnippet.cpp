#include "QuillaryCore/Notes/NoteSnippet.h"

#include "QuillaryCore/Notes/Blanks.h"
#include "QuillaryCore/Unicode/GraphemeClusters.h"

namespace quillary {

namespace {

constexpr qsizetype searchedCharacters = 4000;

bool isLineEnd(QChar unit) {
    switch (unit.unicode()) {
    case 0x0A:
    case 0x0B:
    case 0x0C:
    case 0x0D:
    case 0x85:
    case 0x2028:
    case 0x2029:
        return true;
    default:
        return false;
    }
}

QStringView withoutHeadingMarks(QStringView line) {
    line = trimmedOfBlanks(line);
    if (!line.startsWith(u'#')) {
        return line;
    }
    while (line.startsWith(u'#') && isClusterBoundary(line, 1)) {
        line = line.sliced(1);
    }
    return trimmedOfBlanks(line);
}

} // namespace

QString NoteSnippet::make(QStringView text, qsizetype limit) {
    ClusterWalker walker(text);
    qsizetype lineStart = 0;
    for (qsizetype left = searchedCharacters; !walker.atEnd() && left > 0; --left) {
        const qsizetype clusterStart = walker.position();
        const bool endsLine = isLineEnd(walker.next().front());
        const bool endsSearch = walker.atEnd() || left == 1;
        if (!endsLine && !endsSearch) {
            continue;
        }
        const qsizetype lineEnd = endsLine ? clusterStart : walker.position();
        const QStringView line = withoutHeadingMarks(text.sliced(lineStart, lineEnd - lineStart));
        if (!line.isEmpty()) {
            return clusterPrefix(line, limit).toString();
        }
        lineStart = walker.position();
    }
    return {};
}

} // namespace quillary
