#include "playback/PositionScrubber.h"
#include "playback/recording/SignalPlaybackEngine.h"
#include "support/Canvas.h"
#include "widgets/trend/TrendPlotWidget.h"

#include <QFile>
#include <QLabel>
#include <QSignalSpy>
#include <QSlider>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

class TestPositionScrubber : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void letGoSeeksOnceButIsNoRelease()
    {
        const QTemporaryDir dir;
        QFile file(dir.filePath(u"a.rec"_s));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("0 A=1\n1000 A=2\n") > 0);
        file.close();
        Canvas canvas;
        auto* plot = dynamic_cast<TrendPlotWidget*>(canvas.add("TrendPlot", {})->widget());
        SignalPlaybackEngine engine;
        QVERIFY(engine.loadFromFile(file.fileName()));
        QSlider slider(Qt::Horizontal);
        slider.setRange(0, SignalPlaybackEngine::kPositionSteps);
        QLabel time;
        PositionScrubber scrubber(&engine, &canvas.scene, &slider, &time);
        const QSignalSpy released(&scrubber, &PositionScrubber::released);
        const QSignalSpy seeks(&engine, &SignalPlaybackEngine::messageReset);

        scrubber.letGo(); // of nothing
        slider.setSliderDown(true);
        slider.setSliderPosition(300);
        scrubber.letGo();
        QCOMPARE(seeks.size(), 1);
        QCOMPARE(plot->currentNowMs(), 300'000);
        QVERIFY(!slider.isSliderDown() && !scrubber.isScrubbing() && released.isEmpty());

        slider.setSliderDown(true);
        slider.setSliderDown(false); // the user's own
        QCOMPARE(released.size(), 1);
    }
};

QTEST_MAIN(TestPositionScrubber)
#include "tst_positionscrubber.moc"
