#include "QuillaryCore/Notes/NoteFormat.h"

#include <gtest/gtest.h>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

struct FormatRow {
    NoteFormat format;
    bool supportsPreview;
    QString rawValue;
    QString fileExtension;
    QStringList extensions;
    QString displayName;
    QString badge;
};

const FormatRow formatRows[] = {
    {NoteFormat::plain, false, u"plain"_s, u"txt"_s, {u"txt"_s, u"rtf"_s, u""_s}, u"Testo"_s, u"TXT"_s},
    {NoteFormat::markdown,
     true,
     u"markdown"_s,
     u"md"_s,
     {u"md"_s, u"markdown"_s, u"mdown"_s, u"mkd"_s},
     u"Markdown"_s,
     u"MD"_s},
    {NoteFormat::json, true, u"json"_s, u"json"_s, {u"json"_s, u"geojson"_s}, u"JSON"_s, u"JSON"_s},
    {NoteFormat::csv, true, u"csv"_s, u"csv"_s, {u"csv"_s, u"tsv"_s}, u"CSV"_s, u"CSV"_s},
    {NoteFormat::html, false, u"html"_s, u"html"_s, {u"html"_s, u"htm"_s, u"xhtml"_s}, u"HTML"_s, u"HTML"_s},
    {NoteFormat::css, false, u"css"_s, u"css"_s, {u"css"_s}, u"CSS"_s, u"CSS"_s},
    {NoteFormat::javascript,
     false,
     u"javascript"_s,
     u"js"_s,
     {u"js"_s, u"mjs"_s, u"cjs"_s, u"jsx"_s},
     u"JavaScript"_s,
     u"JS"_s},
    {NoteFormat::php, false, u"php"_s, u"php"_s, {u"php"_s, u"phtml"_s}, u"PHP"_s, u"PHP"_s},
};

} // namespace

TEST(NoteFormat, HasItsNamesExtensionsAndPreview) {
    ASSERT_EQ(std::size(formatRows), allNoteFormats.size());
    for (std::size_t i = 0; i < std::size(formatRows); ++i) {
        const FormatRow& row = formatRows[i];
        SCOPED_TRACE(row.rawValue.toStdString());
        EXPECT_EQ(allNoteFormats[i], row.format);
        EXPECT_EQ(rawValue(row.format), row.rawValue);
        EXPECT_EQ(noteFormatFromRawValue(row.rawValue), row.format);
        EXPECT_EQ(fileExtension(row.format), row.fileExtension);
        EXPECT_EQ(displayName(row.format), row.displayName);
        EXPECT_EQ(badge(row.format), row.badge);
        EXPECT_EQ(supportsPreview(row.format), row.supportsPreview);
        for (const QString& extension : row.extensions) {
            EXPECT_EQ(noteFormatFromExtension(extension), row.format) << extension.toStdString();
            EXPECT_EQ(noteFormatFromExtension(extension.toUpper()), row.format) << extension.toStdString();
        }
    }
}

TEST(NoteFormat, AnUnknownRawValueIsNone) {
    for (const QString& value : {u""_s, u"Plain"_s, u"txt"_s, u"plain "_s, u"js"_s}) {
        EXPECT_EQ(noteFormatFromRawValue(value), std::nullopt) << value.toStdString();
    }
}

TEST(NoteFormat, RecognizesExactlyTwentySevenExtensions) {
    const QSet<QString> expected{
        u"txt"_s, u"text"_s,     u"log"_s,   u"sql"_s, u"xml"_s,  u"yaml"_s,    u"yml"_s, u"sh"_s,  u"py"_s,
        u"md"_s,  u"markdown"_s, u"mdown"_s, u"mkd"_s, u"json"_s, u"geojson"_s, u"csv"_s, u"tsv"_s, u"html"_s,
        u"htm"_s, u"xhtml"_s,    u"css"_s,   u"js"_s,  u"mjs"_s,  u"cjs"_s,     u"jsx"_s, u"php"_s, u"phtml"_s,
    };
    EXPECT_EQ(recognizedExtensions().size(), 27);
    EXPECT_EQ(recognizedExtensions(), expected);
    EXPECT_EQ(&recognizedExtensions(), &recognizedExtensions());
    for (const QString& extension : expected) {
        EXPECT_TRUE(isRecognizedExtension(extension)) << extension.toStdString();
        EXPECT_TRUE(isRecognizedExtension(extension.toUpper())) << extension.toStdString();
    }
}

TEST(NoteFormat, ExtensionsWithoutAFormatOfTheirOwnArePlainNotes) {
    for (const QString& extension : {u"text"_s, u"log"_s, u"sql"_s, u"xml"_s, u"yaml"_s, u"yml"_s, u"sh"_s, u"py"_s}) {
        EXPECT_EQ(noteFormatFromExtension(extension), NoteFormat::plain) << extension.toStdString();
        EXPECT_TRUE(isRecognizedExtension(extension)) << extension.toStdString();
    }
}

TEST(NoteFormat, OtherExtensionsArePlainAndNoNotes) {
    for (const QString& extension : {u""_s, QString(), u"rtf"_s, u"m"_s, u"mdx"_s, u" md"_s, u"md "_s, u"markdownx"_s,
                                     u"markdow"_s, u"m\u00E9"_s, u"xmd"_s, QString(QChar(0) + u"md"_s)}) {
        EXPECT_EQ(noteFormatFromExtension(extension), NoteFormat::plain) << extension.toStdString();
        EXPECT_FALSE(isRecognizedExtension(extension)) << extension.toStdString();
    }
}

TEST(NoteFormat, RecognizesExtensionsAsBytesOfNamesToo) {
    for (const QString& extension : recognizedExtensions()) {
        const QByteArray bytes = extension.toUtf8();
        EXPECT_TRUE(isRecognizedExtension(QUtf8StringView(bytes))) << bytes.toStdString();
        EXPECT_TRUE(isRecognizedExtension(QUtf8StringView(bytes.toUpper()))) << bytes.toStdString();
    }
    EXPECT_TRUE(isRecognizedExtension(QUtf8StringView("M\xE2\x84\xAA\x44")));
    for (const char* const bytes : {"rtf", "", "m\xC3\xA9", "m\xE9", "\xFFmd", "m\xE2\x84"}) {
        EXPECT_FALSE(isRecognizedExtension(QUtf8StringView(bytes))) << bytes;
    }
}

TEST(NoteFormat, LowersTheCaseOfLettersBeyondAscii) {
    // U+212A, the Kelvin sign, is a capital k.
    EXPECT_EQ(noteFormatFromExtension(u"M\u212AD"), NoteFormat::markdown);
    EXPECT_TRUE(isRecognizedExtension(u"m\u212Ad"));
}

} // namespace quillary
