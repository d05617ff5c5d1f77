#pragma once

#include <QPushButton>

namespace quillary {

/// A push button with air around its text, which the style sets tight.
class PaddedButton : public QPushButton {
    Q_OBJECT

public:
    using QPushButton::QPushButton;

    QSize sizeHint() const override;

    QSize minimumSizeHint() const override { return sizeHint(); }
};

} // namespace quillary
