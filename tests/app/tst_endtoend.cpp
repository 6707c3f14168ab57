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
#include "support/LoopWatch.h"
#include "support/ModalAnswer.h"
#include "widgets/DashboardWidget.h"

#include <QDir>
#include <QDoubleSpinBox>
#include <QElapsedTimer>
#include <QFile>
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

QByteArray contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

qint64 residentBytes()
{
    return contents(u"/proc/self/statm"_s).split(' ').value(1).toLongLong() * ::sysconf(_SC_PAGESIZE);
}

/// The signals and the events that must be exported of what was printed: a frame per line and per event.
QByteArrayList expectedCsv(const QByteArray& printed, const DashboardSignalParser& definitions)
{
    const QStringList lines = QString::fromUtf8(printed).split(u'\n', Qt::SkipEmptyParts);
    QByteArray events = "time,type,key,value,display\n";
    QList<QPair<QByteArray, QMap<QString, double>>> frames;
    QMap<QString, double> known;
    const double base = lines.first().section(u' ', 0, 0).toDouble();
    for (const QString& line : lines) {
        QStringList words = line.split(u' '), text;
        const QByteArray time = QByteArray::number(words.takeFirst().toDouble() - base, 'f', 6);
        const auto add = [&](const QByteArray& type, const QStringList& cells) {
            events += time + ',' + type;
            for (const QString& cell : cells)
                events += cell.isEmpty() ? QByteArray(",") : ",\"" + cell.toUtf8() + '"';
            events += '\n';
            frames.append({time, known});
        };
        QMap<QString, double> after = known;
        for (const QString& word : std::as_const(words)) {
            const QString key = word.section(u'=', 0, 0), value = word.section(u'=', 1);
            if (!word.contains(u'='))
                text.append(word);
            else if (key.startsWith(u"ST_"))
                add("STATE", {key.sliced(3), value, definitions.findState(key.sliced(3), value)->label});
            else if (key == u"ERR")
                add("ERROR", {value, {}, definitions.findErrorById(value)->message});
            else
                after.insert(key, value.toDouble());
        }
        if (std::exchange(known, after) != after) // a line of values has a new counter
            frames.append({time, known});
        if (!text.isEmpty())
            add("MESSAGE", {{}, text.join(u' '), {}});
    }
    QByteArray values = "time," + known.keys().join(u',').toUtf8() + '\n';
    for (const auto& [time, numbers] : frames) {
        values += time;
        for (const QString& key : known.keys())
            values += ',' + QByteArray::number(numbers.value(key, qQNaN()), 'g', 12);
        values += '\n';
    }
    return {values, events};
}

/// The window on a copy of the example project, with its device on a pseudo-terminal.
struct Rig
{
    QTemporaryDir dir;
    Sigvane window;
    SequenceProbe* probe = nullptr;
    QProcess device;

    ~Rig()
    {
        device.terminate();
        device.waitForFinished();
    }

