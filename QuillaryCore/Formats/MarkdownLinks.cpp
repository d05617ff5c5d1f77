#include "QuillaryCore/Formats/MarkdownLinks.h"

#include <QHash>
#include <QStringDecoder>

#include <algorithm>

namespace quillary::MarkdownLinks {

using namespace Qt::StringLiterals;

namespace {

int hexDigit(QChar unit) {
    if (unit >= u'0' && unit <= u'9') {
        return unit.unicode() - u'0';
    }
    const QChar lower = unit.toLower();
    return lower >= u'a' && lower <= u'f' ? lower.unicode() - u'a' + 10 : -1;
}

/// Without percent-encoding; the text as it is if it isn't properly encoded UTF-8.
QString withoutPercentEncoding(QStringView text) {
    if (!text.contains(u'%')) {
        return text.toString();
    }
    QByteArray bytes;
    qsizetype plain = 0;
    for (qsizetype i = text.indexOf(u'%'); i >= 0; i = text.indexOf(u'%', plain)) {
        const int high = i + 2 < text.size() ? hexDigit(text[i + 1]) : -1;
        const int low = i + 2 < text.size() ? hexDigit(text[i + 2]) : -1;
        if (high < 0 || low < 0) {
            return text.toString();
        }
        bytes.append(text.sliced(plain, i - plain).toUtf8());
        bytes.append(static_cast<char>(high * 16 + low));
        plain = i + 3;
    }
    bytes.append(text.sliced(plain).toUtf8());
    // A byte order mark at the start is a part of the text as any other.
    QStringDecoder decoder(QStringDecoder::Utf8,
                           QStringDecoder::Flag::ConvertInitialBom | QStringDecoder::Flag::Stateless);
    QString decoded = decoder(bytes);
    return decoder.hasError() ? text.toString() : decoded;
}

/// The scheme as it is written; empty if there is none.
QStringView scheme(QStringView url) {
    const auto isLetter = [](QChar unit) { return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z'); };
    const auto end = std::find_if_not(url.begin(), url.end(), [&](QChar unit) {
        return isLetter(unit) || (unit >= u'0' && unit <= u'9') || unit == u'+' || unit == u'-' || unit == u'.';
    });
    return end != url.end() && *end == u':' && isLetter(url.front()) ? url.first(end - url.begin()) : QStringView();
}

/// The path of a URL with this scheme, decoded.
QString path(QStringView url, QStringView scheme) {
    const auto isDelimiter = [](QChar unit) { return unit == u'/' || unit == u'?' || unit == u'#'; };
    QStringView rest = url.sliced(scheme.size() + 1);
    if (rest.startsWith(u"//")) {
        rest = rest.sliced(2);
        rest = rest.sliced(std::find_if(rest.begin(), rest.end(), isDelimiter) - rest.begin());
    }
    const auto end = std::find_if(rest.begin(), rest.end(), [](QChar unit) { return unit == u'?' || unit == u'#'; });
    return withoutPercentEncoding(rest.first(end - rest.begin()));
}

/// The text with every inline link, "[text](destination)", replaced by its text.
QString withoutLinks(QStringView text) {
    QString result;
    qsizetype done = 0;
    qsizetype open = text.indexOf(u'[');
    while (open >= 0) {
        const qsizetype close = text.indexOf(u']', open);
        const qsizetype end = close < 0 ? -1 : text.indexOf(u')', close + 1);
        if (end < 0) {
            break;
        }
        if (text[close + 1] == u'(') {
            result += text.sliced(done, open - done);
            result += text.sliced(open + 1, close - open - 1);
            done = end + 1;
            open = text.indexOf(u'[', done);
        } else {
            // Every bracket that opens before this one closes fails here as well.
            open = text.indexOf(u'[', close + 1);
        }
    }
    result += text.sliced(done);
    return result;
}

bool isAlphanumeric(char32_t scalar) {
    const QChar::Category category = QChar::category(scalar);
    return category <= QChar::Number_Other || (category >= QChar::Letter_Uppercase && category <= QChar::Letter_Other);
}

static_assert(QChar::Mark_NonSpacing == 0 && QChar::Number_Other == 5);

} // namespace

Target target(const QString& url) {
    if (url.startsWith(u'#')) {
        return Anchor{slug(withoutPercentEncoding(QStringView(url).sliced(1)))};
    }
    const QStringView found = scheme(url);
    if (!found.isEmpty() && found.compare(u"file", Qt::CaseInsensitive) != 0) {
        return External{url};
    }
    // Only as it is written here does the scheme fall away; another spelling of it stays part of the path.
    const QString raw = found == u"file" ? path(url, found) : url;
    const qsizetype hash = raw.indexOf(u'#');
    if (hash < 0) {
        return File{withoutPercentEncoding(raw), std::nullopt};
    }
    return File{withoutPercentEncoding(QStringView(raw).first(hash)),
                slug(withoutPercentEncoding(QStringView(raw).sliced(hash + 1)))};
}

QString slug(QStringView text) {
    QString result;
    const QString lower = withoutLinks(text).toLower();
    for (const uint scalar : lower.toUcs4()) {
        if (scalar == U' ') {
            result += u'-';
        } else if (scalar == U'_' || scalar == U'-' || isAlphanumeric(scalar)) {
            result += QChar::fromUcs4(scalar);
        }
    }
    return result;
}

QStringList uniqueSlugs(const QStringList& texts) {
    QStringList result;
    QHash<QString, qsizetype> counts;
    for (const QString& text : texts) {
        QString unique = slug(text);
        const qsizetype count = counts[unique]++;
        if (count > 0) {
            unique += u'-' + QString::number(count);
        }
        result.append(unique);
    }
    return result;
}

} // namespace quillary::MarkdownLinks
