#include "QuillaryCore/Find/TextSearchError.h"

#include <QCoreApplication>

namespace quillary {

QString description(TextSearchError error) {
    switch (error) {
    case TextSearchError::emptyQuery:
        return QCoreApplication::translate("quillary::TextSearch", "Nessun testo da cercare");
    case TextSearchError::invalidPattern:
        return QCoreApplication::translate("quillary::TextSearch", "Espressione regolare non valida");
    }
    Q_UNREACHABLE();
}

} // namespace quillary
