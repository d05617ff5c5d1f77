#pragma once

#include "Quillary/Platform/DirectoryWatcher.h"
#include "Quillary/Platform/MountWatcher.h"
#include "Quillary/State/DelayedTask.h"
#include "Quillary/State/NoteItem.h"
#include "Quillary/State/SidebarCursor.h"
#include "Quillary/State/SidebarDragItem.h"
#include "Quillary/State/SidebarSection.h"
#include "Quillary/State/TextPreloader.h"
#include "QuillaryCore/Formats/FormatDetector.h"
#include "QuillaryCore/Notes/FileError.h"
#include "QuillaryCore/Notes/FolderColor.h"
#include "QuillaryCore/Notes/NoteFileStore.h"
#include "QuillaryCore/Notes/SidebarLayout.h"

#include <QList>
#include <QMap>
#include <QObject>
#include <QSet>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <sys/types.h>
#include <type_traits>
#include <vector>

namespace quillary {

class AppSettings;

/// The notes, the folders, the selections, and every command that changes them. Views read its fields, follow its
/// signals, which tell of changes only, and call its commands. A failure becomes one text in `errorMessage`.
/// Main thread only; file operations are synchronous.
class NotesStore : public QObject, private NoteObserver {
    Q_OBJECT

public:
    /// Loads everything: when it exists, the notes are listed and sorted, the first visible one is selected and its
    /// text is read. The texts of the others arrive in the background. `settings` must outlive it.
    explicit NotesStore(AppSettings* settings, QObject* parent = nullptr);
    ~NotesStore() override;

    AppSettings& settings() const { return *m_settings; }

    const NoteFileStore& fileStore() const { return m_fileStore; }

    // The notes.

    /// All notes, in the order of `sorted`.
    const QList<NoteItemPtr>& notes() const { return m_notes; }

    /// The note of an id; null if there is none any more.
    NoteItemPtr item(NoteID id) const;

    /// Whether this very note is among the notes.
    bool contains(const NoteItem& item) const;

    /// The note in the detail pane; null if there is none.
    NoteItemPtr selectedItem() const;

    /// The id of the note in the detail pane.
    std::optional<NoteID> selectedID() const { return m_selectedID; }

    /// Selects a note: its text is read, a selected folder and a multiple selection end, and the note that is left is
    /// saved soon if it is dirty. The same id again does nothing.
    void setSelectedID(std::optional<NoteID> id);

    // The folders.

    /// The folders in the order on show.
    const QStringList& folders() const { return m_folders; }

    /// The folders that are shown closed.
    const QSet<QString>& collapsedFolders() const { return m_collapsedFolders; }

    /// The colours of the folders that have one.
    const QMap<QString, FolderColor>& folderColors() const { return m_folderColors; }

    /// The folder that is selected in the place of a note.
    const std::optional<QString>& selectedFolder() const { return m_selectedFolder; }

    void setSelectedFolder(const std::optional<QString>& folder);

    /// The folder whose name is being edited in its place.
    const std::optional<QString>& renamingFolder() const { return m_renamingFolder; }

    void setRenamingFolder(const std::optional<QString>& folder);

    /// The folder that waits for the user to confirm its deletion.
    const std::optional<QString>& pendingFolderDeletion() const { return m_pendingFolderDeletion; }

    void setPendingFolderDeletion(const std::optional<QString>& folder);

    // The sidebar.

    /// What the user looks for in the sidebar.
    const QString& searchQuery() const { return m_searchQuery; }

    void setSearchQuery(const QString& query);

    /// The sidebar as it stands: folders and groups, or what the search finds. Computed by each call.
    QList<SidebarSection> sidebarSections() const;

    /// The notes of all sections but those in closed folders, from top to bottom. Computed by each call.
    QList<NoteItemPtr> visibleNotes() const;

    /// The notes of a folder, or of the top level, in order.
    QList<NoteItemPtr> notes(const std::optional<QString>& inFolder) const;

    /// The date that a row shows: of creation where the notes are sorted by it, else of modification.
    Moment displayDate(const NoteItem& item) const;

