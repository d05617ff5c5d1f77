#pragma once

#include "Quillary/State/NotesStore.h"

#include <QLineEdit>

namespace quillary {

/// The filter above the list, bound to the store's query. The arrows step through the list without leaving the field.
class SearchField : public QLineEdit {
    Q_OBJECT

public:
    explicit SearchField(NotesStore& store, QWidget* parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    NotesStore& m_store;
};

} // namespace quillary
