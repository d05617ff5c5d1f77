#include "QuillaryCore/Find/FoldedText.h"

#include <unicode/uchar.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace quillary::case_folding {

namespace {

/// The folding of one code point by ICU.
Folding foldingOf(UChar32 codePoint) {
    std::array<char16_t, 2> units{};
    int32_t length = 0;
    U16_APPEND_UNSAFE(units.data(), length, codePoint);
    Folding folding(4);
    UErrorCode status = U_ZERO_ERROR;
    folding.resize(u_strFoldCase(folding.data(), 4, units.data(), length, U_FOLD_CASE_DEFAULT, &status));
    return folding;
}

/// The foldings of the basic plane, which are looked up for every letter of a text.
struct Table {
    /// Where one unit stands for the folding; 0 for those that have more, and for surrogates.
    std::array<char16_t, 0x10000> single{};
    /// Units with another unit that they fold to, by the latter.
    std::vector<std::pair<char16_t, char16_t>> variants;
    std::vector<QString> longer;

    Table() {
        for (char32_t c = 1; c < single.size(); ++c) {
            if (U_IS_SURROGATE(c)) {
                continue;
            }
            const Folding folding = foldingOf(static_cast<UChar32>(c));
            if (folding.size() > 1) {
                longer.push_back(QString::fromUtf16(folding.data(), folding.size()));
                continue;
            }
            single[c] = folding.front();
            if (folding.front() != c) {
                variants.emplace_back(folding.front(), static_cast<char16_t>(c));
            }
        }
        std::sort(variants.begin(), variants.end());
    }
};

const Table& table() {
    static const Table table;
    return table;
}

} // namespace

std::span<const char16_t, 0x10000> singleFoldings() {
    return table().single;
}

Folding foldNext(QStringView text, qsizetype& position) {
    const char16_t unit = text[position].unicode();
    if (const char16_t single = table().single[unit]; single != 0) {
        ++position;
        return {single};
    }
    UChar32 c = 0;
    U16_NEXT(text.utf16(), position, text.size(), c);
    return foldingOf(c);
}

Folding foldPrevious(QStringView text, qsizetype& position) {
    UChar32 c = 0;
    U16_PREV(text.utf16(), 0, position, c);
    qsizetype start = position;
    return foldNext(text, start);
}

QString fold(QStringView text) {
    QString folded;
    folded.reserve(text.size());
    for (qsizetype position = 0; position < text.size();) {
        const Folding folding = foldNext(text, position);
        folded.append(QStringView(folding.data(), folding.size()));
    }
    return folded;
}

QVarLengthArray<char16_t, 4> unitsThatFoldTo(char16_t unit) {
    QVarLengthArray<char16_t, 4> units;
    if (table().single[unit] == unit && !U16_IS_SURROGATE(unit)) {
        units.append(unit);
    }
    const auto& variants = table().variants;
    for (auto variant = std::lower_bound(variants.begin(), variants.end(), std::pair(unit, char16_t{0}));
         variant != variants.end() && variant->first == unit; ++variant) {
        units.append(variant->second);
    }
    return units;
}

std::span<const QString> longFoldings() {
    return table().longer;
}

} // namespace quillary::case_folding
