#include "Quillary/Theme/WrappingLabel.h"

#include <QPainter>
#include <QStyle>
#include <QTextLayout>

#include <algorithm>

namespace quillary {

WrappingLabel::WrappingLabel(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

void WrappingLabel::setPreferredWidth(int width) {
    m_preferredWidth = width;
    updateGeometry();
}

void WrappingLabel::setMaximumLines(int count) {
    m_maximumLines = count;
    updateGeometry();
}

/// The lines on show in a width, without the margins.
QStringList WrappingLabel::lines(int width) const {
    QStringList lines;
    const auto isFull = [&lines, this] { return m_maximumLines > 0 && lines.size() == m_maximumLines; };
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    for (const QString& paragraph : text().split(u'\n')) {
        QTextLayout layout(paragraph, font(), this);
        layout.setTextOption(option);
        layout.beginLayout();
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
            line.setLineWidth(std::max(width, 1));
            if (isFull()) {
                // What is left of the text stands for the ellipsis.
                const QString rest = lines.last() + paragraph.sliced(line.textStart());
                lines.last() = fontMetrics().elidedText(rest, Qt::ElideRight, width);
                return lines;
            }
            lines.append(paragraph.sliced(line.textStart(), line.textLength()));
        }
        layout.endLayout();
    }
    return lines;
}

int WrappingLabel::heightForWidth(int width) const {
    const QMargins margins = contentsMargins();
    const qsizetype count = lines(width - margins.left() - margins.right()).size();
    return static_cast<int>(count) * fontMetrics().lineSpacing() + margins.top() + margins.bottom();
}

QSize WrappingLabel::sizeHint() const {
    const QMargins margins = contentsMargins();
    const int natural = fontMetrics().size(Qt::TextSingleLine, text()).width();
    const int width = std::min(natural + 1, m_preferredWidth) + margins.left() + margins.right();
    return {width, heightForWidth(width)};
}

QSize WrappingLabel::minimumSizeHint() const {
    const QMargins margins = contentsMargins();
    return {fontMetrics().averageCharWidth() * 8 + margins.left() + margins.right(), fontMetrics().lineSpacing()};
}

void WrappingLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QRect room = contentsRect();
    const QStringList shown = lines(room.width());
    const int spacing = fontMetrics().lineSpacing();
    const int height = static_cast<int>(shown.size()) * spacing;
    int top = QStyle::alignedRect(layoutDirection(), alignment(), QSize(room.width(), height), room).top();
    for (const QString& line : shown) {
        const QRect place(room.left(), top, room.width(), spacing);
        style()->drawItemText(&painter, place, static_cast<int>(alignment() & Qt::AlignHorizontal_Mask), palette(),
                              isEnabled(), line, foregroundRole());
        top += spacing;
    }
}

} // namespace quillary
