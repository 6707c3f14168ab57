#include "definitions/DashboardSignalParser.h"

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

// What the parser finds in a file, which of several declarations its queries answer with, and files that are
// not what they should be.
class DashboardSignalParserTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsEveryKindOfDeclaration();
    void matchesLines_data();
    void matchesLines();
    void answersWithTheRightDeclaration();
    void findsAmongManyLikeALinearSearch();
    void readsFilesOfOtherSystems_data();
    void readsFilesOfOtherSystems();
    void parsingAgainReplacesTheCatalogue();
    void survivesHostileFiles_data();
    void survivesHostileFiles();

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

namespace {

// One word per record, in the order of the lists.
QString summary(const DashboardSignalParser& parser)
{
    QStringList words;
    for (const DashboardMapping& m : parser.mappingList())
        words << u"mapping(%1,%2,%3)"_s.arg(m.name).arg(m.offset).arg(m.scale);
    for (const DashboardSignal& s : parser.signalList())
        words << u"signal(%1,%2,%3)"_s.arg(s.enumName, s.displayName, s.mappingName);
    for (const QString& id : parser.stateGroupIds())
        words << u"group(%1,%2)"_s.arg(id, parser.findStateGroup(id)->label);
    for (const QString& id : parser.stateGroupIds())
        for (const DashboardState& s : parser.statesForGroup(id))
            words << u"state(%1,%2,%3,%4)"_s.arg(s.group, s.name, s.label, s.key);
    return words.join(u' ');
}

const QByteArray kExample = "// motor controller\n"
                            "DASHBOARD_MAPPING(MAP_TEMP, -40, 0.5)\n"
                            "DASHBOARD_SIGNAL(SIG_TEMP, \"Coolant temp\", MAP_TEMP)\n"
                            "DASHBOARD_STATE_GROUP(MODE, \"Operating mode\")\n"
                            "DASHBOARD_STATE(MODE, RUN, \"Running\")\n"
                            "DASHBOARD_ERROR(ERR_OVERHEAT, 17, \"Motor overheated\")\n";
const QString kExampleSummary = u"mapping(MAP_TEMP,-40,0.5) signal(SIG_TEMP,Coolant temp,MAP_TEMP) "
                                "group(MODE,Operating mode) state(MODE,RUN,Running,ST_MODE_RUN)"_s;

} // namespace

void DashboardSignalParserTest::readsEveryKindOfDeclaration()
{
    DashboardSignalParser parser(write(kExample));
    QVERIFY(parser.signalList().isEmpty()); // nothing is read before parse()
    QVERIFY(parser.parse());
    QCOMPARE(summary(parser), kExampleSummary);
    QCOMPARE(parser.findErrorById(u"ERR_OVERHEAT"_s)->code, 17);
    QCOMPARE(parser.findErrorByCode(17)->message, u"Motor overheated"_s);
    QCOMPARE(parser.findState(u"MODE"_s, u"RUN"_s)->label, u"Running"_s);
    QVERIFY(!parser.findState(u"MODE"_s, u"run"_s));
    QVERIFY(!parser.findSignalByEnum(u"SIG_TEM"_s));
}

