#include "Quillary/Comparison/StatsView.h"

#include "Quillary/Comparison/DiffTexts.h"
#include "Quillary/Theme/Theme.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace quillary {

namespace {

constexpr int counterGap = 8;

} // namespace

StatsView::StatsView(QWidget* parent) : QWidget(parent) {
    setFont(Theme::monospacedFont(11, QFont::Medium));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setStats({});
}

void StatsView::setStats(const DiffStats& stats) {
    m_stats = stats;
    const QString sentence = DiffTexts::sentence(stats);
    setToolTip(sentence);
    setAccessibleName(sentence);
    updateGeometry();
    update();
}

std::array<QString, 3> StatsView::counters(const DiffStats& stats) {
    return {u'+' + QString::number(stats.added), QChar(u'\u2212') + QString::number(stats.removed),
            u'~' + QString::number(stats.changed)};
}

std::array<double, 3> StatsView::barParts(const DiffStats& stats) {
    const double total = static_cast<double>(std::max<qsizetype>(stats.added + stats.removed + stats.changed, 1));
    const auto part = [total](qsizetype count) { return static_cast<double>(count) * barWidth / total; };
    return {part(stats.added), part(stats.changed), part(stats.removed)};
}

QSize StatsView::sizeHint() const {
    int width = 0;
    for (const QString& text : counters(m_stats)) {
        width += fontMetrics().horizontalAdvance(text) + counterGap;
    }
    return {width + static_cast<int>(barWidth), fontMetrics().height()};
}

void StatsView::paintEvent(QPaintEvent*) {
    const QColor added = Theme::diffAdded.in(palette());
    const QColor removed = Theme::diffRemoved.in(palette());
    QPainter painter(this);
    const std::array counterColors = {added, removed, Theme::accentDot};
    const std::array<QString, 3> texts = counters(m_stats);
    int x = 0;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        painter.setPen(counterColors[i]);
        painter.drawText(QRect(x, 0, width(), height()), int(Qt::AlignLeft | Qt::AlignVCenter), texts[i]);
        x += fontMetrics().horizontalAdvance(texts[i]) + counterGap;
    }

    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF bar(x, std::floor((height() - barHeight) / 2), barWidth, barHeight);
    QPainterPath shape;
    shape.addRoundedRect(bar, barHeight / 2, barHeight / 2);
    painter.setClipPath(shape);
    painter.fillRect(bar, Theme::rowSelection(palette()));
    const std::array barColors = {added, Theme::accentDot, removed};
    const std::array<double, 3> parts = barParts(m_stats);
    double left = bar.left();
    for (std::size_t i = 0; i < parts.size(); ++i) {
        painter.fillRect(QRectF(left, bar.top(), parts[i], barHeight), barColors[i]);
        left += parts[i];
    }
}

} // namespace quillary
