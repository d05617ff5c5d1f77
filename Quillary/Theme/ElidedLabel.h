#pragma once

#include <QLabel>

namespace quillary {

/// One line of plain text that gives way where there is little room, and ends in an ellipsis then.
class ElidedLabel : public QLabel {
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget* parent = nullptr);

    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace quillary
