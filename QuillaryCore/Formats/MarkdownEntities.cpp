#include "QuillaryCore/Formats/MarkdownEntities.h"

#include "QuillaryCore/Formats/MarkdownEntityTable.h"

#include <algorithm>
#include <string_view>

namespace quillary::MarkdownEntities {

namespace {

static_assert(std::ranges::is_sorted(markdownEntities, {}, &MarkdownEntity::name));

constexpr char32_t replacementCharacter = 0xFFFD;

QString numbered(QStringView digits, int base) {
    bool isNumber = false;
    const uint number = digits.toUInt(&isNumber, base);
    const bool isScalar = isNumber && number != 0 && number <= 0x10FFFF && !QChar::isSurrogate(number);
    const char32_t scalar = isScalar ? number : replacementCharacter;
    return QString::fromUcs4(&scalar, 1);
}

} // namespace

std::optional<QString> text(QStringView entity) {
    const QStringView name = entity.sliced(1, entity.size() - 2);
    if (name.startsWith(u"#x", Qt::CaseInsensitive)) {
        return numbered(name.sliced(2), 16);
    }
    if (name.startsWith(u'#')) {
        return numbered(name.sliced(1), 10);
    }
    const QByteArray bytes = name.toLatin1();
    const std::string_view wanted(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    const auto* found = std::ranges::lower_bound(markdownEntities, wanted, {}, &MarkdownEntity::name);
    if (found == std::end(markdownEntities) || found->name != wanted) {
        return std::nullopt;
    }
    return QString::fromUtf16(found->units.data(), found->units[1] == 0 ? 1 : 2);
}

} // namespace quillary::MarkdownEntities
