#pragma once

#include <QString>
#include <QStringList>

#include <optional>

class QCoreApplication;

// What the user asked for when starting the program.
struct CommandLine
{
    std::optional<QString> projectDir;
    std::optional<QString> definitionsFile;
    std::optional<QString> layoutFile;
    std::optional<QString> portName;
    std::optional<QString> playFile;
    bool record = false;  ///< record as soon as the port is open
    int baudRate = 0;     ///< bits per second; 0 when not given or not usable
    QStringList problems; ///< what could not be understood, a line each for the user

    /// Reads the application's arguments. Unknown options, the help and the version option end the process.
    [[nodiscard]] static CommandLine fromArguments(const QCoreApplication& application);
};
