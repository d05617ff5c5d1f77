#pragma once

#include "Quillary/Theme/ItemLayout.h"

namespace quillary {

/// Lays out the line above a comparison: the two notes with what stands between them, what is said and chosen about the
/// comparison, and the way out at the right end. Where a line has no room for all of it with titles that can be read,
/// the notes have the line for themselves and the controls flow over as many lines below it as they need.
class DiffHeaderLayout : public ItemLayout {
    Q_OBJECT

public:
    /// Widgets are added in their order from left to right: a note, the widget between, the other note, any number of
    /// controls, the way out.
    explicit DiffHeaderLayout(QWidget* parent);

    bool hasHeightForWidth() const override { return true; }

    int heightForWidth(int width) const override;
    QSize minimumSize() const override;
    QSize sizeHint() const override;
    void setGeometry(const QRect& rect) override;

private:
    /// An item and its place.
    struct Placed {
        QLayoutItem* item;
        QRect rect;
    };

    QList<QLayoutItem*> controls() const;
    bool isOneLine(int width) const;
    void addNames(QList<Placed>& line, int left, int room) const;
    QList<QList<Placed>> lines(int left, int right) const;
    int place(const QRect& rect, bool isForGood) const;
};

} // namespace quillary
