#pragma once

#include "Quillary/Previews/MarkdownLinkPlace.h"
#include "Quillary/Previews/MarkdownRow.h"
#include "QuillaryCore/Formats/MarkdownBlock.h"
#include "QuillaryCore/Formats/MarkdownStyledText.h"
#include "QuillaryCore/Formats/MarkdownTable.h"

#include <QMap>
#include <QString>

#include <map>
#include <optional>
#include <tuple>
#include <vector>

namespace quillary {

/// A Markdown text as one column of rows, made by going through its block tree once without recursion.
struct MarkdownRows {
    /// A block of code.
    struct Code {
        QStringView text;
        QString language;
        /// The length of its longest line, no more than a row takes.
        qsizetype longestLine = 0;
    };

    /// A text that is too much for one row, as it is shown, and where its pieces begin.
    struct LongText {
        MarkdownStyledText styled;
        std::vector<qint32> starts;
        /// Whether its raw text may hold a link.
        bool mayHoldLink = false;

        qsizetype pieceCount() const { return static_cast<qsizetype>(starts.size()); }

        /// Nothing behind the last piece.
        MarkdownStyledText piece(qsizetype index) const;
    };

    /// So many frames are shown within each other; what lies deeper stands where the last of them stands.
    static constexpr int shownDepth = 24;

    /// Texts above this length are shown in pieces of about half of it, or shorter ones.
    static constexpr qsizetype longText = 12'000;

    /// A text has about so many runs at most, since each is laid out for itself; one with more is shown in pieces.
    static constexpr qsizetype mostRuns = 300;

    /// Reads a text.
    static MarkdownRows of(const QString& text);

    /// What a row of code holds, without the last line's end, or the raw text of a whole heading or paragraph. A row is
    /// always one of these rows.
    QStringView rawText(const MarkdownRow& row) const;

    /// The text of a row, or of one cell of a row of a table, as it is shown and copied.
    MarkdownStyledText styledText(const MarkdownRow& row) const;
    MarkdownStyledText cellText(const MarkdownRow& row, qsizetype column) const;

    /// The length of a text; for a piece, as it is shown.
    qsizetype lengthOf(const MarkdownRow& row) const;

    /// Whether a text of the row, or a cell of it, may hold a link, so that it can't be selected by itself.
    bool mayHoldLink(const MarkdownRow& row) const;
    bool mayHoldLink(const MarkdownRow& row, qsizetype column) const;

    /// The link of the row behind or before one of them, or the first or last one; none if there is none.
    std::optional<MarkdownLinkPlace> linkBeside(const MarkdownRow& row, const std::optional<MarkdownLinkPlace>& from,
                                                bool forwards) const;

    /// Where a link leads, as written.
    QString linkTarget(const MarkdownRow& row, const MarkdownLinkPlace& place) const;

    /// The raw text of a cell.
    QStringView rawCell(const MarkdownRow& row, qsizetype column) const;

    /// Whether two rows, each of its own text, say the same.
    static bool saySame(const MarkdownRows& a, const MarkdownRow& x, const MarkdownRows& b, const MarkdownRow& y);

    /// The slug of each heading at top level, by its index among the blocks; worked out at each call.
    QMap<qsizetype, QString> anchors() const;

    /// The row of the first heading at top level with this slug.
    std::optional<qsizetype> rowOfAnchor(const QString& slug) const;

    /// Keeps the texts of the rows.
    MarkdownBlocks blocks;
    std::vector<MarkdownRow> rows;
    std::vector<MarkdownFrame> frames;
    std::vector<Code> codes;
    std::vector<MarkdownTable> tables;
    std::vector<LongText> longTexts;
    /// The long texts of cells, by table, line and column.
    std::map<std::tuple<qint32, qint32, qint32>, qint32> longCells;

private:
    const LongText* longCell(const MarkdownRow& row, qsizetype column) const;
    QStringList linksOf(const MarkdownRow& row, qsizetype column) const;
    qsizetype endOf(const MarkdownRow& part, qsizetype whole) const;
};

} // namespace quillary
