#pragma once

#include <QColor>
#include <QList>
#include <QPainter>
#include <QRectF>
#include <QString>

#include <functional>

namespace quillary {

/// A text as it was drawn: cut where it was cut, and where it stood.
struct DrawnText {
    QString text;
    QRectF place;
    QColor color;
};

/// The texts that somebody draws with the painter that he is given, in the order in which he draws them.
QList<DrawnText> drawnTexts(const QSize& size, const std::function<void(QPainter& painter)>& draw);

} // namespace quillary
