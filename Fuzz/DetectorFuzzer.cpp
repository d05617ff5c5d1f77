#include "Fuzz/FuzzText.h"
#include "QuillaryCore/Formats/FormatDetector.h"
#include "QuillaryCore/Formats/JSONParser.h"
#include "QuillaryCore/Unicode/GraphemeClusters.h"

#include "Tests/Core/Formats/CSVReference.h"

using namespace quillary;

namespace {

/// The rule of tables as it reads.
bool looksLikeCSV(const QString& text) {
    const qsizetype count = clusterCount(text);
    const QString sample = count >= 20'001 ? clusterPrefix(text, 20'000).toString() : text;
    CSVReference::Rows rows = CSVReference::parse(sample, CSVReference::detectDelimiter(sample)).mid(0, 30);
    if (count >= 20'001 && rows.size() >= 2) {
        rows.removeLast();
    }
    if (rows.size() < 2) {
        return false;
    }
    const qsizetype width = rows.first().size();
    return width >= 2 && (rows.size() != 2 || width != 2) &&
           std::all_of(rows.begin(), rows.end(), [width](const QStringList& row) { return row.size() == width; });
}

std::optional<NoteFormat> detect(const QString& text) {
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty()) {
        return std::nullopt;
    }
    const QString head = clusterPrefix(trimmed, 200).toString().toLower();
    const auto begins = [&](QStringView prefix) {
        return head.startsWith(prefix) && isClusterBoundary(head, prefix.size());
    };
    if (begins(u"<?php")) {
        return NoteFormat::php;
    }
    if (begins(u"<!doctype html") || begins(u"<html")) {
        return NoteFormat::html;
    }
    if ((begins(u"{") || begins(u"[")) && JSONParser::parse(trimmed)) {
        return NoteFormat::json;
    }
    return looksLikeCSV(trimmed) ? std::optional(NoteFormat::csv) : std::nullopt;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString text = fuzz::textFrom(data, size);
    fuzz::require(FormatDetector::detect(text) == detect(text), "the rules detect the same format");
    fuzz::require(FormatDetector::looksLikeCSV(text) == looksLikeCSV(text), "the rules see the same tables");
    // The limits lie beyond what a fuzzer writes: a long first field gets there. It takes a hundred times as long as
    // the rest, so only some of the texts are tried with it.
    if (text.size() % 16 != 0) {
        return 0;
    }
    const QString longer = QString(19'990, u'x') + text;
    fuzz::require(FormatDetector::looksLikeCSV(longer) == looksLikeCSV(longer), "the rules cut the same sample");
    return 0;
}
