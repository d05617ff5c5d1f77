#pragma once

#include "Quillary/State/NoteItem.h"

#include <QMetaObject>
#include <QWidget>

class QVBoxLayout;

namespace quillary {

class AppSettings;
class NotesStore;

/// The selected note, formatted instead of edited, if its format has a preview and its text is not too long. It follows
/// the note, its text and the size of the font while it is on show, and makes up for what it missed when it is shown.
class NotePreview : public QWidget {
    Q_OBJECT

public:
    /// Both must outlive the view.
    NotePreview(NotesStore& store, AppSettings& settings, QWidget* parent = nullptr);
    ~NotePreview() override;

    /// The preview on show: a MarkdownPreview, JSONPreview or CSVPreview; null if the note has none.
    QWidget* preview() const { return m_preview; }

protected:
    void showEvent(QShowEvent* event) override;

private:
    void noteDidChange(const NoteItem* note, NoteField field);
    void scheduleRefresh();
    void refresh();
    bool holdsFocus() const;
    void follow(const NoteItemPtr& note);
    void makePreview(const QString& text);
    void rebuildPreview(const QString& text);
    void dropPreview();
    bool openLink(const QString& url);
    void replaceText(const QString& text);

    NotesStore& m_store;
    AppSettings& m_settings;
    QVBoxLayout* m_layout;
    QWidget* m_preview = nullptr;
    std::weak_ptr<NoteItem> m_note;
    std::shared_ptr<NoteDocument> m_document;
    QMetaObject::Connection m_textConnection;
    // What the preview shows
    NoteFormat m_format = NoteFormat::plain;
    QString m_text;
    double m_baseSize = 0;
    bool m_isRefreshScheduled = false;
};

} // namespace quillary