    bool start(const QStringList& deviceOptions, bool record = false)
    {
        const QString example = QStringLiteral(SIGVANE_EXAMPLE);
        const QString definitions = u"/dashboard_signals.def"_s;
        if (!dir.isValid() || !QFile::copy(example + definitions, dir.path() + definitions))
            return false;
        device.start(QStringLiteral(SIGVANE_DEVICE), deviceOptions);
        if (!device.waitForReadyRead())
            return false;
        CommandLine wanted;
        wanted.projectDir = dir.path();
        wanted.record = record;
        wanted.layoutFile = example + u"/layouts/pump-rig.json"_s;
        wanted.portName = QString::fromLocal8Bit(device.readLine()).trimmed();
        window.resize(1600, 1000);
        window.startWith(wanted);
        probe = new SequenceProbe;
        window.scene()->addItem(new DashboardItem(probe));
        window.show();
        return QTest::qWaitForWindowExposed(&window);
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
        Rig rig;
        QVERIFY(rig.start({u"--rate"_s, u"5000"_s, u"--lines"_s, QString::number(kLines)}));
        auto* dashboard = rig.window.findChild<DashboardView*>();
        const QImage before = dashboard->grab().toImage();
        const LoopWatch watch;
        QTRY_COMPARE_WITH_TIMEOUT(rig.probe->count, kLines, 60'000);
        qInfo("%d lines, longest block of the event loop %.1f ms", kLines, watch.longestBlockMs());
        QCOMPARE(rig.probe->gaps, 0);
        // From the wire to pixels: what is seen is no longer what was seen.
        QVERIFY(dashboard->grab().toImage() != before);
    }

    void recordedRunIsReplayedAndExportedAsItWasPrinted()
    {
        const QStringList printed{u"--rate"_s, u"0"_s, u"--lines"_s, u"40000"_s};
        QProcess listing;
        listing.start(QStringLiteral(SIGVANE_DEVICE), printed + QStringList(u"--stdout"_s));
        QVERIFY(listing.waitForFinished());
        Rig rig;
        LicenseCheck license(true, u"Bought"_s);
        rig.window.setLicenseCheck(&license);
        QVERIFY(rig.start(printed, true));
        const QByteArrayList expected = expectedCsv(listing.readAllStandardOutput(), *gSignalParser);
        QVERIFY(expected[1].contains(",ERROR,"));
        QCOMPARE(rig.window.mode(), Sigvane::Record);
        QTRY_COMPARE_WITH_TIMEOUT(rig.probe->count, 40'000, 60'000);
        rig.window.stopButton();
        QVERIFY(QFile::exists(companionDefinitionsPath(rig.window.playback()->playbackFile())));

        rig.window.findChild<QDoubleSpinBox*>()->setValue(10.0);
        double reached = -1.0;
        bool inOrder = true;
        connect(rig.window.playbackEngine(), &SignalPlaybackEngine::signalValuesUpdatedAt, this,
                [&](double t) { inOrder = std::exchange(reached, t) <= t && inOrder; });
        rig.window.playButton();
        QTRY_VERIFY(reached > 1.0);
        auto* slider = rig.window.findChild<QSlider*>();
        const int y = slider->height() / 2;
        QTest::mousePress(slider, Qt::LeftButton, {}, QPoint(slider->width() / 4, y));
        QTest::mouseMove(slider, QPoint(slider->width() / 2, y));
        QTRY_VERIFY(reached > 15.0); // brought there while the button is still down
        QTest::mouseRelease(slider, Qt::LeftButton, {}, QPoint(slider->width() / 2, y));
        reached = -1.0; // that brought the history of the plots again
        inOrder = true;
        QTRY_COMPARE_WITH_TIMEOUT(rig.window.mode(), Sigvane::Idle, 30'000);
        QVERIFY(inOrder);
        QCOMPARE(reached, rig.window.playbackEngine()->getMaxTimestamp());

        ModalAnswer answer;
        answer.then([](QDialog* dialog) {
            dialog->findChild<QListWidget*>()->selectAll();
            dialog->accept();
        });
        answer.chooseFile(rig.dir.filePath(u"signals.csv"_s)).chooseFile(rig.dir.filePath(u"events.csv"_s));
        rig.window.exportButton();
        rig.window.exportEventsButton();
        QVERIFY(answer.allUsed() && answer.unexpected() == 0);
        QVERIFY(contents(rig.dir.filePath(u"signals.csv"_s)) == expected[0]);
        QVERIFY(contents(rig.dir.filePath(u"events.csv"_s)) == expected[1]);
    }

    void memoryStaysFlat()
    {
#if defined(__SANITIZE_ADDRESS__)
        QSKIP("the sanitizer keeps freed memory");
#endif
        Rig rig;
        QVERIFY(rig.start({u"--rate"_s, u"5000"_s}));
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
