#include "QuillaryCore/Text/TextStorage.h"

#include "QuillaryCore/Text/ClusterIndex.h"
#include "QuillaryCore/Text/LineTerminators.h"
#include "QuillaryCore/Text/TextPages.h"
#include "QuillaryCore/Text/ValidReplacements.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace quillary {

using namespace Qt::StringLiterals;

class TextStorage::Contents {
public:
    Contents(QString text, qsizetype pageUnits) : pages(std::move(text), pageUnits) {}

    TextRange clusterAt(qsizetype offset) { return clusters.clusterAt(pages, offset); }

    TextPages pages;
    ClusterIndex clusters;
    qint64 revision = 0;
    int openBrackets = 0;
    std::vector<TextChange> steps;
    bool isAnnouncing = false;
};

namespace {

bool isWithin(TextRange range, qsizetype length) {
    return range.location >= 0 && range.length >= 0 && range.length <= length - range.location;
}

} // namespace

TextStorage::TextStorage(QString text, QObject* parent)
    : TextStorage(std::move(text), TextPages::defaultPageUnits, parent) {}

TextStorage::TextStorage(QString text, qsizetype pageUnits, QObject* parent)
    : QObject(parent), m_contents(std::make_unique<Contents>(std::move(text), pageUnits)) {}

TextStorage::~TextStorage() {
    Q_EMIT aboutToEnd();
}

qsizetype TextStorage::length() const {
    return m_contents->pages.length();
}

QString TextStorage::text() const {
    return m_contents->pages.text();
}

QString TextStorage::text(TextRange range) const {
    Q_ASSERT(isWithin(range, length()));
    return m_contents->pages.text(range);
}

char16_t TextStorage::unitAt(qsizetype offset) const {
    return m_contents->pages.unitAt(offset);
}

QStringView TextStorage::chunkAt(qsizetype offset) const {
    return m_contents->pages.chunkAt(offset);
}

QStringView TextStorage::chunkBefore(qsizetype offset) const {
    return m_contents->pages.chunkBefore(offset);
}

bool TextStorage::equals(QStringView other) const {
    return m_contents->pages.equals(other);
}

qsizetype TextStorage::lineCount() const {
    return m_contents->pages.lineCount();
}

qsizetype TextStorage::lineAt(qsizetype offset) const {
    return m_contents->pages.lineAt(offset);
}

TextRange TextStorage::lineRange(qsizetype line) const {
    const qsizetype start = m_contents->pages.lineStart(line);
    return {start, m_contents->pages.lineStart(line + 1) - start};
}

TextRange TextStorage::lineContents(qsizetype line) const {
    TextRange range = lineRange(line);
    // CR LF lies in one piece of memory, so the line's last piece tells how the line ends.
    const QStringView lastPiece = chunkBefore(range.end());
    range.length -= trailingTerminatorLength(lastPiece.last(std::min(range.length, lastPiece.size())));
    return range;
}

qsizetype TextStorage::clusterBoundaryAtOrBefore(qsizetype offset) const {
    return offset == length() ? offset : m_contents->clusterAt(offset).location;
}

qsizetype TextStorage::clusterBoundaryAtOrAfter(qsizetype offset) const {
    return clusterBoundaryAtOrBefore(offset) == offset ? offset : nextCluster(offset);
}

qsizetype TextStorage::nextCluster(qsizetype offset) const {
    return offset == length() ? offset : m_contents->clusterAt(offset).end();
}

qsizetype TextStorage::previousCluster(qsizetype offset) const {
    return offset == 0 ? 0 : m_contents->clusterAt(offset - 1).location;
}

QString TextStorage::terminatorForNewLineAt(qsizetype offset) const {
    const qsizetype line = lineAt(offset);
    for (const qsizetype candidate : {line, line - 1}) {
        if (candidate < 0) {
            break;
        }
        const TextRange whole = lineRange(candidate);
        const TextRange contents = lineContents(candidate);
        if (contents.length < whole.length) {
            return text({contents.end(), whole.length - contents.length});
        }
    }
    return u"\n"_s;
}

qint64 TextStorage::revision() const {
    return m_contents->revision;
}

void TextStorage::replace(TextRange range, QStringView text) {
    replaceExactly(ValidReplacements(range, text).views());
}

void TextStorage::replaceAll(std::span<const TextReplacement> replacements) {
    replaceExactly(ValidReplacements(replacements).views());
}

void TextStorage::setText(QString text) {
    const TextChange change{0, length(), text.size()};
    if (change.removedLength == 0 && change.insertedLength == 0) {
        return;
    }
    Q_EMIT aboutToChange();
    m_contents->pages.setText(std::move(text));
    m_contents->clusters.forgetFrom(0);
    m_contents->steps.push_back(change);
    countChange();
}

void TextStorage::replaceExactly(std::span<const TextReplacementView> replacements) {
    if (replacements.empty()) {
        return;
    }
    Q_EMIT aboutToChange();
    std::vector<TextChange>& steps = m_contents->steps;
    qsizetype behind = 0;
    qsizetype growth = 0;
    for (const auto& [range, text] : replacements) {
        Q_ASSERT(isWithin(range, length()) && range.location >= behind);
        behind = range.end();
        steps.push_back({range.location + growth, range.length, text.size()});
        growth += text.size() - range.length;
    }
    m_contents->pages.replace(replacements);
    m_contents->clusters.forgetFrom(replacements.front().range.location);
    countChange();
}

void TextStorage::beginEditing() {
    ++m_contents->openBrackets;
}

void TextStorage::endEditing() {
    Q_ASSERT(m_contents->openBrackets > 0);
    if (--m_contents->openBrackets == 0 && !m_contents->steps.empty()) {
        emitChanged();
    }
}

std::span<const TextChange> TextStorage::steps() const {
    return m_contents->isAnnouncing ? std::span<const TextChange>(m_contents->steps) : std::span<const TextChange>();
}

void TextStorage::countChange() {
    Q_ASSERT(!m_contents->isAnnouncing);
    ++m_contents->revision;
    if (m_contents->openBrackets == 0) {
        emitChanged();
    }
}

void TextStorage::emitChanged() {
    const std::span<const TextChange> steps = m_contents->steps;
    TextChange covering = steps.front();
    for (const TextChange& step : steps.subspan(1)) {
        covering = covering.followedBy(step);
    }
    m_contents->isAnnouncing = true;
    Q_EMIT changed(covering);
    m_contents->isAnnouncing = false;
    m_contents->steps.clear();
}

} // namespace quillary
