#pragma once

#include "Quillary/State/AppSettings.h"
#include "Quillary/State/NotesStore.h"

#include <QWidget>

class QLabel;

namespace quillary {

class SaveMark;

/// The line under a note: its format, its length, whether it is saved, and the size of the text. All of them are fields
/// that the note has anyway: nothing is counted for it.
class StatusBar : public QWidget {
    Q_OBJECT

public:
    StatusBar(NotesStore& store, AppSettings& settings, QWidget* parent = nullptr);

    /// The note to tell of; null for none.
    void setItem(const NoteItemPtr& item);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void update();

    NoteItemPtr m_item;
    QLabel* m_format;
    QLabel* m_count;
    QLabel* m_largeSeparator;
    QLabel* m_large;
    SaveMark* m_mark;
    QLabel* m_saved;
};

} // namespace quillary
