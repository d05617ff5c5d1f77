#include "QuillaryCore/Notes/FileError.h"

namespace quillary {

QString localizedDescription(const FileError& error) {
    if (const auto* const own = std::get_if<NoteStoreError>(&error)) {
        return own->errorDescription();
    }
    return std::get_if<SystemError>(&error)->localizedDescription();
}

} // namespace quillary
