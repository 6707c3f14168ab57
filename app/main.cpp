#include "app/Appearance.h"
#include "app/CommandLine.h"
#include "app/Sigvane.h"
#include "licensing/LicenseCheck.h"

#include <QApplication>
#include <QTranslator>

int main(int argc, char* argv[])
{
    QCoreApplication::setOrganizationName(QStringLiteral("Tavimar"));
    QCoreApplication::setOrganizationDomain(QStringLiteral("tavimar.example"));
    QCoreApplication::setApplicationName(QStringLiteral("Sigvane"));
    QCoreApplication::setApplicationVersion(QStringLiteral(SIGVANE_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("sigvane"));

    const QApplication application(argc, argv);
    const CommandLine wanted = CommandLine::fromArguments(application);
    applyAppearance();
    QTranslator translator;
    if (translator.load(QStringLiteral(":/i18n/sigvane_en_GB.qm")))
        QCoreApplication::installTranslator(&translator);

    LicenseCheck license(true, QCoreApplication::translate("LicenseCheck", "All features"));
    Sigvane window;
    window.setLicenseCheck(&license);
    window.startWith(wanted);
    window.show();
    return QApplication::exec();
}
