#include "QuillaryCore/Formats/FormatDetector.h"

#include "QuillaryCore/Formats/CSVParser.h"
#include "QuillaryCore/Formats/JSONParser.h"
#include "QuillaryCore/Unicode/GraphemeClusters.h"

#include <algorithm>

namespace quillary::FormatDetector {

namespace {

constexpr qsizetype sampleCharacters = 20'000;
constexpr qsizetype sampleRows = 30;

/// Whether the text begins with the characters of `prefix`, ASCII, in any case: a combining mark behind the last makes
/// that another character.
bool beginsWith(QStringView text, QStringView prefix) {
    const qsizetype length = prefix.size();
    return text.startsWith(prefix, Qt::CaseInsensitive) &&
           isClusterBoundary(text.first(std::min(text.size(), length + 2)), length);
}

} // namespace

std::optional<NoteFormat> detect(QStringView text) {
    const QStringView trimmed = text.trimmed();
    if (trimmed.isEmpty()) {
        return std::nullopt;
    }
    if (beginsWith(trimmed, u"<?php")) {
        return NoteFormat::php;
    }
    if (beginsWith(trimmed, u"<!doctype html") || beginsWith(trimmed, u"<html")) {
        return NoteFormat::html;
    }
    if ((beginsWith(trimmed, u"{") || beginsWith(trimmed, u"[")) && JSONParser::parse(trimmed)) {
        return NoteFormat::json;
    }
    return looksLikeCSV(trimmed) ? std::optional(NoteFormat::csv) : std::nullopt;
}

bool looksLikeCSV(QStringView text) {
    const QStringView sample = clusterPrefix(text, sampleCharacters);
    const bool isCut = sample.size() < text.size();
    const CSVTable table = CSVParser::parse(QString::fromRawData(sample.data(), sample.size()));

    qsizetype rows = std::min(table.rowCount(), sampleRows);
    if (isCut && rows >= 2) {
        // The sample may have cut its last row in two. The limit came first, so that a long table loses a whole row.
        --rows;
    }
    if (rows < 2) {
        return false;
    }
    const qsizetype width = table.row(0).size();
    if (width < 2 || (rows == 2 && width == 2)) {
        return false;
    }
    for (qsizetype row = 1; row < rows; ++row) {
        if (table.row(row).size() != width) {
            return false;
        }
    }
    return true;
}

} // namespace quillary::FormatDetector
