#include "QuillaryCore/Formats/JSONPath.h"

#include "QuillaryCore/Formats/JSONFormatter.h"

#include <algorithm>
#include <charconv>
#include <iterator>

namespace quillary {

namespace {

bool isASCIIDigit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}

bool beginsIdentifier(char16_t unit) {
    return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') || unit == u'_' || unit == u'$';
}

} // namespace

// Releasing a parent from within the release of its child would need a stack as deep as the path is long.
JSONPath::Stem::~Stem() {
    StemPointer next = std::move(parent);
    while (next && next->ref.loadRelaxed() == 1) {
        StemPointer above = std::move(next->parent);
        next = std::move(above);
    }
}

JSONPath::JSONPath() {
    append(u"$");
}

JSONPath JSONPath::fromText(QStringView text) {
    JSONPath path{Shared(StemPointer())};
    path.append(text);
    return path;
}

JSONPath JSONPath::appending(QStringView key) const {
    JSONPath path(shared());
    if (isIdentifier(key)) {
        path.append(u".");
        path.append(key);
    } else {
        path.append(u"[");
        path.append(JSONFormatter::quoted(key));
        path.append(u"]");
    }
    return path;
}

JSONPath JSONPath::appending(qint64 index) const {
    JSONPath path(shared());
    path.append(u"[");
    path.appendNumber(index);
    path.append(u"]");
    return path;
}

JSONPath JSONPath::appendingDuplicate(QStringView key, qint64 position) const {
    JSONPath path = appending(key);
    path.append(u"#");
    path.appendNumber(position);
    return path;
}

JSONPath::Shared JSONPath::shared() const {
    return Shared(m_tail.isEmpty() ? m_stem : StemPointer(new Stem(m_stem, m_tail, length(), hash())));
}

QString JSONPath::text() const {
    // The pieces are known from the last to the first.
    QString text(length(), Qt::Uninitialized);
    QChar* end = std::copy_backward(m_tail.begin(), m_tail.end(), text.end());
    for (const Stem* stem = m_stem.data(); stem; stem = stem->parent.data()) {
        end = std::copy_backward(stem->tail.begin(), stem->tail.end(), end);
    }
    return text;
}

QString JSONPath::textToCopy() const {
    QString result = text();
    const auto lastOther =
        std::find_if_not(result.crbegin(), result.crend(), [](QChar each) { return isASCIIDigit(each.unicode()); });
    if (lastOther != result.crbegin() && lastOther != result.crend() && *lastOther == u'#') {
        result.chop(lastOther - result.crbegin() + 1);
    }
    return result;
}

bool JSONPath::isIdentifier(QStringView key) {
    return !key.isEmpty() && beginsIdentifier(key.front().unicode()) &&
           std::all_of(key.begin(), key.end(),
                       [](QChar each) { return beginsIdentifier(each.unicode()) || isASCIIDigit(each.unicode()); });
}

bool operator==(const JSONPath& a, const JSONPath& b) {
    if (a.length() != b.length() || a.hash() != b.hash()) {
        return false;
    }
    // Paths of one tree differ at their ends or not at all, so the comparison begins there, piece by piece.
    const JSONPath::Stem* aStem = a.m_stem.data();
    const JSONPath::Stem* bStem = b.m_stem.data();
    QStringView aPiece = JSONPath::view(a.m_tail);
    QStringView bPiece = JSONPath::view(b.m_tail);
    const auto refill = [](QStringView& piece, const JSONPath::Stem*& stem) {
        if (piece.isEmpty() && stem) {
            piece = JSONPath::view(stem->tail);
            stem = stem->parent.data();
        }
    };
    for (;;) {
        if (aPiece.isEmpty() && bPiece.isEmpty() && aStem == bStem) {
            return true;
        }
        refill(aPiece, aStem);
        refill(bPiece, bStem);
        const qsizetype common = std::min(aPiece.size(), bPiece.size());
        if (aPiece.last(common) != bPiece.last(common)) {
            return false;
        }
        aPiece.chop(common);
        bPiece.chop(common);
    }
}

quint64 JSONPath::hashed(quint64 hash, QStringView text) {
    // A hash of the whole that continues from the hash of its beginning; the factor is that of FNV-1.
    for (const QChar each : text) {
        hash = (hash ^ each.unicode()) * 0x100000001B3U;
    }
    return hash;
}

void JSONPath::appendNumber(qint64 number) {
    char digits[20];
    const char* const end = std::to_chars(std::begin(digits), std::end(digits), number).ptr;
    std::copy(std::cbegin(digits), end, std::back_inserter(m_tail));
}

} // namespace quillary
