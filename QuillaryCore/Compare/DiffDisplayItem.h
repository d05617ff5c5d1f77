#pragma once

#include "QuillaryCore/Compare/DiffRow.h"

#include <QSet>
#include <QString>

#include <span>
#include <vector>

namespace quillary {

/// One entry of the list that shows a comparison: a row, or a stretch of equal rows that is folded away.
class DiffDisplayItem {
public:
    enum class Kind : quint8 {
        row,
        collapsed,
    };

    /// The shortest stretch that is folded away: a fold takes a line itself.
    static constexpr qsizetype fewestFolded = 4;
    /// The rows around a change that the view always shows.
    static constexpr qsizetype shownContext = 3;

    static DiffDisplayItem row(qsizetype row) { return {Kind::row, row, 1}; }

    static DiffDisplayItem collapsed(qsizetype firstRow, qsizetype count) { return {Kind::collapsed, firstRow, count}; }

    Kind kind() const { return m_kind; }

    /// The id of the row, or that of the first hidden one.
    qsizetype rowId() const { return m_row; }

    /// How many rows it stands for: 1, or the number of hidden ones.
    qsizetype count() const { return m_count; }

    /// What tells it apart in a list: "r12", or "c12" for a fold.
    QString id() const;

    /// The list for rows of these kinds, whose ids are their places: changed rows with `context` rows around each, and
    /// stretches beyond that folded, but for those whose first row is in `expanded`. Without any change nothing folds.
    static std::vector<DiffDisplayItem> items(std::span<const DiffRow::Kind> kinds, qsizetype context,
                                              const QSet<qsizetype>& expanded);

    /// Every row.
    static std::vector<DiffDisplayItem> allRows(qsizetype count);

    friend bool operator==(const DiffDisplayItem&, const DiffDisplayItem&) = default;

private:
    DiffDisplayItem(Kind kind, qsizetype row, qsizetype count)
        : m_row(static_cast<quint32>(row)), m_count(static_cast<quint32>(count)), m_kind(kind) {}

    quint32 m_row;
    quint32 m_count;
    Kind m_kind;
};

} // namespace quillary
