#include "definitions/DashboardSignalParser.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QByteArray kExample = "DASHBOARD_MAPPING(MAP, -40, 0.5)\nDASHBOARD_SIGNAL(SIG, \"Coolant temp\", MAP)\n"
                            "DASHBOARD_STATE_GROUP(MODE, \"Mode\")\nDASHBOARD_STATE(MODE, RUN, \"Runs\")\n"
                            "DASHBOARD_ERROR(HOT, 17, \"Overheated\")\n";
const QString kExampleSummary = u"M:MAP|-40|0.5 S:SIG|Coolant temp|MAP G:MODE|Mode "
                                "ST_MODE_RUN|Runs|Runs E:HOT|17|Overheated|Overheated"_s;

// Every record; after a state and an error what a query by its names answers.
QString summary(const DashboardSignalParser& parser)
{
    QStringList words;
    for (const DashboardMapping& m : parser.mappingList())
        words << u"M:%1|%2|%3"_s.arg(m.name).arg(m.offset).arg(m.scale);
    for (const DashboardSignal& s : parser.signalList())
        words << u"S:%1|%2|%3"_s.arg(s.enumName, s.displayName, s.mappingName);
    for (const QString& id : parser.stateGroupIds())
        words << u"G:%1|%2"_s.arg(id, parser.findStateGroup(id)->label);
    for (const DashboardState& s : parser.statesForGroup(u"MODE"_s))
        words << u"%1|%2|%3"_s.arg(s.key, s.label, parser.findState(s.group, s.name)->label);
    for (const int code : {0, 17}) {
        if (const auto e = parser.findErrorByCode(code))
            words << u"E:%1|%2|%3|%4"_s.arg(e->id, QString::number(e->code), e->message,
                                            parser.findErrorById(e->id)->message);
    }
    return words.join(u' ');
}

} // namespace