    /// Opens or closes a folder, and saves the layout.
    void toggleCollapsed(const QString& folder);

    // The multiple selection.

    /// The notes of a multiple selection, two or more, in the order of the comparison; empty if there is none. Ids of
    /// notes that have gone may stay for as long as two others do.
    const QList<NoteID>& multiSelection() const { return m_multiSelection; }

    /// Whether the two notes of the multiple selection are shown side by side.
    bool isShowingDiff() const { return m_isShowingDiff; }

    /// The notes that a command acts on: those of the multiple selection, or the selected one.
    QList<NoteItemPtr> actionTargets() const;

    /// Whether a row has the highlight of the selection.
    bool isHighlighted(const NoteItem& item) const;

    /// Selects several notes, and reads their texts; two of them from the older to the newer. A single one becomes the
    /// selected note, none leaves the selected note as it was.
    void setMultiSelection(const QList<NoteID>& ids);

    /// Adds a note to the multiple selection, or to the selected note, or takes it out.
    void toggleInSelection(const NoteItem& item);

    /// Selects the visible notes from the selected one to this one.
    void extendSelection(const NoteItem& to);

    /// Shows two notes side by side, the older one first.
    void compare(NoteItem& item, NoteItem& with);

    /// Lets the two sides of the comparison change places.
    void swapComparison();

    /// Shows the two notes of the multiple selection side by side, in its order.
    void showDiff();

    /// Ends a multiple selection and asks for the focus in the editor.
    void clearMultiSelection();

    // What waits for the user, and requests for the focus: each request raises its counter.

    /// The text of the alert on screen; the shell clears it when the user dismisses it.
    const std::optional<QString>& errorMessage() const { return m_errorMessage; }

    void setErrorMessage(const std::optional<QString>& message);

    /// The notes that wait for the user to confirm their deletion.
    const QList<NoteID>& pendingNoteDeletion() const { return m_pendingNoteDeletion; }

    void setPendingNoteDeletion(const QList<NoteID>& ids);

    qint64 editorFocusToken() const { return m_editorFocusToken; }

    void raiseEditorFocusToken();

    qint64 searchFocusToken() const { return m_searchFocusToken; }

    void raiseSearchFocusToken();

    qint64 sidebarFocusToken() const { return m_sidebarFocusToken; }

    void raiseSidebarFocusToken();

    qint64 titleRenameToken() const { return m_titleRenameToken; }

    void raiseTitleRenameToken();

    // Loading and order.

    /// Reads the directory anew and replaces all notes, with unsaved texts. If it can't be read, there are none.
    void loadAll();

    /// Saves what is dirty and goes on with another directory, which is made if need be.
    void changeDirectory(const FilePath& directory);

    /// Makes sure that a note has its text, or an error that says why not.
    void ensureLoaded(NoteItem& item);

    /// Notes in the order on show.
    QList<NoteItemPtr> sorted(const QList<NoteItemPtr>& items) const;

    /// Brings the notes into order, and tells of it only if the order changed.
    void resort();

    /// The arrangement of the sidebar, ready to be saved.
    SidebarLayout currentLayout() const;

    // Saving.

    /// Writes a dirty note. False only if that failed; the note then stays dirty. A note that is not among the notes
    /// any more is never written.
    bool save(NoteItem& item);

    /// Saves all dirty notes, as when the application goes into the background or ends. A failure holds none back.
    void saveDirtyNotes();

    // Agreement with the disk.

    /// Brings notes and folders in line with the disk now. Texts that the user is changing are never overwritten, and
    /// a directory that can't be listed changes nothing.
    void refreshFromDisk();

    /// Asks for a refresh after a quarter of a second without another request.
    void scheduleRefresh();

    // Commands on notes.

    /// Makes a note, selects it and asks for the focus in its text. Without a title it is named by the date, without a
    /// format it has the user's. Null after a failure.
    NoteItemPtr makeNote(const std::optional<QString>& title = {}, const QString& contents = {},
                         std::optional<NoteFormat> format = {}, bool showPreview = false,
                         const std::optional<QString>& folder = {});

