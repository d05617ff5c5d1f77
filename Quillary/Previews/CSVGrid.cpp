#include "Quillary/Previews/CSVGrid.h"

#include "Quillary/Previews/CSVGridModel.h"
#include "Quillary/Previews/PreviewText.h"
#include "Quillary/Theme/Contrast.h"
#include "Quillary/Theme/Theme.h"

#include <QAbstractButton>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QHelpEvent>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QSignalBlocker>
#include <QStyledItemDelegate>
#include <QToolTip>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

constexpr int cellPadding = 8;
constexpr double headerHeightFactor = 1.9;
constexpr double cellHeightFactor = 1.75;
constexpr double cellFontFactor = 0.95;
constexpr double digitWidth = 0.62;
constexpr int numberPadding = 12;
constexpr double leastColumnWidth = 56;
constexpr float tertiaryOpacity = 0.55F;

void drawCell(QPainter& painter, const QRect& rect, const QString& text, Qt::Alignment alignment) {
    const QRect inner = rect.adjusted(cellPadding, 0, -cellPadding, 0);
    const QString elided = painter.fontMetrics().elidedText(text, Qt::ElideRight, inner.width());
    painter.drawText(inner, static_cast<int>(alignment) | Qt::TextSingleLine, elided);
}

/// Shows a cell's whole text if the cell has no room for it.
bool showCellTip(const QHelpEvent& event, QWidget& widget, const QRect& cell, const QString& shown,
                 const QString& whole) {
    const QFontMetrics metrics(widget.font());
    if (shown == whole && metrics.horizontalAdvance(shown) <= cell.width() - 2 * cellPadding) {
        QToolTip::hideText();
        return false;
    }
    QToolTip::showText(event.globalPos(), PreviewText::toolTip(whole), &widget, cell);
    return true;
}

class CellView : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        const QPalette& palette = option.palette;
        if (option.state.testFlag(QStyle::State_Selected)) {
            painter->fillRect(option.rect, palette.color(QPalette::Highlight));
        }
        painter->setFont(option.font);
        painter->setPen(palette.color(QPalette::Text));
        drawCell(*painter, option.rect, index.data().toString(),
                 index.data(Qt::TextAlignmentRole).value<Qt::Alignment>());
        const QRect& rect = option.rect;
        const QColor line = Theme::separator(palette);
        painter->fillRect(QRect(rect.left(), rect.bottom(), rect.width(), 1), line);
        painter->fillRect(QRect(rect.right(), rect.top(), 1, rect.height() - 1), line);
    }

    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override {
        if (!index.isValid()) {
            QToolTip::hideText();
            return false;
        }
        return showCellTip(*event, *view->viewport(), option.rect, index.data().toString(),
                           index.data(Qt::EditRole).toString());
    }
};

/// Draws the corner between the headers like these.
class CornerPainter : public QObject {
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::Paint) {
            return QObject::eventFilter(watched, event);
        }
        auto& corner = *static_cast<QWidget*>(watched);
        QPainter painter(&corner);
        painter.fillRect(corner.rect(), Theme::editorBackground(corner.palette()));
        const QColor line = Theme::separator(corner.palette());
        painter.fillRect(QRect(0, corner.height() - 1, corner.width(), 1), line);
        painter.fillRect(QRect(corner.width() - 1, 0, 1, corner.height() - 1), line);
        return true;
    }
};

