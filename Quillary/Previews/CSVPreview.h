#pragma once

#include "QuillaryCore/Formats/CSVTable.h"

#include <QList>
#include <QWidget>

class QCheckBox;
class QStackedLayout;

namespace quillary {

class CSVGrid;
class CSVGridModel;
class PreviewHeader;

/// A note of separated values as a grid.
class CSVPreview : public QWidget {
    Q_OBJECT

public:
    /// `baseSize` is the editor's font size.
    CSVPreview(const QString& text, double baseSize, QWidget* parent = nullptr);

    /// Shows another text, or the same in another size. The choice of the header and, as far as the new text has it,
    /// the place that is scrolled to stay.
    void rebuild(const QString& text, double baseSize);

    const CSVTable& table() const { return m_table; }

    double baseSize() const { return m_baseSize; }

    const QList<double>& columnWidths() const { return m_columnWidths; }

    /// Ascending.
    const QList<qsizetype>& numericColumns() const { return m_numericColumns; }

    bool firstRowIsHeader() const { return m_firstRowIsHeader; }

    void setFirstRowIsHeader(bool isHeader);

protected:
    void focusInEvent(QFocusEvent* event) override;

private:
    void showHeader();

    CSVTable m_table;
    double m_baseSize = 0;
    QList<double> m_columnWidths;
    QList<qsizetype> m_numericColumns;
    bool m_firstRowIsHeader = true;

    PreviewHeader* m_header;
    QCheckBox* m_headerBox;
    CSVGridModel* m_model;
    CSVGrid* m_grid;
    QWidget* m_noData;
    QStackedLayout* m_body;
};

} // namespace quillary
