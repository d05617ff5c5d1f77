#include "Quillary/MenuBarExtra/MenuBarIcon.h"

#include "Quillary/Theme/Theme.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include <cmath>

namespace quillary::MenuBarIcon {

using namespace Qt::StringLiterals;

namespace {

const QString& markLetters() {
    static const QString letters = u"Q.L."_s;
    return letters;
}

QFont markFont() {
    QFont font = Theme::font(13, QFont::DemiBold);
    // The alias that every font configuration has; where it leads nowhere the hint finds what comes nearest.
    font.setFamilies({u"serif"_s});
    font.setStyleHint(QFont::Serif);
    return font;
}

QPixmap drawn(int side, bool isPanelDark) {
    const QFont font = markFont();
    const QFontMetricsF metrics(font);
    const double width = std::ceil(metrics.horizontalAdvance(markLetters())) + 2;
    const double scale = side / width;
    const double height = side / scale;
    // Half a point above the centre, where the eye sees the middle of capitals.
    const double top = (height - metrics.height()) * 0.5 - 0.5;
    QPainterPath letters;
    letters.addText(1, top + metrics.ascent(), font, markLetters());

    QPixmap pixmap(side, side);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    constexpr double rimWidth = 2;
    constexpr int rimAlpha = 150;
    QColor rim = isPanelDark ? Qt::black : Qt::white;
    rim.setAlpha(rimAlpha);
    painter.strokePath(letters, QPen(rim, rimWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.fillPath(letters, isPanelDark ? Qt::white : Qt::black);
    return pixmap;
}

QIcon drawnIcon(bool isPanelDark) {
    QIcon icon;
    // Panels are 16 to 32 pixels high, twice that on dense screens.
    for (const int side : {16, 22, 24, 32, 44, 48, 64}) {
        icon.addPixmap(drawn(side, isPanelDark));
    }
    return icon;
}

} // namespace

const QIcon& image(bool isPanelDark) {
    static const QIcon forDark = drawnIcon(true);
    static const QIcon forLight = drawnIcon(false);
    return isPanelDark ? forDark : forLight;
}

} // namespace quillary::MenuBarIcon
