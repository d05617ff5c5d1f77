#include "Quillary/State/AppSettings.h"
#include "Quillary/State/NoteDocument.h"
#include "Quillary/State/NotesStore.h"
#include "QuillaryCore/Notes/Blanks.h"
#include "QuillaryCore/Notes/NoteDates.h"
#include "QuillaryCore/Unicode/InterfaceLocale.h"
#include "QuillaryCore/Unicode/LocalizedContainment.h"

#include <QTimeZone>

#include <algorithm>

namespace quillary {

QList<SidebarSection> NotesStore::sidebarSections() const {
    if (const QString query = trimmedOfBlanks(m_searchQuery).toString(); !query.isEmpty()) {
        return {SidebarSection{SidebarSection::Kind::plain(), notesFound(query)}};
    }
    QList<SidebarSection> sections;
    QHash<QString, qsizetype> sectionOfFolder;
    for (const QString& folder : m_folders) {
        sectionOfFolder.insert(folder, sections.size());
        sections.append({SidebarSection::Kind::folder(folder), {}});
    }
    QList<NoteItemPtr> topLevel;
    for (const NoteItemPtr& note : m_notes) {
        if (!note->folder()) {
            topLevel.append(note);
        } else if (const auto index = sectionOfFolder.constFind(*note->folder()); index != sectionOfFolder.cend()) {
            sections[*index].items.append(note);
        }
    }
    if (topLevel.isEmpty()) {
        return sections;
    }
    const NoteSortOrder order = m_settings->sortOrder();
    if (order == NoteSortOrder::created || order == NoteSortOrder::modified) {
        sections += dateGroups(topLevel);
    } else {
        sections.append(
            {m_folders.isEmpty() ? SidebarSection::Kind::plain() : SidebarSection::Kind::group(tr("Note")), topLevel});
    }
    return sections;
}

/// The notes whose title or loaded text holds the query.
QList<NoteItemPtr> NotesStore::notesFound(const QString& query) const {
    const TextMatcher matcher(query);
    QList<NoteItemPtr> found;
    std::ranges::copy_if(m_notes, std::back_inserter(found), [&matcher](const NoteItemPtr& note) {
        return matcher.matches(note->title()) || (note->document() && matcher.matches(note->document()->text()));
    });
    return found;
}

/// Notes under headings of their dates. Neighbours of one heading join; the same heading may come again.
QList<SidebarSection> NotesStore::dateGroups(const QList<NoteItemPtr>& items) const {
    const Moment present = now();
    const QString locale = interfaceLocale();
    const QTimeZone timeZone = QTimeZone::systemTimeZone();
    QList<SidebarSection> groups;
    for (const NoteItemPtr& item : items) {
        const QString title = NoteDateGroup::title(displayDate(*item), present, timeZone, locale);
        if (groups.isEmpty() || groups.last().kind.text != title) {
            groups.append({SidebarSection::Kind::group(title), {}});
        }
        groups.last().items.append(item);
    }
    return groups;
}

QList<NoteItemPtr> NotesStore::visibleNotes() const {
    QList<NoteItemPtr> visible;
    for (const SidebarSection& section : sidebarSections()) {
        if (!section.kind.isFolder() || !m_collapsedFolders.contains(section.kind.text)) {
            visible += section.items;
        }
    }
    return visible;
}

QList<NoteItemPtr> NotesStore::notes(const std::optional<QString>& inFolder) const {
    QList<NoteItemPtr> notes;
    std::ranges::copy_if(m_notes, std::back_inserter(notes),
                         [&inFolder](const NoteItemPtr& note) { return note->folder() == inFolder; });
    return notes;
}

Moment NotesStore::displayDate(const NoteItem& item) const {
    return m_settings->sortOrder() == NoteSortOrder::created ? item.created() : item.modified();
}

void NotesStore::toggleCollapsed(const QString& folder) {
    QSet<QString> collapsed = m_collapsedFolders;
    if (!collapsed.remove(folder)) {
        collapsed.insert(folder);
    }
    assign(m_collapsedFolders, collapsed, &NotesStore::collapsedFoldersChanged);
    saveLayout();
}

} // namespace quillary
