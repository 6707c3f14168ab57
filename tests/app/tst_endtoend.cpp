#include "app/CommandLine.h"
#include "app/Sigvane.h"
#include "canvas/DashboardItem.h"
#include "canvas/DashboardView.h"
#include "canvas/DesignScene.h"
#include "definitions/DashboardSignalParser.h"
#include "licensing/LicenseCheck.h"
#include "playback/PlaybackController.h"
#include "playback/recording/SignalPlaybackEngine.h"
#include "playback/recording/SignalRecorder.h"
#include "serial/SerialManager.h"
#include "support/Files.h"
#include "support/LoopWatch.h"
#include "support/ModalAnswer.h"
#include "support/PlainGrammar.h"
#include "widgets/DashboardWidget.h"

#include <QDoubleSpinBox>
#include <QElapsedTimer>
#include <QListWidget>
#include <QProcess>
#include <QSlider>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// Counts the lines that the router delivers, by the counter that the device puts into each.
class SequenceProbe : public DashboardWidget
{
public:
    SequenceProbe() { assignSignals({u"SEQ"_s}); }
    QString typeName() const override { return u"SequenceProbe"_s; }
    void setValue(double value) override
    {
        gaps += count++ > 0 && value != last + 1;
        last = value;
    }
    qint64 count = 0;
    qint64 gaps = 0;
    double last = -1;
};

qint64 residentBytes()
{
    return readFile(u"/proc/self/statm"_s).split(' ').value(1).toLongLong() * ::sysconf(_SC_PAGESIZE);
}

/// What must be exported of what was printed: a frame per line and per event.
struct ExpectedCsv
{
    QByteArray events = "time,type,key,value,display\n";
    QByteArray time;
    QMap<QString, double> known, after;
    QList<QPair<QByteArray, QMap<QString, double>>> frames;
    QStringList freeText;

    void state(const QString& group, const QString& name)
    {
        addEvent("STATE", {group, name, gSignalParser->findState(group, name)->label});
    }
    void error(const QString& id) { addEvent("ERROR", {id, {}, gSignalParser->findErrorById(id)->message}); }
    void value(const QString& key, double number) { after.insert(key, number); }
    void text(const QString& word) { freeText.append(word); }

    void addEvent(const QByteArray& type, const QStringList& cells)
    {
        events += time + ',' + type;
        for (const QString& cell : cells)
            events += cell.isEmpty() ? QByteArray(",") : ",\"" + cell.toUtf8() + '"';
        events += '\n';
        frames.append({time, known});
    }
    void addPrinted(const QByteArray& printed)
    {
        const QStringList lines = QString::fromUtf8(printed).split(u'\n', Qt::SkipEmptyParts);
        const double base = *splitPlainly(lines.first()).time;
        for (const QString& line : lines) {
            const PlainLine parts = splitPlainly(line);
            time = QByteArray::number(*parts.time - base, 'f', 6);
            readWordsPlainly(parts.words, *this);
            if (std::exchange(known, after) != after) // a line of values has a new counter
                frames.append({time, known});
            if (!freeText.isEmpty())
                addEvent("MESSAGE", {{}, std::exchange(freeText, {}).join(u' '), {}});
        }
    }
    QByteArray values() const
    {
        QByteArray rows = "time," + known.keys().join(u',').toUtf8() + '\n';
        for (const auto& [time, numbers] : frames) {
            rows += time;
            for (const QString& key : known.keys())
                rows += ',' + QByteArray::number(numbers.value(key, qQNaN()), 'g', 12);
            rows += '\n';
        }
        return rows;
    }
};

/// The window on a copy of the example project, with its device on a pseudo-terminal.
struct DeviceRig
{
    QTemporaryDir dir;
    LicenseCheck license{true, u"Bought"_s};
    Sigvane window;
    SequenceProbe* probe = nullptr;
    QProcess device;

    explicit DeviceRig(const QStringList& deviceOptions, bool record = false)
    {
        const QString example = QStringLiteral(SIGVANE_EXAMPLE);
        const QString definitions = u"/dashboard_signals.def"_s;
        writeFile(dir.path() + definitions, readFile(example + definitions));
        device.start(QStringLiteral(SIGVANE_DEVICE), deviceOptions);
        if (!device.waitForReadyRead())
            qFatal("no device");
        CommandLine wanted;
        wanted.projectDir = dir.path();
        wanted.record = record;
        wanted.layoutFile = example + u"/layouts/pump-rig.json"_s;
        wanted.portName = QString::fromLocal8Bit(device.readLine()).trimmed();
        window.setLicenseCheck(&license);
        window.resize(1600, 1000);
        window.startWith(wanted);
        probe = new SequenceProbe;
        window.scene()->addItem(new DashboardItem(probe));
        window.show();
        if (!QTest::qWaitForWindowExposed(&window))
            qFatal("no window");
    }
    ~DeviceRig()
    {
        device.terminate();
        device.waitForFinished();
    }
};

