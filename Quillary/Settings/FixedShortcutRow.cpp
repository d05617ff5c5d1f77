#include "Quillary/Settings/FixedShortcutRow.h"

#include <QHBoxLayout>
#include <QLabel>

namespace quillary {

FixedShortcutRow::FixedShortcutRow(const QString& label, const QString& keys, QWidget* parent) : QWidget(parent) {
    auto* const keyLabel = new QLabel(keys, this);
    keyLabel->setForegroundRole(QPalette::PlaceholderText);
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(new QLabel(label, this));
    layout->addStretch(1);
    layout->addWidget(keyLabel);
}

} // namespace quillary
