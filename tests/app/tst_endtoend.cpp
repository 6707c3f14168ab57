#include "app/CommandLine.h"
#include "definitions/DashboardSignalParser.h"
#include "playback/PlaybackController.h"
#include "serial/SerialManager.h"
#include "support/PlainGrammar.h"
#include "support/WindowRig.h"
#include "widgets/DashboardWidget.h"

#include <QDoubleSpinBox>
#include <QListWidget>
#include <QProcess>
#include <QTest>

#include <unistd.h>
#include <utility>

#ifndef __has_feature // only clang can be asked
#define __has_feature(feature) 0
#endif

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
        inOrder = inOrder && (value == 0.0 || value == last || value == last + 1.0);
        count += value != last ? 1 : 0; // a replay repeats it for an event
        last = value;
    }
    bool inOrder = true;
    qint64 count = 0;
    double last = -1.0;
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
        const QStringList keys = known.keys();
        QByteArray rows = "time," + keys.join(u',').toUtf8() + '\n';
        for (const auto& [time, numbers] : frames) {
            rows += time;
            for (const QString& key : keys)
                rows += ',' + QByteArray::number(numbers.value(key, qQNaN()), 'g', 12);
            rows += '\n';
        }
        return rows;
    }
};

/// The window on a copy of the example project, with its device on a pseudo-terminal.
struct DeviceRig : WindowRig
{
    SequenceProbe* probe = nullptr;
    QProcess device;

    explicit DeviceRig(const QStringList& deviceOptions, bool record = false)
    {
        const QString example = QStringLiteral(SIGVANE_EXAMPLE);
        write("dashboard_signals.def", readFile(example + u"/dashboard_signals.def"_s));
        device.start(QStringLiteral(SIGVANE_DEVICE), deviceOptions);
        if (!device.waitForReadyRead())
            qFatal("no device");
        CommandLine wanted;
        wanted.projectDir = dir.path();
        wanted.record = record;
        wanted.layoutFile = example + u"/layouts/pump-rig.json"_s;
        wanted.portName = QString::fromLocal8Bit(device.readLine()).trimmed();
        window.startWith(wanted);
        probe = add<SequenceProbe>();
        window.show();
    }
    ~DeviceRig()
    {
        device.terminate();
        device.waitForFinished();
    }
};

constexpr int kRecordedLines = 40'000;

/// A run of the device that has been recorded to its end.
struct RecordedRun : DeviceRig
{
    RecordedRun()
        : DeviceRig(options(), true)
    {
        if (!QTest::qWaitFor([this] { return probe->count == kRecordedLines; }, 60'000))
            qFatal("only %lld lines were heard", (long long)probe->count);
        press(u"Stop"_s);
        // Here without the progress, which is a dialog too.
        if (!engine->loadFromFile(window.playback()->playbackFile()))
            qFatal("the recording cannot be loaded");
    }
    static QStringList options()
    {
        return {u"--rate"_s, u"0"_s, u"--lines"_s, QString::number(kRecordedLines)};
    }
    /// What the device prints in such a run.
    static QByteArray printed()
    {
        QProcess listing;
        listing.start(QStringLiteral(SIGVANE_DEVICE), options() + QStringList(u"--stdout"_s));
        listing.waitForFinished();
        return listing.readAllStandardOutput();
    }
};

} // namespace

class TestEndToEnd : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void recordedRunIsReplayedLineByLine()
    {
        const RecordedRun run;
        run.probe->count = 0;
        run.window.findChild<QDoubleSpinBox*>()->setValue(10.0);
        run.press(u"Play"_s);
        QTRY_COMPARE_WITH_TIMEOUT(run.window.mode(), Sigvane::Idle, 30'000);
        QVERIFY(run.probe->inOrder);
        QCOMPARE(run.probe->count, kRecordedLines);
    }

    void recordedRunIsExportedAsItWasPrinted()
    {
        RecordedRun run;
        const QString signalsPath = run.dir.filePath(u"signals.csv"_s);
        const QString eventsPath = run.dir.filePath(u"events.csv"_s);
        run.answer.then([](QDialog* dialog) {
            dialog->findChild<QListWidget*>()->selectAll();
            dialog->accept();
        });
        run.answer.chooseFile(signalsPath).chooseFile(eventsPath);
        run.press(u"Signals"_s);
        run.press(u"Events"_s);
        ExpectedCsv expected;
        expected.addPrinted(RecordedRun::printed());
        QVERIFY(expected.events.contains(",ERROR,"));
        QVERIFY(readFile(signalsPath) == expected.values());
        QVERIFY(readFile(eventsPath) == expected.events);
    }

    void memoryStaysFlat()
    {
#if defined(__SANITIZE_ADDRESS__) || __has_feature(address_sanitizer)
        QSKIP("the sanitizer keeps freed memory");
#endif
        const DeviceRig rig({u"--rate"_s, u"5000"_s});
        // The consoles are full from the beginning, as they are after a day.
        for (int i = 0; i < 1000; ++i)
            rig.window.serial()->parseLine(u"ERR=OVERHEAT message %1"_s.arg(i));
        QTRY_VERIFY_WITH_TIMEOUT(rig.probe->count > 50'000, 30'000);
        const qint64 early = residentBytes();
        QTRY_VERIFY_WITH_TIMEOUT(rig.probe->count > 300'000, 120'000);
        const double growth = double(residentBytes() - early) / 1e6;
        QVERIFY2(growth <= 5.0, QByteArray::number(growth) + " MB");
    }
};

QTEST_MAIN(TestEndToEnd)
#include "tst_endtoend.moc"
