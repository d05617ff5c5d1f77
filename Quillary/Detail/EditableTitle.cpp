#include "Quillary/Detail/EditableTitle.h"

#include "Quillary/Detail/TitleButton.h"
#include "Quillary/Sidebar/InlineTextField.h"
#include "Quillary/Sidebar/ShownName.h"
#include "QuillaryCore/Platform/FilePath.h"

#include <QApplication>

#include <algorithm>
#include <utility>

namespace quillary {

EditableTitle::EditableTitle(NotesStore& store, QWidget* parent)
    : QWidget(parent), m_store(store), m_button(new TitleButton(this)) {
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    m_button->setToolTip(tr("Fai clic per rinominare"));
    m_button->setAccessibleDescription(m_button->toolTip());
    connect(m_button, &TitleButton::clicked, this, &EditableTitle::beginEditing);
    connect(&store, &NotesStore::titleRenameTokenChanged, this, &EditableTitle::beginEditing);
}

void EditableTitle::setItem(const NoteItemPtr& item) {
    if (item == m_item) {
        return;
    }
    if (isEditing()) {
        if (m_store.contains(*m_item)) {
            commit(m_field->text());
        } else {
            cancel();
        }
    }
    m_item = item;
    update();
}

void EditableTitle::update() {
    m_button->setTitle(m_item == nullptr ? QString() : shownName(m_item->title()));
    updateGeometry();
}

void EditableTitle::beginEditing() {
    if (m_item == nullptr || isHidden()) {
        return;
    }
    if (isEditing()) {
        m_field->setFocus(Qt::OtherFocusReason);
        m_field->selectAll();
        return;
    }
    // The title itself and not the line that shows it, or Return alone would rename.
    m_field = new InlineTextField(FilePath::displayText(m_item->title()), m_button->font(), this);
    m_field->setAccessibleName(tr("Titolo della nota"));
    m_field->setAlignment(Qt::AlignHCenter);
    connect(m_field, &InlineTextField::committed, this, &EditableTitle::commit);
    connect(m_field, &InlineTextField::cancelled, this, &EditableTitle::cancel);
    connect(m_field, &InlineTextField::textEdited, this, &EditableTitle::updateGeometry);
    m_button->hide();
    arrange();
    m_field->show();
    updateGeometry();
}

void EditableTitle::commit(const QString& draft) {
    if (!isEditing()) {
        return;
    }
    const NoteItemPtr item = m_item;
    // What is typed into the field that took the keyboard must not go on in the note.
    const QWidget* const focused = QApplication::focusWidget();
    const bool isTyping = focused != m_field && qobject_cast<const QLineEdit*>(focused) != nullptr;
    endEditing();
    m_store.rename(*item, draft);
    if (!isTyping) {
        m_store.raiseEditorFocusToken();
    }
}

void EditableTitle::cancel() {
    endEditing();
    m_store.raiseEditorFocusToken();
}

void EditableTitle::endEditing() {
    // The field may be in the middle of an event of its own.
    InlineTextField* const field = std::exchange(m_field, nullptr);
    m_button->show();
    field->disconnect(this);
    field->hide();
    field->deleteLater();
    updateGeometry();
}

QSize EditableTitle::sizeHint() const {
    if (!isEditing()) {
        return m_button->sizeHint();
    }
    // Wide enough to type in, whatever the title.
    constexpr int smallestField = 220;
    constexpr int margins = 24;
    const int text = m_field->fontMetrics().horizontalAdvance(m_field->text()) + margins;
    return {std::max(text, smallestField), std::max(m_field->sizeHint().height(), m_button->sizeHint().height())};
}

QSize EditableTitle::minimumSizeHint() const {
    constexpr int narrowest = 48;
    return {narrowest, sizeHint().height()};
}

void EditableTitle::resizeEvent(QResizeEvent*) {
    arrange();
}

void EditableTitle::arrange() {
    m_button->setGeometry(rect());
    if (isEditing()) {
        m_field->setGeometry(rect());
    }
}

} // namespace quillary
