#include "app/CommandLine.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <algorithm>

CommandLine CommandLine::fromArguments(const QCoreApplication& application)
{
    const QCommandLineOption project({QStringLiteral("p"), QStringLiteral("project")},
                                     QStringLiteral("Project directory."), QStringLiteral("dir"));
    const QCommandLineOption definitions({QStringLiteral("d"), QStringLiteral("def")},
                                         QStringLiteral("Path to dashboard_signals.def."),
                                         QStringLiteral("file"));
    const QCommandLineOption layout(QStringLiteral("layout"), QStringLiteral("Layout to show at start."),
                                    QStringLiteral("file"));
    const QCommandLineOption port(QStringLiteral("port"), QStringLiteral("Serial port to open at start."),
                                  QStringLiteral("name"));
    const QCommandLineOption baud(QStringLiteral("baud"), QStringLiteral("Baud rate, 115200 unless given."),
                                  QStringLiteral("rate"));
    const QCommandLineOption record(QStringLiteral("record"),
                                    QStringLiteral("Start recording once the port is open."));
    const QCommandLineOption play(QStringLiteral("play"), QStringLiteral("Recording to replay at start."),
                                  QStringLiteral("file"));
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Live dashboard for what a device prints over a serial port."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions({project, definitions, layout, port, baud, record, play});
    parser.process(application);

    // An option with an empty value was asked for all the same; it is reported as not usable.
    const auto value = [&parser](const QCommandLineOption& option) {
        return parser.isSet(option) ? std::optional(parser.value(option)) : std::nullopt;
    };
    CommandLine wanted;
    wanted.projectDir = value(project);
    wanted.definitionsFile = value(definitions);
    wanted.layoutFile = value(layout);
    wanted.portName = value(port);
    wanted.playFile = value(play);
    wanted.record = parser.isSet(record);
    if (wanted.record && wanted.playFile) {
        wanted.playFile.reset();
        wanted.problems.append(
            QCoreApplication::translate("CommandLine", "Not both --record and --play: recording"));
    }
    const QStringList strays = parser.positionalArguments();
    for (const QString& stray : strays)
        wanted.problems.append(QCoreApplication::translate("CommandLine", "Not an option: %1").arg(stray));
    if (parser.isSet(baud)) {
        wanted.baudRate = std::max(0, parser.value(baud).toInt());
        if (wanted.baudRate == 0)
            wanted.problems.append(
                QCoreApplication::translate("CommandLine", "Not a baud rate: %1").arg(parser.value(baud)));
    }
    return wanted;
}
