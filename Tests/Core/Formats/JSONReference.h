#pragma once

#include "QuillaryCore/Formats/JSONValue.h"
#include "QuillaryCore/Unicode/GraphemeClusters.h"

#include <unicode/unistr.h>

#include <algorithm>
#include <string>

namespace quillary {

/// JSON read the plain way, byte by byte and with strings copied out, for the parser to be measured against. What it
/// gives is a text: the outline of the value, or "Riga ..." for the first fault.
class JSONReference {
public:
    static std::string parsed(const std::string& text) {
        JSONReference reference(text);
        std::string outline;
        if (reference.parseText(outline)) {
            return outline;
        }
        return reference.m_fault;
    }

    /// The outline of a value that the parser gave: {"key"=value,...}, [value,...], "text", #number, true, false, null.
    static std::string outline(const JSONValue& value) {
        switch (value.kind()) {
        case JSONValue::Kind::object: {
            std::string result = "{";
            for (const JSONMember& member : value.members()) {
                result += '"' + member.key.toStdString() + "\"=" + outline(member.value) + ',';
            }
            return result + '}';
        }
        case JSONValue::Kind::array: {
            std::string result = "[";
            for (const JSONValue& element : value.elements()) {
                result += outline(element) + ',';
            }
            return result + ']';
        }
        case JSONValue::Kind::string:
            return '"' + value.string().toStdString() + '"';
        case JSONValue::Kind::number:
            return '#' + value.number().toStdString();
        case JSONValue::Kind::boolean:
            return value.boolean() ? "true" : "false";
        case JSONValue::Kind::null:
            break;
        }
        return "null";
    }

private:
    explicit JSONReference(const std::string& text) : m_bytes(text) {}

    static QString decoded(const std::string& bytes) {
        const auto text = icu::UnicodeString::fromUTF8(bytes);
        return QStringView(text.getBuffer(), text.length()).toString();
    }

    bool atEnd() const { return m_index >= m_bytes.size(); }

    bool at(char byte) const { return !atEnd() && m_bytes[m_index] == byte; }

    bool atDigit() const { return !atEnd() && m_bytes[m_index] >= '0' && m_bytes[m_index] <= '9'; }

    bool fail(const std::string& message) {
        const std::string before = m_bytes.substr(0, m_index);
        const std::size_t lineFeed = before.rfind('\n');
        const std::string stretch = lineFeed == std::string::npos ? before : before.substr(lineFeed + 1);
        m_fault = "Riga " + std::to_string(1 + std::count(before.begin(), before.end(), '\n')) + ", colonna " +
                  std::to_string(1 + clusterCount(decoded(stretch))) + ": " + message;
        return false;
    }

    void skipWhitespace() {
        while (at(' ') || at('\t') || at('\n') || at('\r')) {
            ++m_index;
        }
    }

    bool parseText(std::string& out) {
        if (m_bytes.starts_with("\xEF\xBB\xBF")) {
            m_index = 3;
        }
        skipWhitespace();
        if (!parseValue(out)) {
            return false;
        }
        skipWhitespace();
        return atEnd() || fail("Contenuto inatteso dopo la fine del JSON");
    }

    bool parseValue(std::string& out) {
        if (atEnd()) {
            return fail("Fine inattesa del testo");
        }
        switch (m_bytes[m_index]) {
        case '"':
            return parseString(out);
        case '{':
            return parseContainer(out, '}');
        case '[':
            return parseContainer(out, ']');
        case 't':
            return expectLiteral("true", out);
        case 'f':
            return expectLiteral("false", out);
        case 'n':
            return expectLiteral("null", out);
        default:
            if (at('-') || atDigit()) {
                return parseNumber(out);
            }
            const QString next = decoded(m_bytes.substr(m_index, 4));
            return fail("Carattere inatteso «" + clusterPrefix(next, 1).toString().toStdString() + "»");
        }
    }

    bool parseContainer(std::string& out, char closing) {
        if (++m_depth > 100) {
            return fail("Annidamento troppo profondo");
        }
        out += m_bytes[m_index++];
        skipWhitespace();
        for (bool isFirst = true; !(isFirst && at(closing)); isFirst = false) {
            skipWhitespace();
            if (!(closing == '}' ? parseMember(out) : parseValue(out))) {
                return false;
            }
            out += ',';
            skipWhitespace();
            if (at(closing)) {
                break;
            }
            if (!at(',')) {
                return fail(std::string("Attesa «,» oppure «") + closing + "»");
            }
            ++m_index;
        }
        out += closing;
        ++m_index;
        --m_depth;
        return true;
    }

