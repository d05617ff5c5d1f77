#pragma once

#include <QList>
#include <QRandomGenerator>
#include <QString>

namespace quillary {

/// Pieces of text that editors trip over: terminators of every kind, clusters of several units, both directions,
/// control characters and noncharacters.
inline QList<QString> hostilePieces() {
    using namespace Qt::StringLiterals;
    return {
        u"a"_s,
        u"parola "_s,
        u"\n"_s,
        u"\r\n"_s,
        u"\r"_s,
        u"\u2028"_s,
        u"\u2029"_s,
        u"\u0085"_s,
        u"\v"_s,
        u"\f"_s,
        u"\t"_s,
        u"\u00A0"_s,
        QString(QChar(u'\0')),
        u"\uFFFC"_s,
        u"\uFEFF"_s,
        u"\uFDD0"_s,
        u"e\u0301"_s,
        u"\U0001F468\u200D\U0001F469\u200D\U0001F467"_s,
        u"\U0001F1EE\U0001F1F9"_s,
        u"\u05E9\u05DC\u05D5\u05DD "_s,
        u"\u0645\u0631\u062D\u0628\u0627 "_s,
        u"\u0928\u092E\u0938\u094D\u0924\u0947"_s,
        u"\u6F22\u5B57"_s,
    };
}

/// Some pieces in a row, as `random` wills.
inline QString hostileText(QRandomGenerator& random, int pieces) {
    static const QList<QString> all = hostilePieces();
    QString text;
    for (int i = 0; i < pieces; ++i) {
        text += all[random.bounded(all.size())];
    }
    return text;
}

/// Words of changing length up to a number of units, with no line end.
inline QString words(qsizetype length) {
    QRandomGenerator random(7);
    QString text;
    text.reserve(length + 16);
    while (text.size() < length) {
        text += QString(random.bounded(1, 12), QChar(u'a' + random.bounded(26))) + u' ';
    }
    text.truncate(length);
    return text;
}

} // namespace quillary
