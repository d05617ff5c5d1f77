#pragma once

#include "QuillaryCore/Formats/SyntaxHighlighter.h"

#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

#include <optional>
#include <vector>

namespace quillary::test {

/// The tokens of a text, one after the other: "kind text", with " | " between.
inline QString coloured(const QString& text, SyntaxLanguage language, std::optional<TextRange> range = {}) {
    QStringList result;
    for (const SyntaxToken& token : SyntaxHighlighter::tokens(text, language, range)) {
        result +=
            QString(rawValue(token.kind)) + QLatin1Char(' ') + text.sliced(token.range.location, token.range.length);
    }
    return result.join(QStringLiteral(" | "));
}

/// A text and what it is coloured as, as `coloured` writes it.
struct ColourCase {
    const char16_t* text;
    const char16_t* expected;
};

inline void expectColours(SyntaxLanguage language, const std::vector<ColourCase>& cases) {
    for (const ColourCase& each : cases) {
        const QString text = QString::fromUtf16(each.text);
        EXPECT_EQ(coloured(text, language).toStdString(), QString::fromUtf16(each.expected).toStdString())
            << "in: " << text.toStdString();
    }
}

} // namespace quillary::test