constexpr int kRecordedLines = 40'000;
const QStringList kRecordedRun{u"--rate"_s, u"0"_s, u"--lines"_s, QString::number(kRecordedLines)};

/// A run of the device that has been recorded to its end.
struct RecordedRun : DeviceRig
{
    RecordedRun()
        : DeviceRig(kRecordedRun, true)
    {
        if (!QTest::qWaitFor([this] { return probe->count == kRecordedLines; }, 60'000))
            qFatal("not all was heard");
        window.stopButton();
    }
    /// What the device prints in such a run.
    static QByteArray printed()
    {
        QProcess listing;
        listing.start(QStringLiteral(SIGVANE_DEVICE), kRecordedRun + QStringList(u"--stdout"_s));
        listing.waitForFinished();
        return listing.readAllStandardOutput();
    }
};

} // namespace

class TestEndToEnd : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fastDeviceLosesNoLine()
    {
        constexpr int kLines = 25'000;
        const DeviceRig rig({u"--rate"_s, u"5000"_s, u"--lines"_s, QString::number(kLines)});
        auto* dashboard = rig.window.findChild<DashboardView*>();
        const QImage before = dashboard->grab().toImage();
        const LoopWatch watch;
        QTRY_COMPARE_WITH_TIMEOUT(rig.probe->count, kLines, 60'000);
        qInfo("%d lines, longest block of the event loop %.1f ms", kLines, watch.longestBlockMs());
        QCOMPARE(rig.probe->gaps, 0);
        // From the wire to pixels: what is seen is no longer what was seen.
        QVERIFY(dashboard->grab().toImage() != before);
    }

    void recordedRunIsReplayedInOrderAlsoAfterAJump()
    {
        RecordedRun run;
        double reached = -1.0;
        bool inOrder = true;
        connect(run.window.playbackEngine(), &SignalPlaybackEngine::signalValuesUpdatedAt, this,
                [&](double t) { inOrder = std::exchange(reached, t) <= t && inOrder; });
        auto* slider = run.window.findChild<QSlider*>();
        run.window.findChild<QDoubleSpinBox*>()->setValue(10.0);
        run.window.playButton();
        QTRY_VERIFY(reached > 1.0);
        const QPoint half = slider->rect().center();
        QTest::mousePress(slider, Qt::LeftButton, {}, QPoint(half.x() / 2, half.y()));
        QTest::mouseMove(slider, half);
        QTRY_VERIFY(reached > 15.0); // brought there while the button is still down
        QTest::mouseRelease(slider, Qt::LeftButton, {}, half);
        reached = -1.0; // that brought the history of the plots again
        inOrder = true;
        QTRY_COMPARE_WITH_TIMEOUT(run.window.mode(), Sigvane::Idle, 30'000);
        QVERIFY(inOrder);
        QCOMPARE(reached, run.window.playbackEngine()->getMaxTimestamp());
    }

    void recordedRunIsExportedAsItWasPrinted()
    {
        RecordedRun run;
        QVERIFY(QFile::exists(companionDefinitionsPath(run.window.playback()->playbackFile())));
        ModalAnswer answer;
        answer.then([](QDialog* dialog) {
            dialog->findChild<QListWidget*>()->selectAll();
            dialog->accept();
        });
        answer.chooseFile(run.dir.filePath(u"signals.csv"_s)).chooseFile(run.dir.filePath(u"events.csv"_s));
        run.window.exportButton();
        run.window.exportEventsButton();
        QCOMPARE(answer.titles().size(), 3);
        ExpectedCsv expected;
        expected.addPrinted(RecordedRun::printed());
        QVERIFY(expected.events.contains(",ERROR,"));
        QVERIFY(readFile(run.dir.filePath(u"signals.csv"_s)) == expected.values());
        QVERIFY(readFile(run.dir.filePath(u"events.csv"_s)) == expected.events);
    }

    void memoryStaysFlat()
    {
#if defined(__SANITIZE_ADDRESS__)
        QSKIP("the sanitizer keeps freed memory");
#endif
        const DeviceRig rig({u"--rate"_s, u"5000"_s});
        // The consoles are full from the beginning, as they are after a day.
        for (int i = 0; i < 1000; ++i)
            rig.window.serial()->parseLine(u"ERR=OVERHEAT message %1"_s.arg(i));
        QElapsedTimer clock;
        clock.start();
        QTRY_VERIFY_WITH_TIMEOUT(clock.elapsed() > 10'000, 20'000);
        const qint64 early = residentBytes();
        QVERIFY(early > 0);
        QTRY_VERIFY_WITH_TIMEOUT(clock.elapsed() > 60'000, 70'000);
        const double growth = double(residentBytes() - early) / 1e6;
        qInfo("%lld lines, resident memory grew by %.2f MB", (long long)rig.probe->count, growth);
        QVERIFY(rig.probe->count > 100'000);
        QCOMPARE(rig.probe->gaps, 0);
        QVERIFY(growth <= 5.0);
    }
};

QTEST_MAIN(TestEndToEnd)
#include "tst_endtoend.moc"
