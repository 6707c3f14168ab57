// The whole program under load: the real window with the example's dashboard, fed over a pseudo-terminal,
// first by the example's device at 5,000 lines per second, then by short lines as fast as they are taken,
// beside a loop that only reads and splits those. "example" or "flood" as argument runs one of them. Prints
// "name value" lines; scripts/bench.sh makes a table of them.

#include "app/CommandLine.h"
#include "app/Sigvane.h"
#include "bench/LoopWatch.h"
#include "bench/WindowApplication.h"
#include "canvas/DashboardItem.h"
#include "canvas/DesignScene.h"
#include "licensing/LicenseCheck.h"
#include "serial/SerialManager.h"
#include "widgets/DashboardWidget.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/resource.h>
#include <termios.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

constexpr qint64 kRate = 5000;
constexpr qint64 kWarmUpLines = 2 * kRate;
constexpr qint64 kExampleLines = kWarmUpLines + 10 * kRate;
constexpr qint64 kFloodLines = 2'000'000;
constexpr int kFloodRuns = 5; // of each kind, in turn; the median counts
constexpr int kPollMs = 5;
constexpr qint64 kPatienceMs = 5000;
constexpr QSize kWindowSize(1600, 1000);

// Shown by the example's dashboard, each on every line of its device.
constexpr std::array kFloodKeys{"SPEED", "DUTY", "I_PHASE", "V_BUS", "TORQUE",
                                "POWER", "P_IN", "P_OUT",   "FLOW",  "VIB"};

[[noreturn]] void die(const char* what)
{
    std::fprintf(stderr, "bench_window: %s\n", what);
    std::exit(1);
}

void print(const char* name, double value) { std::printf("%s %.9g\n", name, value); }

double processorSeconds()
{
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) { return double(time.tv_sec) + double(time.tv_usec) / 1e6; };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// Counts the values that the router delivers; one is on every line.
class Probe : public DashboardWidget
{
public:
    explicit Probe(const QList<QString>& names) { assignSignals(names); }
    QString typeName() const override { return QStringLiteral("Probe"); }
    void setValue(double) override { ++count; }
    qint64 count = 0;
};

/// Runs the event loop until so many values came; false when there was no further one for some seconds.
bool waitForValues(const Probe& probe, qint64 count)
{
    QEventLoop loop;
    QElapsedTimer sinceProgress;
    sinceProgress.start();
    qint64 seen = probe.count;
    const auto look = [&] {
        if (seen != probe.count)
            sinceProgress.start();
        seen = probe.count;
        if (seen >= count || sinceProgress.hasExpired(kPatienceMs))
            loop.quit();
    };
    QTimer poll;
    poll.setTimerType(Qt::PreciseTimer);
    QObject::connect(&poll, &QTimer::timeout, &loop, look);
    poll.start(kPollMs);
    loop.exec();
    return probe.count >= count;
}

/// A pseudo-terminal and the thread that fills it with short lines, as fast as they are taken.
class Flood
{
public:
    Flood()
        : m_master(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC))
    {
        if (m_master < 0 || ::grantpt(m_master) != 0 || ::unlockpt(m_master) != 0)
            die("no pseudo-terminal");
        termios settings{};
        ::tcgetattr(m_master, &settings);
        ::cfmakeraw(&settings);
        ::tcsetattr(m_master, TCSANOW, &settings);
        m_port = ::ptsname(m_master);
    }
    ~Flood()
    {
        if (m_writer.joinable())
            m_writer.join();
        ::close(m_master);
    }
    Flood(const Flood&) = delete;
    Flood& operator=(const Flood&) = delete;

    const QByteArray& port() const { return m_port; }
    /// To be called when the reader has the port open; all must be read before this is destroyed.
    void start() { m_writer = std::thread(&Flood::write, this); }

private:
    void write() const
    {
        constexpr qint64 kBlockLines = 1000;
        QByteArray block;
        for (qint64 i = 0; i < kBlockLines; ++i)
            block +=
                kFloodKeys[std::size_t(i) % kFloodKeys.size()] + ('=' + QByteArray::number(1000 + i) + '\n');
        for (qint64 lines = 0; lines < kFloodLines; lines += kBlockLines) {
            for (qsizetype done = 0; done < block.size();) {
                const ssize_t written =
                    ::write(m_master, block.constData() + done, size_t(block.size() - done));
                if (written < 0 && errno != EINTR)
                    die("writing to the pseudo-terminal failed");
                done += std::max<ssize_t>(written, 0);
            }
        }
    }

    int m_master;
    QByteArray m_port;
    std::thread m_writer;
};

/// Lines per second of reading and splitting alone.
double readBarely()
{
    Flood flood;
    const int port = ::open(flood.port().constData(), O_RDONLY | O_NOCTTY | O_CLOEXEC);
    if (port < 0)
        die("cannot open the pseudo-terminal");
    QElapsedTimer clock;
    clock.start();
    flood.start();
    char buffer[64 * 1024];
    qint64 lines = 0;
    while (lines < kFloodLines) {
        const ssize_t size = ::read(port, buffer, sizeof buffer);
        if (size <= 0)
            die("reading the pseudo-terminal failed");
        const char* const end = buffer + size;
        const char* at = buffer;
        while (const void* lineFeed = std::memchr(at, '\n', std::size_t(end - at))) {
            at = static_cast<const char*>(lineFeed) + 1;
            ++lines;
        }
    }
    const double seconds = double(clock.nsecsElapsed()) / 1e9;
    ::close(port);
    return double(lines) / seconds;
}

