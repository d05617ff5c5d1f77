#include "Tests/State/TrashCan.h"

#include <QDir>
#include <QFile>

namespace quillary::test {

using namespace Qt::StringLiterals;

QByteArray TrashedItem::contents(const QString& name) const {
    QFile file((name.isEmpty() ? path : path.appending(name)).text());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

std::optional<TrashedItem> trashedFrom(const FilePath& path) {
    const QDir trash(qEnvironmentVariable("XDG_DATA_HOME") + u"/Trash"_s);
    const QByteArray start = "[Trash Info]\nPath=" + path.bytes().toPercentEncoding("/") + "\n";
    std::optional<TrashedItem> last;
    for (const QString& name : QDir(trash.filePath(u"info"_s)).entryList(QDir::Files, QDir::Time | QDir::Reversed)) {
        QFile record(trash.filePath(u"info/"_s + name));
        if (!record.open(QIODevice::ReadOnly)) {
            continue;
        }
        if (const QByteArray bytes = record.readAll(); bytes.startsWith(start)) {
            const QString item = name.chopped(QStringView(u".trashinfo").size());
            last = TrashedItem{FilePath::fromText(trash.filePath(u"files/"_s + item)), bytes};
        }
    }
    return last;
}

} // namespace quillary::test
