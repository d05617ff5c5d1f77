#include "Quillary/Shell/WindowPlace.h"

#include <QDir>
#include <QSettings>
#include <QSplitter>
#include <QWidget>

namespace quillary::WindowPlace {

using namespace Qt::StringLiterals;

namespace {

QString placeFile() {
    QString state = qEnvironmentVariable("XDG_STATE_HOME");
    if (!QDir::isAbsolutePath(state)) {
        state = QDir::homePath() % u"/.local/state"_s;
    }
    return state % u"/quillary/window.ini"_s;
}

} // namespace

void restore(QWidget& window, QSplitter& splitter) {
    const QSettings settings(placeFile(), QSettings::IniFormat);
    window.restoreGeometry(settings.value("geometry"_L1).toByteArray());
    splitter.restoreState(settings.value("splitter"_L1).toByteArray());
}

void remember(const QWidget& window, const QSplitter& splitter) {
    QSettings settings(placeFile(), QSettings::IniFormat);
    settings.setValue("geometry"_L1, window.saveGeometry());
    settings.setValue("splitter"_L1, splitter.saveState());
}

} // namespace quillary::WindowPlace
