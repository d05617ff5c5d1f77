#pragma once

#include "Quillary/Sidebar/SidebarRow.h"

#include <QFont>
#include <QPainter>
#include <QPalette>

namespace quillary {

/// The fonts and the heights of the sidebar's rows, measured once for the application's font. In logical pixels.
struct SidebarMetrics {
    /// Between the list's edges and what lies behind a row; between that and the row's texts.
    static constexpr int margin = 8;
    static constexpr int padding = 8;
    static constexpr int rowPadding = 7;
    static constexpr int lineGap = 3;
    /// How far the notes of a folder stand in.
    static constexpr int indentation = 14;

    QFont title;
    QFont detail;
    QFont badge;
    QFont heading;
    int titleHeight = 0;
    int detailHeight = 0;
    int noteHeight = 0;
    int folderHeight = 0;
    int groupHeight = 0;

    static SidebarMetrics measured();

    int height(SidebarRow::Kind kind) const;
};

/// What all rows of one repaint are drawn with.
struct SidebarLook {
    const SidebarMetrics& metrics;
    const QPalette& palette;
    /// What a text direction of the interface makes leading.
    Qt::LayoutDirection direction = Qt::LeftToRight;
    /// Whether the list has the keyboard.
    bool isListFocused = false;

    /// The opaque colour behind a row.
    QColor ground(bool isSelected, bool isHovered) const;

    /// The colour of what the user is being shown: the keyboard's place, where a drop goes.
    QColor accent() const;

    /// Draws the rounded shape behind a row.
    void drawGround(QPainter& painter, const QRect& row, bool isSelected, bool isHovered) const;

    /// Draws a frame around a row: where the keyboard is, or where a drop goes.
    void drawFrame(QPainter& painter, const QRect& row, bool isFilled) const;

    /// Draws a text in one line, cut with an ellipsis at its end, and gives the width that it took.
    int drawLine(QPainter& painter, const QRect& rect, const QString& text, const QFont& font, const QColor& color,
                 Qt::Alignment alignment = Qt::AlignLeading) const;

    /// A row without the margins of the list.
    static QRect inner(const QRect& row);
};

} // namespace quillary
