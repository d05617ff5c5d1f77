#pragma once

#include <QWidget>

namespace quillary {

/// One action whose keys can't be changed.
class FixedShortcutRow : public QWidget {
    Q_OBJECT

public:
    FixedShortcutRow(const QString& label, const QString& keys, QWidget* parent = nullptr);
};

} // namespace quillary
