#include "Quillary/Previews/PreviewText.h"

#include "QuillaryCore/Formats/MarkdownLinks.h"
#include "QuillaryCore/Unicode/GraphemeClusters.h"

#include <QUrl>

#include <algorithm>

namespace quillary::PreviewText {

using namespace Qt::StringLiterals;

namespace {

constexpr char16_t lineSeparator = 0x2028;
constexpr char16_t paragraphSeparator = 0x2029;
constexpr char16_t objectReplacement = 0xFFFC;
constexpr char16_t hollowSquare = 0x25A1;
constexpr char16_t controlPictures = 0x2400;
constexpr char16_t ellipsis = 0x2026;

char16_t shownUnit(char16_t unit) {
    if (unit == u'\n' || unit == paragraphSeparator) {
        return lineSeparator;
    }
    if (unit < 0x20) {
        return unit == u'\t' ? unit : static_cast<char16_t>(controlPictures + unit);
    }
    if (unit == 0x7F) {
        return 0x2421;
    }
    return (unit > 0x7F && unit < 0xA0) || unit == objectReplacement ? hollowSquare : unit;
}

bool isInvisible(char32_t scalar) {
    const QChar::Category category = QChar::category(scalar);
    return category == QChar::Other_Control || category == QChar::Other_Format || category == QChar::Other_Surrogate ||
           category == QChar::Separator_Line || category == QChar::Separator_Paragraph;
}

/// The beginning of a text, cut between clusters, with an ellipsis if there is more.
QString beginning(QStringView text, qsizetype limit) {
    if (text.size() <= limit) {
        return text.toString();
    }
    // A cluster may be as long as it likes.
    const qsizetype boundary = previousClusterBoundary(text.first(limit + 1), limit + 1);
    return text.first(boundary > 0 ? boundary : limit).toString() + QChar(ellipsis);
}

} // namespace

QString shown(QStringView text) {
    QString result = text.toString();
    const auto isReplaced = [](QChar unit) { return shownUnit(unit.unicode()) != unit.unicode(); };
    if (std::any_of(text.begin(), text.end(), isReplaced)) {
        for (QChar& unit : result) {
            unit = QChar(shownUnit(unit.unicode()));
        }
    }
    return result;
}

QString oneLine(QStringView text, qsizetype limit) {
    QString result = shown(beginning(text, limit));
    for (QChar& unit : result) {
        if (unit == QChar(lineSeparator) || unit == u'\t' || unit == QChar(controlPictures + u'\r')) {
            unit = u' ';
        }
    }
    return result;
}

QString toolTip(const QString& text) {
    constexpr qsizetype limit = 1000;
    return u"<p style=\"white-space: pre-wrap\">"_s + beginning(text, limit).toHtmlEscaped() + u"</p>"_s;
}

QString linkToolTip(const QString& target) {
    constexpr qsizetype limit = 300;
    QString written = target;
    if (std::holds_alternative<MarkdownLinks::External>(MarkdownLinks::target(target))) {
        const QUrl url(target);
        written = url.isValid() ? QString::fromLatin1(url.toEncoded()) : target;
    }
    QString result;
    for (const char32_t scalar : QStringView(written).toUcs4()) {
        if (isInvisible(scalar)) {
            const QString text = QString::fromUcs4(&scalar, 1);
            result += QString::fromLatin1(text.toUtf8().toPercentEncoding());
        } else {
            result += QString::fromUcs4(&scalar, 1);
        }
    }
    return toolTip(beginning(result, limit));
}

} // namespace quillary::PreviewText
