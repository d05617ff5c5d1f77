#include "QuillaryCore/Platform/SystemError.h"

#include <cerrno>

namespace quillary {

SystemError SystemError::last() {
    return {errno};
}

QString SystemError::localizedDescription() const {
    return qt_error_string(code);
}

} // namespace quillary
