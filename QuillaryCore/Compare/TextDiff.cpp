#include "QuillaryCore/Compare/TextDiff.h"

#include "QuillaryCore/Compare/CanonicalNumbers.h"
#include "QuillaryCore/Compare/ChangedOffsets.h"
#include "QuillaryCore/Compare/FewChanges.h"
#include "QuillaryCore/Compare/WordDiff.h"
#include "QuillaryCore/Compare/WordTokens.h"

#include <algorithm>

namespace quillary::TextDiff {

namespace {

using Kind = DiffRow::Kind;

/// The difference between two lists of lines.
template <typename Lines>
ChangedOffsets changedLines(const Lines& oldLines, qsizetype oldCount, const Lines& newLines, qsizetype newCount,
                            bool areComposed, const std::stop_token& stop) {
    if (areComposed) {
        const auto areEqual = [&](qsizetype i, qsizetype j) { return oldLines[i] == newLines[j]; };
        if (std::optional<ChangedOffsets> few = FewChanges(oldCount, newCount, areEqual).find()) {
            return std::move(*few);
        }
    }
    CanonicalNumbers numbers(oldCount, areComposed);
    std::vector<qint32> from;
    from.reserve(static_cast<std::size_t>(oldCount));
    for (qsizetype i = 0; i < oldCount; ++i) {
        from.push_back(numbers.add(oldLines[i]));
    }
    std::vector<qint32> to;
    to.reserve(static_cast<std::size_t>(newCount));
    // Behind an equal line mostly stands an equal one.
    qsizetype expected = 0;
    for (qsizetype i = 0; i < newCount; ++i) {
        const qint32 guess = expected < oldCount ? from[static_cast<std::size_t>(expected)] : CanonicalNumbers::none;
        to.push_back(numbers.find(newLines[i], guess));
        expected = to.back() == guess || to.back() == CanonicalNumbers::none ? expected + 1 : expected;
    }
    return changedOffsets(from, to, numbers.count(), stop);
}

/// Calls `same`, `removed` and `added` with the indices of each step in order: in a changed stretch removals first.
template <typename OnSame, typename OnRemoved, typename OnAdded>
void followScript(const ChangedOffsets& offsets, OnSame same, OnRemoved removed, OnAdded added) {
    const std::size_t oldCount = offsets.removed.size();
    const std::size_t newCount = offsets.inserted.size();
    std::size_t i = 0;
    std::size_t j = 0;
    while (true) {
        for (; i < oldCount && offsets.removed[i] != 0; ++i) {
            removed(static_cast<qsizetype>(i));
        }
        if (i == oldCount && j == newCount) {
            return;
        }
        if (j < newCount && offsets.inserted[j] != 0) {
            added(static_cast<qsizetype>(j++));
        } else {
            same(static_cast<qsizetype>(i++), static_cast<qsizetype>(j++));
        }
    }
}

/// Turns a script into rows: of a changed stretch, lines that took each other's place by position, then the others.
class RowBuilder {
public:
    RowBuilder(DiffRows::Contents& contents, bool areComposed, const std::stop_token& stop)
        : m_contents(contents), m_words(areComposed, stop), m_stop(stop) {}

    void addSame(qsizetype oldLine, qsizetype newLine) {
        if (m_removed + m_added > 0) {
            flush();
        }
        addRow(Kind::unchanged, oldLine, newLine);
    }

    // Lines of a stretch follow one another, so that the first one and their number tell all.
    void addRemoved(qsizetype oldLine) {
        m_firstRemoved = m_removed == 0 ? oldLine : m_firstRemoved;
        ++m_removed;
    }

    void addAdded(qsizetype newLine) {
        m_firstAdded = m_added == 0 ? newLine : m_firstAdded;
        ++m_added;
    }

    void flush() {
        const qsizetype pairs = std::min(m_removed, m_added);
        for (qsizetype k = 0; k < pairs && !m_stop.stop_requested(); ++k) {
            addChanged(m_firstRemoved + k, m_firstAdded + k);
        }
        for (qsizetype k = pairs; k < m_removed; ++k) {
            addRow(Kind::removed, m_firstRemoved + k, none);
        }
        for (qsizetype k = pairs; k < m_added; ++k) {
            addRow(Kind::added, none, m_firstAdded + k);
        }
        m_stats.changed += pairs;
        m_stats.removed += m_removed - pairs;
        m_stats.added += m_added - pairs;
        m_removed = 0;
        m_added = 0;
    }

    const DiffStats& stats() const { return m_stats; }

private:
    static constexpr qsizetype none = -1;

    void addRow(Kind kind, qsizetype oldLine, qsizetype newLine, qint32 words = -1) {
        m_contents.kinds.push_back(kind);
        m_contents.places.push_back({static_cast<qint32>(oldLine), static_cast<qint32>(newLine), words});
    }

