#include "playback/PositionScrubber.h"
#include "support/ReplayDesk.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

class TestPositionScrubber : public QObject
{
    Q_OBJECT

    // A step of the slider is a second of the recording.
    struct Rig : ReplayDesk
    {
        PositionScrubber scrubber{&engine, &canvas.scene, &slider, &time};
        const QSignalSpy released{&scrubber, &PositionScrubber::released};
        const QSignalSpy seeks{&engine, &SignalPlaybackEngine::messageReset};

        Rig()
        {
            if (!engine.loadFromFile(write(u"a.rec"_s, "0 A=1\n495 A=2\n497 A=3\n1000 A=4\n")))
                qFatal("no recording");
        }
        void press(int x)
        {
            QTest::mousePress(&slider, Qt::MiddleButton, {}, {x, 15});
        } // where the handle goes
        void move(int x) { QTest::mouseMove(&slider, {x, 15}); }
        void release(int x) { QTest::mouseRelease(&slider, Qt::MiddleButton, {}, {x, 15}); }
    };

private Q_SLOTS:
    void heldHandleIsFollowedNowAndThen()
    {
        Rig rig;
        rig.engine.startPlayback();
        rig.press(100);
        QVERIFY(!rig.engine.isPlaying());
        const auto before = rig.seeks.size();
        rig.move(300);
        rig.move(350);
        QCOMPARE(rig.seeks.size(), before);
        QTRY_VERIFY(rig.seeks.size() > before);
        QVERIFY(rig.slider.value() > 800);
        QCOMPARE(rig.plot->currentNowMs(), rig.slider.value() * 1000);
        const auto first = rig.seeks.size();
        QTRY_VERIFY(rig.seeks.size() > first); // and on, until it is released
    }

    void releaseJumpsWhereTheHandleIs()
    {
        Rig rig;
        rig.press(100);
        rig.move(350);
        const auto before = rig.released.size();
        rig.release(350);
        QCOMPARE(rig.plot->currentNowMs(), rig.slider.value() * 1000);
        QVERIFY(!rig.scrubber.isScrubbing());
        QCOMPARE(rig.released.size(), before + 1);
    }

    void letGoJumpsWhereTheHandleIsButIsNoRelease()
    {
        Rig rig;
        rig.scrubber.letGo(); // of nothing
        rig.slider.setSliderDown(true);
        rig.slider.setSliderPosition(300);
        rig.scrubber.letGo();
        QCOMPARE(rig.seeks.size(), 1);
        QCOMPARE(rig.plot->currentNowMs(), 300'000);
        QVERIFY(!rig.slider.isSliderDown());
        QCOMPARE(rig.released.size(), 0);
    }

    void keyJumpsAndBringsBackWhatThePlotShows()
    {
        Rig rig;
        rig.plot->addSample(u"A"_s, 9.0, 900'000, false); // to come, and so gone
        rig.slider.setValue(499);
        const QSignalSpy history(&rig.engine, &SignalPlaybackEngine::signalValuesUpdatedAt);
        QTest::keyClick(&rig.slider, Qt::Key_Right);
        QCOMPARE(rig.plot->currentNowMs(), 500'000);
        QCOMPARE(rig.released.size(), 1);
        QCOMPARE(history.size(), 1);
        QCOMPARE(history[0][0], 497.0);
        QVERIFY(rig.plot->series(u"A"_s)->isEmpty());
    }

    void plotsRepaintAfterAJump()
    {
        Rig rig;
        QTest::keyClick(&rig.slider, Qt::Key_Right);
        rig.canvas.view.grab();
        for (int pass = 0; pass < 5; ++pass) // until all changes so far have gone through the canvas
            QCoreApplication::processEvents();
        const QSignalSpy repaints(&rig.canvas.scene, &QGraphicsScene::changed);
        rig.plot->setValueForSignalAt(u"A"_s, 1.0, 0.5);
        QTRY_VERIFY(!repaints.isEmpty());
    }
};

QTEST_MAIN(TestPositionScrubber)
#include "tst_positionscrubber.moc"