/// The window on a copy of the example's definitions.
struct Rig
{
    QTemporaryDir dir;
    LicenseCheck license{true, QStringLiteral("All features")};
    Sigvane window;

    Rig()
    {
        const QString example = QStringLiteral(SIGVANE_EXAMPLE);
        const QString definitions = QStringLiteral("/dashboard_signals.def");
        if (!dir.isValid() || !QFile::copy(example + definitions, dir.path() + definitions))
            die("cannot copy the example's definitions");
        CommandLine wanted;
        wanted.projectDir = dir.path();
        wanted.layoutFile = example + QStringLiteral("/layouts/pump-rig.json");
        window.setLicenseCheck(&license);
        window.startWith(wanted);
        window.resize(kWindowSize);
        window.show();
        if (window.scene()->dashboardItems().isEmpty())
            die("the example's layout did not load");
    }

    void open(const QString& port)
    {
        if (!window.serial()->open({.portName = port}))
            die("the window cannot open the pseudo-terminal");
    }

    Probe* addProbe(const QList<QString>& names)
    {
        auto* probe = new Probe(names);
        window.scene()->addItem(new DashboardItem(probe));
        return probe;
    }
};

/// How many lines the device sent, from the line with which it ends: lines=60000 bytes=…
qint64 linesSent(QProcess& device)
{
    if (!device.waitForFinished())
        die("the example's device does not end");
    const QByteArray report = device.readAllStandardError();
    if (!report.startsWith("lines="))
        die("the example's device does not say how many lines it sent");
    return report.mid(6, report.indexOf(' ') - 6).toLongLong();
}

void runExample()
{
    Rig rig;
    const Probe* const probe = rig.addProbe({QStringLiteral("SEQ")});
    QProcess device;
    device.start(QStringLiteral(SIGVANE_DEVICE), {QStringLiteral("--rate"), QString::number(kRate),
                                                  QStringLiteral("--lines"), QString::number(kExampleLines)});
    if (!device.waitForReadyRead())
        die("the example's device does not start");
    rig.open(QString::fromLocal8Bit(device.readLine()).trimmed());
    if (!waitForValues(*probe, kWarmUpLines))
        die("nothing comes from the example's device");

    const qint64 linesBefore = probe->count;
    const double processorBefore = processorSeconds();
    const LoopWatch watch;
    QElapsedTimer clock;
    clock.start();
    waitForValues(*probe, kExampleLines);
    const double seconds = double(clock.nsecsElapsed()) / 1e9;
    print("example_processor_share", (processorSeconds() - processorBefore) / seconds);
    print("example_longest_block_ms", watch.longestBlockMs());
    print("example_lines_per_second", double(probe->count - linesBefore) / seconds);
    rig.window.serial()->close(); // the device ends with its reader
    const qint64 sent = linesSent(device);
    print("example_lines_sent", double(sent));
    print("example_lines_lost", std::abs(double(sent - probe->count)));
}

/// Lines per second through the window; adds the lines that did not arrive to lost.
double floodWindow(qint64& lost, double& longestBlockMs)
{
    Rig rig;
    QList<QString> names;
    for (const char* key : kFloodKeys)
        names.append(QLatin1String(key));
    const Probe* const probe = rig.addProbe(names);
    Flood flood;
    rig.open(QString::fromLocal8Bit(flood.port()));
    const LoopWatch watch;
    QElapsedTimer clock;
    clock.start();
    flood.start();
    if (!waitForValues(*probe, kFloodLines))
        die("the window does not read the flood to its end"); // the writer still waits
    const double seconds = double(clock.nsecsElapsed()) / 1e9;
    longestBlockMs = std::max(longestBlockMs, watch.longestBlockMs());
    lost += std::abs(kFloodLines - probe->count);
    return double(probe->count) / seconds;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

void runFlood()
{
    std::vector<double> limits;
    std::vector<double> windows;
    double longestBlockMs = 0.0;
    qint64 lost = 0;
    for (int run = 0; run < kFloodRuns; ++run) {
        limits.push_back(readBarely());
        windows.push_back(floodWindow(lost, longestBlockMs));
    }
    print("flood_limit_lines_per_second", median(limits));
    print("flood_window_lines_per_second", median(windows));
    print("flood_longest_block_ms", longestBlockMs);
    print("flood_lines_sent", double(kFloodLines * kFloodRuns));
    print("flood_lines_lost", double(lost));
}

} // namespace

int main(int argc, char** argv)
{
    const WindowApplication application(argc, argv);
    const QByteArray only(argc > 1 ? argv[1] : "");
    if (only != "flood")
        runExample();
    if (only != "example")
        runFlood();
}
