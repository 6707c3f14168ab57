#include "widgets/trend/TrendChannels.h"
#include "widgets/trend/TrendClock.h"
#include "widgets/trend/TrendGeometry.h"
#include "widgets/trend/TrendMarkerLayout.h"
#include "widgets/trend/TrendMarkers.h"

#include <QFontMetrics>
#include <QTest>

// The small parts of a trend plot: TrendClock, TrendChannels, TrendGeometry and TrendMarkerLayout.
class TestTrendParts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isSilent200MsAfterTheLastSample() { QVERIFY(isSilentSince(-200)); }

    // A little ahead, so that a slow machine does not make it old.
    void isNotSilentJustAfterASample() { QVERIFY(!isSilentSince(150)); }

    void isSilentWhenTheClockWasSetBack() { QVERIFY(isSilentSince(3'600'000)); }

    void hiddenChannelStaysHiddenWhenReassigned()
    {
        TrendChannels channels;
        channels.setAssignment({"A", "B"});
        channels.toggle("B");
        channels.setAssignment({"A"});
        channels.setAssignment({"B"});
        QVERIFY(channels.list().first().isHidden);
    }

    void flatValueGetsRoom() { QCOMPARE(TrendGeometry::paddedRange(3.0, 3.0), std::pair(2.0, 4.0)); }

    void writesTimeBeforeNow() { QCOMPARE(TrendGeometry::tickLabel(0.25, 10'000), "-7.500s"); }

    void writesValuesFromTopToBottom()
    {
        QList<double> values;
        for (const TrendGeometry::ValueTick& tick : TrendGeometry::valueTicks(-1.0, 1.0, 4))
            values.append(tick.value);
        QCOMPARE(values, QList({0.5, -0.5}));
    }

    void dataMarkerMovesWithTime() { QCOMPARE(boxesOf({Marker::Kind::Data, 2500, 0, {}}), boxesAtQuarter()); }

    void dataMarkerLeavesWithItsTime() { QVERIFY(boxesOf({Marker::Kind::Data, -100, 0, {}}).isEmpty()); }

private:
    /// With the last sample at that time from now.
    static bool isSilentSince(int relativeMs)
    {
        return TrendClock().isSilentSince(TrendClock::wallMs() + relativeMs);
    }
    /// Of a marker in a window from 0 to 10 s.
    static QList<QRect> boxesOf(const Marker& marker)
    {
        return TrendMarkerLayout({marker}, QRect(10, 10, 400, 200), 0, 10'000, QFontMetrics(QFont()))
            .timeBoxes();
    }
    static QList<QRect> boxesAtQuarter() { return boxesOf({Marker::Kind::Screen, 0, 0.25, {}}); }
};

QTEST_MAIN(TestTrendParts)
#include "tst_trendparts.moc"
