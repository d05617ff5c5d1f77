#include "QuillaryCore/Formats/SyntaxLanguage.h"

#include "QuillaryCore/Formats/SyntaxTokenKind.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

TEST(SyntaxLanguage, CasesAndRawStringsInOrder) {
    std::vector<std::string> raw;
    raw.reserve(allSyntaxLanguages.size());
    for (const SyntaxLanguage language : allSyntaxLanguages) {
        raw.emplace_back(rawValue(language).data());
        EXPECT_EQ(syntaxLanguageFromRawValue(QString(rawValue(language))), language);
    }
    EXPECT_EQ(raw, (std::vector<std::string>{"css", "javascript", "php", "html", "json"}));
}

TEST(SyntaxLanguage, NoOtherRawStringIsALanguage) {
    for (const QString& text : {u""_s, u"js"_s, u"CSS"_s, u"css "_s, u"cs"_s}) {
        EXPECT_EQ(syntaxLanguageFromRawValue(text), std::nullopt) << text.toStdString();
    }
}

TEST(SyntaxLanguage, FenceNames) {
    const std::map<SyntaxLanguage, QStringList> names = {
        {SyntaxLanguage::css, {u"css"_s, u"scss"_s, u"less"_s}},
        {SyntaxLanguage::javascript,
         {u"js"_s, u"javascript"_s, u"jsx"_s, u"mjs"_s, u"cjs"_s, u"ts"_s, u"typescript"_s, u"tsx"_s}},
        {SyntaxLanguage::php, {u"php"_s, u"phtml"_s}},
        {SyntaxLanguage::html, {u"html"_s, u"htm"_s, u"xhtml"_s, u"xml"_s, u"svg"_s, u"vue"_s}},
        {SyntaxLanguage::json, {u"json"_s, u"jsonc"_s, u"json5"_s, u"geojson"_s}},
    };
    for (const auto& [language, all] : names) {
        for (const QString& name : all) {
            EXPECT_EQ(syntaxLanguageFromFenceName(name), language) << name.toStdString();
            EXPECT_EQ(syntaxLanguageFromFenceName(name.toUpper()), language) << name.toStdString();
        }
    }
    EXPECT_EQ(syntaxLanguageFromFenceName(u"TypeScript"), SyntaxLanguage::javascript);
    for (const QString& name :
         {u""_s, u"c"_s, u"json6"_s, u" css"_s, u"css "_s, u"text"_s, u"p\u0127p"_s, u"\u0130"_s}) {
        EXPECT_EQ(syntaxLanguageFromFenceName(name), std::nullopt) << name.toStdString();
    }
}

TEST(SyntaxLanguage, OfNoteFormats) {
    EXPECT_EQ(syntaxLanguage(NoteFormat::plain), std::nullopt);
    EXPECT_EQ(syntaxLanguage(NoteFormat::markdown), std::nullopt);
    EXPECT_EQ(syntaxLanguage(NoteFormat::csv), std::nullopt);
    EXPECT_EQ(syntaxLanguage(NoteFormat::json), SyntaxLanguage::json);
    EXPECT_EQ(syntaxLanguage(NoteFormat::html), SyntaxLanguage::html);
    EXPECT_EQ(syntaxLanguage(NoteFormat::css), SyntaxLanguage::css);
    EXPECT_EQ(syntaxLanguage(NoteFormat::javascript), SyntaxLanguage::javascript);
    EXPECT_EQ(syntaxLanguage(NoteFormat::php), SyntaxLanguage::php);
}

TEST(SyntaxLanguage, JsonAloneHasAPreviewToo) {
    for (const NoteFormat format : allNoteFormats) {
        EXPECT_EQ(syntaxLanguage(format).has_value() && supportsPreview(format), format == NoteFormat::json);
    }
}

TEST(SyntaxTokenKind, CasesAndRawStringsInOrder) {
    std::vector<std::string> raw;
    raw.reserve(allSyntaxTokenKinds.size());
    for (const SyntaxTokenKind kind : allSyntaxTokenKinds) {
        raw.emplace_back(rawValue(kind).data());
    }
    EXPECT_EQ(raw, (std::vector<std::string>{"keyword", "string", "comment", "number", "constant", "tag", "attribute",
                                             "variable", "function"}));
}

} // namespace

} // namespace quillary
