#include "Quillary/State/EditorStyle.h"

#include <QCoreApplication>

namespace quillary {

using namespace Qt::StringLiterals;

QString rawValue(EditorFontStyle style) {
    return style == EditorFontStyle::system ? u"system"_s : u"monospaced"_s;
}

EditorFontStyle editorFontStyleFromRawValue(QStringView rawValue) {
    return rawValue == u"system" ? EditorFontStyle::system : EditorFontStyle::monospaced;
}

QString displayName(EditorFontStyle style) {
    return style == EditorFontStyle::system ? QCoreApplication::translate("EditorFontStyle", "Sistema")
                                            : QCoreApplication::translate("EditorFontStyle", "Monospazio");
}

} // namespace quillary
