#include "QuillaryCore/Solo/SoloError.h"

#include <QCoreApplication>

namespace quillary {

QString SoloError::errorDescription() const {
    switch (m_kind) {
    case Kind::notRunning:
        return QCoreApplication::translate("SoloError", "Solo non risponde. È aperto?\n") + m_message;
    case Kind::sendFailed:
        return QCoreApplication::translate("SoloError", "Invio non riuscito: ") + m_message;
    case Kind::notInstalled:
        return QCoreApplication::translate("SoloError", "Solo non è installato (manca la riga di comando «solo»).");
    case Kind::unexpectedResponse:
        return QCoreApplication::translate("SoloError", "Risposta di Solo non riconosciuta.");
    case Kind::timedOut:
        break;
    }
    return QCoreApplication::translate("SoloError", "Solo non ha risposto in tempo.");
}

} // namespace quillary
