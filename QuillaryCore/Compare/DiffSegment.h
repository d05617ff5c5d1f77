#pragma once

#include "QuillaryCore/Unicode/CanonicalEquality.h"

#include <QStringView>

namespace quillary {

/// A piece of one line; a side's pieces one behind the other are its line. The view is good for as long as the text
/// that was compared is.
struct DiffSegment {
    QStringView text;
    bool isChanged = false;

    friend bool operator==(const DiffSegment& a, const DiffSegment& b) {
        return a.isChanged == b.isChanged && canonicallyEqual(a.text, b.text);
    }
};

} // namespace quillary
