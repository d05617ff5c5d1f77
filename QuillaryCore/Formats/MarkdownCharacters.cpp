#include "QuillaryCore/Formats/MarkdownCharacters.h"

#include "QuillaryCore/Unicode/GraphemeClusters.h"

namespace quillary::MarkdownCharacters {

namespace {

/// Whether the unit may belong to one character with an ASCII neighbour. Letters of the commonest scripts don't, so
/// that they needn't be looked up.
bool mayJoin(QChar unit) {
    const char16_t c = unit.unicode();
    return c >= 0x300 && !(c >= 0x370 && c <= 0x482) && !(c >= 0x2010 && c <= 0x2060) &&
           !(c >= 0x3400 && c <= 0x9FFF) && !(c >= 0xAC00 && c <= 0xD7A3);
}

/// Whether the unit at `position` and the scalar behind it are one character.
bool joinsNext(QStringView text, qsizetype position) {
    return position + 1 < text.size() && mayJoin(text[position + 1]) &&
           !isClusterBoundary(text.sliced(position, std::min<qsizetype>(3, text.size() - position)), 1);
}

/// Whether the unit at `position` and the scalar before it are one character.
bool joinsPrevious(QStringView text, qsizetype position) {
    if (position == 0 || !mayJoin(text[position - 1])) {
        return false;
    }
    const qsizetype length = std::min<qsizetype>(2, position);
    return !isClusterBoundary(text.sliced(position - length, length + 1), length);
}

} // namespace

bool standsAlone(QStringView text, qsizetype position) {
    return !joinsNext(text, position) && !joinsPrevious(text, position);
}

qsizetype find(QStringView text, char16_t unit, qsizetype position) {
    do {
        position = text.indexOf(QChar(unit), position);
    } while (position >= 0 && !standsAlone(text, position) && ++position < text.size());
    return position < text.size() ? position : -1;
}

qsizetype countIndentation(QStringView text) {
    qsizetype count = 0;
    while (count < text.size() && text[count] == u' ') {
        ++count;
    }
    return count > 0 && joinsNext(text, count - 1) ? count - 1 : count;
}

QStringView withoutOuterBlanks(QStringView text) {
    qsizetype first = 0;
    while (first < text.size() && isBlank(text[first])) {
        ++first;
    }
    // A tab takes no mark.
    if (first > 0 && text[first - 1] == u' ' && joinsNext(text, first - 1)) {
        --first;
    }
    qsizetype end = text.size();
    while (end > first && isBlank(text[end - 1])) {
        --end;
    }
    if (end < text.size() && text[end] == u' ' && joinsPrevious(text, end)) {
        ++end;
    }
    return text.sliced(first, end - first);
}

bool isBlank(QStringView text) {
    return std::all_of(text.begin(), text.end(), [](QChar unit) { return isBlank(unit); });
}

} // namespace quillary::MarkdownCharacters
