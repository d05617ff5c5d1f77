#include "Quillary/Platform/ApplicationService.h"
#include "Quillary/Platform/TerminationSignals.h"
#include "Quillary/Shell/AppDelegate.h"

#include <QApplication>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>
#include <QVariantMap>

#include <csignal>

using namespace Qt::StringLiterals;

int main(int argc, char* argv[]) {
    quillary::TerminationSignals::block();
    // A file that may not grow is a failed save that is told, not the end of the program. Programs that are started
    // from here would inherit an ignored signal, but not a handler.
    std::signal(SIGXFSZ, [](int) {});
    const QVariantMap platformData = quillary::ApplicationService::ownPlatformData();
    QApplication application(argc, argv);
    QApplication::setApplicationName(u"Quillary"_s);
    QApplication::setApplicationDisplayName(u"Quillary"_s);
    QApplication::setDesktopFileName(u"app.quillary.Quillary"_s);
    QApplication::setWindowIcon(QIcon(u":/quillary/application.svg"_s));
    QApplication::setQuitOnLastWindowClosed(false);

    quillary::ApplicationService service;
    const quillary::Claim claim = service.claim(platformData);
    if (claim == quillary::Claim::handedOver) {
        return 0;
    }

    // The interface is Italian; these are the texts that Qt's own dialogs and menus bring.
    QTranslator translator;
    if (translator.load(QLocale(QLocale::Italian), u"qtbase"_s, u"_"_s,
                        QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        QApplication::installTranslator(&translator);
    }

    quillary::AppDelegate delegate(claim == quillary::Claim::first);
    QObject::connect(&service, &quillary::ApplicationService::activated, &delegate, &quillary::AppDelegate::activate);
    QObject::connect(&service, &quillary::ApplicationService::actionActivated, &delegate,
                     &quillary::AppDelegate::performAction);
    QObject::connect(&service, &quillary::ApplicationService::lost, &delegate, &quillary::AppDelegate::loseOtherStarts);
    delegate.applicationDidFinishLaunching();
    return QApplication::exec();
}
