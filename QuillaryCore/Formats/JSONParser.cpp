#include "QuillaryCore/Formats/JSONParser.h"

#include "QuillaryCore/Formats/ByteBlock.h"
#include "QuillaryCore/Formats/UTF8.h"
#include "QuillaryCore/Formats/UTF8BlockCheck.h"
#include "QuillaryCore/Unicode/GraphemeClusters.h"

#include <algorithm>
#include <bit>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

bool isDigit(char byte) {
    return byte >= '0' && byte <= '9';
}

bool isHexDigit(char byte) {
    return isDigit(byte) || (byte >= 'a' && byte <= 'f') || (byte >= 'A' && byte <= 'F');
}

bool isWhitespace(char byte) {
    return byte == ' ' || byte == '\n' || byte == '\t' || byte == '\r';
}

quint32 whitespace(const ByteBlock& block) {
    return block.equalTo(' ') | block.equalTo('\n') | block.equalTo('\t') | block.equalTo('\r');
}

/// The bytes that end a run which a string takes over unchanged.
quint32 stringStops(const ByteBlock& block) {
    return block.upTo(0x1F) | block.equalTo('"') | block.equalTo('\\');
}

bool isStringStop(char byte) {
    return static_cast<unsigned char>(byte) < 0x20 || byte == '"' || byte == '\\';
}

} // namespace

Result<JSONValue, JSONParseError> JSONParser::parse(const QByteArray& utf8) {
    JSONParser parser(utf8);
    if (!parser.parseText()) {
        return JSONParseError(parser.m_message, utf8, parser.offset(parser.m_fault));
    }
    parser.m_tape.squeeze();
    return JSONValue(QExplicitlySharedDataPointer<const JSONDocument>(new JSONDocument(utf8, std::move(parser.m_tape))),
                     0);
}

Result<JSONValue, JSONParseError> JSONParser::parse(QStringView text) {
    return parse(UTF8::encoded(text));
}

JSONParser::JSONParser(const QByteArray& bytes)
    : m_begin(bytes.constData()), m_end(m_begin + bytes.size()), m_tape(bytes.size()) {}

bool JSONParser::parseText() {
    const char* at = m_begin;
    if (QByteArrayView(m_begin, m_end).startsWith("\xEF\xBB\xBF")) {
        at += 3;
    }
    at = parseValue(skipWhitespace(at));
    if (at) {
        at = skipWhitespace(at);
    }
    if (at && at != m_end) {
        at = error(u"Contenuto inatteso dopo la fine del JSON"_s, at);
    }
    return at != nullptr;
}

inline const char* JSONParser::skipWhitespace(const char* at) const {
    // No blank and one blank are the usual cases; longer runs are indentations.
    if (at == m_end || !isWhitespace(*at)) {
        return at;
    }
    ++at;
    if (at == m_end || !isWhitespace(*at)) {
        return at;
    }
    while (m_end - at >= ByteBlock::size) {
        const int blanks = std::countr_one(whitespace(ByteBlock(at)));
        at += blanks;
        if (blanks < ByteBlock::size) {
            return at;
        }
    }
    return std::find_if_not(at, m_end, isWhitespace);
}

const char* JSONParser::parseValue(const char* at) {
    if (at == m_end) {
        return error(u"Fine inattesa del testo"_s, at);
    }
    switch (*at) {
    case '"':
        return parseString(at);
    case '{':
        return parseObject(at);
    case '[':
        return parseArray(at);
    case 't':
        return expectLiteral(at, "true"_L1, Tag::yes);
    case 'f':
        return expectLiteral(at, "false"_L1, Tag::no);
    case 'n':
        return expectLiteral(at, "null"_L1, Tag::null);
    default:
        if (*at == '-' || isDigit(*at)) {
            return parseNumber(at);
        }
        return error(u"Carattere inatteso «"_s + unexpectedCharacter(at) + u'»', at);
    }
}

const char* JSONParser::parseObject(const char* at) {
    if (!enterContainer(at)) {
        return nullptr;
    }
    at = skipWhitespace(at + 1);
    if (byteAt(at) == '}') {
        m_tape.append(Tag::emptyObject, 0);
        return leaveContainer(at);
    }
    const qsizetype object = m_tape.open(Tag::object);
    for (qsizetype count = 1;; ++count) {
        at = parseMember(skipWhitespace(at));
        if (!at) {
            return nullptr;
        }
        at = skipWhitespace(at);
        if (byteAt(at) == '}') {
            m_tape.close(object, count);
            return leaveContainer(at);
        }
        if (byteAt(at) != ',') {
            return error(u"Attesa «,» oppure «}»"_s, at);
        }
        ++at;
    }
}

const char* JSONParser::parseMember(const char* at) {
    if (byteAt(at) != '"') {
        return error(u"Attesa una chiave tra virgolette"_s, at);
    }
    at = parseString(at);
    if (!at) {
        return nullptr;
    }
    at = skipWhitespace(at);
    if (byteAt(at) != ':') {
        return error(u"Attesi i due punti «:»"_s, at);
    }
    return parseValue(skipWhitespace(at + 1));
}