/// The header row, or the column of row numbers, as flat as the cells.
class GridHeader : public QHeaderView {
public:
    GridHeader(Qt::Orientation orientation, QWidget* parent) : QHeaderView(orientation, parent) {
        setSectionsClickable(true);
        setHighlightSections(false);
        setMinimumSectionSize(24);
        setSectionResizeMode(orientation == Qt::Vertical ? Fixed : Interactive);
    }

protected:
    void paintSection(QPainter* painter, const QRect& rect, int section) const override {
        const bool isHeader = orientation() == Qt::Horizontal;
        const QColor ground = Theme::editorBackground(palette());
        painter->fillRect(rect, ground);
        QColor color = palette().color(QPalette::Text);
        if (!isHeader) {
            QColor tertiary = Theme::secondaryText(palette());
            tertiary.setAlphaF(tertiaryOpacity);
            color = readable(tertiary, ground, color);
        }
        painter->setPen(color);
        painter->setFont(font());
        const auto alignment =
            model()->headerData(section, orientation(), Qt::TextAlignmentRole).value<Qt::Alignment>();
        const QString text = model()->headerData(section, orientation(), Qt::DisplayRole).toString();
        if (isHeader) {
            drawCell(*painter, rect, text, alignment);
        } else {
            painter->drawText(rect.adjusted(0, 0, -numberPadding / 2, 0), static_cast<int>(alignment), text);
        }
        const QColor line = Theme::separator(palette());
        painter->fillRect(QRect(rect.left(), rect.bottom(), rect.width(), 1), line);
        painter->fillRect(QRect(rect.right(), rect.top(), 1, rect.height() - 1), line);
    }

    void paintEvent(QPaintEvent* event) override {
        QHeaderView::paintEvent(event);
        // What no section has is ground, as below the cells.
        const int end = length() - offset();
        QPainter painter(viewport());
        painter.fillRect(orientation() == Qt::Vertical ? viewport()->rect().adjusted(0, end, 0, 0)
                                                       : viewport()->rect().adjusted(end, 0, 0, 0),
                         Theme::editorBackground(palette()));
    }

    bool viewportEvent(QEvent* event) override {
        if (event->type() != QEvent::ToolTip || orientation() == Qt::Vertical) {
            return QHeaderView::viewportEvent(event);
        }
        const auto& help = *static_cast<QHelpEvent*>(event);
        const int section = logicalIndexAt(help.pos());
        if (section >= 0) {
            const QRect cell(sectionViewportPosition(section), 0, sectionSize(section), height());
            showCellTip(help, *viewport(), cell,
                        model()->headerData(section, Qt::Horizontal, Qt::DisplayRole).toString(),
                        model()->headerData(section, Qt::Horizontal, Qt::EditRole).toString());
        }
        return true;
    }
};

QString quotedIfNeeded(const QString& cell) {
    const bool isNeeded = std::any_of(cell.begin(), cell.end(), [](QChar unit) {
        return unit == u'\t' || unit == u'\n' || unit == u'\r' || unit == u'"';
    });
    return isNeeded ? u'"' + QString(cell).replace(u'"', u"\"\""_s) + u'"' : cell;
}

} // namespace

CSVGrid::CSVGrid(CSVGridModel& model, QWidget* parent) : QTableView(parent) {
    setHorizontalHeader(new GridHeader(Qt::Horizontal, this));
    setVerticalHeader(new GridHeader(Qt::Vertical, this));
    setModel(&model);
    setItemDelegate(new CellView(this));
    setAccessibleName(tr("Tabella"));
    setFrameShape(QFrame::NoFrame);
    setShowGrid(false);
    setWordWrap(false);
    setCornerButtonEnabled(false);
    if (auto* const corner = findChild<QAbstractButton*>(QString(), Qt::FindDirectChildrenOnly)) {
        corner->installEventFilter(new CornerPainter(this));
    }
    setTabKeyNavigation(false);
    setEditTriggers(NoEditTriggers);
    setHorizontalScrollMode(ScrollPerPixel);
    setVerticalScrollMode(ScrollPerPixel);
}

