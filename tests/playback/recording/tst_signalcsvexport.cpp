#include "playback/recording/SignalCsvExport.h"
#include "support/Catalogue.h"
#include "support/Recording.h"

#include <QBuffer>
#include <QTest>

using namespace Qt::StringLiterals;

// The exact rows; whether they end, and mappings, are tested with the files they are written to.
class TestSignalCsvExport : public QObject
{
    Q_OBJECT

    /// The signals A and B.
    static QByteArray signalsCsv(const QByteArray& lines, double hz)
    {
        QBuffer csv;
        csv.open(QIODevice::WriteOnly);
        writeSignalsCsv(csv, recordingOf(lines), csvColumns({u"A"_s, u"B"_s}, false, nullptr), hz, {});
        return csv.data();
    }

private Q_SLOTS:
    void writesARowPerFrame()
    {
        QCOMPARE(signalsCsv("-1e-7 A=0.33333333333333\n0.25 B=-0\n0.125\n0.2 A=1e15\n", 0),
                 "time,A,B\n0.000000,0.333333333333,nan\n0.250000,0.333333333333,0\n"
                 "0.125000,0.333333333333,0\n0.200000,1e+15,0\n");
    }

    void holdsValuesUntilTheFirstSampleAfterTheLastFrame()
    {
        QCOMPARE(signalsCsv("0 A=1\n0.25 B=2\n0.05 A=3\n", 10),
                 "time,A,B\n0.000000,1,nan\n0.100000,1,nan\n0.200000,1,nan\n0.300000,3,2\n");
    }

    void writesEventsWithWhatTheyMean()
    {
        const auto definitions =
            catalogueOf("DASHBOARD_STATE(G, R, \"Runs\")\nDASHBOARD_ERROR(E, 7, \"Hot\")\n");
        QBuffer csv;
        csv.open(QIODevice::WriteOnly);
        writeEventsCsv(csv, recordingOf("0 ERR=E ST_G=R ST_G=X\n0.5 ERR=X\n0.25 RAW say \"hi\"\n"),
                       definitions.get(), {});
        QCOMPARE(csv.data(), "time,type,key,value,display\n0.000000,STATE,\"G\",\"R\",\"Runs\"\n"
                             "0.000000,STATE,\"G\",\"X\",\"X\"\n0.000000,ERROR,\"E\",,\"Hot\"\n"
                             "0.500000,ERROR,\"X\",,\"X\"\n0.250000,MESSAGE,,\"say \"\"hi\"\"\",\n");
    }
};

QTEST_GUILESS_MAIN(TestSignalCsvExport)
#include "tst_signalcsvexport.moc"
