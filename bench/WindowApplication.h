#pragma once

#include "app/Appearance.h"

#include <QApplication>
#include <QSettings>
#include <QTemporaryDir>

// The application around a window that is measured: set up as the program does it, without a display unless
// one is asked for, with settings of its own.
class WindowApplication
{
public:
    WindowApplication(int& argc, char** argv)
        : m_application(prepared(argc), argv)
    {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_settings.path());
        QCoreApplication::setOrganizationName(QStringLiteral("Tavimar"));
        QCoreApplication::setApplicationName(QStringLiteral("Sigvane"));
        QApplication::setQuitOnLastWindowClosed(false);
        applyAppearance();
    }

private:
    static int& prepared(int& argc)
    {
        if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("QT_LOGGING_RULES", "*.debug=false");
        return argc;
    }

    QTemporaryDir m_settings; // the user's are left alone
    QApplication m_application;
};
