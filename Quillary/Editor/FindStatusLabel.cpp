#include "Quillary/Editor/FindStatusLabel.h"

#include "Quillary/Find/FindController.h"
#include "Quillary/Theme/Theme.h"

#include <QPainter>

namespace quillary {

using namespace Qt::StringLiterals;

FindStatusLabel::FindStatusLabel(QWidget* parent) : QLabel(u" "_s, parent) {
    setTextFormat(Qt::PlainText);
    setFont(Theme::sidebarDetail());
    setAlignment(Qt::AlignVCenter | Qt::AlignRight);
}

void FindStatusLabel::follow(const FindController& find) {
    m_isError = find.errorMessage().has_value();
    QString text = u" "_s;
    if (m_isError) {
        text = *find.errorMessage();
    } else if (!find.query().isEmpty()) {
        text = find.currentIndex() && find.matchCount() >= 1
                   ? QString::number(*find.currentIndex() + 1) % tr(" di ") % QString::number(find.matchCount())
                   : tr("Nessun risultato");
    }
    setText(text);
    // A narrow bar has no room for its end.
    setToolTip(text.trimmed());
    update();
}

/// Room for what it says, and always for what it says most, so that the field beside it keeps still.
QSize FindStatusLabel::sizeHint() const {
    const QSize size = QLabel::sizeHint();
    return size.expandedTo({fontMetrics().horizontalAdvance(tr("Nessun risultato")), size.height()});
}

QSize FindStatusLabel::minimumSizeHint() const {
    return {fontMetrics().horizontalAdvance(u'…') * 2, QLabel::minimumSizeHint().height()};
}

void FindStatusLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(m_isError ? Theme::accentDot : Theme::secondaryText(palette()));
    painter.drawText(rect(), static_cast<int>(alignment()), fontMetrics().elidedText(text(), Qt::ElideRight, width()));
}

} // namespace quillary
