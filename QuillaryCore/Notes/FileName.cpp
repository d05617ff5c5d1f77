#include "QuillaryCore/Notes/FileName.h"

#include "QuillaryCore/Platform/FilePath.h"
#include "QuillaryCore/Unicode/GraphemeClusters.h"

#include <algorithm>
#include <array>

namespace quillary {

namespace {

qsizetype byteCount(QStringView text) {
    return FilePath::bytesFromText(text).size();
}

/// As many whole characters as fit into so many bytes; of a first one that doesn't, as many scalars as do.
QStringView prefixOfBytes(QStringView text, qsizetype room) {
    ClusterWalker walker(text);
    qsizetype end = 0;
    while (!walker.atEnd()) {
        room -= byteCount(walker.next());
        if (room < 0) {
            break;
        }
        end = walker.position();
    }
    if (end > 0) {
        return text.first(end);
    }
    const qsizetype clusterEnd = walker.position();
    for (end = clusterEnd; end > 0 && room < 0;) {
        const bool isPair = end > 1 && text[end - 1].isLowSurrogate() && text[end - 2].isHighSurrogate();
        const qsizetype start = end - (isPair ? 2 : 1);
        room += byteCount(text.sliced(start, end - start));
        end = start;
    }
    return text.first(end);
}

} // namespace

QString numberedFileName(const QString& base, qint64 number, QStringView ending) {
    const QString tail = (number > 1 ? u' ' + QString::number(number) : QString()) + ending;
    const qsizetype room = longestFileName - byteCount(tail);
    if (byteCount(base) <= room) {
        return base + tail;
    }
    QStringView prefix = prefixOfBytes(base, room);
    while (!prefix.isEmpty() && prefix.back().isSpace()) {
        prefix.chop(1);
    }
    return prefix + tail;
}

bool isPackageName(QByteArrayView name) {
    constexpr std::array<QByteArrayView, 4> suffixes = {".app", ".bundle", ".framework", ".rtfd"};
    return std::any_of(suffixes.begin(), suffixes.end(), [name](QByteArrayView suffix) {
        return name.size() > suffix.size() && name.last(suffix.size()).compare(suffix, Qt::CaseInsensitive) == 0;
    });
}

} // namespace quillary
