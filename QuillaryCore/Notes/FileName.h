#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringView>

namespace quillary {

/// The longest name of a file, in bytes, that common file systems take.
inline constexpr qsizetype longestFileName = 255;

/// A file name of a base, from the second on a blank and the number, and what follows ("" or ".md"). The base is cut
/// between two characters if the whole would be too long.
QString numberedFileName(const QString& base, qint64 number, QStringView ending);

/// Whether a directory of this name is what other systems show as one file.
bool isPackageName(QByteArrayView name);

} // namespace quillary
