#pragma once

#include "Quillary/Theme/ItemLayout.h"

namespace quillary {

/// Lays its items out in rows from left to right, as words of a text.
class FlowLayout : public ItemLayout {
    Q_OBJECT

public:
    explicit FlowLayout(int spacing, QWidget* parent = nullptr);

    bool hasHeightForWidth() const override { return true; }

    int heightForWidth(int width) const override;
    QSize minimumSize() const override;
    QSize sizeHint() const override;
    void setGeometry(const QRect& rect) override;

private:
    /// Gives each item its place in a rectangle, and the height that they take.
    template <typename Place>
    int arrange(const QRect& rect, Place place) const;
};

} // namespace quillary