    /// Makes a note as makeNote does, in the folder of the selected note if there is one.
    NoteItemPtr makeNoteBesideSelected(const std::optional<QString>& title = {}, const QString& contents = {},
                                       std::optional<NoteFormat> format = {}, bool showPreview = false);

    /// Makes a note of the text on the clipboard: shown as a preview if its format is clear, empty if there is no text.
    void createNoteFromClipboard();

    /// Copies files that the user chooses into the directory, and selects the last one.
    void importFiles();

    /// Writes the text of the selected note to a place that the user chooses. The note stays where it is.
    void saveSelectedAs();

    /// Tells which format a text is clearly of, if any; tests put their own in its place.
    std::function<std::optional<NoteFormat>(QStringView text)> detectFormatOf = &FormatDetector::detect;

    /// To be called after every change of a note's text. With `detectFormat`, a text that is clearly of another format
    /// gives its note that format.
    void textDidChange(NoteItem& item, NoteDocument& document, bool detectFormat);

    /// Replaces the whole text of a loaded note: as an edit, if it is on show, else behind the editor's back.
    void replaceText(NoteItem& item, const QString& text);

    /// Gives a note another format, and its file the extension of it.
    void changeFormat(NoteItem& item, NoteFormat format);

    /// Writes the JSON of the selected note anew, over several lines or without any space, and makes it a JSON note.
    void reformatJSON(bool pretty);

    /// Gives a note another title. Blanks around it don't count; an empty or equal one does nothing.
    void rename(NoteItem& item, const QString& title);

    /// Asks the user whether to move notes to the Trash; without a list, the action targets.
    void requestTrash(const std::optional<QList<NoteItemPtr>>& items = {});

    /// Moves notes to the Trash, and the selection to a neighbour if it goes with them.
    void moveToTrash(const QList<NoteItemPtr>& items);

    /// Switches the selected note between editor and preview.
    void togglePreview();

    /// Puts the text of the selected note on the clipboard.
    void copySelectedContent();

    /// A text to be handed out of the application, and whether it is only what is selected.
    struct SharedText {
        QString text;
        bool isSelection = false;

        friend bool operator==(const SharedText&, const SharedText&) = default;
    };

    /// What is selected of a note in the editor, or else its whole text; nothing if it isn't loaded.
    std::optional<SharedText> textToShare(const NoteItem& item) const;

    // Commands on folders.

    /// Makes a folder on top of the others, moves notes into it, and lets the user name it in its place. Its name; none
    /// after a failure.
    std::optional<QString> createFolder(const QList<NoteItemPtr>& moving = {});

    /// Gives a folder another name, and ends the editing of its name. It keeps its place, colour, order and notes.
    /// Blanks around the name don't count; an empty or equal one does nothing more.
    void renameFolder(const QString& name, const QString& to);

    /// Moves a folder to the Trash, with its notes or after they have moved to the top level.
    void deleteFolder(const QString& name, bool keepingNotes);

    /// Puts a folder before another one, or at the end.
    void moveFolder(const QString& name, const std::optional<QString>& before);

    /// Lets a folder change places with the one that is some places further down; nothing if there is none.
    void moveFolder(const QString& name, int by);

    /// Gives a folder a colour, or none.
    void setColor(std::optional<FolderColor> color, const QString& folder);

    // Commands on the places of notes.

    /// Moves notes to a folder, or to the top level. Several of them end with the first one selected.
    void move(const QList<NoteItemPtr>& items, const std::optional<QString>& toFolder);

    /// Puts notes into a folder, or the top level, before a note there or at the end. The order becomes the one by
    /// hand; the selected note stays.
    void place(const QList<NoteItemPtr>& items, const std::optional<QString>& inFolder, const NoteItemPtr& before);

    /// Moves the selected note some places down, or up, in its folder. The order becomes the one by hand.
    void shiftSelectedNote(int by);

