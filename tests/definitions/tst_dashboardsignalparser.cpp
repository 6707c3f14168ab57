#include "support/Catalogue.h"
#include "support/Files.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr char kExample[] = "DASHBOARD_MAPPING(MAP, -40., 0.5)\nDASHBOARD_SIGNAL(SIG, \"Oil temp\", MAP)\n"
                            "DASHBOARD_STATE_GROUP(MODE, \"Mode\")\nDASHBOARD_STATE(MODE, RUN, \"Runs\")\n"
                            "DASHBOARD_ERROR(HOT, 17, \"Overheated\")\n";

// The first mapping has the offset 1, the last one 2.
constexpr char kTwice[] = "DASHBOARD_MAPPING(M, 1, 0)\nDASHBOARD_MAPPING(M, 2, 0)\n"
                          "DASHBOARD_SIGNAL(SIG, \"first\", M)\nDASHBOARD_SIGNAL(SIG, \"last\", NONE)\n"
                          "DASHBOARD_STATE_GROUP(G, \"first\")\nDASHBOARD_STATE_GROUP(G, \"last\")\n"
                          "DASHBOARD_STATE(G, S, \"first\")\nDASHBOARD_STATE(G, S, \"last\")\n"
                          "DASHBOARD_ERROR(ID, 1, \"first\")\nDASHBOARD_ERROR(ID, 2, \"last\")\n"
                          "DASHBOARD_ERROR(ONE, 17, \"first\")\nDASHBOARD_ERROR(OTHER, 17, \"last\")\n";

} // namespace

