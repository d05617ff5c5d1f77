#pragma once

#include "Quillary/State/NoteItem.h"

#include <QList>
#include <QWidget>

namespace quillary {

class NoteCard;

/// Some cards one behind the other, the first one in front; of those behind the titles stand out.
class CardPile : public QWidget {
    Q_OBJECT

public:
    explicit CardPile(QWidget* parent = nullptr);

    /// Shows the first of these notes as they are now.
    void setItems(const QList<NoteItemPtr>& items);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void arrange();

    QList<NoteCard*> m_cards;
};

} // namespace quillary