void DashboardSignalParserTest::matchesLines_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char* name, const char* line, const QString& expected) {
        QTest::newRow(name) << QByteArray(line) << expected;
    };
    row("spaces and comment", "  DASHBOARD_SIGNAL ( A , \"Speed\" , NONE ) // km/h",
        u"signal(A,Speed,NONE)"_s);
    row("tabs", "\tDASHBOARD_SIGNAL\t(\tA\t,\t\"x\"\t,\tN\t)", u"signal(A,x,N)"_s);
    row("comma and brace in a name", "DASHBOARD_SIGNAL(A, \"a, b) c\", N)", u"signal(A,a, b) c,N)"_s);
    row("empty name", "DASHBOARD_SIGNAL(A, \"\", NONE)", {});
    row("quote in a name", "DASHBOARD_SIGNAL(A, \"a\\\"b\", N)", {});
    row("not a word", "DASHBOARD_SIGNAL(\xc3\xa4, \"x\", N)", {});
    row("unclosed", "DASHBOARD_SIGNAL(A, \"x\", N", {});
    row("something before", "x DASHBOARD_SIGNAL(A, \"x\", N)", {});
    row("other case", "dashboard_signal(A, \"x\", N)", {});
    row("unknown macro", "DASHBOARD_SIGNALS(A, \"x\", N)", {});
    row("commented out", "//DASHBOARD_SIGNAL(A, \"x\", N)", {});
    row("in a comment of one line", "/* DASHBOARD_SIGNAL(A, \"x\", N) */", {});
    row("in a comment of three", "/*\nDASHBOARD_SIGNAL(A, \"x\", N)\n*/", u"signal(A,x,N)"_s);
    row("numbers", "DASHBOARD_MAPPING(M, 5., -2.50)", u"mapping(M,5,-2.5)"_s);
    row("exponent", "DASHBOARD_MAPPING(M, 1e3, 2)", {});
    row("plus sign", "DASHBOARD_MAPPING(M, +1, 2)", {});
    row("leading point", "DASHBOARD_MAPPING(M, .5, 2)", {});
    row("two points", "DASHBOARD_MAPPING(M, 1.2.3, 2)", {});
    row("implicit group", "DASHBOARD_STATE(G, S, \"x\")", u"group(G,G) state(G,S,x,ST_G_S)"_s);
}

void DashboardSignalParserTest::matchesLines()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, expected);
    DashboardSignalParser parser(write(line));
    QVERIFY(parser.parse());
    QCOMPARE(summary(parser), expected);
}

void DashboardSignalParserTest::answersWithTheRightDeclaration()
{
    DashboardSignalParser parser(
        write("DASHBOARD_MAPPING(M, 1, 10)\nDASHBOARD_MAPPING(M, 2, 20)\n"
              "DASHBOARD_SIGNAL(S, \"first\", M)\nDASHBOARD_SIGNAL(S, \"second\", M)\n"
              "DASHBOARD_STATE(G, A, \"old\")\nDASHBOARD_STATE_GROUP(G, \"Group\")\n"
              "DASHBOARD_STATE(G, B, \"b\")\nDASHBOARD_STATE(G, A, \"new\")\n"
              "DASHBOARD_ERROR(E, 7, \"one\")\nDASHBOARD_ERROR(F, 7, \"two\")\n"
              "DASHBOARD_ERROR(E, -8, \"three\")\n"
              "DASHBOARD_ERROR(BIG, 99999999999, \"big\")\n"));
    QVERIFY(parser.parse());
    QCOMPARE(parser.findMappingByName(u"M"_s)->offset, 1.0);
    QCOMPARE(parser.mappingMap().value(u"M"_s).offset, 2.0);
    QCOMPARE(parser.mappingList().size(), 2);
    QCOMPARE(parser.findSignalByEnum(u"S"_s)->displayName, u"first"_s);
    QCOMPARE(parser.stateGroupIds(), (QStringList{u"G"_s, u"G"_s}));
    QCOMPARE(parser.findStateGroup(u"G"_s)->label, u"Group"_s);
    const QList<DashboardState> states = parser.statesForGroup(u"G"_s);
    QCOMPARE(states.size(), 3);
    QCOMPARE(states.at(0).label, u"old"_s);
    QCOMPARE(parser.findState(u"G"_s, u"A"_s)->label, u"new"_s);
    QVERIFY(parser.statesForGroup(u"H"_s).isEmpty());
    QCOMPARE(parser.findErrorByCode(7)->id, u"F"_s);
    QCOMPARE(parser.findErrorById(u"E"_s)->message, u"three"_s);
    QCOMPARE(parser.findErrorByCode(0)->id, u"BIG"_s);
}

