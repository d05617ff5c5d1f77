#pragma once

#include "QuillaryCore/Formats/JSONParseError.h"
#include "QuillaryCore/Formats/JSONValue.h"
#include "QuillaryCore/Result.h"

namespace quillary {

class UTF8BlockCheck;

/// A strict reader of JSON (RFC 8259, with a byte order mark allowed at the start) that keeps the order of members,
/// duplicate keys and the text of numbers, and stops at the first fault.
///
/// Each step takes the place where it begins and gives the place where it ended, or null once a fault was found.
class JSONParser {
public:
    /// Containers may lie this deep within each other.
    static constexpr int greatestDepth = 100;

    /// Reads a text in UTF-8. Ill-formed bytes are no fault within a string. The value, or the error, shares the bytes:
    /// those that a QByteArray has only borrowed must outlive it.
    static Result<JSONValue, JSONParseError> parse(const QByteArray& utf8);

    /// Reads a text, which is converted to UTF-8 once; a lone surrogate counts as U+FFFD.
    static Result<JSONValue, JSONParseError> parse(QStringView text);

private:
    using Tag = JSONTape::Tag;

    explicit JSONParser(const QByteArray& bytes);

    bool parseText();
    const char* skipWhitespace(const char* at) const;
    const char* parseValue(const char* at);
    const char* parseObject(const char* at);
    const char* parseMember(const char* at);
    const char* parseArray(const char* at);
    const char* parseString(const char* at);
    const char* skipStringRun(const char* at, UTF8BlockCheck& check) const;
    const char* parseEscape(const char* at);
    const char* parseUnicodeEscape(const char* at);
    const char* expectLiteral(const char* at, QLatin1StringView literal, Tag tag);
    const char* parseNumber(const char* at);
    const char* skipDigits(const char* at) const;
    bool enterContainer(const char* at);
    const char* leaveContainer(const char* at);
    QString unexpectedCharacter(const char* at) const;
    const char* error(const QString& message, const char* at);

    /// The byte here; at the end a NUL, which no rule accepts.
    char byteAt(const char* at) const { return at == m_end ? '\0' : *at; }

    qsizetype offset(const char* at) const { return at - m_begin; }

    const char* m_begin;
    const char* m_end;
    int m_depth = 0;
    JSONTape m_tape;
    QString m_message;
    const char* m_fault = nullptr;
};

} // namespace quillary
