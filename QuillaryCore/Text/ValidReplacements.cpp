#include "QuillaryCore/Text/ValidReplacements.h"

namespace quillary {

namespace {

QString withoutLoneSurrogates(QStringView text) {
    QString result = text.toString();
    for (qsizetype i = 0; i < result.size(); ++i) {
        if (result.at(i).isHighSurrogate() && i + 1 < result.size() && result.at(i + 1).isLowSurrogate()) {
            ++i;
        } else if (result.at(i).isSurrogate()) {
            result[i] = QChar::ReplacementCharacter;
        }
    }
    return result;
}

} // namespace

ValidReplacements::ValidReplacements(TextRange range, QStringView text) {
    add(range, text);
}

ValidReplacements::ValidReplacements(std::span<const TextReplacement> replacements) {
    m_views.reserve(replacements.size());
    for (const auto& [range, text] : replacements) {
        add(range, text);
    }
}

void ValidReplacements::add(TextRange range, QStringView text) {
    if (range.isEmpty() && text.isEmpty()) {
        return;
    }
    m_views.push_back({range, text.isValidUtf16() ? text : m_repaired.emplace_back(withoutLoneSurrogates(text))});
}

} // namespace quillary
