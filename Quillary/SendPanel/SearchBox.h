#pragma once

#include <QLineEdit>

namespace quillary {

/// A field to narrow a list by, with a magnifying glass before and, while it holds a text, a clear button behind it.
class SearchBox : public QLineEdit {
    Q_OBJECT

public:
    explicit SearchBox(QWidget* parent = nullptr);

    /// What the empty field says, which is its name for a screen reader too.
    void setPlaceholder(const QString& placeholder);
};

} // namespace quillary
