#include "Quillary/Theme/SegmentedPicker.h"

#include "Quillary/Theme/Theme.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QPainter>
#include <QPushButton>

namespace quillary {

namespace {

constexpr double cornerRadius = 7;
constexpr int panelHeight = 28;
constexpr int toolbarHeight = 22;
constexpr int barPadding = 2;

/// One choice; the chosen one is filled.
class Segment : public QPushButton {
public:
    Segment(const QString& text, SegmentedPicker::Place place, QWidget* parent)
        : QPushButton(text, parent), m_isLow(place == SegmentedPicker::Place::toolbar) {
        setCheckable(true);
        // In a group, and told to be one of several choices.
        setAutoExclusive(true);
        setAutoDefault(false);
        setFixedHeight(qRound((m_isLow ? toolbarHeight : panelHeight) * Theme::textScale()));
        setAttribute(Qt::WA_Hover);
    }

    QSize sizeHint() const override {
        const QSize size = QPushButton::sizeHint();
        return m_isLow ? QSize(fontMetrics().horizontalAdvance(text()) + 2 * lowPadding, size.height()) : size;
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRectF shape = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
        if (isChecked() || underMouse()) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(isChecked() ? palette().color(QPalette::Highlight) : Theme::rowHover(palette()));
            painter.drawRoundedRect(shape, cornerRadius - barPadding, cornerRadius - barPadding);
        }
        if (hasFocus()) {
            painter.setBrush(Qt::NoBrush);
            painter.setPen(QPen(palette().color(QPalette::WindowText), 1));
            painter.drawRoundedRect(shape, cornerRadius - barPadding, cornerRadius - barPadding);
        }
        painter.setPen(palette().color(isChecked() ? QPalette::HighlightedText : QPalette::WindowText));
        painter.drawText(rect(), Qt::AlignCenter, text());
    }

private:
    /// Beside the text.
    static constexpr int lowPadding = 9;

    bool m_isLow;
};

} // namespace

SegmentedPicker::SegmentedPicker(QWidget* parent, Place place)
    : QWidget(parent), m_place(place), m_segments(new QButtonGroup(this)) {
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(barPadding, barPadding, barPadding, barPadding);
    row->setSpacing(barPadding);
    connect(m_segments, &QButtonGroup::idClicked, this, &SegmentedPicker::chosen);
}

void SegmentedPicker::addSegment(int id, const QString& text) {
    auto* const segment = new Segment(text, m_place, this);
    m_segments->addButton(segment, id);
    layout()->addWidget(segment);
}

int SegmentedPicker::selection() const {
    return m_segments->checkedId();
}

void SegmentedPicker::setSelection(int id) {
    const Qt::FocusPolicy byClick = m_place == Place::panel ? Qt::ClickFocus : Qt::NoFocus;
    const QList<QAbstractButton*> segments = m_segments->buttons();
    for (QAbstractButton* const segment : segments) {
        const bool isChosen = m_segments->id(segment) == id;
        // The keyboard comes to the chosen one, and goes on to others with the arrows.
        segment->setFocusPolicy(isChosen ? static_cast<Qt::FocusPolicy>(Qt::TabFocus | byClick) : byClick);
        if (isChosen) {
            segment->setChecked(true);
        }
    }
}

QWidget* SegmentedPicker::lastSegment() const {
    return layout()->isEmpty() ? nullptr : layout()->itemAt(layout()->count() - 1)->widget();
}

void SegmentedPicker::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Theme::searchFill(palette()));
    painter.drawRoundedRect(rect(), cornerRadius, cornerRadius);
}

} // namespace quillary
