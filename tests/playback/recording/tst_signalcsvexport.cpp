#include "playback/recording/SignalCsvExport.h"
#include "support/Catalogue.h"
#include "support/Recording.h"

#include <QBuffer>
#include <QTest>

using namespace Qt::StringLiterals;

// The exact rows, and that every export ends.
class TestSignalCsvExport : public QObject
{
    Q_OBJECT

    const std::unique_ptr<DashboardSignalParser> m_catalogue =
        catalogueOf("DASHBOARD_MAPPING(M, -40, 0.5)\nDASHBOARD_SIGNAL(A, \"T, °C\", M)\n"
                    "DASHBOARD_STATE(G, R, \"Runs\")\nDASHBOARD_ERROR(E, 7, \"Hot\")\n");

    /// What is written of these signals and, if that is not all, why.
    QByteArray signalsCsv(const QByteArray& lines, const QStringList& keys, double hz, bool mapped = false,
                          const KeepGoing& keepGoing = {}) const
    {
        const auto columns = csvColumns(keys, mapped, m_catalogue.get());
        QBuffer csv;
        csv.open(QIODevice::WriteOnly);
        const CsvResult result = writeSignalsCsv(csv, recordingOf(lines), columns, hz, keepGoing);
        return csv.data() + QByteArrayList{"", "cancelled", "failed", "endless"}[int(result)];
    }

private Q_SLOTS:
    void writesARowPerFrame()
    {
        QCOMPARE(signalsCsv("-1e-7 A=0.33333333333333\n0.25 B=-0\n0.125\n0.2 A=1e15\n", {u"A"_s, u"B"_s}, 0),
                 "time,A,B\n0.000000,0.333333333333,nan\n0.250000,0.333333333333,0\n"
                 "0.125000,0.333333333333,0\n0.200000,1e+15,0\n");
    }

    void holdsValuesUntilTheFirstSampleAfterTheLastFrame()
    {
        QCOMPARE(signalsCsv("0 A=1\n0.25 B=2\n0.05 A=3\n", {u"A"_s, u"B"_s}, 10),
                 "time,A,B\n0.000000,1,nan\n0.100000,1,nan\n0.200000,1,nan\n0.300000,3,2\n");
    }

    void mapsToPhysicalValues()
    {
        QCOMPARE(signalsCsv("0 A=10 B=1\n", {u"A"_s, u"B"_s}, 0, true),
                 "time,T, °C(mapped),B(mapped)\n0.000000,-35,1\n");
    }

    void writesEventsWithWhatTheyMean()
    {
        QBuffer csv;
        csv.open(QIODevice::WriteOnly);
        writeEventsCsv(csv, recordingOf("0 ERR=E ST_G=R ST_G=X\n0.5 ERR=X\n0.25 RAW say \"hi\"\n"),
                       m_catalogue.get(), {});
        QCOMPARE(csv.data(), "time,type,key,value,display\n0.000000,STATE,\"G\",\"R\",\"Runs\"\n"
                             "0.000000,STATE,\"G\",\"X\",\"X\"\n0.000000,ERROR,\"E\",,\"Hot\"\n"
                             "0.500000,ERROR,\"X\",,\"X\"\n0.250000,MESSAGE,,\"say \"\"hi\"\"\",\n");
    }

    void samplesWhateverTheTimesAre_data()
    {
        QTest::addColumn<QByteArray>("times");
        QTest::addColumn<QByteArray>("rows");
        QTest::newRow("infinite first") << QByteArray("inf 5") << QByteArray("time inf");
        QTest::newRow("no number first") << QByteArray("nan 5 inf") << QByteArray("time nan");
        QTest::newRow("backwards") << QByteArray("1 -7 nan 2 0") << QByteArray("time 1.000000 2.000000");
        QTest::newRow("too many") << QByteArray("0 100000001") << QByteArray("endless");
        QTest::newRow("infinite last") << QByteArray("0 inf") << QByteArray("endless");
        QTest::newRow("a second is lost in it") << QByteArray("-1e17 0") << QByteArray("endless");
        QTest::newRow("it gets lost on the way")
            << QByteArray("9007199254740990 9007199254740994") << QByteArray("endless");
    }

    void samplesWhateverTheTimesAre()
    {
        QFETCH(QByteArray, times);
        QTEST(signalsCsv(times.replace(' ', '\n'), {}, 1).simplified(), "rows");
    }

    void stopsWhenCancelled()
    {
        const auto half = [](double done) { return done < 0.5; };
        const QByteArray csv = signalsCsv(QByteArray("0\n").repeated(300'000), {}, 0, false, half);
        QVERIFY(csv.endsWith("cancelled"));
        const qsizetype rows = csv.count('\n');
        QVERIFY2(rows < 250'000, qPrintable(QString::number(rows)));
    }
};

QTEST_GUILESS_MAIN(TestSignalCsvExport)
#include "tst_signalcsvexport.moc"
