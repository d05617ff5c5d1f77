#include "QuillaryCore/Compare/WordTokens.h"

#include "QuillaryCore/Unicode/GraphemeClusters.h"

#include <algorithm>
#include <array>

namespace quillary {

namespace {

using Kind = WordToken::Kind;

/// Below this unit every unit is a character of its own, but for CR LF.
constexpr char16_t firstCombining = 0x300;

Kind kindOfScalar(char32_t scalar) {
    if (QChar::isLetterOrNumber(scalar)) {
        return Kind::word;
    }
    return QChar::isSpace(scalar) ? Kind::whitespace : Kind::other;
}

const std::array<Kind, firstCombining>& kindsOfSimpleUnits() {
    static const std::array<Kind, firstCombining> kinds = [] {
        std::array<Kind, firstCombining> table{};
        for (char16_t unit = 0; unit < firstCombining; ++unit) {
            table[unit] = unit == u'_' ? Kind::word : kindOfScalar(unit);
        }
        return table;
    }();
    return kinds;
}

Kind kindOf(QStringView cluster) {
    if (cluster.size() == 1) {
        return cluster.front() == u'_' ? Kind::word : kindOfScalar(cluster.front().unicode());
    }
    const bool isPair = cluster[0].isHighSurrogate() && cluster[1].isLowSurrogate();
    return kindOfScalar(isPair ? QChar::surrogateToUcs4(cluster[0], cluster[1]) : cluster[0].unicode());
}

void append(std::vector<WordToken>& tokens, Kind kind, qsizetype end) {
    if (kind == Kind::other || tokens.empty() || tokens.back().kind != kind) {
        tokens.push_back({static_cast<qint32>(end), 1, kind});
    } else {
        tokens.back().end = static_cast<qint32>(end);
        ++tokens.back().characters;
    }
}

/// To the end and by plain operations, which take many units at a time: lines are short.
bool isSimple(QStringView line) {
    const char16_t* const units = line.utf16();
    quint16 others = 0;
    for (qsizetype i = 0; i < line.size(); ++i) {
        others |= static_cast<quint16>((units[i] >= firstCombining) | (units[i] == u'\r'));
    }
    return others == 0;
}

void tokeniseSimple(QStringView line, std::vector<WordToken>& tokens) {
    const std::array<Kind, firstCombining>& kinds = kindsOfSimpleUnits();
    const char16_t* const units = line.utf16();
    const qint32 size = static_cast<qint32>(line.size());
    for (qint32 start = 0; start < size;) {
        const Kind kind = kinds[units[start]];
        qint32 end = start + 1;
        if (kind != Kind::other) {
            while (end < size && kinds[units[end]] == kind) {
                ++end;
            }
        }
        tokens.push_back({end, end - start, kind});
        start = end;
    }
}

} // namespace

void tokenise(QStringView line, std::vector<WordToken>& tokens) {
    tokens.clear();
    if (isSimple(line)) {
        tokeniseSimple(line, tokens);
        return;
    }
    ClusterWalker walker(line);
    while (!walker.atEnd()) {
        const QStringView cluster = walker.next();
        append(tokens, kindOf(cluster), walker.position());
    }
}

} // namespace quillary
