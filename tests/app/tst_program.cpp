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
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(QStringLiteral(SIGVANE_PROGRAM), arguments);
    }
    ~Program()
    {
        process.kill();
        process.waitForFinished();
    }
    bool comesToSay(const QByteArray& text)
    {
        const auto hasSaid = [&] {
            const bool ended = process.state() == QProcess::NotRunning;
            said += process.readAll();
            return ended || said.contains(text);
        };
        return QTest::qWaitFor(hasSaid, 30'000) && said.contains(text);
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
    void answersToItsOptions_data()
    {
        const QString none = m_dir.filePath(u"none"_s);
        const QString file = writeFile(m_dir.filePath(u"rig.def"_s), "\n");
        const QByteArray noProject = "Not a usable project: " + none.toUtf8();
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QByteArray>("answer");
        QTest::newRow("version") << QStringList(u"--version"_s) << QByteArray("Sigvane " SIGVANE_VERSION);
        QTest::newRow("-p") << QStringList({u"-p"_s, none}) << noProject;
        QTest::newRow("--def") << QStringList({u"--def"_s, file})
                               << "Not a project, only its definitions were loaded: " + file.toUtf8();
        QTest::newRow("project counts more")
            << QStringList({u"-d"_s, file, u"--project"_s, none}) << noProject;
        QTest::newRow("--layout") << QStringList({u"-d"_s, file, u"--layout"_s, none}) << ' ' + none.toUtf8();
        QTest::newRow("--baud") << QStringList({u"-d"_s, file, u"--baud"_s, u"quick"_s})
                                << QByteArray("Not a baud rate: quick");
        QTest::newRow("--play") << QStringList({u"-d"_s, file, u"--record"_s, u"--play"_s, none})
                                << QByteArray("Not both --record and --play: recording");
    }

    void answersToItsOptions()
    {
        QFETCH(QStringList, options);
        QFETCH(QByteArray, answer);
        Program program(options);
        QVERIFY2(program.comesToSay(answer + '\n'), program.said);
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
            QCOMPARE(lines[i].split(' ').constLast(), "N=" + QByteArray::number(i));
        const qint64 lostMs = killedMs - sentMs.at(lines.size() - 1);
        QVERIFY2(lostMs < 1500, QByteArray::number(lostMs)); // a second, and what a busy machine adds
    }
};

QTEST_GUILESS_MAIN(TestProgram)
#include "tst_program.moc"
