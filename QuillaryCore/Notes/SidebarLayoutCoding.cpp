#include "QuillaryCore/Notes/SidebarLayout.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

constexpr QLatin1StringView collapsedFoldersKey("collapsedFolders");
constexpr QLatin1StringView folderColorsKey("folderColors");
constexpr QLatin1StringView folderOrderKey("folderOrder");
constexpr QLatin1StringView noteOrderKey("noteOrder");

bool isMissing(const QJsonValue& value) {
    return value.isUndefined() || value.isNull();
}

// Each of these reads a value that may be missing, and gives false if it is there and of the wrong type.

bool readInto(QStringList& names, const QJsonValue& value) {
    if (isMissing(value)) {
        return true;
    }
    if (!value.isArray()) {
        return false;
    }
    for (const QJsonValue name : value.toArray()) {
        if (!name.isString()) {
            return false;
        }
        names.append(name.toString());
    }
    return true;
}

bool readInto(QMap<QString, FolderColor>& colors, const QJsonValue& value) {
    if (isMissing(value)) {
        return true;
    }
    if (!value.isObject()) {
        return false;
    }
    const QJsonObject object = value.toObject();
    for (auto member = object.begin(); member != object.end(); ++member) {
        const std::optional<FolderColor> color =
            member.value().isString() ? folderColorFromRawValue(member.value().toString()) : std::nullopt;
        if (!color) {
            return false;
        }
        colors.insert(member.key(), *color);
    }
    return true;
}

bool readInto(QMap<QString, QStringList>& orders, const QJsonValue& value) {
    if (isMissing(value)) {
        return true;
    }
    if (!value.isObject()) {
        return false;
    }
    const QJsonObject object = value.toObject();
    for (auto member = object.begin(); member != object.end(); ++member) {
        if (!member.value().isArray() || !readInto(orders[member.key()], member.value())) {
            return false;
        }
    }
    return true;
}

/// Writes a text as JSON. A lone surrogate, as names on disk that are no UTF-8 hold them, is written by its number.
QString quotedText(QStringView text) {
    // As it is, Qt's reader would take one at the start of a name for a mark of the encoding and drop it.
    constexpr QChar byteOrderMark(u'\ufeff');
    QString result = u"\""_s;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar unit = text[i];
        const bool isPair = unit.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        if (isPair) {
            result += text.sliced(i++, 2);
        } else if (unit == u'"' || unit == u'\\') {
            result += u'\\';
            result += unit;
        } else if (unit < u' ' || unit.isSurrogate() || unit == byteOrderMark) {
            result += u"\\u%1"_s.arg(unit.unicode(), 4, 16, QChar(u'0'));
        } else {
            result += unit;
        }
    }
    return result + u'"';
}

constexpr int indentWidth = 2;

/// Writes what stands between a pair of brackets, each element in a line of its own; `elements` are written already.
QString bracketed(QChar open, const QStringList& elements, QChar close, int depth) {
    if (elements.isEmpty()) {
        return QString(open) + close;
    }
    const QString indent = u'\n' + QString(indentWidth * (depth + 1), u' ');
    return open + indent + elements.join(u',' + indent) + u'\n' + QString(indentWidth * depth, u' ') + close;
}

QString listText(const QStringList& names, int depth) {
    QStringList elements;
    for (const QString& name : names) {
        elements.append(quotedText(name));
    }
    return bracketed(u'[', elements, u']', depth);
}

QString memberText(const QString& name, const QString& value) {
    return quotedText(name) + u": "_s + value;
}

} // namespace

std::optional<SidebarLayout> SidebarLayout::decode(QByteArrayView file) {
    constexpr QByteArrayView byteOrderMark("\xEF\xBB\xBF");
    if (file.startsWith(byteOrderMark)) {
        file = file.sliced(byteOrderMark.size());
    }
    // Qt's reader drops a mark at the start of a name, unless it is written by its number.
    const QByteArray text = file.toByteArray().replace("\"\xEF\xBB\xBF", "\"\\ufeff");
    const QJsonDocument document = QJsonDocument::fromJson(text);
    if (!document.isObject()) {
        return std::nullopt;
    }
    const QJsonObject object = document.object();
    SidebarLayout layout;
    const bool isRight = readInto(layout.collapsedFolders, object[collapsedFoldersKey]) &&
                         readInto(layout.folderColors, object[folderColorsKey]) &&
                         readInto(layout.folderOrder, object[folderOrderKey]) &&
                         readInto(layout.noteOrder, object[noteOrderKey]);
    return isRight ? std::optional(layout) : std::nullopt;
}

QByteArray SidebarLayout::encoded() const {
    QStringList colors;
    for (auto entry = folderColors.begin(); entry != folderColors.end(); ++entry) {
        colors.append(memberText(entry.key(), quotedText(rawValue(entry.value()))));
    }
    QStringList orders;
    for (auto entry = noteOrder.begin(); entry != noteOrder.end(); ++entry) {
        orders.append(memberText(entry.key(), listText(entry.value(), 2)));
    }
    const QStringList members{
        memberText(collapsedFoldersKey, listText(collapsedFolders, 1)),
        memberText(folderColorsKey, bracketed(u'{', colors, u'}', 1)),
        memberText(folderOrderKey, listText(folderOrder, 1)),
        memberText(noteOrderKey, bracketed(u'{', orders, u'}', 1)),
    };
    return QString(bracketed(u'{', members, u'}', 0) + u'\n').toUtf8();
}

} // namespace quillary
