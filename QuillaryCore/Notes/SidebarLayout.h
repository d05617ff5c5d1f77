#pragma once

#include "QuillaryCore/Notes/FolderColor.h"

#include <QMap>
#include <QStringList>

#include <optional>

namespace quillary {

/// The arrangement of the sidebar, which the files themselves can't hold: the order of the folders, which are closed,
/// their colours, and the order of notes made by hand.
///
/// It may name folders and notes that are gone: what reads it leaves them out, and nothing here removes them. Names
/// are equal when they are canonically equivalent. Where two names on disk differ in nothing but composition, an entry
/// stands for the one that is spelled as it is.
struct SidebarLayout {
    /// Folder names as they are shown from top to bottom.
    QStringList folderOrder;
    /// The folders that are shown closed.
    QStringList collapsedFolders;
    /// A folder without an entry has no colour.
    QMap<QString, FolderColor> folderColors;
    /// File names with extensions, from top to bottom, by the key of their folder.
    QMap<QString, QStringList> noteOrder;

    friend bool operator==(const SidebarLayout& a, const SidebarLayout& b);

    /// The key of a folder in `noteOrder`: its name, and the empty text for the top of the notes directory.
    static QString key(const std::optional<QString>& folder);

    /// The folders on disk in the order to show: those in `folderOrder` as they are there, then the others by name in
    /// a locale's order.
    QStringList ordered(const QStringList& folders, const QString& locale) const;

    /// The same in the interface's locale.
    QStringList ordered(const QStringList& folders) const;

    /// The notes of a folder in the order to show: those without a place, as they are given, then the others by hand.
    QStringList manuallyOrdered(const QStringList& names, const std::optional<QString>& folder) const;

    /// Puts a note into the order of folder `to`, before the note `before` or, if that isn't there, at the end; it
    /// leaves the order of folder `from`.
    void placeNote(const QString& name, const std::optional<QString>& from, const std::optional<QString>& to,
                   const std::optional<QString>& before);

    /// Gives a note that has no place the one that manuallyOrdered shows it at among these notes of its folder, and
    /// with it all others of them that have none.
    void ensurePlace(const QString& name, const QStringList& names, const std::optional<QString>& folder);

    /// Gives a note's entry another name, in place. A note without an entry gets none.
    void renameNote(const QString& old, const QString& newName, const std::optional<QString>& folder);

    void removeNote(const QString& name, const std::optional<QString>& folder);

    /// Gives a folder another name wherever it occurs. What is there under the new name gives way.
    void renameFolder(const QString& old, const QString& newName);

    void removeFolder(const QString& name);

    /// Reads a layout from its file: UTF-8 JSON, an object of which each key may be absent or null and must otherwise
    /// have its right type; unknown keys are ignored. None if anything is wrong.
    static std::optional<SidebarLayout> decode(QByteArrayView file);

    /// The layout's file: JSON in two-space indents, keys sorted by UTF-16 units, all four always there. Equal layouts
    /// that are spelled alike give equal bytes.
    QByteArray encoded() const;
};

} // namespace quillary
