#include "QuillaryCore/Notes/NoteStoreError.h"

#include "QuillaryCore/Notes/ByteCountText.h"
#include "QuillaryCore/Platform/FilePath.h"

#include <QCoreApplication>

namespace quillary {

QString NoteStoreError::errorDescription() const {
    const QString shownName = FilePath::displayText(m_name);
    switch (m_kind) {
    case Kind::fileTooLarge:
        return QCoreApplication::translate("NoteStoreError", "«%1» è troppo grande per essere aperto (%2).")
            .arg(shownName, byteCountText(m_bytes));
    case Kind::creationFailed:
        return QCoreApplication::translate("NoteStoreError", "Impossibile creare «%1».").arg(shownName);
    case Kind::invalidName:
        return QCoreApplication::translate("NoteStoreError", "Il nome non è valido.");
    }
    return {};
}

} // namespace quillary
