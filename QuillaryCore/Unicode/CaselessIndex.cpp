#include "QuillaryCore/Unicode/CaselessIndex.h"

#include "QuillaryCore/Unicode/CaselessForm.h"
#include "QuillaryCore/Unicode/Icu.h"

#include <unicode/uniset.h>

#include <algorithm>
#include <limits>

namespace quillary {

const CaselessIndex& CaselessIndex::instance() {
    static const CaselessIndex index;
    return index;
}

CaselessIndex::CaselessIndex() {
    UErrorCode status = U_ZERO_ERROR;
    const icu::UnicodeSet changing(u"[[[:Changes_When_Casefolded:][:NFD_Quick_Check=No:]]-[\\uAC00-\\uD7A3]]", status);
    icu_support::require(status, "list the characters with case or composition");
    m_entries.reserve(static_cast<std::size_t>(changing.size()));
    for (int32_t range = 0; range < changing.getRangeCount(); ++range) {
        for (UChar32 character = changing.getRangeStart(range); character <= changing.getRangeEnd(range); ++character) {
            add(static_cast<char32_t>(character));
        }
    }
    addHolders();
}

void CaselessIndex::add(char32_t character) {
    const qsizetype offset = m_forms.size();
    const QString text = QString::fromUcs4(&character, 1);
    appendCaselessForm(text, CaseFolding::ordinary, m_forms);
    if (QStringView(m_forms).sliced(offset) == text) {
        m_forms.truncate(offset);
        return;
    }
    Q_ASSERT(m_forms.size() <= std::numeric_limits<quint16>::max());
    m_entries.push_back({character, static_cast<quint16>(offset), static_cast<quint16>(m_forms.size() - offset)});
}

void CaselessIndex::addHolders() {
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        for (const uint part : formOf(m_entries[i]).toUcs4()) {
            m_holders.push_back({part, static_cast<quint16>(i)});
        }
    }
    const auto key = [](const Holder& holder) { return std::pair(holder.part, holder.entry); };
    std::sort(m_holders.begin(), m_holders.end(), [&](const Holder& a, const Holder& b) { return key(a) < key(b); });
    const auto areSame = [&](const Holder& a, const Holder& b) { return key(a) == key(b); };
    m_holders.erase(std::unique(m_holders.begin(), m_holders.end(), areSame), m_holders.end());
}

QStringView CaselessIndex::form(char32_t character) const {
    const auto entry = std::lower_bound(m_entries.begin(), m_entries.end(), character,
                                        [](const Entry& each, char32_t value) { return each.character < value; });
    return entry != m_entries.end() && entry->character == character ? formOf(*entry) : QStringView();
}

std::vector<CaselessIndex::Holder>::const_iterator CaselessIndex::firstHolder(char32_t part) const {
    return std::lower_bound(m_holders.begin(), m_holders.end(), part,
                            [](const Holder& each, char32_t value) { return each.part < value; });
}

} // namespace quillary
