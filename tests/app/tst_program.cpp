#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

// The real program as a process of its own.
class TestProgram : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void answersOnTheCommandLine_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("output");
        QTest::newRow("version") << QStringList(u"--version"_s) << 0
                                 << QStringLiteral("Sigvane " SIGVANE_VERSION);
        QTest::newRow("help") << QStringList(u"--help"_s) << 0 << u"Path to dashboard_signals.def."_s;
        QTest::newRow("unknown option") << QStringList(u"--nonsense"_s) << 1 << u"nonsense"_s;
    }
    void answersOnTheCommandLine()
    {
        QFETCH(QStringList, arguments);
        QProcess program;
        program.setProcessChannelMode(QProcess::MergedChannels);
        program.start(QStringLiteral(SIGVANE_PROGRAM), arguments);
        QVERIFY(program.waitForFinished());
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        QTEST(program.exitCode(), "status");
        QFETCH(QString, output);
        const QString text = QString::fromUtf8(program.readAll());
        QVERIFY2(text.contains(output), qPrintable(text));
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
