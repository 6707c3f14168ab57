#include "widgets/xyplot/XYPointRing.h"

#include <QTest>

class TestXYPointRing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dropsOldestWhenFull()
    {
        XYPointRing ring;
        fill(ring, 3, {1, 2, 3, 4});
        QCOMPARE(inOrder(ring), QList<int>({2, 3, 4}));
        QCOMPARE(ring.head(), 1);
        QCOMPARE(ring.points(), QList<QPointF>({{4, 0}, {2, 0}, {3, 0}})); // as they are stored
    }

    void keepsOrderWhenItGrows()
    {
        XYPointRing ring;
        fill(ring, 3, {1, 2, 3, 4});
        fill(ring, 5, {5, 6, 7});
        QCOMPARE(inOrder(ring), QList<int>({3, 4, 5, 6, 7}));
    }

    void keepsNewestWhenItShrinks()
    {
        XYPointRing ring;
        fill(ring, 3, {1, 2, 3, 4});
        ring.setCapacity(2);
        QCOMPARE(inOrder(ring), QList<int>({3, 4}));
        QCOMPARE(ring.head(), 0);
    }

    void boundsItsCapacity()
    {
        XYPointRing ring;
        ring.setCapacity(2'000'000'000);
        QCOMPARE(ring.capacity(), 200'000);
    }

private:
    static void fill(XYPointRing& ring, int capacity, const QList<int>& pushed)
    {
        ring.setCapacity(capacity);
        for (const int x : pushed)
            ring.push({double(x), 0.0});
    }
    static QList<int> inOrder(const XYPointRing& ring)
    {
        QList<int> order;
        for (int i = 0; i < ring.size(); ++i)
            order.append(int(ring.at(i).x()));
        return order;
    }
};

QTEST_APPLESS_MAIN(TestXYPointRing)
#include "tst_xypointring.moc"
