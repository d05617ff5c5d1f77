#include "QuillaryCore/Formats/JSONFormatter.h"
#include "QuillaryCore/Formats/JSONParser.h"
#include "QuillaryCore/Formats/JSONTree.h"

#include "Tests/Core/Formats/JSONReference.h"

#include <QSet>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

using namespace quillary;

namespace {

void require(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "violated: %s\n", what);
        std::abort();
    }
}

void checkRoundTrips(const JSONValue& value) {
    const QString minified = JSONFormatter::minified(value);
    const QString pretty = JSONFormatter::prettyPrinted(value, 2);
    const auto fromMinified = JSONParser::parse(minified);
    const auto fromPretty = JSONParser::parse(pretty);
    require(fromMinified && *fromMinified == value, "a minified value reads the same");
    require(fromPretty && *fromPretty == value, "a pretty-printed value reads the same");
    require(JSONFormatter::minified(*fromPretty) == minified, "minifying undoes pretty-printing");
    require(JSONFormatter::prettyPrinted(*fromMinified, 2) == pretty, "pretty-printing undoes minifying");
}

void checkRows(const JSONValue& value) {
    qsizetype asked = 0;
    const auto rows = JSONTree::rows(value, [&](const JSONPath&, qint64) { return ++asked % 7 != 0; });
    qsizetype expected = 1;
    qsizetype containers = 0;
    qsizetype idUnits = 0;
    QSet<JSONPath> paths;
    for (const JSONTreeRow row : rows) {
        expected += row.isExpanded() ? row.value().childCount() : 0;
        containers += row.value().isContainer() ? 1 : 0;
        const JSONPath path = row.path();
        require(!paths.contains(path), "paths are unique");
        paths.insert(path);
        if (idUnits < 100'000) {
            const QString id = row.id();
            idUnits += id.size();
            require(JSONPath::fromText(id) == path, "a path is equal to its text");
        }
    }
    require(rows.size() == expected, "the children of opened containers have rows");
    require(asked == containers, "each shown container is asked about once");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto* const bytes = reinterpret_cast<const char*>(data);
    // Raw data, so that reading beyond the end is seen.
    const auto value = JSONParser::parse(QByteArray::fromRawData(bytes, static_cast<qsizetype>(size)));
    const std::string expected = JSONReference::parsed(std::string(bytes, size));
    if (!value) {
        require(value.error().description().toStdString() == expected, "the fault is the plain reader's");
        return 0;
    }
    require(JSONReference::outline(*value) == expected, "the value is the plain reader's");
    checkRoundTrips(*value);
    checkRows(*value);
    return 0;
}
