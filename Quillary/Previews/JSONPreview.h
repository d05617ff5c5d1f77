#pragma once

#include "QuillaryCore/Formats/JSONParser.h"

#include <QWidget>

#include <functional>

class QPushButton;
class QVBoxLayout;

namespace quillary {

class InvalidJSONView;
class JSONRowsModel;
class JSONRowsView;
class PreviewHeader;

/// A note of JSON as a tree of rows, or what is wrong with it.
class JSONPreview : public QWidget {
    Q_OBJECT

public:
    using Parsed = Result<JSONValue, JSONParseError>;

    /// `baseSize` is the editor's font size; `onFormat` takes the formatted text if the user asks for it.
    JSONPreview(const QString& text, double baseSize, std::function<void(const QString& text)> onFormat,
                QWidget* parent = nullptr);
    ~JSONPreview() override;

    /// Shows another text, or the same in another size. What the user opened and closed stays so, and the row at the
    /// top stays there if it is still the same.
    void rebuild(const QString& text, double baseSize);

    const Parsed& parsed() const { return m_parsed; }

    /// What the header says of a value.
    static QString summary(const JSONValue& value);

    /// Whether a text is what prettyPrinted() with two spaces a level makes of its value. Takes time in proportion to
    /// the text, although what prettyPrinted() makes may be a hundred times as long.
    static bool isPrettyPrinted(QStringView text, const JSONValue& value);

protected:
    void focusInEvent(QFocusEvent* event) override;

private:
    void showValue(const JSONValue& value);
    void showError(const JSONParseError& error);
    void changeRows(void (JSONRowsModel::*change)());

    QString m_source;
    double m_baseSize;
    std::function<void(const QString&)> m_onFormat;
    Parsed m_parsed;

    PreviewHeader* m_header;
    QPushButton* m_format;
    JSONRowsModel* m_model;
    JSONRowsView* m_rows;
    InvalidJSONView* m_invalid = nullptr;
    QVBoxLayout* m_layout;
};

} // namespace quillary
