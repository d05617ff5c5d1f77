#include "Quillary/State/NoteItem.h"

#include "Quillary/State/DelayedTask.h"
#include "Quillary/State/NoteDocument.h"
#include "QuillaryCore/Notes/NoteFileInfo.h"

#include <utility>

namespace quillary {

namespace {

constexpr qsizetype longestPreview = 1'000'000;

NoteID nextNoteID() {
    static quint64 last = 0;
    return NoteID{++last};
}

} // namespace

bool NoteItem::isLater(Moment date, Moment other) {
    constexpr quint64 tolerance = 1'000'000;
    // The difference to the distant past is greater than a signed number holds.
    return date > other &&
           quint64(date.time_since_epoch().count()) - quint64(other.time_since_epoch().count()) > tolerance;
}

bool NoteItem::isSettledSince(Moment modified) {
    constexpr auto coarsest = std::chrono::seconds(2);
    return modified <= now() - coarsest;
}

NoteItem::NoteItem(const NoteFileInfo& info)
    : knownModificationDate(info.modified),
      isSettled(isSettledSince(info.modified)),
      m_id(nextNoteID()),
      m_url(info.url),
      m_created(info.created),
      m_modified(info.modified),
      m_folder(info.folder) {}

NoteItem::~NoteItem() = default;

template <typename T, typename U>
void NoteItem::assign(T& field, U&& value, NoteField name) {
    if (field == value) {
        return;
    }
    field = std::forward<U>(value);
    if (m_observer) {
        m_observer->noteDidChange(*this, name);
    }
}

void NoteItem::setUrl(const FilePath& url) {
    assign(m_url, url, NoteField::url);
}

void NoteItem::setCreated(Moment created) {
    assign(m_created, created, NoteField::created);
}

void NoteItem::setModified(Moment modified) {
    assign(m_modified, modified, NoteField::modified);
}

void NoteItem::setFolder(const std::optional<QString>& folder) {
    assign(m_folder, folder, NoteField::folder);
}

void NoteItem::setSnippet(const QString& snippet) {
    assign(m_snippet, snippet, NoteField::snippet);
}

void NoteItem::setCharacterCount(qsizetype characterCount) {
    assign(m_characterCount, characterCount, NoteField::characterCount);
}

void NoteItem::setDirty(bool isDirty) {
    assign(m_isDirty, isDirty, NoteField::isDirty);
}

void NoteItem::setShowsPreview(bool showsPreview) {
    assign(m_showsPreview, showsPreview, NoteField::showsPreview);
}

void NoteItem::setLoadError(const std::optional<QString>& loadError) {
    assign(m_loadError, loadError, NoteField::loadError);
}

void NoteItem::raiseRevision() {
    assign(m_revision, m_revision + 1, NoteField::revision);
}

void NoteItem::setDocument(std::shared_ptr<NoteDocument> document) {
    assign(m_document, std::move(document), NoteField::document);
}

NoteFormat NoteItem::format() const {
    return noteFormatFromExtension(m_url.extension());
}

bool NoteItem::canPreview() const {
    return m_characterCount <= longestPreview && supportsPreview(format());
}

} // namespace quillary
