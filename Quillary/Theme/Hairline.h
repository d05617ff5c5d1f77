#pragma once

#include <QWidget>

namespace quillary {

/// A line in the colour of separators that fills the place along its axis and is half a point thick across it, or one
/// pixel of a screen that has no finer one.
class Hairline : public QWidget {
    Q_OBJECT

public:
    explicit Hairline(Qt::Orientation axis, QWidget* parent = nullptr);

    Qt::Orientation axis() const { return m_axis; }

    /// In logical pixels, on the screen that the line is on; and for lines that others paint, on what they paint on.
    double thickness() const { return thicknessOn(*this); }

    static double thicknessOn(const QPaintDevice& device);

    QSize sizeHint() const override;

    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Qt::Orientation m_axis;
};

} // namespace quillary
