#pragma once

#include <QListView>

namespace quillary {

class JSONRowView;
class JSONRowsModel;

/// The rows of a JSON tree. A click on a container opens or closes it; so do the keys of a tree. Paths and values can
/// be copied.
class JSONRowsView : public QListView {
    Q_OBJECT

public:
    /// The model must outlive the view.
    explicit JSONRowsView(JSONRowsModel& model, QWidget* parent = nullptr);

    void setBaseSize(double baseSize);

    /// The path or the value of a row, as it is copied.
    QString pathText(int row) const;
    QString valueText(int row) const;

public Q_SLOTS:
    /// Puts the values of the selected rows on the clipboard, one a line.
    void copyValues() const;

protected:
    int verticalOffset() const override;
    void updateGeometries() override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void fitWidth();
    void goTo(int row);

    JSONRowsModel& m_model;
    JSONRowView* m_rowView;
    QPersistentModelIndex m_pressed;
};

} // namespace quillary
