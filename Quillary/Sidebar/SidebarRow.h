#pragma once

#include "Quillary/State/NoteItem.h"
#include "QuillaryCore/SeededHash.h"

#include <QHash>
#include <QString>

namespace quillary {

/// One line of the sidebar's list.
struct SidebarRow {
    enum class Kind {
        folderHeader,
        groupHeader,
        note,
    };

    /// What a row is known by while the rows around it change: a folder's header by its name, a note's row by the
    /// folder that it stands in and by its id, a heading by its text and by how many of that text stand above it.
    struct Key {
        Kind kind = Kind::note;
        quint64 number = 0;
        QString text;

        static Key folder(const QString& name) { return {Kind::folderHeader, 0, name}; }

        static Key group(const QString& title, quint64 above = 0) { return {Kind::groupHeader, above, title}; }

        static Key note(const NoteItem& note) {
            return {Kind::note, static_cast<quint64>(note.id()), note.folder().value_or(QString())};
        }

        friend bool operator==(const Key&, const Key&) = default;

        friend size_t qHash(const Key& self, size_t seed = 0) {
            return qHashMulti(seed, static_cast<int>(self.kind), self.number, SeededHash(seed)(self.text));
        }
    };

    Key key;
    /// The note; null for the headers.
    NoteItemPtr note;
    /// Whether the note stands under a folder's header.
    bool indented = false;
    /// Whether the folder's notes are hidden.
    bool isCollapsed = false;
    /// How many notes a folder has.
    qsizetype count = 0;

    Kind kind() const { return key.kind; }

    /// The folder's name or the group's heading.
    const QString& title() const { return key.text; }

    bool isNote() const { return key.kind == Kind::note; }

    bool isFolder() const { return key.kind == Kind::folderHeader; }

    friend bool operator==(const SidebarRow&, const SidebarRow&) = default;
};

} // namespace quillary