const char* JSONParser::parseArray(const char* at) {
    if (!enterContainer(at)) {
        return nullptr;
    }
    at = skipWhitespace(at + 1);
    if (byteAt(at) == ']') {
        m_tape.append(Tag::emptyArray, 0);
        return leaveContainer(at);
    }
    const qsizetype array = m_tape.open(Tag::array);
    for (qsizetype count = 1;; ++count) {
        at = parseValue(skipWhitespace(at));
        if (!at) {
            return nullptr;
        }
        at = skipWhitespace(at);
        if (byteAt(at) == ']') {
            m_tape.close(array, count);
            return leaveContainer(at);
        }
        if (byteAt(at) != ',') {
            return error(u"Attesa «,» oppure «]»"_s, at);
        }
        ++at;
    }
}

const char* JSONParser::parseString(const char* at) {
    const char* const opening = at++;
    UTF8BlockCheck check;
    bool hasEscapes = false;
    for (;;) {
        at = skipStringRun(at, check);
        if (at == m_end) {
            return error(u"Stringa non terminata"_s, at);
        }
        if (*at == '"') {
            break;
        }
        if (*at != '\\') {
            return error(u"Carattere di controllo non ammesso in una stringa"_s, at);
        }
        hasEscapes = true;
        at = parseEscape(at);
        if (!at) {
            return nullptr;
        }
    }
    Tag tag = Tag::encodedString;
    if (!hasEscapes && check.isASCII()) {
        tag = Tag::asciiString;
    } else if (!hasEscapes && (check.isCertain() || UTF8::isWellFormed(QByteArrayView(opening + 1, at)))) {
        tag = Tag::plainString;
    }
    m_tape.append(tag, offset(opening));
    return at + 1;
}

/// Goes over what a string takes over unchanged.
inline const char* JSONParser::skipStringRun(const char* at, UTF8BlockCheck& check) const {
    int run = ByteBlock::size;
    while (run == ByteBlock::size && m_end - at >= ByteBlock::size) {
        const ByteBlock block(at);
        run = std::countr_zero(stringStops(block) | 1U << ByteBlock::size);
        check.add(block, run);
        at += run;
    }
    for (; at != m_end && !isStringStop(*at); ++at) {
        check.add(*at);
    }
    check.end();
    return at;
}

const char* JSONParser::parseEscape(const char* at) {
    ++at;
    if (at == m_end) {
        return error(u"Stringa non terminata"_s, at);
    }
    switch (*at) {
    case '"':
    case '/':
    case '\\':
    case 'b':
    case 'f':
    case 'n':
    case 'r':
    case 't':
        return at + 1;
    case 'u':
        return parseUnicodeEscape(at);
    default:
        return error(u"Sequenza di escape non valida"_s, at);
    }
}

const char* JSONParser::parseUnicodeEscape(const char* at) {
    if (m_end - at <= 4) {
        return error(u"Escape \\u incompleto"_s, at);
    }
    if (!std::all_of(at + 1, at + 5, isHexDigit)) {
        return error(u"Escape \\u non valido"_s, at);
    }
    return at + 5;
}

const char* JSONParser::expectLiteral(const char* at, QLatin1StringView literal, Tag tag) {
    if (!QByteArrayView(at, m_end).startsWith(QByteArrayView(literal))) {
        return error(u"Valore non valido, atteso «"_s + literal + u'»', at);
    }
    m_tape.append(tag, 0);
    return at + literal.size();
}

const char* JSONParser::parseNumber(const char* at) {
    const qsizetype start = offset(at);
    if (*at == '-') {
        ++at;
    }
    if (!isDigit(byteAt(at))) {
        return error(u"Numero non valido"_s, at);
    }
    at = *at == '0' ? at + 1 : skipDigits(at);
    if (byteAt(at) == '.') {
        ++at;
        if (!isDigit(byteAt(at))) {
            return error(u"Numero non valido"_s, at);
        }
        at = skipDigits(at);
    }
    if (byteAt(at) == 'e' || byteAt(at) == 'E') {
        ++at;
        if (byteAt(at) == '+' || byteAt(at) == '-') {
            ++at;
        }
        if (!isDigit(byteAt(at))) {
            return error(u"Esponente non valido"_s, at);
        }
        at = skipDigits(at);
    }
    m_tape.append(Tag::number, start);
    return at;
}

inline const char* JSONParser::skipDigits(const char* at) const {
    // A loop from digit to digit ends at a place that no branch predictor knows.
    while (m_end - at >= ByteBlock::size) {
        const int digits = std::countr_one(ByteBlock(at).between('0', '9'));
        at += digits;
        if (digits < ByteBlock::size) {
            return at;
        }
    }
    return std::find_if_not(at, m_end, isDigit);
}

bool JSONParser::enterContainer(const char* at) {
    ++m_depth;
    if (m_depth > greatestDepth) {
        error(u"Annidamento troppo profondo"_s, at);
        return false;
    }
    return true;
}

const char* JSONParser::leaveContainer(const char* at) {
    --m_depth;
    return at + 1;
}

QString JSONParser::unexpectedCharacter(const char* at) const {
    const QString text = UTF8::decoded(QByteArrayView(at, std::min(at + 4, m_end)));
    return clusterPrefix(text, 1).toString();
}

const char* JSONParser::error(const QString& message, const char* at) {
    m_message = message;
    m_fault = at;
    return nullptr;
}

} // namespace quillary
