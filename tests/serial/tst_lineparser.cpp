#include "serial/LineParser.h"
#include "serial/LineValues.h"
#include "support/LineEvents.h"

#include <QRandomGenerator>
#include <QTest>

#include <bit>

using namespace Qt::StringLiterals;

// The grammar of a line by examples, and against the toolkit and a plain implementation on random input.
class LineParserTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void saysWhatALineHolds_data();
    void saysWhatALineHolds();
    void convertsExactlyWhatTheToolkitConverts();
    void agreesWithAPlainParserOnRandomLines();
    void reusedMapsHoldTheirLine();
    void mapsThatSomebodyKeepsDoNotChange();
};

namespace {

// White space, signs, separators, and numbers in all spellings.
const QStringList kPieces =
    u"| |  |\t|\v|\f|\r|\u00a0|\u0085|\u2003|\u3000|\u200b|\ufeff|=|=|==|ST_|st_|ERR|RPM|RAW|A|ключ|𝄞|"
    "+1|-3|0|-0|12.5|12,5|.5|5.|.|1e3|1E-3|1e|1e400|1e-400|4.9e-324|2e-324|--1|"
    "2.2250738585072011e-308|1.7976931348623159e308|nan|-nan|NaN|inf|-inf|+inf|infinity|nan(1)|"
    "0x10|1_0|1'000|١٢|１|0.1000000000000000055511151231257827|9007199254740993"_s.split(u'|') +
    QStringList{QString(QChar(0)), QString(400, u'7'), QString(400, u'0') + u"1"_s};

QString randomText(QRandomGenerator& random, int maxPieces)
{
    QString text;
    for (int i = random.bounded(1, maxPieces + 1); i > 0; --i)
        text += kPieces.at(random.bounded(int(kPieces.size())));
    return text;
}

// Digits with something in between now and then.
QString randomNumber(QRandomGenerator& random, int longest)
{
    static const QString kCharacters = u"0123456789.-+eE\u2212"_s;
    QString text;
    for (int i = random.bounded(1, longest + 1); i > 0; --i)
        text += kCharacters.at(random.bounded(random.bounded(longest) < 3 ? int(kCharacters.size()) : 10));
    return text;
}

using Numbers = std::vector<std::pair<QString, double>>;

QMap<QString, double> mapOf(LineValues& values, const Numbers& numbers)
{
    std::vector<LineValues::KeyedNumber> views;
    for (const auto& [key, number] : numbers)
        views.push_back({key, number});
    return values.toMap(views);
}

} // namespace

void LineParserTest::saysWhatALineHolds_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("everything") << u"12.250 RPM=1500 ST_MODE=RUN ERR=HOT hello world"_s
                                << QStringList{u"time 12.25"_s, u"RPM is 1500"_s, u"group MODE: RUN"_s,
                                               u"error HOT"_s,  u"text hello"_s,  u"text world"_s};
    QTest::newRow("empty") << u""_s << QStringList();
    QTest::newRow("white space only") << u" \t\v\f\r "_s << QStringList();
    QTest::newRow("only a number") << u"42.0"_s << QStringList{u"time 42"_s};
    QTest::newRow("second number is text") << u"1 2"_s << QStringList{u"time 1"_s, u"text 2"_s};
    QTest::newRow("number with a comma") << u"12,5 A=1"_s << QStringList{u"text 12,5"_s, u"A is 1"_s};
    QTest::newRow("pair that begins like a number") << u"5=3"_s << QStringList{u"5 is 3"_s};
    QTest::newRow("no-break space around a time") << u"\u00a07 x"_s << QStringList{u"time 7"_s, u"text x"_s};
    QTest::newRow("no-break space does not separate") << u"A=1\u00a0B=2"_s << QStringList{u"dropped"_s};
    QTest::newRow("no-break space is trimmed")
        << u"x \u00a0A\u00a0=\u00a01\u00a0"_s << QStringList{u"text x"_s, u"A is 1"_s};
    QTest::newRow("key of white space only") << u"\u00a0=1"_s << QStringList{u" is 1"_s};
    QTest::newRow("no value") << u"RPM=abc RPM= a=b=c A=1e400"_s
                              << QStringList{u"dropped"_s, u"dropped"_s, u"dropped"_s, u"dropped"_s};
    QTest::newRow("leading equal sign")
        << u"=5 = =="_s << QStringList{u"text =5"_s, u"text ="_s, u"text =="_s};
    QTest::newRow("half a state") << u"ST_=RUN ST_MODE= ST_"_s
                                  << QStringList{u"dropped"_s, u"dropped"_s, u"text ST_"_s};
    QTest::newRow("state that looks like a value")
        << u"ST_A=1 st_A=1 ST_B=x=y"_s << QStringList{u"group A: 1"_s, u"st_A is 1"_s, u"group B: x=y"_s};
    QTest::newRow("errors") << u"ERR= ERR=17 err=17 ERRX=1"_s
                            << QStringList{u"dropped"_s, u"error 17"_s, u"err is 17"_s, u"ERRX is 1"_s};
}

