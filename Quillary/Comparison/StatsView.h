#pragma once

#include "QuillaryCore/Compare/DiffStats.h"

#include <QWidget>

#include <array>

namespace quillary {

/// How many rows were added, removed and changed: three counters, and a bar with their proportions.
class StatsView : public QWidget {
    Q_OBJECT

public:
    static constexpr double barWidth = 54;
    static constexpr double barHeight = 4;

    explicit StatsView(QWidget* parent = nullptr);

    void setStats(const DiffStats& stats);

    /// The texts of the counters, in their order: added, removed, changed.
    static std::array<QString, 3> counters(const DiffStats& stats);

    /// The widths of the parts of the bar, in the bar's order: added, changed, removed.
    static std::array<double, 3> barParts(const DiffStats& stats);

    QSize sizeHint() const override;

    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    DiffStats m_stats;
};

} // namespace quillary
