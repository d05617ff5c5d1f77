#pragma once

#include "Quillary/Theme/AdaptiveColor.h"

#include <QWidget>

namespace quillary {

/// The title of one of the two notes, on a ground of its side's tint. Long titles are shortened in the middle.
class NotePill : public QWidget {
    Q_OBJECT

public:
    explicit NotePill(const AdaptiveColor& tint, QWidget* parent = nullptr);

    const QString& title() const { return m_title; }

    void setTitle(const QString& title);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    AdaptiveColor m_tint;
    QString m_title;
};

} // namespace quillary
