#include "Quillary/Previews/InvalidJSONView.h"

#include "Quillary/Previews/PreviewText.h"
#include "Quillary/Theme/SymbolLabel.h"
#include "Quillary/Theme/Theme.h"

#include <QFontMetrics>
#include <QLabel>
#include <QPainter>
#include <QScrollArea>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 contextReach = 6;
constexpr int gutterWidth = 36;
constexpr int linePadding = 10;
constexpr float faultOpacity = 0.12F;
constexpr double lineHeightFactor = 1.55;

/// A line may be as long as the note. Of such a line a stretch is shown, that of the fault if it has it.
constexpr qsizetype longestLine = 1000;

QString shownPart(QStringView line, qsizetype column) {
    constexpr QChar ellipsis(0x2026);
    if (line.size() <= longestLine) {
        return PreviewText::oneLine(line, longestLine);
    }
    const qsizetype start = std::clamp<qsizetype>(column - longestLine / 2, 0, line.size() - longestLine);
    const QString part = PreviewText::oneLine(line.sliced(start, longestLine), longestLine);
    return (start > 0 ? QString(ellipsis) : QString()) + part +
           (start + longestLine < line.size() ? QString(ellipsis) : QString());
}

/// The lines with their numbers, the fault's on a tinted ground.
class ContextView : public QWidget {
public:
    ContextView(const QList<InvalidJSONView::ContextLine>& lines, qint64 faultLine, qint64 faultColumn, double baseSize)
        : m_faultLine(faultLine), m_font(Theme::monospacedFont(baseSize)) {
        setFont(m_font);
        setFocusPolicy(Qt::NoFocus);
        m_lineHeight = static_cast<int>(std::lround(baseSize * lineHeightFactor * Theme::textScale()));
        QStringList spoken;
        int width = 0;
        for (const InvalidJSONView::ContextLine& line : lines) {
            const QString text = shownPart(line.text, line.number == faultLine ? faultColumn - 1 : 0);
            m_lines.append({line.number, text});
            width = std::max(width, QFontMetrics(m_font).horizontalAdvance(text));
            spoken.append(QString::number(line.number) + u"  "_s + text);
        }
        setAccessibleName(spoken.join(u'\n'));
        m_numberFont = fitting(QString::number(m_lines.isEmpty() ? 0 : m_lines.last().number));
        setMinimumSize(gutterWidth + 2 * linePadding + width,
                       m_lineHeight * static_cast<int>(std::max<qsizetype>(m_lines.size(), 1)));
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        QRect row(0, 0, width(), m_lineHeight);
        for (const InvalidJSONView::ContextLine& line : m_lines) {
            if (line.number == m_faultLine) {
                QColor ground = Theme::accentDot;
                ground.setAlphaF(faultOpacity);
                painter.fillRect(row, ground);
            }
            painter.setFont(m_numberFont);
            painter.setPen(Theme::secondaryText(palette()));
            const QRect gutter(row.left(), row.top(), gutterWidth, row.height());
            painter.drawText(gutter, Qt::AlignRight | Qt::AlignVCenter | Qt::TextDontClip,
                             QString::number(line.number));
            painter.setFont(m_font);
            painter.setPen(palette().color(QPalette::Text));
            painter.drawText(row.adjusted(gutterWidth + linePadding, 0, 0, 0),
                             Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, line.text);
            row.translate(0, m_lineHeight);
        }
    }

private:
    /// The font, or a smaller one in which the longest number has room in the gutter.
    QFont fitting(const QString& number) const {
        QFont font = m_font;
        const double width = QFontMetricsF(font).horizontalAdvance(number);
        font.setPointSizeF(font.pointSizeF() * std::min(gutterWidth / width, 1.0));
        return font;
    }

    QList<InvalidJSONView::ContextLine> m_lines;
    qint64 m_faultLine;
    QFont m_font;
    QFont m_numberFont;
    int m_lineHeight = 0;
};

} // namespace

InvalidJSONView::InvalidJSONView(const JSONParseError& error, const QString& source, double baseSize, QWidget* parent)
    : QWidget(parent), m_error(error) {
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);

    auto* const icon = new SymbolLabel(this);
    icon->setSymbol(Symbol::warning, static_cast<int>(std::lround(baseSize * 1.3)));
    icon->setAccessibleName(tr("Attenzione"));
    auto* const message = new QLabel(tr("JSON non valido — ") + error.description(), this);
    message->setTextFormat(Qt::PlainText);
    message->setTextInteractionFlags(Qt::TextSelectableByMouse);
    message->setWordWrap(true);
    message->setFont(Theme::font(baseSize, QFont::Medium));
    auto* const head = new QHBoxLayout;
    head->setSpacing(8);
    head->addWidget(icon, 0, Qt::AlignTop);
    head->addWidget(message, 1);

    auto* const area = new QScrollArea(this);
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setAccessibleName(tr("Righe intorno all'errore"));
    auto* const context = new ContextView(contextLines(source, error.line()), error.line(), error.column(), baseSize);
    context->setBackgroundRole(QPalette::Base);
    context->setAutoFillBackground(true);
    area->setWidget(context);
    area->setBackgroundRole(QPalette::Base);
    setFocusProxy(area);

    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(18, 16, 18, 12);
    layout->setSpacing(14);
    layout->addLayout(head);
    layout->addWidget(area, 1);
}

QList<InvalidJSONView::ContextLine> InvalidJSONView::contextLines(const QString& source, qint64 line) {
    const qint64 first = std::max<qint64>(line - contextReach, 1);
    QList<ContextLine> lines;
    qsizetype start = 0;
    for (qint64 number = 1; number <= line + contextReach; ++number) {
        const qsizetype end = source.indexOf(u'\n', start);
        if (number >= first) {
            lines.append({number, source.mid(start, end < 0 ? -1 : end - start)});
        }
        if (end < 0) {
            break;
        }
        start = end + 1;
    }
    return lines;
}

} // namespace quillary
