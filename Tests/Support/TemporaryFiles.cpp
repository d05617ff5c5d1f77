#include "Tests/Support/TemporaryFiles.h"

#include <QDir>
#include <QFile>
#include <QTemporaryFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>

namespace quillary::test {

using namespace Qt::StringLiterals;

namespace {

bool keepsAttributes(const QString& directory) {
    QTemporaryFile file(directory + u"/quillary-test-XXXXXX"_s);
    if (!file.open()) {
        return false;
    }

    struct statx status {};

    return ::statx(file.handle(), "", AT_EMPTY_PATH, STATX_BTIME, &status) == 0 &&
           (status.stx_mask & STATX_BTIME) != 0 && ::fsetxattr(file.handle(), "user.probe", "x", 1, 0) == 0;
}

} // namespace

void useTemporaryFilesWithAttributes() {
    for (const QString& directory : {QDir::tempPath(), QDir::currentPath(), u"/var/tmp"_s}) {
        if (keepsAttributes(directory)) {
            qputenv("TMPDIR", QFile::encodeName(directory));
            return;
        }
    }
}

} // namespace quillary::test