// What the parser finds in a file, and which of several declarations its queries answer with.
class DashboardSignalParserTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsWhatIsDeclared_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("expected");
        QTest::newRow("no last line feed") << kExample.chopped(1) << kExampleSummary;
        QTest::newRow("byte-order mark") << "\xef\xbb\xbf" + kExample << kExampleSummary;
        QTest::newRow("carriage returns") << QByteArray(kExample).replace("\n", "\r\n") << kExampleSummary;
        QTest::newRow("spaces") << QByteArray(" DASHBOARD_SIGNAL ( A\t,\"x, y)\" , N ) //")
                                << u"S:A|x, y)|N"_s;
        QTest::newRow("comment of three lines")
            << QByteArray("/*\nDASHBOARD_MAPPING(M, 5., -2.50)\n*/") << u"M:M|5|-2.5"_s;
        QTest::newRow("implicit group") << QByteArray("DASHBOARD_STATE(G, A, \"x\")") << u"G:G|G"_s;
        QTest::newRow("names twice")
            << QByteArray("DASHBOARD_STATE(MODE, A, \"old\")\nDASHBOARD_STATE_GROUP(MODE, \"Mode\")\n"
                          "DASHBOARD_STATE(MODE, A, \"new\")\nDASHBOARD_ERROR(E, 17, \"1st\")\n"
                          "DASHBOARD_ERROR(F, 17, \"2nd\")\nDASHBOARD_ERROR(E, 99999999999, \"big\")\n")
            << u"G:MODE|Mode G:MODE|Mode ST_MODE_A|old|new ST_MODE_A|new|new E:E|0|big|big E:F|17|2nd|2nd"_s;
        for (const char* line : {"DASHBOARD_SIGNAL(A, \"\", N)", "DASHBOARD_SIGNAL(A, \"a\\\"b\", N)",
                                 "DASHBOARD_SIGNAL(A, \"x\", N", "DASHBOARD_SIGNAL(\xc3\xa4, \"x\", N)",
                                 "DASHBOARD_SIGNALS(A, \"x\", N)", "//DASHBOARD_SIGNAL(A, \"x\", N)",
                                 "DASHBOARD_MAPPING(M, 1e3, 2)", "DASHBOARD_MAPPING(M, +1, 2)",
                                 "DASHBOARD_MAPPING(M, .5, 2)", "DASHBOARD_MAPPING(M, 1.2.3, 2)"})
            QTest::newRow(line) << QByteArray(line) << QString();

        QTest::newRow("backtracking would take hours")
            << "DASHBOARD_MAPPING(M, " + QByteArray(2'000'000, '1') + "x\n" + kExample << kExampleSummary;
    }

    void readsWhatIsDeclared()
    {
        QFETCH(QByteArray, content);
        DashboardSignalParser parser(write(content));
        QVERIFY(parser.parse());
        QTEST(summary(parser), "expected");
    }

    void parsingAgainReplacesTheCatalogue()
    {
        DashboardSignalParser parser(write(kExample));
        QVERIFY(parser.parse() && parser.parse());
        QCOMPARE(summary(parser), kExampleSummary);

        QVERIFY(QFile::remove(parser.path()) && !parser.parse());
        QCOMPARE(parser.errorString(), u"Could not open file: "_s + parser.path());
        QCOMPARE(summary(parser), QString());
        QVERIFY(parser.mappingMap().isEmpty() && !parser.findMappingByName(u"MAP"_s));
        QVERIFY(!parser.findSignalByEnum(u"SIG"_s) && !parser.findStateGroup(u"MODE"_s));
        QVERIFY(!parser.findState(u"MODE"_s, u"RUN"_s) && !parser.findErrorById(u"HOT"_s));

        write("DASHBOARD_ERROR(NEW, 17, \"x\")");
        QVERIFY(parser.parse() && parser.errorString().isEmpty());
        QCOMPARE(summary(parser), u"E:NEW|17|x|x"_s);
    }

    void whatIsNotDeclaredStandsForItself()
    {
        DashboardSignalParser parser(
            write("DASHBOARD_SIGNAL(LONE, \"Lone\", GONE)\nDASHBOARD_ERROR(HOT, 17, \"Too hot\")"));
        QVERIFY(parser.parse());
        QVERIFY(!parser.mappingOfSignal(u"LONE"_s));
        QCOMPARE(parser.displayName(u"OTHER"_s), u"OTHER"_s);
        QCOMPARE(parser.stateLabel(u"MODE"_s, u"RUN"_s), u"RUN"_s);
        QCOMPARE(parser.errorText(u"17"_s), u"17"_s); // a code is no id
    }

    void saysWhatWasDeclaredFirstOrLast()
    {
        DashboardSignalParser parser(
            write("DASHBOARD_MAPPING(M, 1, 2)\nDASHBOARD_MAPPING(M, 5, 6)\n"
                  "DASHBOARD_SIGNAL(SIG, \"first\", M)\nDASHBOARD_SIGNAL(SIG, \"last\", X)\n"
                  "DASHBOARD_STATE(G, S, \"first\")\nDASHBOARD_STATE(G, S, \"last\")\n"));
        QVERIFY(parser.parse());
        QVERIFY(parser.mappingOfSignal(u"SIG"_s));
        QCOMPARE(parser.mappingOfSignal(u"SIG"_s)->physical(10.0), 21.0);
        QCOMPARE(parser.displayName(u"SIG"_s), u"first"_s);
        QCOMPARE(parser.stateLabel(u"G"_s, u"S"_s), u"last"_s);
    }

private:
    QString write(const QByteArray& content)
    {
        QFile file(m_dir.filePath(u"dashboard_signals.def"_s));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write the test's file");
        return file.fileName();
    }

    QTemporaryDir m_dir;
};

QTEST_GUILESS_MAIN(DashboardSignalParserTest)
#include "tst_dashboardsignalparser.moc"
