#include "Quillary/Theme/PaddedButton.h"

namespace quillary {

QSize PaddedButton::sizeHint() const {
    constexpr QSize padding(14, 4);
    return QPushButton::sizeHint() + padding;
}

} // namespace quillary
