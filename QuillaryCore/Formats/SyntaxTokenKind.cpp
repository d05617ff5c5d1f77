#include "QuillaryCore/Formats/SyntaxTokenKind.h"

namespace quillary {

using namespace Qt::StringLiterals;

QLatin1StringView rawValue(SyntaxTokenKind kind) {
    switch (kind) {
    case SyntaxTokenKind::keyword:
        return "keyword"_L1;
    case SyntaxTokenKind::string:
        return "string"_L1;
    case SyntaxTokenKind::comment:
        return "comment"_L1;
    case SyntaxTokenKind::number:
        return "number"_L1;
    case SyntaxTokenKind::constant:
        return "constant"_L1;
    case SyntaxTokenKind::tag:
        return "tag"_L1;
    case SyntaxTokenKind::attribute:
        return "attribute"_L1;
    case SyntaxTokenKind::variable:
        return "variable"_L1;
    case SyntaxTokenKind::function:
        return "function"_L1;
    }
    Q_UNREACHABLE();
}

} // namespace quillary
