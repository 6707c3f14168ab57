#include "definitions/DashboardSignalParser.h"
#include "playback/recording/RecordingReader.h"
#include "playback/recording/SignalCsvExport.h"

#include <QBuffer>
#include <QTemporaryFile>
#include <QTest>

// The exact rows, and that every export ends.
class TestSignalCsvExport : public QObject
{
    Q_OBJECT

    QTemporaryFile m_file;

    SignalRecording recordingOf(const QByteArray& lines)
    {
        const bool written = m_file.open() && m_file.resize(0) && m_file.write(lines) >= 0 && m_file.flush();
        RecordingReader reader(m_file.fileName());
        if (!written || !reader.open() || reader.readSlice(60'000))
            qFatal("no recording");
        return reader.takeRecording();
    }
    /// What is written and, if that is not all, why.
    static QByteArray csvOf(const std::function<CsvResult(QIODevice& csv)>& write)
    {
        QBuffer csv;
        csv.open(QIODevice::WriteOnly);
        const auto result = int(write(csv));
        return csv.data() + QByteArrayList{"", "cancelled", "failed", "endless"}[result];
    }

private Q_SLOTS:
    void writesSignalsAndEvents()
    {
        recordingOf("DASHBOARD_MAPPING(M, -40, 0.5)\nDASHBOARD_SIGNAL(A, \"T, °C\", M)\n"
                    "DASHBOARD_STATE(G, R, \"Runs\")\nDASHBOARD_ERROR(E, 7, \"Hot\")");
        DashboardSignalParser parser(m_file.fileName());
        QVERIFY(parser.parse());
        const auto frames = recordingOf("-1e-7 ERR=E ST_G=R ST_G=\"x\" A=0.33333333333333\n0.25 B=-0 ERR=X\n"
                                        "0.125 RAW say \"hi\", ü\n0.2 A=1e15\n");
        const auto raw = csvColumns({"A", "B"}, false, &parser);
        const auto mapped = csvColumns({"A", "B"}, true, &parser);
        QCOMPARE(csvOf([&](auto& csv) { return writeSignalsCsv(csv, frames, raw, 0.0, {}); }),
                 "time,A,B\n0.000000,0.333333333333,nan\n0.250000,0.333333333333,0\n"
                 "0.125000,0.333333333333,0\n0.200000,1e+15,0\n");
        QCOMPARE(csvOf([&](auto& csv) { return writeSignalsCsv(csv, frames, mapped, 10.0, {}); }),
                 "time,T, °C(mapped),B(mapped)\n0.000000,-39.8333333333,nan\n0.100000,-39.8333333333,nan\n"
                 "0.200000,-39.8333333333,nan\n0.300000,5e+14,0\n");
        QCOMPARE(csvOf([&](auto& csv) { return writeEventsCsv(csv, frames, &parser, {}); }),
                 "time,type,key,value,display\n0.000000,STATE,\"G\",\"R\",\"Runs\"\n0.000000,STATE,\"G\","
                 "\"\"\"x\"\"\",\"\"\"x\"\"\"\n0.000000,ERROR,\"E\",,\"Hot\"\n0.250000,ERROR,\"X\",,\"X\"\n"
                 "0.125000,MESSAGE,,\"say \"\"hi\"\", ü\",\n");
    }

    void endsWhateverTheTimesAre()
    {
        const QByteArray timesAndRows =
            "inf 5=time inf|nan 5 inf=time nan|1 -7 nan 2 0=time 1.000000 2.000000|0 100000001=endless|"
            "0 inf=endless|-inf 1=endless|9007199254740990 9007199254740994=endless|-1e17 0=endless";
        for (const QByteArray& row : timesAndRows.split('|')) {
            const auto frames = recordingOf(row.split('=')[0].replace(' ', '\n'));
            const auto csv = csvOf([&](auto& csv) { return writeSignalsCsv(csv, frames, {}, 1.0, {}); });
            QCOMPARE(csv.simplified(), row.split('=')[1]);
        }
    }

    void stopsWhenCancelledOrFull()
    {
        QFile full("/dev/full");
        QVERIFY(full.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        const auto frames = recordingOf("0\n300000\n" + QByteArray("0\n").repeated(300'000));
        for (const double hz : {0.0, 1.0}) {
            double last = 0.0; // of the progress
            const KeepGoing half = [&](double done) { return done > last && (last = done) < 0.5; };
            const auto csv = csvOf([&](auto& csv) { return writeSignalsCsv(csv, frames, {}, hz, half); });
            QVERIFY(csv.endsWith("cancelled") && last >= 0.5 && last < 0.9);
            QCOMPARE(writeSignalsCsv(full, frames, {}, hz, {}), CsvResult::WriteFailed);
        }
    }
};

QTEST_GUILESS_MAIN(TestSignalCsvExport)
#include "tst_signalcsvexport.moc"
