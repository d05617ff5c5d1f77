#pragma once

#include <QTableView>

namespace quillary {

class CSVGridModel;

/// A table on the screen: it scrolls both ways under a pinned header row and beside a pinned column of row numbers.
/// Cells are selected and copied as in any spreadsheet.
class CSVGrid : public QTableView {
    Q_OBJECT

public:
    /// The model must outlive the view.
    explicit CSVGrid(CSVGridModel& model, QWidget* parent = nullptr);

    /// Gives the grid its fonts and measures; `numberDigits` are those of the number of rows.
    void setMeasures(double baseSize, const QList<double>& columnWidths, qsizetype numberDigits);

    /// Whether the header row is there.
    void setHeaderVisible(bool isVisible);

    /// What is selected: one cell as it is; several with tabs between cells and line feeds between rows, where a cell
    /// that holds one of these or a quote stands in quotes.
    QString selectedText() const;

public Q_SLOTS:
    /// Puts what is selected on the clipboard.
    void copy() const;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
};

} // namespace quillary
