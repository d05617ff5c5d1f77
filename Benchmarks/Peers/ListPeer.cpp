#include <QApplication>
#include <QDir>
#include <QFile>
#include <QListView>
#include <QPlainTextEdit>
#include <QSplitter>
#include <QStringListModel>

/// A list of the names in a folder beside a plain text edit with the first file: a notes program that does nothing
/// else.
int main(int argc, char** argv) {
    QApplication application(argc, argv);
    const QDir folder(QString::fromLocal8Bit(argc > 1 ? argv[1] : "."));
    QStringListModel names(folder.entryList(QDir::Files, QDir::Name));
    QSplitter window;
    QListView list;
    list.setUniformItemSizes(true);
    list.setModel(&names);
    QPlainTextEdit edit;
    if (!names.stringList().isEmpty()) {
        QFile file(folder.filePath(names.stringList().constFirst()));
        if (file.open(QIODevice::ReadOnly)) {
            edit.setPlainText(QString::fromUtf8(file.readAll()));
        }
    }
    window.addWidget(&list);
    window.addWidget(&edit);
    window.resize(940, 620);
    window.show();
    return QApplication::exec();
}