    /// The note that follows another one in its folder where some are left out; null if there is none.
    NoteItemPtr note(const NoteItem& after, const QList<NoteItemPtr>& excluding) const;

    /// What a drag that starts on a note's row takes along: the whole multiple selection if the note is of it.
    SidebarDragItem dragItem(const NoteItem& item) const;

    /// What is being dragged in the sidebar, if anything.
    const std::optional<SidebarDragItem>& dragItem() const { return m_dragItem; }

    void setDragItem(const std::optional<SidebarDragItem>& item) { m_dragItem = item; }

    // Navigation.

    /// The stops of the keyboard's cursor from top to bottom: headers of folders, and notes that are not hidden in one.
    QList<SidebarCursor> sidebarCursors() const;

    /// Moves the cursor one stop down (1) or up (-1); from a folder's header to the next header. Beeps at the ends.
    void sidebarMove(int step);

    /// Opens the selected folder, or goes to its first note. Nothing without a selected folder.
    void sidebarRight();

    /// Closes the selected folder, or goes from a note to the header of its folder.
    void sidebarLeft();

    /// Selects the next (1) or previous (-1) visible note, and goes on at the other end.
    void selectAdjacent(int step);

    /// Selects a note by its place among the visible ones, from 0 on; nothing for a place that isn't there.
    void selectVisible(qsizetype at);

    /// Ends a search with what it found: the selected note, or else the first. Where nothing was found, a note of that
    /// title is made.
    void commitSearch();

    /// Empties the search, and leaves its field if it is empty already.
    void cancelSearch();

    /// Selects a note wherever it is hidden, as a preview if that is asked for and there is one.
    void reveal(NoteItem& item, bool previewing);

    /// What became of a link.
    enum class LinkResult {
        /// A note is selected, or a file was opened.
        handled,
        /// It leads nowhere, or to a place in the same note, which the preview finds by itself.
        discarded,
        /// It is to be opened by the system.
        systemAction,
    };

    /// Follows a link in the preview of a note: to the note that it means, or else to another file.
    LinkResult openLink(const QString& url, const NoteItem& from);

Q_SIGNALS:
    void notesChanged();
    void noteChanged(quillary::NoteItem* item, quillary::NoteField field);
    void selectedIDChanged();
    void foldersChanged();
    void collapsedFoldersChanged();
    void folderColorsChanged();
    void selectedFolderChanged();
    void renamingFolderChanged();
    void pendingFolderDeletionChanged();
    void searchQueryChanged();
    void multiSelectionChanged();
    void isShowingDiffChanged();
    void errorMessageChanged();
    void pendingNoteDeletionChanged();
    void editorFocusTokenChanged();
    void searchFocusTokenChanged();
    void sidebarFocusTokenChanged();
    void titleRenameTokenChanged();

private:
    template <typename T>
    void assign(T& field, const std::type_identity_t<T>& value, void (NotesStore::*changed)());
    void noteDidChange(NoteItem& item, NoteField field) override;
    void assignNotes(const QList<NoteItemPtr>& notes);
    void assignMultiSelection(const QList<NoteID>& ids, bool isShowingDiff);
    void fail(const QString& firstLine, const FileError& error);
    QList<NoteItemPtr> present(QList<NoteItemPtr> items) const;

    // NotesStoreLoading.cpp
    Status<FileError> readDirectory();
    void selectionDidChange(std::optional<NoteID> previous);
    void takeNewerDate(Moment modified, NoteItem& item);
    void attach(const QString& text, const QString& snippet, NoteItem& item);
    void preloadDocuments();
    void preloadMoreDocuments();
    void attachPreloaded(const TextPreloader::Text& text);
    void insert(const NoteItemPtr& item);
    void remove(const QList<NoteItemPtr>& items);
    void removeNamesakes(const QList<NoteItemPtr>& items);
    QList<NoteItemPtr> manuallySorted(const QList<NoteItemPtr>& items) const;
    void selectFirstVisibleNote();

    // NotesStoreSaving.cpp
    void scheduleSave(NoteItem& item);
    void saveLayout();

