#include "QuillaryCore/Find/WordPattern.h"

#include "QuillaryCore/Find/FoldedText.h"
#include "QuillaryCore/Unicode/PatternClasses.h"
#include "QuillaryCore/Unicode/RegularExpression.h"

#include <algorithm>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

bool isPlainWordUnit(QChar unit) {
    return unit.unicode() < 0x80 && (unit.isLetterOrNumber() || unit == u'_');
}

/// Whether text folds to a unit of an ending only where it is the unit itself or its other case.
bool hasPlainVariantsOnly(QChar unit) {
    const auto variants = case_folding::unitsThatFoldTo(unit.unicode());
    return std::all_of(variants.begin(), variants.end(), [](char16_t variant) { return variant < 0x80; });
}

bool holdsLongFolding(QStringView text) {
    const auto& foldings = case_folding::longFoldings();
    return std::any_of(foldings.begin(), foldings.end(), [&](const QString& each) { return text.contains(each); });
}

bool takePrefix(QStringView& text, QLatin1StringView prefix) {
    const bool has = text.startsWith(prefix);
    text = has ? text.sliced(prefix.size()) : text;
    return has;
}

char16_t lowered(QChar unit) {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit.unicode() | 0x20) : unit.unicode();
}

/// The runs of word characters of a text.
class WordRuns {
public:
    explicit WordRuns(QStringView text) : m_text(text), m_classes(basicPlanePatternClasses()) {}

    /// Where the word character behind or before a position ends or begins; the position itself if there is none.
    qsizetype behind(qsizetype position) const {
        if (position == m_text.size()) {
            return position;
        }
        const QChar unit = m_text[position];
        if (!unit.isHighSurrogate() || position + 1 == m_text.size() || !m_text[position + 1].isLowSurrogate()) {
            return position + (isWord(m_classes[unit.unicode()]) ? 1 : 0);
        }
        return position + (isWord(patternClasses(QChar::surrogateToUcs4(unit, m_text[position + 1]))) ? 2 : 0);
    }

    qsizetype before(qsizetype position) const {
        if (position == 0) {
            return position;
        }
        const QChar unit = m_text[position - 1];
        if (!unit.isLowSurrogate() || position == 1 || !m_text[position - 2].isHighSurrogate()) {
            return position - (isWord(m_classes[unit.unicode()]) ? 1 : 0);
        }
        return position - (isWord(patternClasses(QChar::surrogateToUcs4(m_text[position - 2], unit))) ? 2 : 0);
    }

    qsizetype endFrom(qsizetype position) const {
        for (qsizetype next = behind(position); next != position; next = behind(position)) {
            position = next;
        }
        return position;
    }

    qsizetype startBefore(qsizetype position) const {
        for (qsizetype previous = before(position); previous != position; previous = before(position)) {
            position = previous;
        }
        return position;
    }

private:
    static bool isWord(quint8 classes) { return (classes & patternWord) != 0; }

    QStringView m_text;
    std::span<const quint8, 0x10000> m_classes;
};

} // namespace

std::optional<WordPattern> WordPattern::make(QStringView pattern, bool caseSensitive, bool wholeWord) {
    constexpr QLatin1StringView boundary("\\b");
    WordPattern result;
    result.m_caseSensitive = caseSensitive;
    result.m_startsAtBoundary = takePrefix(pattern, boundary) || wholeWord;
    if (!takePrefix(pattern, QLatin1StringView("\\w+"))) {
        return std::nullopt;
    }
    const auto* const end = std::find_if_not(pattern.begin(), pattern.end(), isPlainWordUnit);
    const QStringView ending = pattern.first(end - pattern.begin());
    pattern = pattern.sliced(ending.size());
    result.m_endsAtBoundary = takePrefix(pattern, boundary) || wholeWord;
    if (!pattern.isEmpty()) {
        return std::nullopt;
    }
    result.m_ending = caseSensitive ? ending.toString() : case_folding::fold(ending);
    const QString& folded = result.m_ending;
    if (!caseSensitive &&
        !(std::all_of(folded.begin(), folded.end(), hasPlainVariantsOnly) && !holdsLongFolding(folded))) {
        return std::nullopt;
    }
    if (!folded.isEmpty()) {
        result.m_anchors = caseSensitive ? LiteralAnchors::exact(folded) : LiteralAnchors::folded(folded);
    }
    return result;
}

void WordPattern::forEach(QStringView text, const Accept& accept) const {
    const WordRuns runs(text);
    qsizetype behindRun = 0;
    // False if enough were found.
    const auto tryRunAround = [&](qsizetype position) {
        const qsizetype end = position < behindRun ? position : runs.endFrom(position);
        if (end == position) {
            return true;
        }
        const qsizetype start = runs.startBefore(position);
        behindRun = end;
        const std::optional<TextRange> match = matchIn(text, {start, end - start});
        return !match || accept(*match);
    };
    if (m_anchors.isEmpty()) {
        for (qsizetype position = 0; position < text.size(); position = std::max(position + 1, behindRun)) {
            if (!tryRunAround(position)) {
                return;
            }
        }
        return;
    }
    const auto found = [&](qsizetype position) { return !tryRunAround(position); };
    const LiteralAnchor anchor = m_anchors.rarest(text);
    if (anchor.second) {
        scanForPair(text, anchor.first, *anchor.second, anchor.distance, {}, found);
    } else {
        scanForAny(text, std::span(&anchor.first, 1), found);
    }
}

/// The one match in a run of word characters: from the first start to the last end.
std::optional<TextRange> WordPattern::matchIn(QStringView text, TextRange run) const {
    const WordRuns runs(text);
    const auto isEnd = [&](qsizetype end) {
        return endsAt(text, end) && (!m_endsAtBoundary || isWordBoundary(text, end));
    };
    qsizetype end = run.end();
    while (end > run.location && !isEnd(end)) {
        end = runs.before(end);
    }
    if (end <= run.location) {
        return std::nullopt;
    }
    qsizetype start = run.location;
    while (start < end && m_startsAtBoundary && !isWordBoundary(text, start)) {
        start = runs.behind(start);
    }
    // One word character at least stands before the ending.
    const bool fits = start < end && runs.behind(start) <= end - m_ending.size();
    return fits ? std::optional(TextRange{start, end - start}) : std::nullopt;
}

bool WordPattern::endsAt(QStringView text, qsizetype end) const {
    const qsizetype length = m_ending.size();
    if (end < length) {
        return false;
    }
    const QStringView there = text.sliced(end - length, length);
    return std::equal(there.begin(), there.end(), m_ending.begin(), [this](QChar unit, QChar wanted) {
        return m_caseSensitive ? unit == wanted : lowered(unit) == wanted.unicode();
    });
}

} // namespace quillary
