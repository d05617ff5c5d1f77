#include "QuillaryCore/Compare/TextDiff.h"

#include "Fuzz/FuzzText.h"
#include "QuillaryCore/Compare/DiffDisplayItem.h"

#include "Tests/Core/Compare/ShortestScriptReference.h"

#include <cstring>

using namespace quillary;

namespace {

std::vector<QString> forms(const QList<QStringView>& lines) {
    std::vector<QString> result;
    for (const QStringView line : lines) {
        result.push_back(canonicalForm(line));
    }
    return result;
}

void checkSide(const DiffSide& side, const QList<QStringView>& lines, qsizetype index) {
    fuzz::require(index < lines.size() && side.number == index + 1, "sides are numbered");
    QString line;
    for (const DiffSegment& segment : side.segments) {
        line += segment.text;
    }
    fuzz::require(line == lines[index], "segments are the line");
}

void checkItems(const DiffRows& rows) {
    qsizetype next = 0;
    for (const DiffDisplayItem& item : DiffDisplayItem::items(rows.kinds(), DiffDisplayItem::shownContext, {})) {
        fuzz::require(item.rowId() == next, "items follow one another");
        next += item.count();
    }
    fuzz::require(next == rows.size(), "items are all rows");
}

} // namespace

/// The old text, a byte of zero bits, and the new text.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto* const border = size == 0 ? nullptr : static_cast<const std::uint8_t*>(std::memchr(data, 0, size));
    const std::size_t oldSize = border == nullptr ? size / 2 : static_cast<std::size_t>(border - data);
    const std::size_t newStart = border == nullptr ? oldSize : oldSize + 1;
    const QString oldText = fuzz::textFrom(data, oldSize);
    const QString newText = fuzz::textFrom(data + newStart, size - newStart);

    const QList<QStringView> oldLines = TextDiff::lines(oldText);
    const QList<QStringView> newLines = TextDiff::lines(newText);
    const TextDiffResult result = TextDiff::compare(oldText, newText);
    qsizetype oldIndex = 0;
    qsizetype newIndex = 0;
    std::size_t unchanged = 0;
    for (const DiffRow& row : result.rows) {
        if (row.oldSide) {
            checkSide(*row.oldSide, oldLines, oldIndex++);
        }
        if (row.newSide) {
            checkSide(*row.newSide, newLines, newIndex++);
        }
        unchanged += row.kind == DiffRow::Kind::unchanged ? 1 : 0;
    }
    fuzz::require(oldIndex == oldLines.size() && newIndex == newLines.size(), "all lines are there");
    if (oldLines.size() * newLines.size() < 100'000) {
        fuzz::require(unchanged == longestCommonSubsequence(forms(oldLines), forms(newLines)),
                      "the script is shortest");
    }
    checkItems(result.rows);
    return 0;
}
