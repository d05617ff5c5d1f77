#include "QuillaryCore/Unicode/PrimaryKeys.h"

#include "QuillaryCore/Unicode/Icu.h"

#include <unicode/uchar.h>
#include <unicode/uniset.h>
#include <unicode/utf16.h>

#include <algorithm>

namespace quillary {

namespace {

/// In the root's order "l" and this are one letter, the only one of several units that a text of the table can hold.
constexpr char16_t middleDot = u'\u00B7';

bool isDigit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}

/// Whether nothing sets the collator apart from the root's but how it treats digits.
bool hasOrderOfRoot(const icu::RuleBasedCollator& collator) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::UnicodeSet> tailored(collator.getTailoredSet(status));
    const UColAttributeValue alternate = collator.getAttribute(UCOL_ALTERNATE_HANDLING, status);
    icu_support::require(status, "read a collator's settings");
    // Asked for no codes, it fails with their count where there are some.
    const int32_t reorderCodes = collator.getReorderCodes(nullptr, 0, status);
    return tailored->isEmpty() && alternate == UCOL_NON_IGNORABLE && reorderCodes == 0;
}

} // namespace

PrimaryKeys::PrimaryKeys(std::shared_ptr<const icu::RuleBasedCollator> collator) : m_collator(std::move(collator)) {
    if (hasOrderOfRoot(*m_collator)) {
        m_elements.reset(m_collator->createCollationElementIterator(icu::UnicodeString()));
        readTable();
    }
}

void PrimaryKeys::append(QStringView text, std::vector<char>& bytes) {
    if (!followsRoot()) {
        appendSortKey(text, bytes);
    } else if (!appendFromTable(text, bytes)) {
        appendFromElements(text, bytes);
    }
}

void PrimaryKeys::readTable() {
    std::vector<char> weights;
    for (std::size_t i = 0; i < m_table.size(); ++i) {
        const auto unit = static_cast<char16_t>(i);
        weights.clear();
        appendWeights(QStringView(&unit, 1), weights);
        if (weights.size() <= m_table[i].bytes.size() && unit != middleDot && !isDigit(unit)) {
            std::ranges::copy(weights, m_table[i].bytes.begin());
            m_table[i].size = static_cast<std::uint8_t>(weights.size());
        }
    }
    weights.clear();
    appendWeights(u"1", weights);
    m_numberLead = weights.front();
}

/// Writes the key of a text whose letters are all in the table; for any other writes nothing and returns false.
bool PrimaryKeys::appendFromTable(QStringView text, std::vector<char>& bytes) {
    const std::size_t start = bytes.size();
    for (qsizetype i = 0; i < text.size();) {
        const char16_t unit = text[i].unicode();
        if (isDigit(unit)) {
            m_digits.clear();
            for (; i < text.size() && isDigit(text[i].unicode()); ++i) {
                m_digits.push_back(static_cast<char>(text[i].unicode() - u'0'));
            }
            appendNumber(bytes);
            continue;
        }
        if (unit >= m_table.size() || m_table[unit].size == Weights::unknown) {
            bytes.resize(start);
            return false;
        }
        const Weights& weights = m_table[unit];
        bytes.insert(bytes.end(), weights.bytes.begin(), weights.bytes.begin() + weights.size);
        ++i;
    }
    return true;
}

/// Writes the key of any text by ICU's collation elements.
void PrimaryKeys::appendFromElements(QStringView text, std::vector<char>& bytes) {
    qsizetype written = 0;
    for (qsizetype i = 0; i < text.size();) {
        const qsizetype start = i;
        m_digits.clear();
        for (qsizetype next = i; i < text.size(); i = next) {
            char32_t character = 0;
            U16_NEXT(text.utf16(), next, text.size(), character);
            if (u_charType(static_cast<UChar32>(character)) != U_DECIMAL_DIGIT_NUMBER) {
                break;
            }
            m_digits.push_back(static_cast<char>(u_charDigitValue(static_cast<UChar32>(character))));
        }
        if (m_digits.empty()) {
            U16_FWD_1(text.utf16(), i, text.size());
            continue;
        }
        appendWeights(text.sliced(written, start - written), bytes);
        appendNumber(bytes);
        written = i;
    }
    appendWeights(text.sliced(written), bytes);
}

/// Writes the weights of a text by ICU's collation elements. A weight has up to four bytes, none of them zero, and two
/// in each element; none is the beginning of another, so that weights of several lengths stay in their order when they
/// are compared as bytes (Unicode Technical Standard 10, section 9.2).
void PrimaryKeys::appendWeights(QStringView letters, std::vector<char>& bytes) {
    if (letters.isEmpty()) {
        return;
    }
    UErrorCode status = U_ZERO_ERROR;
    m_elements->setText(icu_support::readOnlyAlias(letters), status);
    while (true) {
        const int32_t element = m_elements->next(status);
        if (element == icu::CollationElementIterator::NULLORDER) {
            break;
        }
        const auto weight = static_cast<std::uint32_t>(icu::CollationElementIterator::primaryOrder(element));
        for (const std::uint32_t byte : {weight >> 8U, weight & 0xFFU}) {
            if (byte != 0) {
                bytes.push_back(static_cast<char>(byte));
            }
        }
    }
    icu_support::require(status, "read collation elements");
}

/// Writes the number of `m_digits`: how many digits it has without the zeros before them, then those, two in a byte.
/// As ICU does, it takes more than 254 digits for several numbers, one behind the other.
void PrimaryKeys::appendNumber(std::vector<char>& bytes) {
    for (auto digit = m_digits.begin(); digit != m_digits.end();) {
        digit = std::find_if(digit, m_digits.end() - 1, [](char value) { return value != 0; });
        const auto count = std::min(m_digits.end() - digit, std::ptrdiff_t(254));
        const auto end = digit + count;
        bytes.push_back(m_numberLead);
        bytes.push_back(static_cast<char>(count));
        while (digit != end) {
            const int high = *digit++;
            const int low = digit == end ? 0 : *digit++;
            bytes.push_back(static_cast<char>(high * 16 + low));
        }
    }
}

/// Writes ICU's key, for a locale that has an order of its own.
void PrimaryKeys::appendSortKey(QStringView text, std::vector<char>& bytes) {
    const std::size_t start = bytes.size();
    // Enough for nearly all titles; what is left over is given back below.
    bytes.resize(start + 4 * static_cast<std::size_t>(text.size()) + 16);
    const auto write = [&] {
        const auto size = m_collator->getSortKey(icu_support::units(text), static_cast<int32_t>(text.size()),
                                                 reinterpret_cast<std::uint8_t*>(bytes.data() + start),
                                                 static_cast<int32_t>(bytes.size() - start));
        return static_cast<std::size_t>(size);
    };
    const std::size_t size = write();
    const bool fits = size <= bytes.size() - start;
    bytes.resize(start + size);
    if (!fits) {
        write();
    }
}

} // namespace quillary