void CSVGrid::setMeasures(double baseSize, const QList<double>& columnWidths, qsizetype numberDigits) {
    const double size = baseSize * cellFontFactor;
    const double scale = Theme::textScale();
    setFont(Theme::font(size));
    horizontalHeader()->setFont(Theme::font(size, QFont::DemiBold));
    verticalHeader()->setFont(Theme::font(size));

    verticalHeader()->setDefaultSectionSize(static_cast<int>(std::lround(baseSize * cellHeightFactor * scale)));
    verticalHeader()->setFixedWidth(static_cast<int>(
        std::lround(static_cast<double>(numberDigits) * baseSize * digitWidth * scale + numberPadding)));
    horizontalHeader()->setFixedHeight(static_cast<int>(std::lround(baseSize * headerHeightFactor * scale)));

    // A header tells of each section that is resized, which is too much for a hundred thousand columns.
    const QSignalBlocker blocker(horizontalHeader());
    horizontalHeader()->setUpdatesEnabled(false);
    horizontalHeader()->setDefaultSectionSize(static_cast<int>(leastColumnWidth));
    for (qsizetype column = 0; column < columnWidths.size(); ++column) {
        const auto width = static_cast<int>(std::lround(columnWidths[column] * scale));
        if (horizontalHeader()->sectionSize(static_cast<int>(column)) != width) {
            horizontalHeader()->resizeSection(static_cast<int>(column), width);
        }
    }
    horizontalHeader()->setUpdatesEnabled(true);
    updateGeometries();
    viewport()->update();
}

void CSVGrid::setHeaderVisible(bool isVisible) {
    horizontalHeader()->setVisible(isVisible);
}

QString CSVGrid::selectedText() const {
    const QItemSelection selection = selectionModel()->selection();
    if (selection.size() == 1 && selection.first().height() == 1 && selection.first().width() == 1) {
        return selection.first().topLeft().data(Qt::EditRole).toString();
    }
    // What is selected in pieces is copied as the rows and columns that the pieces lie in, as they stand.
    QList<QItemSelectionRange> ranges(selection.begin(), selection.end());
    std::sort(ranges.begin(), ranges.end(), [](const QItemSelectionRange& a, const QItemSelectionRange& b) {
        return std::pair(a.top(), a.left()) < std::pair(b.top(), b.left());
    });
    int top = std::numeric_limits<int>::max();
    int bottom = -1;
    for (const QItemSelectionRange& range : std::as_const(ranges)) {
        top = std::min(top, range.top());
        bottom = std::max(bottom, range.bottom());
    }
    QString text;
    bool isFirstRow = true;
    for (int row = top; row <= bottom; ++row) {
        QList<std::pair<int, int>> columns;
        for (const QItemSelectionRange& range : std::as_const(ranges)) {
            if (range.top() <= row && row <= range.bottom()) {
                columns.append({range.left(), range.right()});
            }
        }
        if (columns.isEmpty()) {
            continue;
        }
        std::sort(columns.begin(), columns.end());
        if (!std::exchange(isFirstRow, false)) {
            text += u'\n';
        }
        bool isFirstCell = true;
        for (const auto& [first, last] : std::as_const(columns)) {
            for (int column = first; column <= last; ++column) {
                if (!std::exchange(isFirstCell, false)) {
                    text += u'\t';
                }
                text += quotedIfNeeded(model()->index(row, column).data(Qt::EditRole).toString());
            }
        }
    }
    return text;
}

void CSVGrid::copy() const {
    if (selectionModel()->hasSelection()) {
        QGuiApplication::clipboard()->setText(selectedText());
    }
}

void CSVGrid::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy)) {
        copy();
        return;
    }
    QTableView::keyPressEvent(event);
}

void CSVGrid::contextMenuEvent(QContextMenuEvent* event) {
    auto* const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QAction* const copyAction = menu->addAction(tr("Copia"), this, &CSVGrid::copy);
    copyAction->setShortcut(QKeySequence::Copy);
    copyAction->setEnabled(selectionModel()->hasSelection());
    QAction* const selectAllAction = menu->addAction(tr("Seleziona tutto"), this, &CSVGrid::selectAll);
    selectAllAction->setShortcut(QKeySequence::SelectAll);
    menu->popup(event->globalPos());
}

} // namespace quillary
