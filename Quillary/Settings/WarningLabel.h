#pragma once

#include "Quillary/Theme/WrappingLabel.h"

namespace quillary {

/// Words about something that went wrong, behind the sign of a warning. They take the width that is there and never ask
/// for more.
class WarningLabel : public WrappingLabel {
    Q_OBJECT

public:
    explicit WarningLabel(const QString& text = {}, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace quillary
