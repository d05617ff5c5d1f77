#pragma once

#include "QuillaryCore/Formats/SyntaxLanguage.h"

#include <QString>

#include <vector>

namespace quillary::test {

/// A text that makes a pattern as it is written read the same units over and over: a head, a body without end, a tail.
struct HostileSource {
    const char* name;
    SyntaxLanguage language;
    const char16_t* head;
    const char16_t* body;
    const char16_t* tail;

    /// The text, cut within its body to a length in units.
    QString text(qsizetype length) const {
        const QString first = QString::fromUtf16(head);
        const QString last = QString::fromUtf16(tail);
        const QString repeated = QString::fromUtf16(body);
        const qsizetype room = length - first.size() - last.size();
        return first + repeated.repeated(room / repeated.size() + 1).first(room) + last;
    }
};

inline const std::vector<HostileSource>& hostileSources() {
    using enum SyntaxLanguage;
    static const std::vector<HostileSource> sources = {
        {"css: words", css, u"", u"a ", u""},
        {"css: prose without braces", css, u"", u"The quick brown fox jumps over the lazy dog, and so on. ", u""},
        {"css: one word", css, u"", u"a", u""},
        {"css: one word in a comment", css, u"/*", u"a", u"*/"},
        {"css: one word in a string", css, u"\"", u"a", u"\""},
        {"css: digits", css, u"", u"1", u""},
        {"css: hyphens", css, u"", u"-", u""},
        {"css: letters and hyphens", css, u"", u"a-", u""},
        {"css: classes", css, u"", u".a ", u""},
        {"css: pseudo-classes", css, u"", u":a", u""},
        {"css: properties", css, u"", u" a:", u""},
        {"css: colours", css, u"", u"#fff ", u""},
        {"css: unterminated double quotes", css, u"", u"\"a b c\n", u""},
        {"css: unterminated single quotes", css, u"", u"'a b c\n", u""},
        {"css: a long list of selectors", css, u"", u"a,", u"{"},
        {"css: escaped quotes", css, u"\"", u"\\\"", u""},
        {"css: blanks before a colon", css, u"a", u" ", u":;"},
        {"javascript: escaped double quotes", javascript, u"\"", u"\\\"", u""},
        {"javascript: escaped single quotes", javascript, u"'", u"\\'", u""},
        {"javascript: escaped backticks", javascript, u"`", u"\\`", u""},
        {"javascript: letters and dollars", javascript, u"", u"a$", u""},
        {"javascript: calls that never come", javascript, u"", u"a ", u""},
        {"javascript: one word", javascript, u"", u"a", u""},
        {"json: escaped quotes", json, u"\"", u"\\\"", u""},
        {"json: quotes", json, u"", u"\"", u""},
        {"json: numbers", json, u"", u"1 ", u""},
        {"json: letters beyond the basic plane", json, u"", u"\U00020000", u""},
        {"json: combining marks", json, u"", u"\u0301", u""},
        {"json: strings and blanks", json, u"\"a\"", u" ", u""},
        {"php: escaped double quotes", php, u"<?php \"", u"\\\"", u""},
        {"php: escaped single quotes", php, u"<?php '", u"\\'", u""},
        {"php: dollars and letters", php, u"<?php ", u"$a", u""},
        {"php: letters and dollars", php, u"<?php ", u"a$", u""},
        {"php: many regions", php, u"", u"<?php ?>", u""},
        {"php: many empty regions", php, u"", u"<?\?>", u""},
        {"html: scripts without a close", html, u"", u"<script>", u""},
        {"html: styles without a close", html, u"", u"<style>", u""},
        {"html: doctypes without a close", html, u"", u"<!DOCTYPE ", u""},
        {"html: a style around words", html, u"<style>", u"a ", u"</style>"},
        {"html: many scripts", html, u"", u"<script>a</script>", u""},
        {"html: many styles", html, u"", u"<style>a</style>", u""},
        {"html: comments without a close", html, u"", u"<!-", u""},
        {"html: values without a close", html, u"", u"=\"='", u""},
        {"html: blanks before a value", html, u"=", u" ", u"\"a\""},
        {"html: ends of tags", html, u"", u">", u""},
        {"html: entities without a close", html, u"", u"&a", u""},
        {"html: attributes without a value", html, u"", u" a", u""},
    };
    return sources;
}

} // namespace quillary::test