void DashboardSignalParserTest::findsAmongManyLikeALinearSearch()
{
    QByteArray content;
    for (int i = 0; i < 2000; ++i) {
        const QByteArray name = "S" + QByteArray::number(i * 7919 % 1500); // a third of them come twice
        content += "DASHBOARD_SIGNAL(" + name + ", \"" + QByteArray::number(i) + "\", M)\n";
        content += "DASHBOARD_MAPPING(" + name + ", " + QByteArray::number(i) + ", 1)\n";
    }
    DashboardSignalParser parser(write(content));
    QVERIFY(parser.parse());
    const QList<DashboardSignal> all = parser.signalList();
    QCOMPARE(all.size(), 2000);
    for (int i = 0; i < 1500; ++i) {
        const QString name = u"S"_s + QString::number(i);
        const auto first =
            std::find_if(all.begin(), all.end(), [&](const auto& s) { return s.enumName == name; });
        QCOMPARE(parser.findSignalByEnum(name)->displayName, first->displayName);
        QCOMPARE(parser.findMappingByName(name)->offset, first->displayName.toDouble());
    }
}

void DashboardSignalParserTest::readsFilesOfOtherSystems_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("byte-order mark") << "\xef\xbb\xbf" +
                                            QByteArray(kExample).remove(0, kExample.indexOf('\n') + 1);
    QTest::newRow("carriage returns") << QByteArray(kExample).replace("\n", "\r\n");
    QTest::newRow("no last line feed") << kExample.chopped(1);
}

void DashboardSignalParserTest::readsFilesOfOtherSystems()
{
    QFETCH(QByteArray, content);
    DashboardSignalParser parser(write(content));
    QVERIFY(parser.parse());
    QCOMPARE(summary(parser), kExampleSummary);
    QVERIFY(parser.findErrorByCode(17));
}

void DashboardSignalParserTest::parsingAgainReplacesTheCatalogue()
{
    const QString path = write(kExample);
    DashboardSignalParser parser(path);
    QVERIFY(parser.parse());
    QVERIFY(parser.parse());
    QCOMPARE(summary(parser), kExampleSummary);

    write("DASHBOARD_SIGNAL(NEW, \"x\", N)\n");
    QVERIFY(parser.parse());
    QVERIFY(!parser.findSignalByEnum(u"SIG_TEMP"_s));
    QVERIFY(!parser.findState(u"MODE"_s, u"RUN"_s));
    QVERIFY(!parser.findErrorById(u"ERR_OVERHEAT"_s));

    QVERIFY(QFile::remove(path));
    QVERIFY(!parser.parse());
    QCOMPARE(parser.errorString(), u"Could not open file: "_s + path);
    QVERIFY(!parser.findSignalByEnum(u"NEW"_s));
    write(kExample);
    QVERIFY(parser.parse());
    QVERIFY(parser.errorString().isEmpty());
}

void DashboardSignalParserTest::survivesHostileFiles_data()
{
    constexpr qsizetype kLong = 2'000'000;
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("long word") << "DASHBOARD_SIGNAL(" + QByteArray(kLong, 'A');
    QTest::newRow("long number") << "DASHBOARD_MAPPING(M, " + QByteArray(kLong, '1');
    QTest::newRow("long fraction") << "DASHBOARD_MAPPING(M, 1." + QByteArray(kLong, '1') + "x";
    QTest::newRow("long space") << "DASHBOARD_STATE" + QByteArray(kLong, ' ') + "x";
    QTest::newRow("long text") << "DASHBOARD_SIGNAL(A, \"" + QByteArray(kLong, '\\');
    QTest::newRow("many empty lines") << QByteArray(kLong, '\n');
    QTest::newRow("zeros") << QByteArray(kLong, '\0');
    QTest::newRow("no text") << QByteArray("\xff\xfe\xc0\x80\xed\xa0\x80\xf5").repeated(kLong / 8);
}

// Whatever comes before a declaration, it is found, and in seconds: backtracking would take hours.
void DashboardSignalParserTest::survivesHostileFiles()
{
    QFETCH(QByteArray, content);
    DashboardSignalParser parser(write("//\n" + content + "\n" + kExample));
    QElapsedTimer timer;
    timer.start();
    QVERIFY(parser.parse());
    QVERIFY2(timer.elapsed() < 20'000, qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(summary(parser), kExampleSummary);
}

QTEST_GUILESS_MAIN(DashboardSignalParserTest)
#include "tst_dashboardsignalparser.moc"
