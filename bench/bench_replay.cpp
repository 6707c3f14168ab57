// A replay in the real window with the example's dashboard: a recording of the example's device at 1,000
// lines per second, replayed at rate 100 for half a minute, and jumps in it, each until its picture is on the
// screen. "replay" or "seek" as argument runs one of them. Prints "name value" lines; scripts/bench.sh makes
// a table of them.

#include "app/CommandLine.h"
#include "app/Sigvane.h"
#include "bench/LoopWatch.h"
#include "bench/WindowApplication.h"
#include "canvas/DashboardItem.h"
#include "canvas/DashboardView.h"
#include "canvas/DesignScene.h"
#include "licensing/LicenseCheck.h"
#include "playback/PlaybackController.h"
#include "playback/recording/SignalPlaybackEngine.h"
#include "playback/recording/SignalRecorder.h"
#include "serial/SerialManager.h"
#include "widgets/trend/TrendPlotWidget.h"

#include <QDoubleSpinBox>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QSlider>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

constexpr double kRate = 100.0;
constexpr qint64 kWallMs = 30'000;
constexpr qint64 kSpareMs = 2'000;
constexpr qint64 kReplayLines = qint64(kRate) * (kWallMs + kSpareMs); // one is a millisecond
constexpr qint64 kSeekLines = 200'000;
constexpr int kSeeks = 60;
constexpr int kHistoryMs = 10'000;
constexpr int kFloodEvents = 100'000; // errors, and as many messages
constexpr QSize kWindowSize(1600, 1000);

[[noreturn]] void die(const char* what)
{
    std::fprintf(stderr, "bench_replay: %s\n", what);
    std::exit(1);
}

void print(const char* name, double value)
{
    std::printf("%s %.9g\n", name, value);
    std::fflush(stdout);
}

/// The way from the device's lines to a recording, without a port in between.
QString recordExample(const QString& dir, qint64 lines)
{
    SerialManager serial;
    SignalRecorder recorder;
    QObject::connect(&serial, &SerialManager::stateParsed, &recorder, &SignalRecorder::writeState);
    QObject::connect(&serial, &SerialManager::errorParsed, &recorder, &SignalRecorder::writeError);
    QObject::connect(&serial, &SerialManager::lineParsed, &recorder, &SignalRecorder::writeValues);
    QObject::connect(&serial, &SerialManager::unrecognizedParsed, &recorder, &SignalRecorder::writeMessage);
    if (!recorder.start(dir, QStringLiteral(SIGVANE_EXAMPLE "/dashboard_signals.def"),
                        QDateTime::currentDateTime()))
        die("the recording cannot be written");
    QProcess device;
    device.start(QStringLiteral(SIGVANE_DEVICE),
                 {QStringLiteral("--stdout"), QStringLiteral("--rate"), QStringLiteral("0"),
                  QStringLiteral("--lines"), QString::number(lines)});
    while (device.waitForReadyRead())
        serial.receive(device.readAllStandardOutput());
    device.waitForFinished();
    recorder.stop();
    if (!recorder.error().isEmpty() || recorder.lineCount() < lines)
        die("the recording is not whole");
    return recorder.path();
}

struct Rig
{
    LicenseCheck license{true, QStringLiteral("All features")};
    QTemporaryDir dir;
    Sigvane window;
    SignalPlaybackEngine* engine = window.playbackEngine();

    explicit Rig(qint64 lines)
    {
        window.setLicenseCheck(&license);
        CommandLine wanted;
        wanted.projectDir = QStringLiteral(SIGVANE_EXAMPLE);
        wanted.layoutFile = *wanted.projectDir + QStringLiteral("/layouts/pump-rig.json");
        window.resize(kWindowSize);
        window.startWith(wanted);
        window.show();
        const QString path = recordExample(dir.path(), lines);
        QElapsedTimer clock;
        clock.start();
        window.startPlayback(path);
        print("load_seconds", double(clock.nsecsElapsed()) / 1e9);
        if (!engine->hasFrames())
            die("the recording cannot be loaded");
    }
};

/// Compares what is delivered with the recording, frame by frame.
class OrderCheck : public QObject
{
public:
    explicit OrderCheck(SignalPlaybackEngine* engine)
    {
        connect(engine, &SignalPlaybackEngine::signalValuesUpdated, this,
                [this, engine](const QMap<QString, double>& values) {
                    const SignalRecording& recording = *engine->recording();
                    const qsizetype next = recording.valuesBefore(m_frame + 1) - 1;
                    const bool same =
                        next < 0 || values.value(recording.keys().at(qsizetype(recording.valueKey(next)))) ==
                                        recording.valueNumber(next);
                    m_wrong += same ? 0 : 1;
                    ++m_frame;
                });
    }
    qsizetype frames() const { return m_frame; }
    qint64 wrong() const { return m_wrong; }

private:
    qsizetype m_frame = 0;
    qint64 m_wrong = 0;
};

