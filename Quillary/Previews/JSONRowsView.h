#pragma once

#include <QListView>

namespace quillary {

class JSONRowView;
class JSONRowsModel;

/// The rows of a JSON tree. A click on a container opens or closes it; so do the keys of a tree. Paths and values can
/// be copied.
///
/// All rows are alike, so that where each is needs no layout: the base class's, which takes time and memory for every
/// row, is left out.
class JSONRowsView : public QListView {
    Q_OBJECT

public:
    /// The model must outlive the view.
    explicit JSONRowsView(JSONRowsModel& model, QWidget* parent = nullptr);

    void setBaseSize(double baseSize);

    /// The path or the value of a row, as it is copied.
    QString pathText(int row) const;
    QString valueText(int row) const;

    QRect visualRect(const QModelIndex& index) const override;
    QModelIndex indexAt(const QPoint& place) const override;
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
    void doItemsLayout() override;

public Q_SLOTS:
    /// Puts the values of the selected rows on the clipboard, one a line.
    void copyValues() const;

protected:
    int horizontalOffset() const override;
    int verticalOffset() const override;
    void updateGeometries() override;
    void scrollContentsBy(int dx, int dy) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command) override;
    QRegion visualRegionForSelection(const QItemSelection& selection) const override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void fitRows();
    void goTo(int row);
    QSize rowSize() const;
    int lastRow() const;
    int rowNear(int y) const;

    JSONRowsModel& m_model;
    JSONRowView* m_rowView;
    QPersistentModelIndex m_pressed;
};

} // namespace quillary
