#pragma once

#include "QuillaryCore/Text/TextRange.h"

#include <QString>

#include <vector>

namespace quillary {

/// A text as the plainest code has it, with nothing kept from one question to the next: what the storage must equal.
class PlainText {
public:
    QString text;

    /// Where each line begins.
    std::vector<qsizetype> lineStarts() const {
        std::vector<qsizetype> starts{0};
        for (qsizetype i = 0; i < text.size(); ++i) {
            const char16_t unit = text[i].unicode();
            if (unit == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n') {
                continue;
            }
            if (QStringView(u"\n\v\f\r\u0085\u2028\u2029").contains(QChar(unit))) {
                starts.push_back(i + 1);
            }
        }
        return starts;
    }

    void replace(TextRange range, QStringView inserted) {
        text = text.left(range.location) + inserted + text.mid(range.end());
    }
};

} // namespace quillary