// What the parser finds in a file, and which of several declarations its queries answer with.
class DashboardSignalParserTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void answersWhatIsDeclared()
    {
        const auto catalogue = catalogueOf(kExample);
        QCOMPARE(catalogue->mappingOfSignal(u"SIG"_s).value().physical(10.0), -35.0);
        QCOMPARE(catalogue->displayName(u"SIG"_s), u"Oil temp"_s);
        QCOMPARE(catalogue->findStateGroup(u"MODE"_s).value().label, u"Mode"_s);
        QCOMPARE(catalogue->stateLabel(u"MODE"_s, u"RUN"_s), u"Runs"_s);
        QCOMPARE(catalogue->statesForGroup(u"MODE"_s).value(0).key, u"ST_MODE_RUN"_s);
        QCOMPARE(catalogue->errorText(u"HOT"_s), u"Overheated"_s);
        QCOMPARE(catalogue->findErrorByCode(17).value().id, u"HOT"_s);
    }

    void readsTheWholeFile_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("byte-order mark") << QByteArray("\xef\xbb\xbf") + kExample;
        QTest::newRow("carriage returns") << QByteArray(kExample).replace("\n", "\r\n");
        QTest::newRow("inside a comment") << QByteArray("/*\n") + kExample + "*/";
        QTest::newRow("backtracking would take hours")
            << "DASHBOARD_MAPPING(M, " + QByteArray(2'000'000, '1') + "x\n" + kExample;
    }

    void readsTheWholeFile()
    {
        QFETCH(QByteArray, content);
        const auto catalogue = catalogueOf(content);
        QCOMPARE(catalogue->mappingMap().keys(), QStringList(u"MAP"_s)); // the first line
        QCOMPARE(catalogue->errorText(u"HOT"_s), u"Overheated"_s);       // the last one
    }

    void allowsSpacesAndACommentBehind()
    {
        const auto catalogue = catalogueOf(" DASHBOARD_SIGNAL ( A\t,\"x, y)\" , N ) // km/h");
        QCOMPARE(catalogue->displayName(u"A"_s), u"x, y)"_s);
    }

    void readsAnErrorCode_data()
    {
        QTest::addColumn<int>("code");
        QTest::newRow("-3") << -3;
        QTest::newRow("010") << 10; // decimal, whatever a C compiler makes of it
        QTest::newRow("2147483648") << 0;
    }

    void readsAnErrorCode()
    {
        const QByteArray text = QTest::currentDataTag();
        const auto catalogue = catalogueOf("DASHBOARD_ERROR(E, " + text + ", \"x\")");
        QTEST(catalogue->findErrorById(u"E"_s).value().code, "code");
    }

    void ignoresWhatDeclaresNothing_data()
    {
        QTest::addColumn<QByteArray>("line");
        for (const char* line : {"DASHBOARD_SIGNAL(A, \"\", N)", "DASHBOARD_SIGNAL(A, \"a\\\"b\", N)",
                                 "DASHBOARD_SIGNAL(A, \"x\", N", "DASHBOARD_SIGNAL(\xc3\xa4, \"x\", N)",
                                 "DASHBOARD_SIGNALS(A, \"x\", N)", "//DASHBOARD_SIGNAL(A, \"x\", N)",
                                 "DASHBOARD_MAPPING(M, 1e3, 2)", "DASHBOARD_MAPPING(M, +1, 2)",
                                 "DASHBOARD_MAPPING(M, .5, 2)", "DASHBOARD_MAPPING(M, 1.2.3, 2)"})
            QTest::newRow(line) << QByteArray(line);
    }

    void ignoresWhatDeclaresNothing()
    {
        QFETCH(QByteArray, line);
        const auto catalogue = catalogueOf(line);
        QCOMPARE(catalogue->signalList().size(), 0);
        QCOMPARE(catalogue->mappingList().size(), 0);
    }

    void answersWithTheFirstOrTheLast_data()
    {
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QString>("expected");
        const auto twice = catalogueOf(kTwice);
        QTest::newRow("signal") << twice->findSignalByEnum(u"SIG"_s)->displayName << u"first"_s;
        QTest::newRow("display name") << twice->displayName(u"SIG"_s) << u"first"_s;
        QTest::newRow("signal's mapping")
            << QString::number(twice->mappingOfSignal(u"SIG"_s)->offset) << u"1"_s;
        QTest::newRow("mapping") << QString::number(twice->findMappingByName(u"M"_s)->offset) << u"1"_s;
        QTest::newRow("mapping in the map") << QString::number(twice->mappingMap()[u"M"_s].offset) << u"2"_s;
        QTest::newRow("state group") << twice->findStateGroup(u"G"_s)->label << u"last"_s;
        QTest::newRow("state") << twice->findState(u"G"_s, u"S"_s)->label << u"last"_s;
        QTest::newRow("error by id") << twice->findErrorById(u"ID"_s)->message << u"last"_s;
        QTest::newRow("error by code") << twice->findErrorByCode(17)->message << u"last"_s;
    }

    void answersWithTheFirstOrTheLast()
    {
        QFETCH(QString, answer);
        QTEST(answer, "expected");
    }

    void whatIsNotDeclaredStandsForItself()
    {
        const auto catalogue = catalogueOf("DASHBOARD_SIGNAL(LONE, \"Lone\", GONE)\n"
                                           "DASHBOARD_STATE(MODE, RUN, \"Runs\")\n"
                                           "DASHBOARD_ERROR(HOT, 17, \"Overheated\")");
        QVERIFY(!catalogue->mappingOfSignal(u"LONE"_s));
        QCOMPARE(catalogue->displayName(u"OTHER"_s), u"OTHER"_s);
        QCOMPARE(catalogue->findStateGroup(u"MODE"_s).value().label, u"MODE"_s);
        QCOMPARE(catalogue->stateLabel(u"MODE"_s, u"STOP"_s), u"STOP"_s);
        QCOMPARE(catalogue->errorText(u"17"_s), u"17"_s); // a code is no id
    }

    void missingFileEmptiesTheCatalogueAndIsSaid()
    {
        const QTemporaryDir dir;
        DashboardSignalParser parser(writeFile(dir.filePath(u"a.def"_s), kExample));
        QVERIFY(parser.parse());
        QVERIFY(QFile::remove(parser.path()));
        QVERIFY(!parser.parse());
        QCOMPARE(parser.errorString(), u"Could not open file: "_s + parser.path());
        QCOMPARE(parser.signalList().size(), 0);
    }
};

QTEST_GUILESS_MAIN(DashboardSignalParserTest)
#include "tst_dashboardsignalparser.moc"
