#include "app/CommandLine.h"
#include "app/Sigvane.h"
#include "canvas/DashboardItem.h"
#include "canvas/DashboardView.h"
#include "canvas/DesignScene.h"
#include "licensing/LicenseCheck.h"
#include "serial/SerialManager.h"
#include "support/LoopWatch.h"
#include "widgets/DashboardWidget.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QLabel>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QTextEdit>

#include <algorithm>
#include <ctime>
#include <unistd.h>

using namespace Qt::StringLiterals;

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kSanitized = true;
#else
constexpr bool kSanitized = false;
#endif

namespace {

/// Counts the lines that the router delivers, by the counter that the device puts into each.
class SequenceProbe : public DashboardWidget
{
public:
    SequenceProbe() { assignSignals({u"SEQ"_s}); }
    QString typeName() const override { return u"SequenceProbe"_s; }
    void setValue(double value) override
    {
        if (count > 0 && value != last + 1)
            ++gaps;
        last = value;
        ++count;
    }
    qint64 count = 0;
    qint64 gaps = 0;
    double last = -1;
};

qint64 residentBytes()
{
    QFile file(u"/proc/self/statm"_s);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toLongLong() * ::sysconf(_SC_PAGESIZE);
}

double processorSeconds() { return double(std::clock()) / CLOCKS_PER_SEC; }

/// The window on a copy of the example project, with its device on a pseudo-terminal.
struct Rig
{
    QTemporaryDir dir;
    LicenseCheck license{true, u"All features"_s};
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
        device.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        device.start(QStringLiteral(SIGVANE_DEVICE), deviceOptions);
        if (!device.waitForReadyRead())
            return false;
        CommandLine wanted;
        wanted.projectDir = dir.path();
        wanted.layoutFile = example + u"/layouts/pump-rig.json"_s;
        wanted.portName = QString::fromLocal8Bit(device.readLine()).trimmed();
        window.setLicenseCheck(&license);
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
        QElapsedTimer clock;
        clock.start();
        const double processorBefore = processorSeconds();
        QTRY_COMPARE_WITH_TIMEOUT(rig.probe->count, kLines, 60'000);
        qInfo("%d lines in %.1f s, %.0f %% of a core, longest block of the event loop %.1f ms", kLines,
              double(clock.elapsed()) / 1000.0,
              100.0 * (processorSeconds() - processorBefore) * 1000.0 / double(clock.elapsed()),
              watch.longestBlockMs());
        QCOMPARE(rig.probe->gaps, 0);
        // From the wire to pixels: what is seen is no longer what was seen.
        QVERIFY(dashboard->grab().toImage() != before);
    }

    void memoryStaysFlat()
    {
        if (kSanitized)
            QSKIP("the sanitizer keeps freed memory");
        Rig rig;
        QVERIFY(rig.start({u"--rate"_s, u"5000"_s}));
        // The consoles are full from the beginning, as they are after a day.
        QByteArray flood;
        for (int i = 0; i < 1000; ++i)
            flood += "ERR=OVERHEAT message " + QByteArray::number(i) + '\n';
        const QList<QByteArray> lines = flood.split('\n');
        for (const QByteArray& line : lines)
            rig.window.serial()->parseLine(QString::fromUtf8(line));
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
