#include "QuillaryCore/Notes/NoteFormat.h"

#include <QCoreApplication>

#include <algorithm>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

struct FormatTraits {
    QLatin1StringView rawValue;
    QLatin1StringView fileExtension;
    const char* displayName;
    QLatin1StringView badge;
    bool supportsPreview;
};

constexpr FormatTraits formatTraits[] = {
    {"plain"_L1, "txt"_L1, QT_TRANSLATE_NOOP("NoteFormat", "Testo"), "TXT"_L1, false},
    {"markdown"_L1, "md"_L1, "Markdown", "MD"_L1, true},
    {"json"_L1, "json"_L1, "JSON", "JSON"_L1, true},
    {"csv"_L1, "csv"_L1, "CSV", "CSV"_L1, true},
    {"html"_L1, "html"_L1, "HTML", "HTML"_L1, false},
    {"css"_L1, "css"_L1, "CSS", "CSS"_L1, false},
    {"javascript"_L1, "js"_L1, "JavaScript", "JS"_L1, false},
    {"php"_L1, "php"_L1, "PHP", "PHP"_L1, false},
};

const FormatTraits& traits(NoteFormat format) {
    return formatTraits[static_cast<std::size_t>(format)];
}

struct KnownExtension {
    QLatin1StringView name;
    NoteFormat format;
};

constexpr KnownExtension knownExtensions[] = {
    {"txt"_L1, NoteFormat::plain},      {"text"_L1, NoteFormat::plain},        {"log"_L1, NoteFormat::plain},
    {"sql"_L1, NoteFormat::plain},      {"xml"_L1, NoteFormat::plain},         {"yaml"_L1, NoteFormat::plain},
    {"yml"_L1, NoteFormat::plain},      {"sh"_L1, NoteFormat::plain},          {"py"_L1, NoteFormat::plain},
    {"md"_L1, NoteFormat::markdown},    {"markdown"_L1, NoteFormat::markdown}, {"mdown"_L1, NoteFormat::markdown},
    {"mkd"_L1, NoteFormat::markdown},   {"json"_L1, NoteFormat::json},         {"geojson"_L1, NoteFormat::json},
    {"csv"_L1, NoteFormat::csv},        {"tsv"_L1, NoteFormat::csv},           {"html"_L1, NoteFormat::html},
    {"htm"_L1, NoteFormat::html},       {"xhtml"_L1, NoteFormat::html},        {"css"_L1, NoteFormat::css},
    {"js"_L1, NoteFormat::javascript},  {"mjs"_L1, NoteFormat::javascript},    {"cjs"_L1, NoteFormat::javascript},
    {"jsx"_L1, NoteFormat::javascript}, {"php"_L1, NoteFormat::php},           {"phtml"_L1, NoteFormat::php},
};

constexpr char16_t valueOf(QChar unit) {
    return unit.unicode();
}

constexpr char16_t valueOf(QLatin1Char unit) {
    return unit.unicode();
}

constexpr char16_t valueOf(char unit) {
    return static_cast<unsigned char>(unit);
}

/// The lower case of an extension of one to eight ASCII characters as one number; 0 for every other. A directory of
/// many files asks for each of them.
template <typename Text>
constexpr quint64 packed(const Text& extension) {
    if (extension.size() > 8) {
        return 0;
    }
    quint64 number = 0;
    for (qsizetype i = 0; i < extension.size(); ++i) {
        const char16_t value = valueOf(extension[i]);
        if (value == 0 || value >= 0x80) {
            return 0;
        }
        const bool isUpper = value >= u'A' && value <= u'Z';
        number = number << 8 | (isUpper ? value + 0x20U : value);
    }
    return number;
}

struct PackedExtension {
    quint64 name;
    NoteFormat format;
};

constexpr auto packedExtensions = [] {
    std::array<PackedExtension, std::size(knownExtensions)> result{};
    std::transform(std::begin(knownExtensions), std::end(knownExtensions), result.begin(),
                   [](const KnownExtension& each) {
                       return PackedExtension{packed(each.name), each.format};
                   });
    std::sort(result.begin(), result.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
    return result;
}();

std::optional<NoteFormat> formatOfKnownExtension(QAnyStringView extension) {
    quint64 name = extension.visit([](auto view) { return packed(view); });
    if (name == 0 && !extension.isEmpty()) {
        // The Kelvin sign becomes a k; there are other letters whose lower case is ASCII.
        name = packed(extension.toString().toLower());
    }
    const auto found = std::lower_bound(packedExtensions.begin(), packedExtensions.end(), name,
                                        [](const PackedExtension& each, quint64 value) { return each.name < value; });
    if (found == packedExtensions.end() || found->name != name) {
        return std::nullopt;
    }
    return found->format;
}

} // namespace

NoteFormat noteFormatFromExtension(QStringView extension) {
    return formatOfKnownExtension(extension).value_or(NoteFormat::plain);
}

std::optional<NoteFormat> noteFormatFromRawValue(QStringView rawValue) {
    for (const NoteFormat format : allNoteFormats) {
        if (rawValue == traits(format).rawValue) {
            return format;
        }
    }
    return std::nullopt;
}

QString rawValue(NoteFormat format) {
    return traits(format).rawValue;
}

QString fileExtension(NoteFormat format) {
    return traits(format).fileExtension;
}

QString displayName(NoteFormat format) {
    const char* const name = traits(format).displayName;
    return format == NoteFormat::plain ? QCoreApplication::translate("NoteFormat", name) : QString::fromLatin1(name);
}

QString badge(NoteFormat format) {
    return traits(format).badge;
}

bool supportsPreview(NoteFormat format) {
    return traits(format).supportsPreview;
}

const QSet<QString>& recognizedExtensions() {
    static const QSet<QString> extensions = [] {
        QSet<QString> result;
        for (const KnownExtension& each : knownExtensions) {
            result.insert(each.name);
        }
        return result;
    }();
    return extensions;
}

bool isRecognizedExtension(QAnyStringView extension) {
    return formatOfKnownExtension(extension).has_value();
}

} // namespace quillary
