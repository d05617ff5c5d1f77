#include "QuillaryCore/Formats/SyntaxLanguage.h"

#include <QString>

#include <algorithm>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

struct FenceName {
    QLatin1StringView name;
    SyntaxLanguage language;
};

constexpr std::array fenceNames = {
    FenceName{"css"_L1, SyntaxLanguage::css},
    FenceName{"scss"_L1, SyntaxLanguage::css},
    FenceName{"less"_L1, SyntaxLanguage::css},
    FenceName{"js"_L1, SyntaxLanguage::javascript},
    FenceName{"javascript"_L1, SyntaxLanguage::javascript},
    FenceName{"jsx"_L1, SyntaxLanguage::javascript},
    FenceName{"mjs"_L1, SyntaxLanguage::javascript},
    FenceName{"cjs"_L1, SyntaxLanguage::javascript},
    FenceName{"ts"_L1, SyntaxLanguage::javascript},
    FenceName{"typescript"_L1, SyntaxLanguage::javascript},
    FenceName{"tsx"_L1, SyntaxLanguage::javascript},
    FenceName{"php"_L1, SyntaxLanguage::php},
    FenceName{"phtml"_L1, SyntaxLanguage::php},
    FenceName{"html"_L1, SyntaxLanguage::html},
    FenceName{"htm"_L1, SyntaxLanguage::html},
    FenceName{"xhtml"_L1, SyntaxLanguage::html},
    FenceName{"xml"_L1, SyntaxLanguage::html},
    FenceName{"svg"_L1, SyntaxLanguage::html},
    FenceName{"vue"_L1, SyntaxLanguage::html},
    FenceName{"json"_L1, SyntaxLanguage::json},
    FenceName{"jsonc"_L1, SyntaxLanguage::json},
    FenceName{"json5"_L1, SyntaxLanguage::json},
    FenceName{"geojson"_L1, SyntaxLanguage::json},
};

} // namespace

QLatin1StringView rawValue(SyntaxLanguage language) {
    switch (language) {
    case SyntaxLanguage::css:
        return "css"_L1;
    case SyntaxLanguage::javascript:
        return "javascript"_L1;
    case SyntaxLanguage::php:
        return "php"_L1;
    case SyntaxLanguage::html:
        return "html"_L1;
    case SyntaxLanguage::json:
        return "json"_L1;
    }
    Q_UNREACHABLE();
}

std::optional<SyntaxLanguage> syntaxLanguageFromRawValue(QStringView text) {
    for (const SyntaxLanguage language : allSyntaxLanguages) {
        if (text == rawValue(language)) {
            return language;
        }
    }
    return std::nullopt;
}

std::optional<SyntaxLanguage> syntaxLanguage(NoteFormat format) {
    switch (format) {
    case NoteFormat::css:
        return SyntaxLanguage::css;
    case NoteFormat::javascript:
        return SyntaxLanguage::javascript;
    case NoteFormat::php:
        return SyntaxLanguage::php;
    case NoteFormat::html:
        return SyntaxLanguage::html;
    case NoteFormat::json:
        return SyntaxLanguage::json;
    case NoteFormat::plain:
    case NoteFormat::markdown:
    case NoteFormat::csv:
        return std::nullopt;
    }
    Q_UNREACHABLE();
}

std::optional<SyntaxLanguage> syntaxLanguageFromFenceName(QStringView fenceName) {
    const QString name = fenceName.toString().toLower();
    const auto found = std::ranges::find_if(fenceNames, [&](const FenceName& each) { return name == each.name; });
    return found == fenceNames.end() ? std::nullopt : std::optional(found->language);
}

} // namespace quillary
