#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <tuple>

using namespace Qt::StringLiterals;

// The real program as a process of its own.
class TestProgram : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void answersOnTheCommandLine()
    {
        for (const auto& [option, status, answer] :
             {std::tuple("--version", 0, "Sigvane " SIGVANE_VERSION),
              std::tuple("--help", 0, "Path to dashboard_signals.def."),
              std::tuple("--nonsense", 1, "nonsense")}) {
            QProcess program;
            program.setProcessChannelMode(QProcess::MergedChannels);
            program.start(QStringLiteral(SIGVANE_PROGRAM), {QString::fromLatin1(option)});
            QVERIFY(program.waitForFinished());
            QCOMPARE(program.exitCode(), status);
            QVERIFY(program.readAll().contains(answer));
        }
    }

    void goesOnWithoutWhatCannotBeUsed()
    {
        QTemporaryDir dir;
        QProcess program;
        program.setProcessChannelMode(QProcess::MergedChannels);
        program.start(QStringLiteral(SIGVANE_PROGRAM), {u"--project"_s, dir.path(), u"--baud"_s, u"quick"_s,
                                                        u"--port"_s, dir.filePath(u"port"_s)});
        QByteArray said;
        QTRY_VERIFY2_WITH_TIMEOUT((said += program.readAll()).contains("Could not open the port"), said,
                                  30'000);
        QVERIFY(said.contains("Not a usable project: " + dir.path().toUtf8()));
        QVERIFY(said.contains("Not a baud rate: quick"));
        QCOMPARE(program.state(), QProcess::Running);
        program.terminate();
        QVERIFY(program.waitForFinished());
    }
};

QTEST_GUILESS_MAIN(TestProgram)
#include "tst_program.moc"
