#include "Quillary/Previews/JSONPreview.h"

#include "Quillary/Previews/InvalidJSONView.h"
#include "Quillary/Previews/JSONRowsModel.h"
#include "Quillary/Previews/JSONRowsView.h"
#include "Quillary/Previews/PreviewHeader.h"
#include "Quillary/Theme/PaddedButton.h"
#include "QuillaryCore/Formats/JSONFormatter.h"

#include <QFocusEvent>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>

#include <utility>
#include <vector>

namespace quillary {

namespace {

constexpr qint64 indentSpaces = 2;

/// How many line feeds and spaces prettyPrinted() puts into a value, or any number above `upTo` if it is more.
qsizetype spaceOfPrettyPrinted(const JSONValue& value, qsizetype upTo) {
    if (!value.document()) {
        return 0;
    }
    const JSONTape& tape = value.document()->tape;
    std::vector<qsizetype> ends;
    qsizetype space = 0;
    const qsizetype end = tape.next(value.position());
    for (qsizetype position = value.position(); position < end && space <= upTo;) {
        while (!ends.empty() && position >= ends.back()) {
            ends.pop_back();
        }
        if (!tape.isFullContainer(position)) {
            ++position;
            continue;
        }
        const qsizetype indent = indentSpaces * static_cast<qsizetype>(ends.size());
        space += tape.payload(position) * (1 + indent + indentSpaces) + 1 + indent;
        ends.push_back(tape.next(position));
        position = JSONTape::firstChild(position);
    }
    return space;
}

} // namespace

JSONPreview::JSONPreview(const QString& text, double baseSize, std::function<void(const QString& text)> onFormat,
                         QWidget* parent)
    : QWidget(parent),
      m_baseSize(baseSize),
      m_onFormat(std::move(onFormat)),
      m_parsed(JSONValue()),
      m_header(new PreviewHeader(this)),
      m_format(new PaddedButton(tr("Formatta testo"), m_header)),
      m_model(new JSONRowsModel(this)),
      m_rows(new JSONRowsView(*m_model, this)),
      m_layout(new QVBoxLayout(this)) {
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);
    auto* const expand = new PaddedButton(tr("Espandi tutto"), m_header);
    auto* const collapse = new PaddedButton(tr("Comprimi"), m_header);
    for (QPushButton* const button : std::initializer_list<QPushButton*>{m_format, expand, collapse}) {
        m_header->addControl(button);
    }
    setTabOrder(m_format, expand);
    setTabOrder(expand, collapse);
    setTabOrder(collapse, m_rows);
    connect(m_format, &QPushButton::clicked, this, [this] {
        if (m_parsed) {
            // The callback may rebuild this preview.
            const QString formatted = JSONFormatter::prettyPrinted(*m_parsed, indentSpaces);
            m_onFormat(formatted);
        }
    });
    connect(expand, &QPushButton::clicked, this, [this] { changeRows(&JSONRowsModel::expandAll); });
    connect(collapse, &QPushButton::clicked, this, [this] { changeRows(&JSONRowsModel::collapse); });

    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(0);
    m_layout->addWidget(m_header);
    m_layout->addWidget(m_rows, 1);
    rebuild(text, baseSize);
}

JSONPreview::~JSONPreview() = default;

void JSONPreview::rebuild(const QString& text, double baseSize) {
    m_source = text;
    m_baseSize = baseSize;
    m_parsed = JSONParser::parse(QStringView(text));
    delete std::exchange(m_invalid, nullptr);
    m_header->setVisible(m_parsed.hasValue());
    m_rows->setVisible(m_parsed.hasValue());
    if (m_parsed) {
        showValue(*m_parsed);
    } else {
        showError(m_parsed.error());
    }
}

/// No proxy, which the Tab key would take for a stop, and pass by all before it.
void JSONPreview::focusInEvent(QFocusEvent* event) {
    (m_invalid ? static_cast<QWidget*>(m_invalid) : m_rows)->setFocus(event->reason());
}

void JSONPreview::showValue(const JSONValue& value) {
    const int top = m_rows->indexAt({0, 0}).row();
    const JSONPath path = top >= 0 ? m_model->row(top).path() : JSONPath();
    m_header->setSummary(summary(value));
    m_format->setEnabled(!isPrettyPrinted(m_source, value));
    m_rows->setBaseSize(m_baseSize);
    m_model->setValue(value);
    if (top > 0 && top < m_model->rowCount() && m_model->row(top).path() == path) {
        m_rows->scrollTo(m_model->index(top), QAbstractItemView::PositionAtTop);
    }
}

void JSONPreview::showError(const JSONParseError& error) {
    m_model->setValue(JSONValue());
    m_invalid = new InvalidJSONView(error, m_source, m_baseSize, this);
    m_layout->addWidget(m_invalid, 1);
}

void JSONPreview::changeRows(void (JSONRowsModel::*change)()) {
    const int top = m_rows->indexAt({0, 0}).row();
    const qsizetype position = top >= 0 ? m_model->row(top).value().position() : 0;
    (m_model->*change)();
    const auto row = static_cast<int>(m_model->rows().rowAt(position));
    if (row > 0) {
        m_rows->scrollTo(m_model->index(row), QAbstractItemView::PositionAtTop);
    }
}

QString JSONPreview::summary(const JSONValue& value) {
    switch (value.kind()) {
    case JSONValue::Kind::object:
        return tr("Oggetto · %1 chiavi").arg(value.childCount());
    case JSONValue::Kind::array:
        return tr("Array · %1 elementi").arg(value.childCount());
    default:
        return tr("Valore singolo");
    }
}

bool JSONPreview::isPrettyPrinted(QStringView text, const JSONValue& value) {
    return spaceOfPrettyPrinted(value, text.size()) <= text.size() &&
           JSONFormatter::prettyPrinted(value, indentSpaces) == text;
}

} // namespace quillary
