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
    Arrangement arrangement = this->arrangement();
    QList<SidebarSection>& sections = arrangement.folders;
    const QList<NoteItemPtr>& others = arrangement.others;
    if (arrangement.isSearch) {
        return {SidebarSection{SidebarSection::Kind::plain(), others}};
    }
    if (others.isEmpty()) {
        return sections;
    }
    const NoteSortOrder order = m_settings->sortOrder();
    if (order == NoteSortOrder::created || order == NoteSortOrder::modified) {
        sections += dateGroups(others);
    } else {
        sections.append(
            {m_folders.isEmpty() ? SidebarSection::Kind::plain() : SidebarSection::Kind::group(tr("Note")), others});
    }
    return sections;
}

NotesStore::Arrangement NotesStore::arrangement() const {
    if (const QString query = trimmedOfBlanks(m_searchQuery).toString(); !query.isEmpty()) {
        return {.isSearch = true, .folders = {}, .others = notesFound(query)};
    }
    Arrangement arrangement;
    QList<SidebarSection>& sections = arrangement.folders;
    QHash<QString, qsizetype> sectionOfFolder;
    for (const QString& folder : m_folders) {
        sectionOfFolder.insert(folder, sections.size());
        sections.append({SidebarSection::Kind::folder(folder), {}});
    }
    for (const NoteItemPtr& note : m_notes) {
        if (!note->folder()) {
            arrangement.others.append(note);
        } else if (const auto index = sectionOfFolder.constFind(*note->folder()); index != sectionOfFolder.cend()) {
            sections[*index].items.append(note);
        }
    }
    return arrangement;
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
    NoteDateGroups headings(now(), QTimeZone::systemTimeZone(), interfaceLocale());
    QList<SidebarSection> groups;
    for (const NoteItemPtr& item : items) {
        const QString& title = headings.title(displayDate(*item));
        if (groups.isEmpty() || groups.last().kind.text != title) {
            groups.append({SidebarSection::Kind::group(title), {}});
        }
        groups.last().items.append(item);
    }
    return groups;
}

QList<NoteItemPtr> NotesStore::visibleNotes() const {
    const Arrangement arrangement = this->arrangement();
    QList<NoteItemPtr> visible;
    for (const SidebarSection& folder : arrangement.folders) {
        if (!m_collapsedFolders.contains(folder.kind.text)) {
            visible += folder.items;
        }
    }
    return visible + arrangement.others;
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