void LineParserTest::saysWhatALineHolds()
{
    QFETCH(QString, line);
    QFETCH(QStringList, expected);
    LineParser parser(line);
    QStringList found;
    if (parser.timestamp())
        found.append(u"time "_s + QString::number(*parser.timestamp()));
    for (LineParser::Token token; parser.next(token);) {
        switch (token.kind) {
        case LineParser::Kind::Value:
            found.append(u"%1 is %2"_s.arg(token.key).arg(token.number));
            break;
        case LineParser::Kind::State:
            found.append(u"group %1: %2"_s.arg(token.key, token.text));
            break;
        case LineParser::Kind::Error:
            found.append(u"error %1"_s.arg(token.text));
            break;
        case LineParser::Kind::Text:
            found.append(u"text %1"_s.arg(token.text));
            break;
        case LineParser::Kind::Dropped:
            found.append(u"dropped"_s);
            break;
        }
    }
    QCOMPARE(found, expected);
}

void LineParserTest::convertsExactlyWhatTheToolkitConverts()
{
    QRandomGenerator random(1);
    QStringList texts = kPieces;
    for (int i = 0; i < 50'000; ++i)
        texts << randomNumber(random, 8) << randomNumber(random, 24) << randomText(random, 3)
              << QString::number(random.generateDouble(), 'g', 17);
    for (int i = 0; i < 5'000; ++i)
        texts << randomNumber(random, 200) << u"\u2003-"_s + QString(60, u'0') + randomNumber(random, 1000);
    int accepted = 0;
    for (const QString& text : texts) {
        bool ok = false;
        const double expected = text.toDouble(&ok);
        double found = 0.0;
        QVERIFY2(LineParser::toNumber(text, found) == ok, qPrintable(text));
        QVERIFY2(!ok || std::bit_cast<quint64>(found) == std::bit_cast<quint64>(expected), qPrintable(text));
        accepted += ok;
    }
    QVERIFY(accepted > 50'000 && accepted < texts.size() - 10'000);
}

void LineParserTest::agreesWithAPlainParserOnRandomLines()
{
    QRandomGenerator random(2);
    LineEvents found;
    LineEvents expected;
    SerialManager manager;
    found.listenTo(manager, &manager);
    for (int i = 0; i < 30'000; ++i) {
        const QString line = randomText(random, 30);
        found.clear();
        expected.clear();
        manager.parseLine(line);
        parsePlainly(line, 0.0, expected);
        QCOMPARE(found.texts(), expected.texts());
    }
}

// Few keys, so that lines of the same shape, of nearly the same shape and with a key twice come all the time;
// now and then one that is too large to be kept.
void LineParserTest::reusedMapsHoldTheirLine()
{
    QRandomGenerator random(3);
    LineValues values;
    for (int i = 0; i < 50'000; ++i) {
        Numbers numbers;
        QMap<QString, double> expected;
        for (int n = random.bounded(1, i % 1000 == 0 ? 200 : 4); n > 0; --n) {
            const QString key =
                random.bounded(500) == 0 ? QString(5000, u'k') : QString(QChar('a' + random.bounded(4)));
            numbers.emplace_back(key, random.generateDouble());
            expected.insert(key, numbers.back().second);
        }
        QCOMPARE(mapOf(values, numbers), expected);
    }
}

void LineParserTest::mapsThatSomebodyKeepsDoNotChange()
{
    LineValues values;
    const QMap<QString, double> first = mapOf(values, {{u"A"_s, 1.0}, {u"B"_s, 2.0}});
    const QMap<QString, double> second = mapOf(values, {{u"A"_s, 3.0}, {u"B"_s, 4.0}});
    mapOf(values, {{u"A"_s, 5.0}, {u"B"_s, 6.0}});
    QCOMPARE(first, (QMap<QString, double>{{u"A"_s, 1.0}, {u"B"_s, 2.0}}));
    QCOMPARE(second, (QMap<QString, double>{{u"A"_s, 3.0}, {u"B"_s, 4.0}}));
}

QTEST_GUILESS_MAIN(LineParserTest)
#include "tst_lineparser.moc"
