#pragma once

#include "Quillary/State/NoteItem.h"

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

#include <optional>

namespace quillary::test {

/// What notes, folders and the order by hand should be like, in plain lists: what each command means, without how it
/// is done.
class NotesModel {
public:
    struct Note {
        /// The note in the store; another one once another program renamed the file.
        NoteItemPtr item;
        std::optional<QString> folder;
        QString title;
        QString extension;
        /// The text as the user last saw it, and as it was last written.
        QString text;
        QString writtenText;
        /// The texts that can be undone to, the last one first to come.
        QStringList history;

        QString fileName() const { return title + u'.' + extension; }

        /// Within the notes directory.
        QString path() const { return folder ? *folder + u'/' + fileName() : fileName(); }
    };

    QList<Note> notes;
    QStringList folders;
    /// As in the sidebar's layout.
    QMap<QString, QStringList> order;

    Note& note(const NoteItemPtr& item);

    /// The title that a note gets in a folder where this one may be taken; its own name doesn't count as taken.
    QString freeTitle(const QString& title, const QString& extension, const std::optional<QString>& folder,
                      const Note* ignoring = nullptr) const;

    /// The name that a folder gets; its own one doesn't count as taken.
    QString freeFolder(const QString& name, const std::optional<QString>& ignoring = {}) const;

    void rename(Note& note, const QString& title, const QString& extension);
    void move(Note& note, const std::optional<QString>& folder);
    void place(Note& note, const std::optional<QString>& folder, const std::optional<QString>& beforeFileName);
    /// Gives a note without a place the one that it is shown at, and with it all others that have none.
    void ensurePlace(const QString& fileName, const QStringList& shown, const std::optional<QString>& folder);
    void remove(const NoteItemPtr& item);

    void renameFolder(const QString& name, const QString& to);
    void removeFolder(const QString& name);

    /// The notes of a folder that have a place in the order, from top to bottom.
    QStringList orderedFileNames(const std::optional<QString>& folder) const;
};

} // namespace quillary::test
