#include "widgets/trend/TrendClock.h"
#include "widgets/trend/TrendIntake.h"

#include <QTest>

/// In a replay, at a now of 0 and with a window of 10 s: a value per second, 20 of them, each its time.
struct Filled
{
    TrendClock clock;
    TrendIntake intake{clock};

    Filled()
    {
        intake.setAssignment({"A"});
        clock.setExternal(true);
        for (int i = 0; i < 20; ++i)
            intake.addTimed("A", i, i);
    }
    QList<qint64> storedMs() const
    {
        QList<qint64> times;
        const TrendSeries& series = *intake.store().find("A");
        for (qsizetype i = 0; i < series.size(); ++i)
            times.append(series.at(i).tMs);
        return times;
    }
};

class TestTrendIntake : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void storesNoRepeat()
    {
        Filled filled;
        filled.intake.addTimed("A", 19.0 + 1e-10, 20.0);
        QCOMPARE(filled.storedMs().constLast(), 19'000);
        QCOMPARE(filled.intake.lastAppendMs(), 19'000); // so that a plot of repeats goes on scrolling
    }

    void storesSmallChange()
    {
        Filled filled;
        filled.intake.addTimed("A", 19.0 + 1e-8, 20.0);
        QCOMPARE(filled.storedMs().constLast(), 20'000);
    }

    void storesUnderNameWithoutSuffix()
    {
        Filled filled;
        filled.intake.addTimed("A: raw", 1.0, 20.0);
        QCOMPARE(filled.storedMs().constLast(), 20'000);
    }

    void storesNothingOfOthers() { QVERIFY(!Filled().intake.addTimed("a", 1.0, 20.0)); }

    void prunesAllButOneBeforeTheWindow()
    {
        Filled filled;
        filled.clock.setExternalNowMs(15'000);
        filled.intake.prune();
        QCOMPARE(filled.storedMs().constFirst(), 4000);
        filled.clock.setExternalNowMs(900'000);
        filled.intake.prune();
        QCOMPARE(filled.storedMs(), {19'000});
    }

    void forgetsTheFutureWhenTimeGoesBack()
    {
        Filled filled;
        filled.intake.addTimed("A", -3.0, 2.0); // a seek that nobody announced
        QCOMPARE(filled.storedMs(), QList<qint64>({0, 1000, 2000, 2000}));
    }
};

QTEST_APPLESS_MAIN(TestTrendIntake)
#include "tst_trendintake.moc"
