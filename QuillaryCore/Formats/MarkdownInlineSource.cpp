#include "QuillaryCore/Formats/MarkdownInlineSource.h"

#include <algorithm>
#include <functional>

namespace quillary {

namespace {

constexpr char guard = '\f';

bool isLineEnd(QChar unit) {
    return unit == u'\n' || unit == u'\r';
}

bool isBlank(QChar unit) {
    return unit == u' ' || unit == u'\t';
}

/// Whether md4c could take the line for anything but a line of a paragraph, or could take a blank off its start. Other
/// lines must do without a guard: the destination or the title of a link may begin there.
bool needsGuard(QStringView line) {
    const auto runEnd = [line](auto test) { return std::find_if_not(line.begin(), line.end(), test); };
    const auto endsThere = [line](auto place) { return place == line.end() || isBlank(*place); };
    if (line.isEmpty() || isBlank(line.front())) {
        return true;
    }
    switch (line.front().unicode()) {
    case u'>':
    case u'-':
    case u'+':
    case u'*':
    case u'_':
    case u'=':
    case u'`':
    case u'~':
    case u'[':
        return true;
    case u'#':
        return endsThere(runEnd([](QChar unit) { return unit == u'#'; }));
    default:
        const auto digits = runEnd([](QChar unit) { return unit >= u'0' && unit <= u'9'; });
        return digits != line.begin() && digits != line.end() && (*digits == u'.' || *digits == u')') &&
               endsThere(digits + 1);
    }
}

} // namespace

MarkdownInlineSource::MarkdownInlineSource(QStringView text, LineEnds lineEnds) : m_text(text) {
    m_bytes.reserve(text.size() + text.size() / 8 + 16);
    qsizetype start = 0;
    while (true) {
        qsizetype end = start;
        while (end < text.size() && !isLineEnd(text[end])) {
            ++end;
        }
        const QStringView line = text.sliced(start, end - start);
        if (needsGuard(line)) {
            addGuard();
        }
        // A NUL would be replaced; any other control character is text.
        m_bytes.append(line.toUtf8().replace('\0', '\1'));
        // Where a line ends behind the opening of code md4c drops the line end.
        if (!line.isEmpty() && (isBlank(line.back()) || line.back() == u'`')) {
            addGuard();
        }
        if (end == text.size()) {
            break;
        }
        const bool isPair = text.sliced(end).startsWith(u"\r\n");
        if (lineEnds == LineEnds::hidden) {
            m_bytes.append(isPair ? 2 : 1, guard);
        } else {
            m_bytes.append(text.sliced(end, isPair ? 2 : 1).toLatin1());
        }
        start = end + (isPair ? 2 : 1);
    }
    m_isASCII = m_bytes.size() == m_text.size() + m_guards.size();
}

void MarkdownInlineSource::addGuard() {
    m_guards.append(m_bytes.size());
    m_bytes.append(guard);
}

bool MarkdownInlineSource::holds(const char* place) const {
    return !std::less<>()(place, m_bytes.constData()) && std::less<>()(place, m_bytes.constData() + m_bytes.size());
}

void MarkdownInlineSource::take(const char* place, qsizetype size, QString& to) {
    const qsizetype start = place - m_bytes.constData();
    goTo(start);
    const qsizetype end = start + size;
    while (m_byte < end) {
        const qsizetype from = m_unit;
        goTo(std::min(end, nextGuard()));
        to += m_text.sliced(from, m_unit - from);
        if (m_byte < end) {
            step();
        }
    }
}

void MarkdownInlineSource::takeLineEnd(QString& to) {
    while (m_unit < m_text.size() && !isLineEnd(m_text[m_unit])) {
        step();
    }
    const qsizetype start = m_unit;
    if (start == m_text.size()) {
        return;
    }
    const qsizetype length = m_text.sliced(start).startsWith(u"\r\n") ? 2 : 1;
    for (qsizetype i = 0; i < length; ++i) {
        step();
    }
    to += m_text.sliced(start, length);
}

qsizetype MarkdownInlineSource::nextGuard() const {
    return m_nextGuard < m_guards.size() ? m_guards[m_nextGuard] : m_bytes.size();
}

void MarkdownInlineSource::goTo(qsizetype byte) {
    while (m_byte < byte) {
        const qsizetype stretch = m_isASCII ? std::min(byte, nextGuard()) - m_byte : 0;
        m_byte += stretch;
        m_unit += stretch;
        if (m_byte < byte) {
            step();
        }
    }
}

/// Goes over a guard, or over one scalar in both.
void MarkdownInlineSource::step() {
    if (m_byte == nextGuard()) {
        ++m_nextGuard;
        ++m_byte;
        return;
    }
    const auto lead = static_cast<unsigned char>(m_bytes[m_byte]);
    m_byte += lead < 0x80 ? 1 : (lead < 0xE0 ? 2 : (lead < 0xF0 ? 3 : 4));
    m_unit += lead < 0xF0 ? 1 : 2;
}

} // namespace quillary
