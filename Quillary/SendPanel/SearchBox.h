#pragma once

#include <QLineEdit>

class QAbstractItemView;

namespace quillary {

/// A field to narrow a list by, with a magnifying glass before and, while it holds a text, a clear button behind it.
class SearchBox : public QLineEdit {
    Q_OBJECT

public:
    explicit SearchBox(QWidget* parent = nullptr);

    /// What the empty field says, which is its name for a screen reader too.
    void setPlaceholder(const QString& placeholder);

    /// The list that it narrows, which the arrow key down leads to.
    void setList(QAbstractItemView* list) { m_list = list; }

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QAbstractItemView* m_list = nullptr;
};

} // namespace quillary
