#include "QuillaryCore/Compare/DiffDisplayItem.h"
#include "QuillaryCore/Compare/TextDiff.h"
#include "Tools/inspect/Sections.h"

#include <QSet>

namespace quillary::inspect {

namespace {

using namespace Qt::StringLiterals;

constexpr std::array rowKinds = {DiffRow::Kind::unchanged, DiffRow::Kind::changed, DiffRow::Kind::removed,
                                 DiffRow::Kind::added};

QString rawValue(DiffRow::Kind kind) {
    switch (kind) {
    case DiffRow::Kind::unchanged:
        return u"unchanged"_s;
    case DiffRow::Kind::changed:
        return u"changed"_s;
    case DiffRow::Kind::removed:
        return u"removed"_s;
    case DiffRow::Kind::added:
        return u"added"_s;
    }
    return QString();
}

template <typename Segments>
void writeSegments(AnswerWriter& answer, QStringView name, const Segments& segments) {
    answer.key(name);
    answer.beginArray();
    for (const DiffSegment& segment : segments) {
        answer.beginArray();
        answer.text(segment.text);
        answer.boolean(segment.isChanged);
        answer.endArray();
    }
    answer.endArray();
}

void writeSide(AnswerWriter& answer, QStringView name, const std::optional<DiffSide>& side) {
    if (!side) {
        answer.nullMember(name);
        return;
    }
    answer.key(name);
    answer.beginObject();
    answer.member(u"number", side->number);
    writeSegments(answer, u"segments", side->segments);
    answer.endObject();
}

void writeResult(AnswerWriter& answer, const TextDiffResult& result) {
    answer.key(u"rows");
    answer.beginArray();
    for (const DiffRow& row : result.rows) {
        answer.beginObject();
        answer.member(u"id", row.id);
        answer.member(u"kind", rawValue(row.kind));
        writeSide(answer, u"old", row.oldSide);
        writeSide(answer, u"new", row.newSide);
        answer.endObject();
    }
    answer.endArray();
    answer.key(u"stats");
    answer.beginObject();
    answer.member(u"added", result.stats.added);
    answer.member(u"removed", result.stats.removed);
    answer.member(u"changed", result.stats.changed);
    answer.endObject();
}

Prepared diffCompare(Arguments& arguments) {
    const QString oldText = arguments.text(u"old"_s);
    const QString newText = arguments.text(u"new"_s);
    return prepared([=] { return TextDiff::compare(oldText, newText); }, writeResult);
}

// The operations below give views, so that the text stays with them until the answer is written.

Prepared diffLines(Arguments& arguments) {
    const auto text = std::make_shared<const QString>(arguments.text(u"text"_s));
    return prepared([text] { return TextDiff::lines(*text); },
                    [](AnswerWriter& answer, const QList<QStringView>& lines) { answer.textsMember(u"lines", lines); });
}

Prepared diffTokens(Arguments& arguments) {
    const auto text = std::make_shared<const QString>(arguments.text(u"text"_s));
    return prepared(
        [text] { return TextDiff::tokens(*text); },
        [](AnswerWriter& answer, const QList<QStringView>& tokens) { answer.textsMember(u"tokens", tokens); });
}

Prepared diffWords(Arguments& arguments) {
    const auto oldLine = std::make_shared<const QString>(arguments.text(u"old"_s));
    const auto newLine = std::make_shared<const QString>(arguments.text(u"new"_s));
    return prepared([=] { return TextDiff::wordSegments(*oldLine, *newLine); },
                    [](AnswerWriter& answer, const TextDiff::WordSegments& segments) {
                        writeSegments(answer, u"old", segments.oldSegments);
                        writeSegments(answer, u"new", segments.newSegments);
                    });
}

std::vector<DiffRow::Kind> kindsArgument(Arguments& arguments) {
    std::vector<DiffRow::Kind> kinds;
    for (const QString& name : arguments.texts(u"kinds"_s)) {
        const auto* const kind =
            std::find_if(rowKinds.begin(), rowKinds.end(), [&](DiffRow::Kind each) { return rawValue(each) == name; });
        if (kind == rowKinds.end()) {
            arguments.fail(u"unknown kind: "_s + name);
            break;
        }
        kinds.push_back(*kind);
    }
    return kinds;
}

Prepared diffItems(Arguments& arguments) {
    const std::vector<DiffRow::Kind> kinds = kindsArgument(arguments);
    const qint64 context = arguments.integer(u"context"_s);
    const QList<qint64> ids = arguments.integers(u"expanded"_s);
    const QSet<qsizetype> expanded(ids.begin(), ids.end());
    return prepared([=] { return DiffDisplayItem::items(kinds, context, expanded); },
                    [](AnswerWriter& answer, const std::vector<DiffDisplayItem>& items) {
                        answer.key(u"items");
                        answer.beginArray();
                        for (const DiffDisplayItem& item : items) {
                            const bool isFold = item.kind() == DiffDisplayItem::Kind::collapsed;
                            answer.text(isFold ? item.id() + u':' + QString::number(item.count()) : item.id());
                        }
                        answer.endArray();
                    });
}

} // namespace

void addDiffOperations(OperationTable& table) {
    table.insert(u"diff.compare"_s, diffCompare);
    table.insert(u"diff.lines"_s, diffLines);
    table.insert(u"diff.tokens"_s, diffTokens);
    table.insert(u"diff.words"_s, diffWords);
    table.insert(u"diff.items"_s, diffItems);
}

} // namespace quillary::inspect
