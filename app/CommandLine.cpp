#include "app/CommandLine.h"

#include <QCommandLineParser>
#include <QCoreApplication>

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
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Live dashboard for what a device prints over a serial port."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions({project, definitions, layout, port, baud});
    parser.process(application);

    CommandLine wanted;
    wanted.projectDir = parser.value(project);
    wanted.definitionsFile = parser.value(definitions);
    wanted.layoutFile = parser.value(layout);
    wanted.portName = parser.value(port);
    if (parser.isSet(baud)) {
        wanted.baudRate = std::max(0, parser.value(baud).toInt());
        if (wanted.baudRate == 0)
            wanted.problems.append(
                QCoreApplication::translate("CommandLine", "Not a baud rate: %1").arg(parser.value(baud)));
    }
    return wanted;
}
