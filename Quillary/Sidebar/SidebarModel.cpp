#include "Quillary/Sidebar/SidebarModel.h"

#include "Quillary/Sidebar/ShownName.h"
#include "Quillary/Sidebar/SidebarRowChanges.h"
#include "Quillary/State/AppSettings.h"
#include "Quillary/Theme/Theme.h"
#include "QuillaryCore/Notes/Blanks.h"
#include "QuillaryCore/Notes/NoteDates.h"
#include "QuillaryCore/Unicode/InterfaceLocale.h"

#include <QDateTime>
#include <QTimeZone>

#include <algorithm>
#include <iterator>

namespace quillary {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// How long the texts that arrive one by one may wait until the search takes them in.
constexpr auto arrivalDelay = 100ms;

} // namespace

SidebarModel::SidebarModel(NotesStore& store, QObject* parent)
    : QAbstractListModel(parent), m_store(store), m_midnight([this] { dayChanged(); }) {
    m_updateTimer.setSingleShot(true);
    connect(&m_updateTimer, &QTimer::timeout, this, &SidebarModel::update);
    const auto updateSoon = [this] { updateWithin(0ms); };
    connect(&store, &NotesStore::notesChanged, this, updateSoon);
    connect(&store, &NotesStore::foldersChanged, this, updateSoon);
    connect(&store, &NotesStore::collapsedFoldersChanged, this, updateSoon);
    connect(&store, &NotesStore::searchQueryChanged, this, updateSoon);
    connect(&store.settings(), &AppSettings::sortOrderChanged, this, [this] {
        updateWithin(0ms);
        repaintAll();
    });
    connect(&store, &NotesStore::folderColorsChanged, this, &SidebarModel::repaintAll);
    connect(&store, &NotesStore::noteChanged, this,
            [this](const NoteItem* note, NoteField field) { noteChanged(*note, field); });

    awaitMidnight();
    m_rows = currentRows();
}

int SidebarModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant SidebarModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const SidebarRow& row = this->row(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return shownTitle(row);
    case Qt::ToolTipRole:
        return row.isNote() ? shownName(row.note->fileName()) : shownTitle(row);
    case Qt::AccessibleTextRole:
        return accessibleText(row);
    case Qt::AccessibleDescriptionRole:
        return accessibleDescription(row);
    default:
        return {};
    }
}

int SidebarModel::rowOf(const SidebarRow::Key& key) const {
    if (m_places.isEmpty()) {
        m_places.reserve(rowCount());
        for (std::size_t i = 0; i < m_rows.size(); ++i) {
            m_places.insert(m_rows[i].key, static_cast<int>(i));
        }
    }
    return m_places.value(key, -1);
}

int SidebarModel::rowOfNote(NoteID id) const {
    if (m_notePlaces.isEmpty()) {
        m_notePlaces.reserve(rowCount());
        for (std::size_t i = 0; i < m_rows.size(); ++i) {
            if (m_rows[i].isNote()) {
                m_notePlaces.insert(m_rows[i].note->id(), static_cast<int>(i));
            }
        }
    }
    return m_notePlaces.value(id, -1);
}

void SidebarModel::update() {
    m_updateTimer.stop();
    apply(currentRows());
    Q_EMIT updated();
}

QString SidebarModel::shownTitle(const SidebarRow& row) {
    return shownName(row.isNote() ? row.note->title() : row.title());
}

QString SidebarModel::dateText(const NoteItem& note) const {
    return NoteDateText::shortText(m_store.displayDate(note), now(), QTimeZone::systemTimeZone(), interfaceLocale());
}

QString SidebarModel::excerpt(const NoteItem& note) {
    return note.snippet().isEmpty() && note.document() != nullptr ? tr("Vuota") : note.snippet();
}

QString SidebarModel::accessibleText(const SidebarRow& row) const {
    switch (row.kind()) {
    case SidebarRow::Kind::note:
        return shownTitle(row) % u", "_s % dateText(*row.note);
    case SidebarRow::Kind::folderHeader:
        return shownTitle(row) % u", "_s % (row.count == 1 ? tr("1 nota") : tr("%1 note").arg(row.count));
    case SidebarRow::Kind::groupHeader:
        return row.title();
    }
    Q_UNREACHABLE();
}

QString SidebarModel::accessibleDescription(const SidebarRow& row) const {
    switch (row.kind()) {
    case SidebarRow::Kind::note: {
        const QString format = displayName(row.note->format());
        const QString text = excerpt(*row.note);
        return text.isEmpty() ? format : format % u", "_s % text;
    }
    case SidebarRow::Kind::folderHeader: {
        const auto& colors = m_store.folderColors();
        const auto color = colors.constFind(row.title());
        return color == colors.constEnd() ? tr("Cartella") : tr("Cartella") % u", "_s % Theme::folderColorName(*color);
    }
    case SidebarRow::Kind::groupHeader:
        return {};
    }
    Q_UNREACHABLE();
}

