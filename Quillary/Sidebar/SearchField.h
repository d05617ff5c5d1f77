#pragma once

#include "Quillary/State/NotesStore.h"

#include <QLineEdit>

namespace quillary {

/// The filter above the list, bound to the store's query.
class SearchField : public QLineEdit {
    Q_OBJECT

public:
    explicit SearchField(NotesStore& store, QWidget* parent = nullptr);

Q_SIGNALS:
    /// Up (-1) or Down (+1) was pressed: the list is stepped without leaving the field.
    void stepped(int step);
    void committed();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    NotesStore& m_store;
};

} // namespace quillary
