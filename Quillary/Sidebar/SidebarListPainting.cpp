#include "Quillary/Sidebar/FolderHeader.h"
#include "Quillary/Sidebar/InlineTextField.h"
#include "Quillary/Sidebar/InsertionLine.h"
#include "Quillary/Sidebar/NoteRow.h"
#include "Quillary/Sidebar/SectionHeader.h"
#include "Quillary/Sidebar/ShownName.h"
#include "Quillary/Sidebar/SidebarList.h"
#include "Quillary/Theme/Theme.h"
#include "QuillaryCore/Notes/Blanks.h"

#include <QPaintEvent>
#include <QPainter>
#include <QTextOption>

#include <algorithm>
#include <optional>

namespace quillary {

SidebarLook SidebarList::look() const {
    return {.metrics = m_metrics, .palette = palette(), .direction = layoutDirection(), .isListFocused = hasFocus()};
}

void SidebarList::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    const SidebarLook look = this->look();
    // Without antialiasing, which on a scaled display would leave the pixels at the edges half painted.
    painter.fillRect(event->rect(), look.ground(false, false));
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_places.count() == 0) {
        paintEmptyState(painter, look);
        return;
    }
    for (int row = rowAt({0, event->rect().top()}); row >= 0 && row < m_places.count(); ++row) {
        if (rowRect(row).top() > event->rect().bottom()) {
            break;
        }
        paintRow(painter, row, look);
    }
    paintDropMark(painter, look);
}

void SidebarList::paintRow(QPainter& painter, int row, const SidebarLook& look) const {
    const SidebarRow& shown = m_model.row(row);
    const QRect rect = rowRect(row);
    const bool isHovered = m_hovered == shown.key;
    // A folder goes above a header, and notes go into it.
    const bool isTargeted = m_isTargeted && m_dropRow == shown.key && !isDraggingFolder();
    switch (shown.kind()) {
    case SidebarRow::Kind::note:
        NoteRow{.title = SidebarModel::shownTitle(shown),
                .date = m_model.dateText(*shown.note),
                .excerpt = SidebarModel::excerpt(*shown.note),
                .format = shown.note->format(),
                .isSelected = isHighlighted(row),
                .isCurrent = row == currentRow(),
                .isHovered = isHovered,
                .indented = shown.indented}
            .paint(painter, rect, look);
        break;
    case SidebarRow::Kind::folderHeader: {
        const auto& colors = m_store.folderColors();
        const auto color = colors.constFind(shown.title());
        FolderHeader{.name = SidebarModel::shownTitle(shown),
                     .count = shown.count,
                     .color = color == colors.constEnd() ? std::nullopt : std::optional(*color),
                     .isCollapsed = shown.isCollapsed,
                     .isSelected = isHighlighted(row),
                     .isHovered = isHovered,
                     .isTargeted = isTargeted,
                     .isRenaming = m_renameField && m_renamedFolder == shown.title()}
            .paint(painter, rect, look);
        break;
    }
    case SidebarRow::Kind::groupHeader:
        SectionHeader{.title = shown.title(), .isTargeted = isTargeted}.paint(painter, rect, look);
        break;
    }
    if (m_menuRow == shown.key) {
        look.drawFrame(painter, rect, false);
    }
}

bool SidebarList::isDraggingFolder() const {
    return m_store.dragItem() && std::holds_alternative<QString>(*m_store.dragItem());
}

/// The row after which a drop at the end of the list goes: the last of all, or for a folder the last one of the
/// folders.
int SidebarList::rowBeforeEnd() const {
    if (!isDraggingFolder()) {
        return m_places.count() - 1;
    }
    const std::vector<SidebarRow>& rows = m_model.rows();
    const auto end =
        std::ranges::partition_point(rows, [](const SidebarRow& row) { return row.isFolder() || row.indented; });
    return static_cast<int>(end - rows.begin()) - 1;
}

void SidebarList::paintDropMark(QPainter& painter, const SidebarLook& look) const {
    if (!m_acceptsDrop) {
        return;
    }
    const QRect target = m_dropRow ? rowRect(m_model.rowOf(*m_dropRow)) : QRect();
    std::optional<int> y;
    if (m_insertion) {
        y = *m_insertion == InsertionEdge::above ? target.top() : target.bottom() + 1;
    } else if (m_isTargeted && isDraggingFolder()) {
        y = target.top();
    } else if (const int last = rowBeforeEnd(); !m_dropRow && last >= 0) {
        y = rowRect(last).bottom() + 1;
    }
    if (y) {
        InsertionLine::paint(painter, SidebarMetrics::margin, viewport()->width() - SidebarMetrics::margin, *y, look);
    }
}

void SidebarList::paintEmptyState(QPainter& painter, const SidebarLook& look) const {
    const auto [headline, hint] = emptyText();
    const QRect place = viewport()->rect().adjusted(20, 48, -20, 0);
    QTextOption centered(Qt::AlignHCenter | Qt::AlignTop);
    centered.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    painter.setPen(palette().color(QPalette::Text));
    painter.setFont(look.metrics.title);
    painter.drawText(place, headline, centered);
    painter.setPen(Theme::secondaryText(palette()));
    painter.setFont(look.metrics.detail);
    painter.drawText(place.adjusted(0, look.metrics.titleHeight + 2 * SidebarMetrics::lineGap, 0, 0), hint, centered);
}

std::pair<QString, QString> SidebarList::emptyText() const {
    if (!m_model.isSearching()) {
        return {tr("Nessuna nota"), tr("⌘N ne crea una nuova.")};
    }
    constexpr qsizetype longest = 60;
    QString query = shownName(trimmedOfBlanks(m_store.searchQuery()).toString());
    if (query.size() > longest) {
        query = query.left(longest) % QChar(0x2026);
    }
    return {tr("Nessun risultato"), tr("↩ crea la nota «%1».").arg(query)};
}

} // namespace quillary
