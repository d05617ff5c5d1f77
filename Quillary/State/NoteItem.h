#pragma once

#include "QuillaryCore/Notes/Moment.h"
#include "QuillaryCore/Notes/NoteFormat.h"
#include "QuillaryCore/Platform/FilePath.h"

#include <QString>

#include <memory>
#include <optional>

namespace quillary {

class DelayedTask;
class NoteDocument;
class NoteItem;
struct NoteFileInfo;

/// What a note is known by in selections, for one run of the program.
enum class NoteID : quint64 {};

/// The fields of a note that can be observed.
enum class NoteField {
    url,
    created,
    modified,
    folder,
    snippet,
    characterCount,
    isDirty,
    showsPreview,
    loadError,
    revision,
    document,
};

/// Who is told of the changes of notes: the store that holds them.
class NoteObserver {
public:
    virtual void noteDidChange(NoteItem& item, NoteField field) = 0;

protected:
    ~NoteObserver() = default;
};

/// One note in memory: the facts of its file, and its text once that is read. There are ten thousand of them, so it is
/// no QObject; it tells its observer, and only of an assignment that changes the value. Main thread only.
class NoteItem : public std::enable_shared_from_this<NoteItem> {
public:
    /// The length of snippets, in characters.
    static constexpr qsizetype snippetLength = 100;

    /// Whether one date of a file is later than another by more than file systems round, which is a millisecond.
    static bool isLater(Moment date, Moment other);

    /// Whether a file of this date has been left alone for longer than any file system rounds dates.
    static bool isSettledSince(Moment modified);

    explicit NoteItem(const NoteFileInfo& info);
    ~NoteItem();
    NoteItem(const NoteItem&) = delete;
    NoteItem& operator=(const NoteItem&) = delete;

    /// Never the same for two notes of one run; a note that goes and comes back is another.
    NoteID id() const { return m_id; }

    /// Where the file is now.
    const FilePath& url() const { return m_url; }

    void setUrl(const FilePath& url);

    /// The date of the file's creation.
    Moment created() const { return m_created; }

    void setCreated(Moment created);

    /// The date that the list shows and sorts by.
    Moment modified() const { return m_modified; }

    void setModified(Moment modified);

    /// The name of the sub-folder; absent at the top level.
    const std::optional<QString>& folder() const { return m_folder; }

    void setFolder(const std::optional<QString>& folder);

    /// The first line that says something; empty until the text is known.
    const QString& snippet() const { return m_snippet; }

    void setSnippet(const QString& snippet);

    /// The length of the text in UTF-16 units; 0 until the text is known.
    qsizetype characterCount() const { return m_characterCount; }

    void setCharacterCount(qsizetype characterCount);

    /// Whether the text has changes that were not written yet.
    bool isDirty() const { return m_isDirty; }

    void setDirty(bool isDirty);

    /// Whether the preview stands in the place of the editor.
    bool showsPreview() const { return m_showsPreview; }

    void setShowsPreview(bool showsPreview);

    /// Why the text could not be read.
    const std::optional<QString>& loadError() const { return m_loadError; }

    void setLoadError(const std::optional<QString>& loadError);

    /// Raised each time the text is replaced from outside the editor.
    qint64 revision() const { return m_revision; }

    void raiseRevision();

    /// The text; null until it is loaded. Never dropped while the note lives.
    const std::shared_ptr<NoteDocument>& document() const { return m_document; }

    void setDocument(std::shared_ptr<NoteDocument> document);

    /// The file name without its extension, in reversible form.
    QString title() const { return m_url.title(); }

    /// The file name, in reversible form.
    QString fileName() const { return m_url.fileName(); }

    /// What the extension of the file says.
    NoteFormat format() const;

    /// Whether the format has a preview and the text is at most 1,000,000 units long.
    bool canPreview() const;

    /// The file's modification date as of the last time that this program read or wrote it.
    Moment knownModificationDate;

    /// False while somebody may have gone on writing the file after it was listed: what was read of it may be a part.
    bool isSettled;

    /// The save that waits for the end of typing; null if none was asked for.
    std::unique_ptr<DelayedTask> saveTask;

    /// Takes the observer, which may be null.
    void setObserver(NoteObserver* observer) { m_observer = observer; }

private:
    template <typename T, typename U>
    void assign(T& field, U&& value, NoteField name);

    NoteID m_id;
    NoteObserver* m_observer = nullptr;
    FilePath m_url;
    Moment m_created;
    Moment m_modified;
    std::optional<QString> m_folder;
    QString m_snippet;
    std::optional<QString> m_loadError;
    std::shared_ptr<NoteDocument> m_document;
    qsizetype m_characterCount = 0;
    qint64 m_revision = 0;
    bool m_isDirty = false;
    bool m_showsPreview = false;
};

using NoteItemPtr = std::shared_ptr<NoteItem>;

} // namespace quillary
