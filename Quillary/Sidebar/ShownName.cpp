#include "Quillary/Sidebar/ShownName.h"

#include "QuillaryCore/Platform/FilePath.h"
#include "QuillaryCore/Unicode/GraphemeClusters.h"

namespace quillary {

QString shownName(const QString& name) {
    QString text = FilePath::displayText(name);
    for (QChar& unit : text) {
        if (unit.category() == QChar::Other_Control || unit == QChar::LineSeparator ||
            unit == QChar::ParagraphSeparator) {
            unit = u' ';
        }
    }
    return text;
}

QString menuText(const QString& name) {
    constexpr qsizetype longest = 80;
    const QString shown = shownName(name);
    const QStringView prefix = clusterPrefix(shown, longest);
    QString text = prefix.toString();
    text.replace(u'&', QLatin1StringView("&&"));
    return prefix.size() < shown.size() ? text + QChar(0x2026) : text;
}

} // namespace quillary
