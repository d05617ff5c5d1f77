#include "Quillary/Sidebar/SidebarModel.h"

#include "Quillary/State/AppSettings.h"
#include "QuillaryCore/Notes/NoteDates.h"
#include "QuillaryCore/Platform/FilePath.h"
#include "QuillaryCore/Unicode/InterfaceLocale.h"

#include <QDateTime>
#include <QTimeZone>

#include <algorithm>

namespace quillary {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// A name as one line for a person to read: line feeds and other control characters become blanks.
QString oneLine(const QString& name) {
    QString text = FilePath::displayText(name);
    for (QChar& unit : text) {
        if (unit.category() == QChar::Other_Control || unit == QChar::LineSeparator ||
            unit == QChar::ParagraphSeparator) {
            unit = u' ';
        }
    }
    return text;
}

} // namespace

SidebarModel::SidebarModel(NotesStore& store, QObject* parent) : QAbstractListModel(parent), m_store(store) {
    m_rebuildTimer.setSingleShot(true);
    m_rebuildTimer.setInterval(0ms);
    connect(&m_rebuildTimer, &QTimer::timeout, this, &SidebarModel::rebuild);
    const auto rebuildSoon = [this] { m_rebuildTimer.start(); };
    connect(&store, &NotesStore::notesChanged, this, rebuildSoon);
    connect(&store, &NotesStore::foldersChanged, this, rebuildSoon);
    connect(&store, &NotesStore::collapsedFoldersChanged, this, rebuildSoon);
    connect(&store, &NotesStore::searchQueryChanged, this, rebuildSoon);
    connect(&store.settings(), &AppSettings::sortOrderChanged, this, rebuildSoon);
    connect(&store, &NotesStore::folderColorsChanged, this, [this] { repaintAll(); });
    connect(&store, &NotesStore::noteChanged, this,
            [this](const NoteItem* note, NoteField field) { noteChanged(*note, field); });

    m_midnightTimer.setSingleShot(true);
    m_midnightTimer.setTimerType(Qt::VeryCoarseTimer);
    connect(&m_midnightTimer, &QTimer::timeout, this, [this] {
        rebuild();
        repaintAll();
        awaitMidnight();
    });
    awaitMidnight();
    m_rows = currentRows();
}

int SidebarModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant SidebarModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) {
        return {};
    }
    const SidebarRow& row = this->row(index);
    const bool isNote = row.kind == SidebarRow::Kind::note;
    switch (role) {
    case Qt::DisplayRole:
        return oneLine(isNote ? row.note->title() : row.title);
    case Qt::ToolTipRole:
        return isNote ? FilePath::displayText(row.note->url().fileName()) : QString();
    case Qt::AccessibleTextRole:
        return accessibleText(row);
    case kindRole:
        return QVariant::fromValue(row.kind);
    case snippetRole:
        return isNote ? row.note->snippet() : QString();
    case dateRole:
        return isNote ? dateText(*row.note) : QString();
    case badgeRole:
        return isNote ? badge(row.note->format()) : QString();
    case indentedRole:
        return row.indented;
    case countRole:
        return static_cast<qlonglong>(row.count);
    case collapsedRole:
        return m_store.collapsedFolders().contains(row.title);
    default:
        return {};
    }
}

Qt::ItemFlags SidebarModel::flags(const QModelIndex& index) const {
    if (!index.isValid() || row(index).kind == SidebarRow::Kind::groupHeader) {
        return Qt::NoItemFlags;
    }
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
}

QModelIndex SidebarModel::indexOfNote(NoteID id) const {
    const auto found = std::find_if(m_rows.begin(), m_rows.end(), [&](const SidebarRow& row) {
        return row.kind == SidebarRow::Kind::note && row.note->id() == id;
    });
    return found == m_rows.end() ? QModelIndex() : index(static_cast<int>(found - m_rows.begin()));
}

QModelIndex SidebarModel::indexOfFolder(const QString& name) const {
    const auto found = std::find_if(m_rows.begin(), m_rows.end(), [&](const SidebarRow& row) {
        return row.kind == SidebarRow::Kind::folderHeader && row.title == name;
    });
    return found == m_rows.end() ? QModelIndex() : index(static_cast<int>(found - m_rows.begin()));
}

