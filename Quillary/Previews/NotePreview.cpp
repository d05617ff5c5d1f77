#include "Quillary/Previews/NotePreview.h"

#include "Quillary/Previews/CSVPreview.h"
#include "Quillary/Previews/JSONPreview.h"
#include "Quillary/Previews/MarkdownPreview.h"
#include "Quillary/State/AppActions.h"
#include "Quillary/State/AppSettings.h"
#include "Quillary/State/Desktop.h"
#include "Quillary/State/NoteDocument.h"
#include "Quillary/State/NotesStore.h"
#include "QuillaryCore/Text/TextStorage.h"

#include <QVBoxLayout>

namespace quillary {

NotePreview::NotePreview(NotesStore& store, AppSettings& settings, QWidget* parent)
    : QWidget(parent), m_store(store), m_settings(settings), m_layout(new QVBoxLayout(this)) {
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);
    m_layout->setContentsMargins(0, 0, 0, 0);
    connect(&store, &NotesStore::selectedIDChanged, this, &NotePreview::refresh);
    connect(&store, &NotesStore::noteChanged, this, &NotePreview::noteDidChange);
    connect(&settings, &AppSettings::fontSizeChanged, this, &NotePreview::scheduleRefresh);
}

NotePreview::~NotePreview() = default;

void NotePreview::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    refresh();
}

void NotePreview::noteDidChange(const NoteItem* note, NoteField field) {
    const bool decides = field == NoteField::url || field == NoteField::document || field == NoteField::revision ||
                         field == NoteField::characterCount;
    if (decides && note == m_store.selectedItem().get()) {
        scheduleRefresh();
    }
}

// Several changes of one command give one refresh, which comes before the next time that anything is painted.
void NotePreview::scheduleRefresh() {
    if (!m_isRefreshScheduled) {
        m_isRefreshScheduled = true;
        QMetaObject::invokeMethod(this, &NotePreview::refresh, Qt::QueuedConnection);
    }
}

void NotePreview::refresh() {
    m_isRefreshScheduled = false;
    const NoteItemPtr note = m_store.selectedItem();
    const bool hasPreview = note && note->document() && note->canPreview();
    const bool isSame = hasPreview && note == m_note.lock() && note->format() == m_format;
    const bool hadFocus = holdsFocus();
    if (m_preview && !isSame) {
        dropPreview();
    }
    if (!hasPreview || !isVisible()) {
        return;
    }
    follow(note);
    const QString text = m_document->text();
    if (!m_preview) {
        m_format = note->format();
        m_text = text;
        m_baseSize = m_settings.fontSize();
        makePreview(text);
    } else if (m_settings.fontSize() != m_baseSize || text != m_text) {
        m_text = text;
        m_baseSize = m_settings.fontSize();
        rebuildPreview(text);
    }
    // What had it may be gone, and somebody else would get the next keys.
    if (hadFocus && !holdsFocus()) {
        setFocus(Qt::OtherFocusReason);
    }
}

bool NotePreview::holdsFocus() const {
    const QWidget* const focused = window()->focusWidget();
    return m_preview && focused && (focused == m_preview || m_preview->isAncestorOf(focused));
}

void NotePreview::follow(const NoteItemPtr& note) {
    m_note = note;
    if (note->document() != m_document) {
        disconnect(m_textConnection);
        m_document = note->document();
        m_textConnection = connect(&m_document->storage(), &TextStorage::changed, this, &NotePreview::scheduleRefresh);
    }
}

void NotePreview::makePreview(const QString& text) {
    switch (m_format) {
    case NoteFormat::markdown:
        m_preview = new MarkdownPreview(
            text, m_baseSize, [this](const QString& url) { return openLink(url); }, this);
        break;
    case NoteFormat::json:
        m_preview = new JSONPreview(
            text, m_baseSize, [this](const QString& formatted) { replaceText(formatted); }, this);
        break;
    case NoteFormat::csv:
        m_preview = new CSVPreview(text, m_baseSize, this);
        break;
    default:
        return;
    }
    m_layout->addWidget(m_preview);
    // At once, so that it can take the focus.
    m_preview->show();
    setFocusProxy(m_preview);
}

void NotePreview::rebuildPreview(const QString& text) {
    if (auto* const markdown = qobject_cast<MarkdownPreview*>(m_preview)) {
        markdown->rebuild(text, m_baseSize);
    } else if (auto* const json = qobject_cast<JSONPreview*>(m_preview)) {
        json->rebuild(text, m_baseSize);
    } else if (auto* const csv = qobject_cast<CSVPreview*>(m_preview)) {
        csv->rebuild(text, m_baseSize);
    }
}

void NotePreview::dropPreview() {
    // It may be handling the very click that ends it.
    m_preview->hide();
    m_layout->removeWidget(m_preview);
    m_preview->deleteLater();
    m_preview = nullptr;
    setFocusProxy(nullptr);
    disconnect(m_textConnection);
    m_document.reset();
    m_note.reset();
    m_text.clear();
}

bool NotePreview::openLink(const QString& url) {
    const NoteItemPtr note = m_note.lock();
    if (!note) {
        return false;
    }
    const NotesStore::LinkResult result = m_store.openLink(url, *note);
    if (result == NotesStore::LinkResult::systemAction) {
        if (Desktop* const desktop = AppActions::shared().desktop) {
            desktop->openURL(url);
        }
    }
    return result == NotesStore::LinkResult::handled;
}

void NotePreview::replaceText(const QString& text) {
    if (const NoteItemPtr note = m_note.lock()) {
        m_store.replaceText(*note, text);
    }
}

} // namespace quillary
