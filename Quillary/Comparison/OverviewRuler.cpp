#include "Quillary/Comparison/OverviewRuler.h"

#include "Quillary/Theme/Theme.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace quillary {

namespace {

constexpr double markInset = 3;
constexpr double markRadius = 1;
constexpr double lowestMark = 2;
constexpr double highestMark = 4;

QColor markColor(DiffRow::Kind kind, const QPalette& palette) {
    switch (kind) {
    case DiffRow::Kind::removed:
        return Theme::diffRemoved.in(palette);
    case DiffRow::Kind::added:
        return Theme::diffAdded.in(palette);
    case DiffRow::Kind::unchanged:
    case DiffRow::Kind::changed:
        break;
    }
    return Theme::accentDot;
}

} // namespace

OverviewRuler::OverviewRuler(QWidget* parent) : QWidget(parent) {
    setFixedWidth(rulerWidth);
    setToolTip(tr("Mappa delle modifiche: fai clic per saltare"));
    setAccessibleName(toolTip());
    setCursor(Qt::PointingHandCursor);
}

void OverviewRuler::setRows(const DiffRows& rows) {
    m_rows = rows;
    m_changed.clear();
    const std::span<const DiffRow::Kind> kinds = rows.kinds();
    for (std::size_t id = 0; id < kinds.size(); ++id) {
        if (kinds[id] != DiffRow::Kind::unchanged) {
            m_changed.push_back(static_cast<qsizetype>(id));
        }
    }
    update();
}

void OverviewRuler::setLineHeight(double lineHeight) {
    m_lineHeight = lineHeight;
    update();
}

double OverviewRuler::pitch() const {
    return m_rows.isEmpty() ? m_lineHeight : std::min(height() / static_cast<double>(m_rows.size()), m_lineHeight);
}

double OverviewRuler::markHeight() const {
    return std::clamp(pitch(), lowestMark, highestMark);
}

QRectF OverviewRuler::markRect(qsizetype id) const {
    const double rowPitch = pitch();
    const double mark = markHeight();
    return {markInset, (rowPitch - mark) * 0.5 + rowPitch * static_cast<double>(id), width() - 2 * markInset, mark};
}

std::optional<qsizetype> OverviewRuler::rowNearest(double y) const {
    const double rowPitch = pitch();
    if (m_changed.empty() || rowPitch <= 0) {
        return std::nullopt;
    }
    const qsizetype target = static_cast<qsizetype>(std::trunc(y / rowPitch));
    const auto next = std::lower_bound(m_changed.begin(), m_changed.end(), target);
    if (next == m_changed.begin()) {
        return *next;
    }
    if (next == m_changed.end() || target - *std::prev(next) <= *next - target) {
        return *std::prev(next);
    }
    return *next;
}

void OverviewRuler::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), Theme::subtleFill(palette()));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    // Of marks of one colour that fall onto the same pixel only the first is painted.
    const double resolution = 1 / devicePixelRatioF() / 4;
    double lastTop = -1;
    std::optional<DiffRow::Kind> lastKind;
    for (const qsizetype id : m_changed) {
        const DiffRow::Kind kind = m_rows.kinds()[static_cast<std::size_t>(id)];
        const QRectF mark = markRect(id);
        if (kind == lastKind && mark.top() - lastTop < resolution) {
            continue;
        }
        painter.setBrush(markColor(kind, palette()));
        painter.drawRoundedRect(mark, markRadius, markRadius);
        lastTop = mark.top();
        lastKind = kind;
    }
}

void OverviewRuler::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    if (const std::optional<qsizetype> id = rowNearest(event->position().y())) {
        Q_EMIT jump(*id);
    }
}

} // namespace quillary