    void addChanged(qsizetype oldLine, qsizetype newLine) {
        const std::size_t first = m_contents.ends.size();
        const std::optional<WordDiff::Counts> counts =
            m_words.compare(m_contents.oldLines[oldLine], m_contents.newLines[newLine], m_contents.ends);
        qint32 words = -1;
        if (counts) {
            words = static_cast<qint32>(m_contents.words.size());
            m_contents.words.push_back({static_cast<quint32>(first), counts->oldCount, counts->newCount});
        }
        addRow(Kind::changed, oldLine, newLine, words);
    }

    DiffRows::Contents& m_contents;
    WordDiff m_words;
    const std::stop_token& m_stop;
    DiffStats m_stats;
    qsizetype m_firstRemoved = 0;
    qsizetype m_removed = 0;
    qsizetype m_firstAdded = 0;
    qsizetype m_added = 0;
};

QList<DiffSegment> segmentList(const DiffSegments& segments) {
    return {segments.begin(), segments.end()};
}

} // namespace

TextDiffResult compare(const QString& oldText, const QString& newText, const std::stop_token& stop) {
    DiffRows::Contents contents;
    contents.oldLines = TextLines(oldText);
    contents.newLines = TextLines(newText);
    const bool areComposed = isCanonicalForm(oldText) && isCanonicalForm(newText);
    const qsizetype oldCount = contents.oldLines.count();
    const qsizetype newCount = contents.newLines.count();
    const ChangedOffsets offsets =
        changedLines(contents.oldLines, oldCount, contents.newLines, newCount, areComposed, stop);

    const std::size_t mostRows = static_cast<std::size_t>(
        std::max(oldCount, newCount) + std::count(offsets.removed.begin(), offsets.removed.end(), quint8(1)));
    contents.kinds.reserve(mostRows);
    contents.places.reserve(mostRows);
    RowBuilder builder(contents, areComposed, stop);
    if (!stop.stop_requested()) {
        followScript(
            offsets, [&](qsizetype i, qsizetype j) { builder.addSame(i, j); },
            [&](qsizetype i) { builder.addRemoved(i); }, [&](qsizetype j) { builder.addAdded(j); });
        builder.flush();
    }
    const DiffStats stats = builder.stats();
    return {DiffRows(std::move(contents)), stats};
}

WordSegments wordSegments(QStringView oldLine, QStringView newLine) {
    WordDiff words(isCanonicalForm(oldLine) && isCanonicalForm(newLine));
    std::vector<DiffSegmentEnd> ends;
    const std::optional<WordDiff::Counts> counts = words.compare(oldLine, newLine, ends);
    if (!counts) {
        return {{{oldLine, false}}, {{newLine, false}}};
    }
    const std::span<const DiffSegmentEnd> all(ends);
    return {segmentList(DiffSegments(oldLine, all.first(counts->oldCount))),
            segmentList(DiffSegments(newLine, all.subspan(counts->oldCount)))};
}

QList<QStringView> lines(QStringView text) {
    // Views must look into what the caller has, so the text is read in place.
    const TextLines lines(QString::fromRawData(reinterpret_cast<const QChar*>(text.utf16()), text.size()));
    QList<QStringView> result;
    result.reserve(lines.count());
    for (qsizetype i = 0; i < lines.count(); ++i) {
        result.append(lines[i]);
    }
    return result;
}

QList<QStringView> tokens(QStringView line) {
    std::vector<WordToken> tokens;
    tokenise(line, tokens);
    QList<QStringView> result;
    result.reserve(static_cast<qsizetype>(tokens.size()));
    qsizetype start = 0;
    for (const WordToken& token : tokens) {
        result.append(line.sliced(start, token.end - start));
        start = token.end;
    }
    return result;
}

QList<Operation> operations(std::span<const QStringView> oldLines, std::span<const QStringView> newLines) {
    const auto areComposed = [](std::span<const QStringView> lines) {
        return std::all_of(lines.begin(), lines.end(), [](QStringView line) { return isCanonicalForm(line); });
    };
    const ChangedOffsets offsets =
        changedLines(oldLines, static_cast<qsizetype>(oldLines.size()), newLines,
                     static_cast<qsizetype>(newLines.size()), areComposed(oldLines) && areComposed(newLines), {});
    QList<Operation> script;
    followScript(
        offsets,
        [&](qsizetype i, qsizetype j) {
            script.append(Same{i, j});
        },
        [&](qsizetype i) { script.append(Removed{i}); }, [&](qsizetype j) { script.append(Added{j}); });
    return script;
}

} // namespace quillary::TextDiff
