#pragma once

#include "QuillaryCore/Formats/JSONParseError.h"

#include <QList>
#include <QWidget>

class QLabel;

namespace quillary {

/// What is wrong with a JSON text, above the lines around the fault.
class InvalidJSONView : public QWidget {
    Q_OBJECT

public:
    /// A line of the text with its number.
    struct ContextLine {
        qint64 number = 0;
        QString text;

        friend bool operator==(const ContextLine&, const ContextLine&) = default;
    };

    InvalidJSONView(const JSONParseError& error, const QString& source, double baseSize, QWidget* parent = nullptr);

    /// The lines from six before `line` to six behind it. Line feeds alone end lines.
    static QList<ContextLine> contextLines(const QString& source, qint64 line);

    const JSONParseError& error() const { return m_error; }

private:
    JSONParseError m_error;
};

} // namespace quillary
