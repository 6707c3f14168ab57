#include "app/CommandLine.h"
#include "app/Sigvane.h"
#include "canvas/DashboardItem.h"
#include "canvas/DashboardView.h"
#include "canvas/DesignScene.h"
#include "serial/SerialManager.h"
#include "support/LoopWatch.h"
#include "widgets/DashboardWidget.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

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
    QFile file(u"/proc/self/statm"_s);
    const bool open = file.open(QIODevice::ReadOnly);
    return open ? file.readAll().split(' ').value(1).toLongLong() * ::sysconf(_SC_PAGESIZE) : 0;
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

    bool start(const QStringList& deviceOptions)
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
