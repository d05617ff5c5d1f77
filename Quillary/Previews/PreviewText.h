#pragma once

#include <QString>
#include <QStringView>

/// What is done to a note's text on its way to the screen. Whatever it looks like, it is never taken for markup.
namespace quillary::PreviewText {

/// The text for a QTextLayout, unit by unit: line feeds break lines within the layout, and what can't be seen or would
/// confuse the layout has a sign that stands for it.
QString shown(QStringView text);

/// The beginning of a text on one line: line ends and tabs are blanks, and what is beyond `limit` units is an ellipsis.
QString oneLine(QStringView text, qsizetype limit = 512);

/// The text for QToolTip and other places that would read HTML, cut to what fits on a screen.
QString toolTip(const QString& text);

/// Where a link leads as a tool tip may show it: the host of a URL in its ASCII form, and nothing in it that would be
/// invisible or turn the direction of the text.
QString linkToolTip(const QString& target);

} // namespace quillary::PreviewText
