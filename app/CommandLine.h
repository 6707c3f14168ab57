#pragma once

#include <QString>
#include <QStringList>

class QCoreApplication;

// What the user asked for when starting the program. Empty means: not asked for.
struct CommandLine
{
    QString projectDir;
    QString definitionsFile;
    QString layoutFile;
    QString portName;
    int baudRate = 0;     ///< bits per second; 0 when not given or not usable
    QStringList problems; ///< what could not be understood, a line each for the user

    /// Reads the application's arguments. Unknown options, the help and the version option end the process.
    [[nodiscard]] static CommandLine fromArguments(const QCoreApplication& application);
};
