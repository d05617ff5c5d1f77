#include "QuillaryCore/Formats/SyntaxHighlighter.h"
#include "Tools/inspect/Sections.h"

namespace quillary::inspect {

namespace {

using namespace Qt::StringLiterals;

SyntaxLanguage languageArgument(Arguments& arguments) {
    const QString name = arguments.text(u"language"_s);
    const std::optional<SyntaxLanguage> language = syntaxLanguageFromRawValue(name);
    if (!language) {
        arguments.fail(u"unknown language: "_s + name);
    }
    return language.value_or(SyntaxLanguage::css);
}

std::optional<TextRange> rangeArgument(Arguments& arguments) {
    const std::optional<qint64> location = arguments.optionalInteger(u"location"_s);
    const std::optional<qint64> length = arguments.optionalInteger(u"length"_s);
    if (location.has_value() != length.has_value()) {
        arguments.fail(u"missing argument: "_s + (location ? u"length"_s : u"location"_s));
    }
    return location && length ? std::optional(TextRange{*location, *length}) : std::nullopt;
}

Prepared tokens(Arguments& arguments) {
    const QString text = arguments.text(u"text"_s);
    const SyntaxLanguage language = languageArgument(arguments);
    const std::optional<TextRange> range = rangeArgument(arguments);
    return prepared([=] { return SyntaxHighlighter::tokens(text, language, range); },
                    [](AnswerWriter& answer, const QList<SyntaxToken>& result) {
                        answer.key(u"tokens");
                        answer.beginArray();
                        for (const SyntaxToken& token : result) {
                            answer.beginArray();
                            answer.text(QString(rawValue(token.kind)));
                            answer.integer(token.range.location);
                            answer.integer(token.range.length);
                            answer.endArray();
                        }
                        answer.endArray();
                    });
}

Prepared fence(Arguments& arguments) {
    const QString name = arguments.text(u"name"_s);
    return prepared([=] { return syntaxLanguageFromFenceName(name); },
                    [](AnswerWriter& answer, const std::optional<SyntaxLanguage>& result) {
                        if (result) {
                            answer.member(u"language", QString(rawValue(*result)));
                        } else {
                            answer.nullMember(u"language");
                        }
                    });
}

} // namespace

void addHighlighterOperations(OperationTable& table) {
    table.insert(u"highlight.tokens"_s, tokens);
    table.insert(u"highlight.fence"_s, fence);
}

} // namespace quillary::inspect
