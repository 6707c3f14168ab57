#include "widgets/trend/TrendClock.h"
#include "widgets/trend/TrendGeometry.h"

#include <QTest>

using namespace TrendGeometry;

// TrendClock, and the functions of TrendGeometry that pictures of the plot do not show.
class TestTrendClockAndGeometry : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isSilent200MsAfterTheLastSample() { QVERIFY(isSilentSince(-200)); }

    // A little ahead, so that a slow machine does not make it old.
    void isNotSilentJustAfterASample() { QVERIFY(!isSilentSince(150)); }

    void isSilentWhenTheClockWasSetBack() { QVERIFY(isSilentSince(3'600'000)); }

    void isNeverSilentInReplay() { QVERIFY(!isSilentSince(-3'600'000, true)); }

    void leavesRoomAroundThePlot() { QCOMPARE(plotRect({220, 140}, {}), QRect(46, 30, 168, 84)); }

    void hasNoPlotInNarrowWidget() { QVERIFY(plotRect({52, 140}, {}).isEmpty()); }

    void writesTimeBeforeNow() { QCOMPARE(tickLabel(0.25, 10'000), "-7.500s"); }

    void ticksLeaveOutEndsAndZero()
    {
        QList<double> values;
        for (const ValueTick& tick : valueTicks(-1.0, 1.0, 4))
            values.append(tick.value);
        QCOMPARE(values, QList({0.5, -0.5}));
    }

private:
    /// With the last sample at that time from now.
    static bool isSilentSince(int relativeMs, bool replay = false)
    {
        TrendClock clock;
        clock.setExternal(replay);
        return clock.isSilentSince(TrendClock::wallMs() + relativeMs);
    }
};

QTEST_APPLESS_MAIN(TestTrendClockAndGeometry)
#include "tst_trendclockandgeometry.moc"
