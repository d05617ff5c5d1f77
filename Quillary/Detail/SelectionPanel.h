#pragma once

#include "Quillary/State/NotesStore.h"

#include <QScrollArea>

class QBoxLayout;
class QLabel;
class QMenu;
class QPushButton;

namespace quillary {

class CardPile;
class NoteCard;
class WrappingLabel;

/// What stands in the place of the editor while several notes are selected: two of them as a pair that can be compared,
/// more as a pile, and what can be done with them.
class SelectionPanel : public QScrollArea {
    Q_OBJECT

public:
    explicit SelectionPanel(NotesStore& store, QWidget* parent = nullptr);

    /// Shows these notes as they are now.
    void setItems(const QList<NoteItemPtr>& items);

    const QList<NoteItemPtr>& items() const { return m_items; }

    /// Does what Return, the default action, or Escape means here. False for any other key.
    bool performKey(int key);

protected:
    void focusInEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    QSize viewportSizeHint() const override;

private:
    QWidget* makePair();
    QWidget* makeStack();
    QBoxLayout* makeActions();

    bool isPair() const { return m_items.size() == 2; }

    QString titlesLine() const;
    void update();
    void arrange();
    void fillMoveMenu();

    NotesStore& m_store;
    QList<NoteItemPtr> m_items;

    QWidget* m_pair;
    NoteCard* m_first;
    NoteCard* m_second;
    QWidget* m_stack;
    CardPile* m_pile;
    QLabel* m_number;
    WrappingLabel* m_titles;
    QBoxLayout* m_actions;
    QPushButton* m_cancel;
    QPushButton* m_move;
    QMenu* m_moveMenu;
    QPushButton* m_newFolder;
    QPushButton* m_compare;
    WrappingLabel* m_hints;
};

} // namespace quillary
