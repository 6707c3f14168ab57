#include "widgets/trend/TrendSeries.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>

class TestTrendSeries : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Random calls, four fifths of them appending at first, then most of them removing, and so on.
    void answersAsPlainListWould()
    {
        QRandomGenerator random(7);
        for (int round = 0; round < 20'000; ++round) {
            change(random.bounded(round / 5000 % 2 == 0 ? 20 : 5), random);
            if (round % 40 != 0 || m_plain.size() < 2)
                continue;
            QCOMPARE(m_series.size(), m_plain.size());
            const qsizetype begin = random.bounded(int(m_plain.size()));
            const qsizetype end = begin + random.bounded(int(m_plain.size() - begin)) + 1;
            const ValueExtent extent = plainExtent(begin, end);
            QCOMPARE(m_series.extent(begin, end).low, extent.low);
            QCOMPARE(m_series.extent(begin, end).high, extent.high);
            const qint64 tMs = m_plain[begin].tMs;
            const auto older = [tMs](const TrendSample& sample) { return sample.tMs < tMs; };
            QCOMPARE(m_series.indexAtOrAfter(tMs), std::count_if(m_plain.begin(), m_plain.end(), older));
        }
        QVERIFY(m_plain.size() > 5000);
    }

private:
    void change(int action, QRandomGenerator& random)
    {
        if (action >= 2 || m_plain.isEmpty()) {
            const double value = random.bounded(50) == 0 ? qQNaN() : random.generateDouble();
            m_series.append({m_tMs += random.bounded(3), value});
            m_plain.append(m_series.last());
        } else if (action == 1) {
            m_series.removeFirst();
            m_plain.removeFirst();
        } else {
            m_series.removeLast();
            m_plain.removeLast();
        }
    }
    ValueExtent plainExtent(qsizetype begin, qsizetype end) const
    {
        ValueExtent extent;
        for (qsizetype i = begin; i < end; ++i)
            extent.include(m_plain[i].value);
        return extent;
    }

    TrendSeries m_series;
    QList<TrendSample> m_plain;
    qint64 m_tMs = 0;
};

QTEST_APPLESS_MAIN(TestTrendSeries)
#include "tst_trendseries.moc"
