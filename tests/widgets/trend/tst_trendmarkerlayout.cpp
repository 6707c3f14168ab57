#include "widgets/trend/TrendMarkerLayout.h"
#include "widgets/trend/TrendMarkers.h"

#include <QFontMetrics>
#include <QTest>

class TestTrendMarkerLayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void givesEveryPlaceItsBox()
    {
        QList<Marker> markers;
        for (int i = 0; i < 30; ++i)
            markers.append({Marker::Kind::Screen, 0, i / 30.0, "x"});
        QCOMPARE(boxesOf(markers), 30);
    }

    void givesMarkersAtOnePlaceOneBox()
    {
        QCOMPARE(boxesOf(QList<Marker>(30, {Marker::Kind::Screen, 0, 0.5, "x"})), 1);
    }

private:
    static qsizetype boxesOf(const QList<Marker>& markers)
    {
        const QFontMetrics metrics((QFont()));
        return TrendMarkerLayout(markers, QRect(10, 10, 300, 200), 0, 1000, metrics).timeBoxes().size();
    }
};

QTEST_MAIN(TestTrendMarkerLayout)
#include "tst_trendmarkerlayout.moc"