    bool parseMember(std::string& out) {
        if (!at('"')) {
            return fail("Attesa una chiave tra virgolette");
        }
        if (!parseString(out)) {
            return false;
        }
        skipWhitespace();
        if (!at(':')) {
            return fail("Attesi i due punti «:»");
        }
        out += '=';
        ++m_index;
        skipWhitespace();
        return parseValue(out);
    }

    bool parseString(std::string& out) {
        std::string buffer;
        for (++m_index; !at('"'); ++m_index) {
            if (atEnd()) {
                return fail("Stringa non terminata");
            }
            if (static_cast<unsigned char>(m_bytes[m_index]) < 0x20) {
                return fail("Carattere di controllo non ammesso in una stringa");
            }
            if (!at('\\')) {
                buffer += m_bytes[m_index];
            } else if (!appendEscape(buffer)) {
                return false;
            }
        }
        ++m_index;
        out += '"' + decoded(buffer).toStdString() + '"';
        return true;
    }

    bool appendEscape(std::string& buffer) {
        ++m_index;
        if (atEnd()) {
            return fail("Stringa non terminata");
        }
        const std::string letters = "\"/\\bfnrt";
        const std::size_t letter = letters.find(m_bytes[m_index]);
        if (letter != std::string::npos) {
            buffer += "\"/\\\b\f\n\r\t"[letter];
            return true;
        }
        return at('u') ? parseUnicodeEscape(buffer) : fail("Sequenza di escape non valida");
    }

    bool parseUnicodeEscape(std::string& buffer) {
        char32_t value = 0;
        if (!readHex4(value)) {
            return false;
        }
        if (value >= 0xDC00 && value <= 0xDFFF) {
            value = 0xFFFD;
        } else if (value >= 0xD800 && value <= 0xDBFF) {
            char32_t second = 0;
            if (m_index + 2 < m_bytes.size() && m_bytes.substr(m_index + 1, 2) == "\\u") {
                m_index += 2;
                if (!readHex4(second)) {
                    return false;
                }
            }
            const bool isPair = second >= 0xDC00 && second <= 0xDFFF;
            value = isPair ? 0x10000 + ((value - 0xD800) << 10) + (second - 0xDC00) : 0xFFFD;
        }
        buffer += QString::fromUcs4(&value, 1).toStdString();
        return true;
    }

    bool readHex4(char32_t& value) {
        if (m_index + 4 >= m_bytes.size()) {
            return fail("Escape \\u incompleto");
        }
        const std::string digits = m_bytes.substr(m_index + 1, 4);
        if (digits.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos) {
            return fail("Escape \\u non valido");
        }
        value = static_cast<char32_t>(std::stoul(digits, nullptr, 16));
        m_index += 4;
        return true;
    }

    bool expectLiteral(const std::string& literal, std::string& out) {
        if (m_bytes.compare(m_index, literal.size(), literal) != 0) {
            return fail("Valore non valido, atteso «" + literal + "»");
        }
        m_index += literal.size();
        out += literal;
        return true;
    }

    bool parseDigits(const char* message) {
        if (!atDigit()) {
            return fail(message);
        }
        while (atDigit()) {
            ++m_index;
        }
        return true;
    }

    bool parseNumber(std::string& out) {
        const std::size_t start = m_index;
        if (at('-')) {
            ++m_index;
        }
        if (at('0')) {
            ++m_index;
        } else if (!parseDigits("Numero non valido")) {
            return false;
        }
        if (at('.')) {
            ++m_index;
            if (!parseDigits("Numero non valido")) {
                return false;
            }
        }
        if (at('e') || at('E')) {
            ++m_index;
            if (at('+') || at('-')) {
                ++m_index;
            }
            if (!parseDigits("Esponente non valido")) {
                return false;
            }
        }
        out += '#' + m_bytes.substr(start, m_index - start);
        return true;
    }

    const std::string& m_bytes;
    std::size_t m_index = 0;
    int m_depth = 0;
    std::string m_fault;
};

} // namespace quillary
