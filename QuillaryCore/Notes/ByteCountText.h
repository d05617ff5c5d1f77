#pragma once

#include <QString>

namespace quillary {

/// A size for people: decimal, in the largest unit that leaves a whole number, with at most as many decimals as the
/// unit is worth ("512 byte", "34 KB", "33,6 MB", "1,25 GB"), in the interface's locale.
QString byteCountText(qint64 bytes);

} // namespace quillary
