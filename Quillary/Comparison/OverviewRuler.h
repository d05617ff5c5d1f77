#pragma once

#include "QuillaryCore/Compare/DiffRows.h"

#include <QWidget>

#include <optional>

namespace quillary {

/// A narrow map of all rows at the list's side, with a mark for each that is not equal. A click asks for the changed
/// row that is nearest to its place.
class OverviewRuler : public QWidget {
    Q_OBJECT

public:
    static constexpr int rulerWidth = 12;

    explicit OverviewRuler(QWidget* parent = nullptr);

    void setRows(const DiffRows& rows);

    /// How high one row is at the most.
    void setLineHeight(double lineHeight);

    /// The height of one row on the map, and that of a mark.
    double pitch() const;
    double markHeight() const;

    /// Where the mark of a row is painted.
    QRectF markRect(qsizetype id) const;

    /// The changed row nearest to a height; the first of two that are equally near, nothing if no row is changed.
    std::optional<qsizetype> rowNearest(double y) const;

    QSize sizeHint() const override { return {rulerWidth, 0}; }

Q_SIGNALS:
    /// Asks for a row, by its id.
    void jump(qsizetype id);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    DiffRows m_rows;
    /// The ids of the rows that are not equal, ascending.
    std::vector<qsizetype> m_changed;
    double m_lineHeight = 0;
};

} // namespace quillary
