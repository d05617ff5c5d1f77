#pragma once

#include <QLabel>

namespace quillary {

/// Plain text of several lines that may break anywhere: a file name of 250 letters without a blank stays within the
/// label. Its height follows from its width.
class WrappingLabel : public QLabel {
    Q_OBJECT

public:
    explicit WrappingLabel(QWidget* parent = nullptr);

    /// The width of the text, in logical pixels, that is aimed at when there is room for more.
    void setPreferredWidth(int width);

    /// How many lines are shown at most; the last one then ends in an ellipsis. 0 shows all.
    void setMaximumLines(int count);

    bool hasHeightForWidth() const override { return true; }

    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QStringList lines(int width) const;

    int m_preferredWidth = 360;
    int m_maximumLines = 0;
};

} // namespace quillary
