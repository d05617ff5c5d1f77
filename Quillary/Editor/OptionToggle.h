#pragma once

#include <QToolButton>

namespace quillary {

/// A flat button with a short label that switches an option of the search on and off.
class OptionToggle : public QToolButton {
    Q_OBJECT

public:
    OptionToggle(const QString& label, const QString& help, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace quillary
