#include "Quillary/Previews/CSVPreview.h"

#include "Quillary/Previews/CSVGrid.h"
#include "Quillary/Previews/CSVGridModel.h"
#include "Quillary/Previews/PreviewHeader.h"
#include "Quillary/Theme/Theme.h"
#include "QuillaryCore/Formats/CSVColumns.h"
#include "QuillaryCore/Formats/CSVParser.h"

#include <QCheckBox>
#include <QLabel>
#include <QScrollBar>
#include <QStackedLayout>
#include <QVBoxLayout>

namespace quillary {

namespace {

QLabel* makeNoDataLabel(const QString& text, QWidget* parent) {
    auto* const label = new QLabel(text, parent);
    label->setAlignment(Qt::AlignCenter);
    label->setForegroundRole(QPalette::PlaceholderText);
    return label;
}

} // namespace

CSVPreview::CSVPreview(const QString& text, double baseSize, QWidget* parent)
    : QWidget(parent),
      m_header(new PreviewHeader(this)),
      m_headerBox(new QCheckBox(tr("Prima riga come intestazione"), m_header)),
      m_model(new CSVGridModel(this)),
      m_grid(new CSVGrid(*m_model, this)),
      m_noData(makeNoDataLabel(tr("Nessun dato"), this)),
      m_body(new QStackedLayout) {
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);
    m_headerBox->setChecked(m_firstRowIsHeader);
    m_header->addControl(m_headerBox);
    connect(m_headerBox, &QCheckBox::toggled, this, &CSVPreview::setFirstRowIsHeader);

    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_header);
    layout->addLayout(m_body, 1);
    m_body->addWidget(m_grid);
    m_body->addWidget(m_noData);
    rebuild(text, baseSize);
}

void CSVPreview::rebuild(const QString& text, double baseSize) {
    const QPoint place(m_grid->horizontalScrollBar()->value(), m_grid->verticalScrollBar()->value());
    const double growth = m_baseSize > 0 ? baseSize / m_baseSize : 1;
    m_table = CSVParser::parse(text);
    m_baseSize = baseSize;
    m_columnWidths = CSVColumns::widths(m_table, baseSize);
    m_numericColumns = CSVColumns::numeric(m_table);

    m_noData->setFont(Theme::font(baseSize));
    m_model->setTable(m_table, m_numericColumns);
    m_grid->setMeasures(baseSize, m_columnWidths, QString::number(m_table.rowCount()).size());
    m_grid->horizontalScrollBar()->setValue(qRound(place.x() * growth));
    m_grid->verticalScrollBar()->setValue(qRound(place.y() * growth));
    const bool hasData = m_table.rowCount() > 0;
    m_body->setCurrentWidget(hasData ? m_grid : m_noData);
    showHeader();
}

/// No proxy, which the Tab key would take for a stop, and pass by all before it.
void CSVPreview::focusInEvent(QFocusEvent* event) {
    (m_table.rowCount() > 0 ? static_cast<QWidget*>(m_grid) : m_headerBox)->setFocus(event->reason());
}

void CSVPreview::setFirstRowIsHeader(bool isHeader) {
    m_firstRowIsHeader = isHeader;
    m_headerBox->setChecked(isHeader);
    m_model->setFirstRowIsHeader(isHeader);
    showHeader();
}

void CSVPreview::showHeader() {
    m_grid->setHeaderVisible(m_firstRowIsHeader);
    m_header->setSummary(CSVColumns::summary(m_table, m_firstRowIsHeader));
}

} // namespace quillary
