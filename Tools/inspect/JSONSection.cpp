#include "QuillaryCore/Formats/JSONExpansion.h"
#include "QuillaryCore/Formats/JSONFormatter.h"
#include "QuillaryCore/Formats/JSONParser.h"
#include "QuillaryCore/Formats/JSONTree.h"
#include "Tools/inspect/Sections.h"

namespace quillary::inspect {

namespace {

using namespace Qt::StringLiterals;

template <typename T>
using JSONResult = Result<T, JSONParseError>;

QStringView jsonKindName(const JSONValue& value) {
    switch (value.kind()) {
    case JSONValue::Kind::object:
        return u"object";
    case JSONValue::Kind::array:
        return u"array";
    case JSONValue::Kind::string:
        return u"string";
    case JSONValue::Kind::number:
        return u"number";
    case JSONValue::Kind::boolean:
        return u"bool";
    case JSONValue::Kind::null:
        break;
    }
    return u"null";
}

/// Calls itself for each level, of which the parser allows a hundred.
void writeJSONValue(AnswerWriter& answer, const JSONValue& value) {
    answer.beginObject();
    answer.member(u"t", jsonKindName(value));
    switch (value.kind()) {
    case JSONValue::Kind::object:
        answer.key(u"m");
        answer.beginArray();
        for (const JSONMember& member : value.members()) {
            answer.beginArray();
            answer.text(member.key);
            writeJSONValue(answer, member.value);
            answer.endArray();
        }
        answer.endArray();
        break;
    case JSONValue::Kind::array:
        answer.key(u"e");
        answer.beginArray();
        for (const JSONValue& element : value.elements()) {
            writeJSONValue(answer, element);
        }
        answer.endArray();
        break;
    case JSONValue::Kind::string:
        answer.member(u"s", value.string());
        break;
    case JSONValue::Kind::number:
        answer.member(u"n", value.number());
        break;
    case JSONValue::Kind::boolean:
        answer.member(u"b", value.boolean());
        break;
    case JSONValue::Kind::null:
        break;
    }
    answer.endObject();
}

void writeParseFailure(AnswerWriter& answer, const JSONParseError& error) {
    answer.key(u"failure");
    answer.beginObject();
    answer.member(u"message", error.message());
    answer.member(u"line", error.line());
    answer.member(u"column", error.column());
    answer.member(u"description", error.description());
    answer.endObject();
}

/// Binds a computation on the parsed text to the writer of its result, or of the failure to parse it.
template <typename Compute, typename Write>
Prepared preparedOnValue(Arguments& arguments, Compute compute, Write write) {
    using Value = std::invoke_result_t<Compute&, const JSONValue&>;
    return prepared(
        [text = arguments.text(u"text"_s), compute = std::move(compute)]() -> JSONResult<Value> {
            const JSONResult<JSONValue> value = JSONParser::parse(text);
            if (!value) {
                return value.error();
            }
            return compute(*value);
        },
        [write = std::move(write)](AnswerWriter& answer, const JSONResult<Value>& result) {
            if (result) {
                write(answer, *result);
            } else {
                writeParseFailure(answer, result.error());
            }
        });
}

void writeJSONText(AnswerWriter& answer, const QString& text) {
    answer.member(u"text", text);
}

Prepared parseJSON(Arguments& arguments) {
    return preparedOnValue(
        arguments, [](const JSONValue& value) { return value; },
        [](AnswerWriter& answer, const JSONValue& value) {
            answer.key(u"value");
            writeJSONValue(answer, value);
        });
}

Prepared prettyJSON(Arguments& arguments) {
    constexpr qint64 widest = 1000;
    const qint64 indent = arguments.integer(u"indent"_s);
    if (indent > widest) {
        arguments.fail(u"indent is greater than %1"_s.arg(widest));
    }
    return preparedOnValue(
        arguments, [indent](const JSONValue& value) { return JSONFormatter::prettyPrinted(value, indent); },
        writeJSONText);
}

Prepared minifyJSON(Arguments& arguments) {
    return preparedOnValue(arguments, JSONFormatter::minified, writeJSONText);
}

Prepared quotedJSON(Arguments& arguments) {
    return prepared([text = arguments.text(u"text"_s)] { return JSONFormatter::quoted(text); }, writeJSONText);
}

void writeTreeLabel(AnswerWriter& answer, const JSONTreeRow::Label& label) {
    answer.beginObject();
    if (const auto* key = std::get_if<QString>(&label)) {
        answer.member(u"key", *key);
    } else if (const auto* index = std::get_if<qint64>(&label)) {
        answer.member(u"index", *index);
    } else {
        answer.member(u"root", true);
    }
    answer.endObject();
}

void writeTreeRows(AnswerWriter& answer, const JSONTreeRows& rows) {
    answer.key(u"rows");
    answer.beginArray();
    for (const JSONTreeRow row : rows) {
        answer.beginObject();
        answer.member(u"id", row.id());
        answer.member(u"depth", row.depth());
        answer.key(u"label");
        writeTreeLabel(answer, row.label());
        answer.member(u"kind", jsonKindName(row.value()));
        answer.member(u"expanded", row.isExpanded());
        answer.endObject();
    }
    answer.endArray();
}

JSONExpansion treeExpansion(Arguments& arguments) {
    JSONExpansion result;
    result.defaultDepth = arguments.integer(u"defaultDepth"_s);
    const QJsonObject overrides = arguments.object(u"overrides"_s);
    for (auto each = overrides.begin(); each != overrides.end(); ++each) {
        if (!each->isBool()) {
            arguments.fail(u"argument of the wrong type: overrides"_s);
        }
        result.overrides.insert(JSONPath::fromText(each.key()), each->toBool());
    }
    return result;
}

Prepared treeRows(Arguments& arguments) {
    return preparedOnValue(
        arguments,
        [expansion = treeExpansion(arguments)](const JSONValue& value) {
            return JSONTree::rows(
                value, [&](const JSONPath& path, qint64 depth) { return expansion.isExpanded(path, depth); });
        },
        writeTreeRows);
}

Prepared treePath(Arguments& arguments) {
    const JSONPath parent = JSONPath::fromText(arguments.text(u"parent"_s));
    const auto write = [](AnswerWriter& answer, const JSONPath& result) { answer.member(u"path", result.text()); };
    if (arguments.has(u"key"_s) == arguments.has(u"index"_s)) {
        arguments.fail(u"either key or index is wanted"_s);
    }
    if (arguments.has(u"key"_s)) {
        return prepared([parent, key = arguments.text(u"key"_s)] { return parent.appending(key); }, write);
    }
    return prepared([parent, index = arguments.integer(u"index"_s)] { return parent.appending(index); }, write);
}

Prepared treePathToCopy(Arguments& arguments) {
    return prepared([id = JSONPath::fromText(arguments.text(u"id"_s))] { return id.textToCopy(); }, writeJSONText);
}

} // namespace

void addJSONOperations(OperationTable& table) {
    table.insert(u"json.parse"_s, parseJSON);
    table.insert(u"json.pretty"_s, prettyJSON);
    table.insert(u"json.minify"_s, minifyJSON);
    table.insert(u"json.quoted"_s, quotedJSON);
    table.insert(u"json.rows"_s, treeRows);
    table.insert(u"json.path"_s, treePath);
    table.insert(u"json.copyPath"_s, treePathToCopy);
}

} // namespace quillary::inspect