void SidebarModel::rebuild() {
    m_rebuildTimer.stop();
    std::vector<SidebarRow> rows = currentRows();
    const auto [oldHead, newHead] = std::mismatch(m_rows.begin(), m_rows.end(), rows.begin(), rows.end());
    const auto [oldTail, newTail] = std::mismatch(m_rows.rbegin(), std::make_reverse_iterator(oldHead), rows.rbegin(),
                                                  std::make_reverse_iterator(newHead));
    const int first = static_cast<int>(oldHead - m_rows.begin());
    const int removed = static_cast<int>(oldTail.base() - oldHead);
    const int inserted = static_cast<int>(newTail.base() - newHead);
    if (removed > 0) {
        beginRemoveRows({}, first, first + removed - 1);
        m_rows.erase(oldHead, oldTail.base());
        endRemoveRows();
    }
    if (inserted > 0) {
        beginInsertRows({}, first, first + inserted - 1);
        m_rows = std::move(rows);
        endInsertRows();
    }
}

void SidebarModel::noteChanged(const NoteItem& note, NoteField field) {
    switch (field) {
    case NoteField::created:
    case NoteField::modified:
    case NoteField::folder:
    case NoteField::url:
        // The date may open another group, and the title may come into or fall out of a search.
        m_rebuildTimer.start();
        repaint(indexOfNote(note.id()));
        break;
    case NoteField::document:
    case NoteField::revision:
        if (!m_store.searchQuery().isEmpty()) {
            m_rebuildTimer.start();
        }
        break;
    case NoteField::snippet:
        repaint(indexOfNote(note.id()));
        break;
    default:
        break;
    }
}

void SidebarModel::repaint(const QModelIndex& index) {
    if (index.isValid()) {
        Q_EMIT dataChanged(index, index);
    }
}

void SidebarModel::repaintAll() {
    if (!m_rows.empty()) {
        Q_EMIT dataChanged(index(0), index(rowCount() - 1));
    }
}

std::vector<SidebarRow> SidebarModel::currentRows() const {
    std::vector<SidebarRow> rows;
    for (const SidebarSection& section : m_store.sidebarSections()) {
        const bool isFolder = section.kind.isFolder();
        if (isFolder) {
            rows.push_back({.kind = SidebarRow::Kind::folderHeader,
                            .title = section.kind.text,
                            .note = {},
                            .count = static_cast<qsizetype>(section.items.size())});
            if (m_store.collapsedFolders().contains(section.kind.text)) {
                continue;
            }
        } else if (section.kind.isGroup()) {
            rows.push_back({.kind = SidebarRow::Kind::groupHeader, .title = section.kind.text, .note = {}});
        }
        for (const NoteItemPtr& note : section.items) {
            rows.push_back({.kind = SidebarRow::Kind::note, .title = {}, .note = note, .indented = isFolder});
        }
    }
    return rows;
}

QString SidebarModel::accessibleText(const SidebarRow& row) const {
    switch (row.kind) {
    case SidebarRow::Kind::note:
        return oneLine(row.note->title()) % u", "_s % dateText(*row.note);
    case SidebarRow::Kind::folderHeader:
        return oneLine(row.title) % u", "_s % (row.count == 1 ? tr("1 nota") : tr("%1 note").arg(row.count));
    case SidebarRow::Kind::groupHeader:
        return row.title;
    }
    Q_UNREACHABLE();
}

QString SidebarModel::dateText(const NoteItem& note) const {
    return NoteDateText::shortText(m_store.displayDate(note), now(), QTimeZone::systemTimeZone(), interfaceLocale());
}

void SidebarModel::awaitMidnight() {
    const QDateTime present = QDateTime::currentDateTime();
    const QDateTime midnight = present.date().addDays(1).startOfDay();
    m_midnightTimer.start(std::chrono::milliseconds(present.msecsTo(midnight)) + 1s);
}

} // namespace quillary