void runReplay()
{
    Rig rig(kReplayLines);
    rig.window.setMode(Sigvane::Idle);
    rig.window.findChild<QDoubleSpinBox*>()->setValue(kRate);
    const OrderCheck order(rig.engine);
    rig.window.setMode(Sigvane::Play);
    const LoopWatch watch;
    QElapsedTimer clock;
    clock.start();
    double reached = 0.0;
    double seconds = 0.0;
    QEventLoop loop;
    QObject::connect(rig.engine, &SignalPlaybackEngine::playbackTimeAdvanced, &loop, [&](double t) {
        reached = t;
        seconds = double(clock.nsecsElapsed()) / 1e9;
        if (clock.elapsed() >= kWallMs)
            loop.quit();
    });
    loop.exec();
    print("replay_time_deviation", std::abs(reached - seconds * kRate) / (seconds * kRate));
    print("replay_longest_block_ms", watch.longestBlockMs());
    print("replay_frames", double(order.frames()));
    print("replay_frames_wrong",
          double(order.wrong() +
                 std::abs(order.frames() - rig.engine->recording()->leadingFramesBefore(
                                               std::nextafter(rig.engine->playTime(), HUGE_VAL)))));
}

/// Says when the dashboard has been painted.
class PaintWatch : public QObject
{
public:
    explicit PaintWatch(QWidget* viewport) { viewport->installEventFilter(this); }
    bool painted = false;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        painted = painted || event->type() == QEvent::Paint;
        return false;
    }
};

void runSeek()
{
    Rig rig(kSeekLines);
    const QList<TrendPlotWidget*> plots = rig.window.scene()->widgetsOfType<TrendPlotWidget>(false);
    for (TrendPlotWidget* plot : plots)
        plot->loadConfig({{QStringLiteral("timeWindowMs"), kHistoryMs}});
    rig.window.setMode(Sigvane::Pause);
    auto* slider = rig.window.findChild<QSlider*>();
    PaintWatch paint(rig.window.findChild<DashboardView*>()->viewport());
    QRandomGenerator random(20'000'101);
    std::vector<double> blocks;
    std::vector<double> untilPainted;
    for (int i = 0; i < kSeeks; ++i) {
        QCoreApplication::processEvents();
        paint.painted = false;
        QElapsedTimer clock;
        clock.start();
        slider->setSliderPosition(int(random.bounded(100, 1000))); // the action of a key or the wheel
        blocks.push_back(double(clock.nsecsElapsed()) / 1e6);
        while (!paint.painted)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::processEvents();
        untilPainted.push_back(double(clock.nsecsElapsed()) / 1e6);
    }
    std::sort(blocks.begin(), blocks.end());
    std::sort(untilPainted.begin(), untilPainted.end());
    print("seek_median_ms", blocks[kSeeks / 2]);
    print("seek_painted_median_ms", untilPainted[kSeeks / 2]);
    print("seek_painted_longest_ms", untilPainted.back());
}

/// Jumps to the end of a recording that hands its errors and messages to the consoles.
void runFlood()
{
    Rig rig(1);
    const QString path = rig.dir.filePath(QStringLiteral("flood.rec"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        die("no file to flood with");
    for (int i = 0; i < kFloodEvents; ++i) {
        const QByteArray time = QByteArray::number(i * 0.001, 'f', 6);
        file.write(time + " ERR=OVERHEAT\n" + time + " RAW message " + QByteArray::number(i) + '\n');
    }
    file.close();
    rig.window.startPlayback(path);
    rig.window.setMode(Sigvane::Pause);
    QCoreApplication::processEvents();
    auto* slider = rig.window.findChild<QSlider*>();
    const LoopWatch watch;
    std::vector<double> blocks;
    for (int i = 0; i < 9; ++i) {
        QElapsedTimer clock;
        clock.start();
        slider->setSliderPosition(1000 - i);
        blocks.push_back(double(clock.nsecsElapsed()) / 1e6);
        for (int turn = 0; turn < 20; ++turn)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    std::sort(blocks.begin(), blocks.end());
    print("seek_flood_median_ms", blocks[blocks.size() / 2]);
    print("seek_flood_longest_block_ms", watch.longestBlockMs());
}

} // namespace

int main(int argc, char** argv)
{
    const WindowApplication application(argc, argv);
    const QByteArray only(argc > 1 ? argv[1] : "");
    if (only.isEmpty() || only == "replay")
        runReplay();
    if (only.isEmpty() || only == "seek")
        runSeek();
    if (only.isEmpty() || only == "flood")
        runFlood();
}
