#pragma once

#include <QWidget>

class QButtonGroup;

namespace quillary {

/// A row of two or more choices, of which one is the chosen one, as segments of one bar.
class SegmentedPicker : public QWidget {
    Q_OBJECT

public:
    /// Where it stands: in a bar of tools it is low, and a click on it leaves the focus where it is.
    enum class Place {
        panel,
        toolbar,
    };

    explicit SegmentedPicker(QWidget* parent = nullptr, Place place = Place::panel);

    /// Adds a choice at the end, known by an id from then on.
    void addSegment(int id, const QString& text);

    /// The id of the chosen segment; -1 if there is none.
    int selection() const;

    void setSelection(int id);

    /// What the keyboard leaves it from.
    QWidget* lastSegment() const;

Q_SIGNALS:
    /// The user chose a segment.
    void chosen(int id);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Place m_place;
    QButtonGroup* m_segments;
};

} // namespace quillary
