#include "widgets/trend/TrendClock.h"
#include "widgets/trend/TrendIntake.h"

#include <QTest>

#include <cmath>
#include <limits>

namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();

QList<qint64> timesOf(const TrendIntake& intake, const QString& key = QStringLiteral("A"))
{
    QList<qint64> times;
    const TrendSeries* series = intake.store().find(key);
    for (qsizetype i = 0; series && i < series->size(); ++i)
        times.append(series->at(i).tMs);
    return times;
}

/// The whole numbers of seconds from first to last, in milliseconds.
QList<qint64> seconds(int first, int last)
{
    QList<qint64> times;
    for (int second = first; second <= last; ++second)
        times.append(second * qint64(1000));
    return times;
}

} // namespace

class TestTrendIntake : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void storesWhatIsAssignedAndNew_data()
    {
        QTest::addColumn<QString>("assigned");
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("hold");
        QTest::addColumn<QList<double>>("stepsSec");
        QTest::addColumn<double>("change");
        QTest::addColumn<QList<qint64>>("storedMs");
        const QList<double> times{0.0, 0.040, 0.0609};
        const auto row = [](const char* title, const char* assigned, const char* name) -> QTestData& {
            return QTest::newRow(title) << QString(assigned) << QString(name);
        };
        row("repeats", "A", "A") << true << times << 1e-10 << QList<qint64>{0};
        row("repeats without hold", "A", "A") << false << times << 0.0 << QList<qint64>{0, 60};
        row("changes", "A", "A") << true << times << 1e-8 << QList<qint64>{0, 40, 60};
        row("suffix came", "A", "A: raw") << true << times << 1.0 << QList<qint64>{0, 40, 60};
        row("suffix assigned", "A: raw", "A: raw") << true << times << 1.0 << QList<qint64>{0, 40, 60};
        row("only suffix assigned", "A: raw", "A") << true << times << 1.0 << QList<qint64>{};
        row("other case", "A", "a") << true << times << 1.0 << QList<qint64>{};
        row("bad times", "A", "A") << true << QList{-1e300, 1.0, -kInf, qQNaN(), kInf, 1e300} << 1.0
                                   << QList<qint64>{-1'000'000'000'000'000, 1000, 1'000'000'000'000'000};
    }

    void storesWhatIsAssignedAndNew()
    {
        QFETCH(QString, assigned);
        QFETCH(QString, name);
        QFETCH(bool, hold);
        QFETCH(QList<double>, stepsSec);
        QFETCH(double, change);
        QFETCH(QList<qint64>, storedMs);
        TrendClock clock;
        TrendIntake intake(clock);
        intake.setAssignment({assigned});
        intake.setRules({10'000, hold});
        clock.setExternal(true);
        clock.setExternalNowMs(std::numeric_limits<qint64>::min());
        int told = 0;
        for (int i = 0; i < stepsSec.size(); ++i)
            told += intake.addTimed(name, 1.0 + i * change, stepsSec[i]);
        QCOMPARE(timesOf(intake), storedMs);
        QCOMPARE(told, storedMs.size());
    }

    void prunesAllButOneBeforeTheWindow()
    {
        Filled filled;
        filled.clock.setExternalNowMs(15'000);
        filled.intake.prune();
        QCOMPARE(timesOf(filled.intake), seconds(4, 19));
        filled.clock.setExternalNowMs(900'000);
        filled.intake.prune();
        QCOMPARE(timesOf(filled.intake), seconds(19, 19));
    }

    void prunesAllAtMostEvery30Ms()
    {
        Filled filled;
        filled.clock.setExternalNowMs(15'000);
        filled.intake.prune();
        filled.intake.pruneAll(15'029);
        QCOMPARE(timesOf(filled.intake), seconds(4, 19));
        filled.intake.pruneAll(15'030);
        QCOMPARE(timesOf(filled.intake), seconds(6, 19));
        filled.intake.pruneAll(900'000);
        QCOMPARE(timesOf(filled.intake), {});
    }

    void storesNoStampedRepeat()
    {
        Filled filled;
        filled.intake.clear();
        filled.intake.addStamped("A", 1.0, 0);
        filled.intake.addStamped("A", 1.0, 5000);
        QCOMPARE(timesOf(filled.intake), {0});
    }

    void trimsBothEnds()
    {
        Filled filled;
        filled.intake.trim(12'500);
        QCOMPARE(timesOf(filled.intake), seconds(2, 12));
        filled.intake.trim(-1);
        QCOMPARE(timesOf(filled.intake), {});
    }

    void answersWithNearestValue()
    {
        Filled filled;
        const TrendStore& store = filled.intake.store();
        QCOMPARE(store.valueNear("A", 11'500), 11.0);
        QCOMPARE(store.valueNear("A", 11'501), 12.0);
        QCOMPARE(store.valueNear("A", 99'000), 19.0);
        QVERIFY(std::isnan(store.valueNear("B", 0)));
    }

    void forgetsTheFutureWhenTimeGoesBack()
    {
        Filled filled;
        for (int i = 3; i < 6; ++i) // a seek that nobody announced
            filled.intake.addTimed("A", -i, i);
        QCOMPARE(timesOf(filled.intake), seconds(0, 3) + seconds(3, 5));
        QCOMPARE(filled.intake.store().find("A")->last().value, -5.0);
    }

    void prunesSilentSeriesWithOthers()
    {
        Filled filled;
        filled.intake.setAssignment({"A", "B"});
        filled.clock.setExternalNowMs(40'000);
        filled.intake.addTimed("B", 1.0, 40.0);
        QCOMPARE(timesOf(filled.intake), seconds(19, 19));
    }

    void remembersLastStoredTime()
    {
        Filled filled;
        QCOMPARE(filled.intake.lastAppendMs(), 19'000);
        filled.intake.addTimed("A", 19.0, 20.0); // a repeat
        QCOMPARE(filled.intake.lastAppendMs(), 19'000);
    }

private:
    /// A value per second, 20 of them, each its time, at a now of 0 and with a window of 10 s.
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
    };
};

QTEST_APPLESS_MAIN(TestTrendIntake)
#include "tst_trendintake.moc"
