#include <QApplication>
#include <QLabel>

/// The smallest Qt program that shows something: what any start-up has to pay.
int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QLabel label(QStringLiteral("Quillary"));
    label.resize(940, 620);
    label.show();
    return QApplication::exec();
}
