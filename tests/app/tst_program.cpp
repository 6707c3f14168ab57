#include "support/Files.h"
#include "support/PseudoTerminal.h"

#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// The real program as a process of its own, and all that it has said.
struct Program
{
    QProcess process;
    QByteArray said;

    explicit Program(const QStringList& arguments)
    {
        // Its log is looked at, whatever the environment of the tests wants to be logged, how and where.
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"QT_LOGGING_RULES"_s, u"default.debug=true"_s);
        environment.insert(u"QT_FORCE_STDERR_LOGGING"_s, u"1"_s);
        environment.remove(u"QT_MESSAGE_PATTERN"_s);
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(QStringLiteral(SIGVANE_PROGRAM), arguments);
    }
    ~Program()
    {
        process.kill();
        process.waitForFinished();
    }
    bool says(const QByteArray& text)
    {
        said += process.readAll();
        return said.contains(text);
    }
    bool comesToSay(const QByteArray& text)
    {
        const auto hasSaid = [&] { return process.state() == QProcess::NotRunning || says(text); };
        return QTest::qWaitFor(hasSaid, 30'000) && says(text);
    }
};

/// Sends a line per millisecond, each with its number, and returns when each was sent.
QList<qint64> sendLines(PseudoTerminal& device, int count, const QElapsedTimer& clock)
{
    QList<qint64> sentMs;
    while (sentMs.size() < count) {
        if (!device.writeAll("N=" + QByteArray::number(sentMs.size()) + '\n'))
            qFatal("the program does not read");
        sentMs.append(clock.elapsed());
        while (clock.elapsed() < sentMs.size())
            QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
    }
    return sentMs;
}

} // namespace

class TestProgram : public QObject
{
    Q_OBJECT

    const QTemporaryDir m_dir; // no project

private Q_SLOTS:
    void answersAndEnds_data()
    {
        QTest::addColumn<QString>("option");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QByteArray>("answer");
        QTest::newRow("version") << u"--version"_s << 0 << QByteArray("Sigvane " SIGVANE_VERSION);
        QTest::newRow("help") << u"--help"_s << 0 << QByteArray("Path to dashboard_signals.def.");
        QTest::newRow("unknown") << u"--nonsense"_s << 1 << QByteArray("nonsense");
    }

    void answersAndEnds()
    {
        QFETCH(QString, option);
        QFETCH(QByteArray, answer);
        Program program({option});
        QVERIFY2(program.comesToSay(answer), program.said);
        QTRY_COMPARE(program.process.state(), QProcess::NotRunning);
        QTEST(program.process.exitCode(), "exitCode");
    }

    void opensWhatTheOptionNames_data()
    {
        const QString none = m_dir.filePath(u"none"_s);
        const QString definitions = writeFile(m_dir.filePath(u"rig.def"_s), "\n");
        const QByteArray noProject = "Not a usable project: " + none.toUtf8();
        const QByteArray noFolder =
            "Not a project, only its definitions were loaded: " + definitions.toUtf8();
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("answer");
        QTest::newRow("--project") << QStringList({u"--project"_s, none}) << noProject;
        QTest::newRow("-p") << QStringList({u"-p"_s, none}) << noProject;
        QTest::newRow("--def") << QStringList({u"--def"_s, definitions}) << noFolder;
        QTest::newRow("-d") << QStringList({u"-d"_s, definitions}) << noFolder;
        QTest::newRow("both") << QStringList({u"-d"_s, definitions, u"-p"_s, none}) << noProject;
    }

    void opensWhatTheOptionNames()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, answer);
        Program program(arguments);
        QVERIFY2(program.comesToSay("sigvane: " + answer + '\n'), program.said);
    }

    void goesOnWithoutWhatCannotBeUsed()
    {
        Program program({u"--project"_s, m_dir.path(), u"--baud"_s, u"quick"_s, u"--port"_s,
                         m_dir.filePath(u"port"_s), u"--play"_s, QStringLiteral(SIGVANE_RECORDING)});
        QVERIFY2(program.comesToSay("[Playback] frames: "), program.said);
        QVERIFY2(program.says("Not a baud rate: quick"), program.said);
        QVERIFY2(program.says("Could not open the port"), program.said);
        QCOMPARE(program.process.state(), QProcess::Running);
    }

    void killedWhileRecordingLosesASecondAtMost()
    {
        const QTemporaryDir dir;
        writeFile(dir.filePath(u"dashboard_signals.def"_s), "\n");
        PseudoTerminal device;
        Program program({u"--project"_s, dir.path(), u"--port"_s, device.portName(), u"--record"_s});
        const QDir recordings(dir.filePath(u"recordings"_s));
        QTRY_COMPARE_WITH_TIMEOUT(recordings.entryList({u"*.rec"_s}).size(), 1, 30'000);

        QElapsedTimer clock;
        clock.start();
        const QList<qint64> sentMs = sendLines(device, 1900, clock); // up to just before a flush
        program.process.kill();
        const qint64 killedMs = clock.elapsed();
        QVERIFY(program.process.waitForFinished());

        const QString path = recordings.filePath(recordings.entryList({u"*.rec"_s}).constFirst());
        QByteArrayList lines = readFile(path).split('\n');
        QCOMPARE(lines.takeLast(), QByteArray()); // the last one is whole
        QVERIFY(!lines.isEmpty());
        for (qsizetype i = 0; i < lines.size(); ++i)
            QCOMPARE(lines[i].split(' ').last(), "N=" + QByteArray::number(i));
        const qint64 lostMs = killedMs - sentMs.at(lines.size() - 1);
        qInfo("%lld of %lld lines recorded, the last %lld ms are lost", (long long)lines.size(),
              (long long)sentMs.size(), (long long)lostMs);
        QVERIFY(lostMs < 1500); // a second, and what a busy machine adds
    }
};

QTEST_GUILESS_MAIN(TestProgram)
#include "tst_program.moc"
