#pragma once

#include "QuillaryCore/Text/TextRange.h"
#include "QuillaryCore/Text/TextReplacement.h"

#include <QObject>
#include <QString>

#include <memory>
#include <span>

namespace quillary {

/// The exact text of one note, in UTF-16, with an index of its lines. Every unit that goes in comes out again: nothing
/// is normalised. Positions are UTF-16 units from the start of the text.
///
/// LF, CR LF, CR, U+2028, U+2029, U+0085, VT and FF end a line; CR LF is one terminator. A text has one line more
/// than it has terminators, so an empty text has one empty line.
///
/// Editing anywhere costs time in proportion to a page, not to the text. A storage that was never edited or asked for
/// a line costs its text and little more.
class TextStorage : public QObject {
    Q_OBJECT

public:
    explicit TextStorage(QString text = {}, QObject* parent = nullptr);

    /// The same with pages of at most `pageUnits` units, 8 or more: what lies in small pages comes upon the borders of
    /// pages often.
    TextStorage(QString text, qsizetype pageUnits, QObject* parent = nullptr);
    ~TextStorage() override;

    qsizetype length() const;

    /// The whole text. One copy after a change; shared, and free, until the next one.
    QString text() const;

    /// The text of a range within the storage.
    QString text(TextRange range) const;

    /// The unit at a position before the end.
    char16_t unitAt(qsizetype offset) const;

    /// The longest stretch from `offset` on that lies in one piece in memory; empty only at the end. Valid until the
    /// next change or the next call of text().
    QStringView chunkAt(qsizetype offset) const;

    /// Likewise the longest stretch that ends at `offset`; empty only at the start.
    QStringView chunkBefore(qsizetype offset) const;

    /// Whether the text equals another, unit by unit.
    bool equals(QStringView other) const;

    /// The number of lines, at least 1.
    qsizetype lineCount() const;

    /// The index of the line that holds a position; the position behind a terminator is in the next line, a position
    /// within CR LF in the line that it ends.
    qsizetype lineAt(qsizetype offset) const;

    /// A line with its terminator.
    TextRange lineRange(qsizetype line) const;

    /// A line without its terminator.
    TextRange lineContents(qsizetype line) const;

    /// The nearest position at or before `offset` (previous) or at or after it (next) that lies within no CR LF,
    /// surrogate pair or grapheme cluster.
    qsizetype clusterBoundaryAtOrBefore(qsizetype offset) const;
    qsizetype clusterBoundaryAtOrAfter(qsizetype offset) const;

    /// The neighbouring cluster boundaries of a position, 0 and length() being the outermost.
    qsizetype nextCluster(qsizetype offset) const;
    qsizetype previousCluster(qsizetype offset) const;

    /// The terminator that Enter inserts at a position: that of its own line; in the last line, that of the line
    /// before; else LF.
    QString terminatorForNewLineAt(qsizetype offset) const;

    /// Rises with each change, whoever makes it.
    qint64 revision() const;

    /// Replaces a range by a text, which may be empty, and announces it. A lone surrogate becomes U+FFFD.
    void replace(TextRange range, QStringView text);

    /// Replaces disjoint ranges, in ascending order and all given in the unchanged text, and announces one change, from
    /// the first range's start to the last one's end. Costs time in proportion to the pages that they touch.
    void replaceAll(std::span<const TextReplacement> replacements);

    /// Replaces the whole text by another, which stays shared, and announces it. Lone surrogates are kept.
    void setText(QString text);

    /// Between the two, changes are announced as one by `changed` when the outermost bracket closes: the smallest
    /// stretch that covers them all. Brackets nest.
    void beginEditing();
    void endEditing();

    /// While `changed` is emitted, the single replacements that it covers, each placed in the text that those before it
    /// gave: who follows them one by one loses nothing between them. Empty at any other time.
    std::span<const TextChange> steps() const;

Q_SIGNALS:
    /// Before each single change, brackets or not, while the text is as it was.
    void aboutToChange();

    /// Before the text ends, while it is still there.
    void aboutToEnd();

    /// After each change, or each bracket with changes. Listeners must not change the text from here.
    void changed(const quillary::TextChange& change);

private:
    friend class UndoManager;
    class Contents;

    /// What replace() and replaceAll() do, with the units as they come: undo brings back what was there.
    void replaceExactly(std::span<const TextReplacementView> replacements);
    void countChange();
    void emitChanged();

    std::unique_ptr<Contents> m_contents;
};

} // namespace quillary