    // NotesStoreDisk.cpp
    void rebuildWatchers();
    bool areWatchersCurrent() const;
    void mountsDidChange();
    bool isVolumeGone(const NoteFileStore::Listing& listing) const;
    bool isVolumeAway() const;
    Status<FileError> ensureVolumeIsThere();
    void awaitReturn();
    QList<NoteItemPtr> merged(const QList<NoteFileInfo>& listing);
    bool hasGone(const NoteItem& note) const;
    void syncFolders(const QStringList& names);
    void reloadIfChangedOnDisk(NoteItem& item, const NoteFileInfo& info);

    // NotesStoreSections.cpp
    /// What the sidebar shows from top to bottom, without the headings of dates: a step of the cursor needs none.
    struct Arrangement {
        bool isSearch = false;
        /// One section for each folder; none in a search.
        QList<SidebarSection> folders;
        /// The notes of the top level, or those that a search has found.
        QList<NoteItemPtr> others;
    };

    Arrangement arrangement() const;
    QList<NoteItemPtr> notesFound(const QString& query) const;
    QList<SidebarSection> dateGroups(const QList<NoteItemPtr>& items) const;

    // NotesStoreMultiSelection.cpp
    QList<NoteItemPtr> multiSelectedItems() const;
    QList<NoteID> chronological(const QList<NoteID>& ids) const;

    // NotesStoreNavigation.cpp
    std::optional<SidebarCursor> currentCursor() const;
    void moveCursor(const SidebarCursor& to);
    qsizetype cursorBesideHeader(const QList<SidebarCursor>& cursors, qsizetype header, int step) const;
    NoteItemPtr linkedNote(const QString& path, const NoteItem& from) const;

    // NotesStoreOrder.cpp
    void moveNotes(const QList<NoteItemPtr>& items, const std::optional<QString>& toFolder,
                   const NoteItemPtr& selecting);
    bool moveFile(NoteItem& item, const std::optional<QString>& toFolder);
    void adoptManualOrder();
    void renameInOrder(const NoteItem& item, const QString& oldFileName);
    void removeFromOrder(const QList<NoteItemPtr>& items);
    void takeNoteOrder(const SidebarLayout& layout);

    AppSettings* m_settings;
    NoteFileStore m_fileStore;

    QList<NoteItemPtr> m_notes;
    std::optional<NoteID> m_selectedID;
    QString m_searchQuery;
    QList<NoteID> m_multiSelection;
    bool m_isShowingDiff = false;
    QStringList m_folders;
    QSet<QString> m_collapsedFolders;
    std::optional<QString> m_renamingFolder;
    std::optional<QString> m_pendingFolderDeletion;
    QList<NoteID> m_pendingNoteDeletion;
    QMap<QString, FolderColor> m_folderColors;
    std::optional<QString> m_selectedFolder;
    std::optional<QString> m_errorMessage;
    qint64 m_sidebarFocusToken = 0;
    qint64 m_editorFocusToken = 0;
    qint64 m_searchFocusToken = 0;
    qint64 m_titleRenameToken = 0;
    QMap<QString, QStringList> m_noteOrder;
    std::optional<SidebarDragItem> m_dragItem;

    std::vector<std::unique_ptr<DirectoryWatcher>> m_watchers;
    std::unique_ptr<DirectoryWatcher> m_returnWatcher;
    std::unique_ptr<MountWatcher> m_mountWatcher;
    DelayedTask m_refreshTask;
    bool m_isLoaded = false;
    std::optional<dev_t> m_device;
    QList<NoteItemPtr> m_notesToPreload;
    qsizetype m_preloadPosition = 0;
    QHash<FilePath, std::weak_ptr<NoteItem>> m_preloading;
    DelayedTask m_preloadTask;
    DelayedTask m_preloadMoreTask;
    TextPreloader m_preloader;
};

template <typename T>
void NotesStore::assign(T& field, const std::type_identity_t<T>& value, void (NotesStore::*changed)()) {
    if (field != value) {
        field = value;
        Q_EMIT(this->*changed)();
    }
}

} // namespace quillary
