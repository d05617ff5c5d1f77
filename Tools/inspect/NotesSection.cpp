#include "QuillaryCore/Notes/NoteDates.h"
#include "QuillaryCore/Notes/NoteFormat.h"
#include "QuillaryCore/Notes/NoteNaming.h"
#include "QuillaryCore/Notes/NoteSnippet.h"
#include "QuillaryCore/Notes/NoteSortOrder.h"
#include "Tools/inspect/Sections.h"

namespace quillary::inspect {

namespace {

using namespace Qt::StringLiterals;

QTimeZone timeZone(Arguments& arguments) {
    const QString name = arguments.text(u"timeZone"_s);
    const QTimeZone zone(name.toUtf8());
    if (!zone.isValid()) {
        arguments.fail(u"unknown time zone: "_s + name);
        return QTimeZone::utc();
    }
    return zone;
}

/// Writes the one member that many operations answer with.
auto writesMember(const QString& name) {
    return [name](AnswerWriter& answer, const QString& value) { answer.member(name, value); };
}

Prepared formatFromExtension(Arguments& arguments) {
    struct Answer {
        NoteFormat format;
        bool isRecognized;
    };

    return prepared(
        [extension = arguments.text(u"extension"_s)] {
            return Answer{noteFormatFromExtension(extension), isRecognizedExtension(extension)};
        },
        [](AnswerWriter& answer, const Answer& result) {
            answer.member(u"format", rawValue(result.format));
            answer.member(u"fileExtension", fileExtension(result.format));
            answer.member(u"displayName", displayName(result.format));
            answer.member(u"badge", badge(result.format));
            answer.member(u"supportsPreview", supportsPreview(result.format));
            answer.member(u"recognized", result.isRecognized);
        });
}

Prepared allFormats(Arguments&) {
    return prepared(
        [] {
            QStringList formats;
            for (const NoteFormat format : allNoteFormats) {
                formats.append(rawValue(format));
            }
            return formats;
        },
        [](AnswerWriter& answer, const QStringList& formats) {
            answer.key(u"formats");
            answer.beginArray();
            for (const QString& format : formats) {
                answer.text(format);
            }
            answer.endArray();
        });
}

Prepared defaultTitle(Arguments& arguments) {
    const Moment date = arguments.moment(u"date"_s);
    return prepared([date, zone = timeZone(arguments)] { return NoteNaming::defaultTitle(date, zone); },
                    writesMember(u"title"_s));
}

Prepared sanitizedTitle(Arguments& arguments) {
    return prepared([title = arguments.text(u"title"_s)] { return NoteNaming::sanitizedTitle(title); },
                    writesMember(u"title"_s));
}

Prepared snippet(Arguments& arguments) {
    const qint64 limit = arguments.integer(u"limit"_s);
    if (limit < 0) {
        arguments.fail(u"limit must be at least 0"_s);
    }
    return prepared([text = arguments.text(u"text"_s), limit] { return NoteSnippet::make(text, limit); },
                    writesMember(u"snippet"_s));
}

NoteSortKey sortKey(const QJsonValue& note, Arguments& arguments) {
    if (!note.isObject()) {
        arguments.fail(u"argument of the wrong type: notes"_s);
        return {};
    }
    Arguments members(note.toObject());
    const NoteSortKey key{members.text(u"title"_s), members.moment(u"created"_s), members.moment(u"modified"_s)};
    if (members.error()) {
        arguments.fail(*members.error());
    }
    return key;
}

Prepared sortNotes(Arguments& arguments) {
    const QString rawOrder = arguments.text(u"order"_s);
    const std::optional<NoteSortOrder> order = noteSortOrderFromRawValue(rawOrder);
    if (!order) {
        arguments.fail(u"unknown order: "_s + rawOrder);
    }
    std::vector<NoteSortKey> keys;
    for (const QJsonValue note : arguments.array(u"notes"_s)) {
        keys.push_back(sortKey(note, arguments));
    }
    return prepared([keys = std::move(keys), order = order.value_or(NoteSortOrder::title),
                     locale = arguments.text(u"locale"_s)] { return sortedPositions(keys, order, locale); },
                    [](AnswerWriter& answer, const std::vector<qsizetype>& positions) {
                        answer.key(u"indices");
                        answer.beginArray();
                        for (const qsizetype position : positions) {
                            answer.integer(position);
                        }
                        answer.endArray();
                    });
}

/// One of the two texts that are made of a date.
Operation dateText(QString (*text)(Moment, Moment, const QTimeZone&, const QString&)) {
    return [text](Arguments& arguments) {
        const Moment date = arguments.moment(u"date"_s);
        const Moment now = arguments.moment(u"now"_s);
        return prepared([text, date, now, zone = timeZone(arguments),
                         locale = arguments.text(u"locale"_s)] { return text(date, now, zone, locale); },
                        writesMember(u"text"_s));
    };
}

} // namespace

void addNotesOperations(OperationTable& table) {
    table.insert(u"format.fromExtension"_s, formatFromExtension);
    table.insert(u"format.all"_s, allFormats);
    table.insert(u"naming.defaultTitle"_s, defaultTitle);
    table.insert(u"naming.sanitizedTitle"_s, sanitizedTitle);
    table.insert(u"snippet.make"_s, snippet);
    table.insert(u"sort.notes"_s, sortNotes);
    table.insert(u"dates.short"_s, dateText(&NoteDateText::shortText));
    table.insert(u"dates.group"_s, dateText(&NoteDateGroup::title));
}

} // namespace quillary::inspect