void SidebarModel::updateWithin(std::chrono::milliseconds delay) {
    if (!m_updateTimer.isActive() || m_updateTimer.remainingTimeAsDuration() > delay) {
        m_updateTimer.start(delay);
    }
}

void SidebarModel::noteChanged(const NoteItem& note, NoteField field) {
    switch (field) {
    case NoteField::created:
    case NoteField::modified:
    case NoteField::folder:
    case NoteField::url:
        // The date may open another group, and the title may come into or fall out of a search.
        updateWithin(0ms);
        break;
    case NoteField::document:
    case NoteField::revision:
    case NoteField::characterCount:
        if (m_isSearching) {
            updateWithin(arrivalDelay);
        }
        break;
    case NoteField::snippet:
        break;
    default:
        return;
    }
    if (const int row = rowOfNote(note.id()); row >= 0) {
        Q_EMIT dataChanged(index(row), index(row));
    }
}

void SidebarModel::repaintAll() {
    if (!m_rows.empty()) {
        Q_EMIT dataChanged(index(0), index(rowCount() - 1));
    }
}

std::vector<SidebarRow> SidebarModel::currentRows() {
    m_isSearching = !trimmedOfBlanks(m_store.searchQuery()).isEmpty();
    const QList<SidebarSection> sections = m_store.sidebarSections();
    std::vector<SidebarRow> rows;
    rows.reserve(static_cast<std::size_t>(m_store.notes().size() + sections.size()));
    QHash<QString, quint64> headings;
    for (const SidebarSection& section : sections) {
        const bool isFolder = section.kind.isFolder();
        if (isFolder) {
            const bool isCollapsed = m_store.collapsedFolders().contains(section.kind.text);
            rows.push_back({.key = SidebarRow::Key::folder(section.kind.text),
                            .note = {},
                            .isCollapsed = isCollapsed,
                            .count = static_cast<qsizetype>(section.items.size())});
            if (isCollapsed) {
                continue;
            }
        } else if (section.kind.isGroup()) {
            rows.push_back(
                {.key = SidebarRow::Key::group(section.kind.text, headings[section.kind.text]++), .note = {}});
        }
        for (const NoteItemPtr& note : section.items) {
            rows.push_back({.key = SidebarRow::Key::note(*note), .note = note, .indented = isFolder});
        }
    }
    return rows;
}

void SidebarModel::apply(std::vector<SidebarRow> rows) {
    const std::vector<SidebarRowChange> changes = sidebarRowChanges(m_rows, rows);
    if (!changes.empty()) {
        m_places.clear();
        m_notePlaces.clear();
    }
    for (const SidebarRowChange& change : changes) {
        const auto first = m_rows.begin() + change.first;
        const auto end = first + (change.kind == SidebarRowChange::Kind::insert ? 0 : change.count);
        const int last = change.first + change.count - 1;
        switch (change.kind) {
        case SidebarRowChange::Kind::remove:
            beginRemoveRows({}, change.first, last);
            m_rows.erase(first, end);
            endRemoveRows();
            break;
        case SidebarRowChange::Kind::move: {
            beginMoveRows({}, change.first, last, {}, change.destination);
            const auto destination = m_rows.begin() + change.destination;
            destination < first ? std::rotate(destination, first, end) : std::rotate(first, end, destination);
            endMoveRows();
            break;
        }
        case SidebarRowChange::Kind::insert: {
            beginInsertRows({}, change.first, last);
            const auto source = rows.begin() + change.first;
            m_rows.insert(first, source, source + change.count);
            endInsertRows();
            break;
        }
        }
    }
    takeContents(std::move(rows));
}

/// Takes what the rows show beside who they are, and tells of the stretches where that differs.
void SidebarModel::takeContents(std::vector<SidebarRow> rows) {
    m_rows.swap(rows);
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        const std::size_t first = i;
        while (i < m_rows.size() && m_rows[i] != rows[i]) {
            ++i;
        }
        if (i > first) {
            Q_EMIT dataChanged(index(static_cast<int>(first)), index(static_cast<int>(i) - 1));
        }
    }
}

/// At midnight, and when the clock is set: what is of today may be of yesterday.
void SidebarModel::dayChanged() {
    update();
    repaintAll();
    awaitMidnight();
}

void SidebarModel::awaitMidnight() {
    m_midnight.set(QDateTime::currentDateTime().date().addDays(1).startOfDay());
}

} // namespace quillary
