#pragma once

#include "Quillary/Comparison/DiffMode.h"
#include "QuillaryCore/Compare/DiffStats.h"

#include <QWidget>

class QCheckBox;
class QToolButton;

namespace quillary {

class NotePill;
class SegmentedPicker;
class StatsView;

/// The line above a comparison: the two notes, what changed, how it is shown, and the way out.
class DiffHeader : public QWidget {
    Q_OBJECT

public:
    explicit DiffHeader(QWidget* parent = nullptr);

    void setTitles(const QString& oldTitle, const QString& newTitle);
    void setStats(const DiffStats& stats);
    void setMode(DiffMode mode);
    void setShowsAllLines(bool showsAll);

Q_SIGNALS:
    void swapRequested();
    void closeRequested();
    /// The user chose.
    void modeChosen(DiffMode mode);
    void showsAllLinesChosen(bool showsAll);

private:
    QToolButton* addButton(const QString& help);
    void fillPicker();

    NotePill* m_old;
    NotePill* m_new;
    StatsView* m_stats;
    SegmentedPicker* m_modes;
    QCheckBox* m_showsAllLines;
};

} // namespace quillary
