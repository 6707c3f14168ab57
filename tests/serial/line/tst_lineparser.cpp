#include "serial/line/LineParser.h"
#include "serial/line/LineValues.h"

#include <QTest>

#include <bit>

using namespace Qt::StringLiterals;

// The grammar of a line, its numbers beside Qt's, and the value maps that are used again.
class LineParserTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void splitsALine_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("expected"); // kind:key:text for each token
        QTest::newRow("everything") << u"12.250 2 R=15 ST_MODE=RUN ERR=HOT"_s
                                    << u"time:12.25 text::2 value:R:15 state:MODE:RUN error:ERR:HOT"_s;
        QTest::newRow("no-break space") << u"\u00a07 \u00a0A\u00a0=\u00a01\u00a0 A=1\u00a0B"_s
                                        << u"time:7 value:A:1 dropped:A:1\u00a0B"_s;
        QTest::newRow("half pairs") << u"R=abc R= a=b=c ST_=RUN ST_MODE= ST_ ERR= =5 = =="_s
                                    << u"dropped:R:abc dropped:R: dropped:a:b=c dropped::RUN dropped:MODE: "
                                       "text::ST_ dropped:ERR: text::=5 text::= text::=="_s;
        QTest::newRow("near names")
            << u"5=3 12,5 ST_A=x=1 st_A=1 err=17 ERRX=1"_s
            << u"value:5:3 text::12,5 state:A:x=1 value:st_A:1 value:err:17 value:ERRX:1"_s;
    }

    void splitsALine()
    {
        static const char* const kKinds[] = {"value", "state", "error", "text", "dropped"};
        QFETCH(QString, line);
        LineParser parser(line);
        QStringList found;
        if (parser.timestamp())
            found << u"time:%1"_s.arg(*parser.timestamp());
        for (LineParser::Token token; parser.next(token); token = {})
            found << u"%1:%2:%3"_s.arg(QLatin1String(kKinds[int(token.kind)]), token.key, token.text);
        QTEST(found.join(u' '), "expected");
    }

    // Lengths on both sides of every shortcut, with all that may stand before and after the digits.
    void convertsExactlyWhatQtConverts()
    {
        QStringList texts = u"nan|-nan|NaN|inf|-inf|+inf|infinity|nan(1)|0x10|1_0|12,5|١٢|4.9e-324|2e-324|"
                            "2.2250738585072011e-308|0.1000000000000000055511151231257827"_s.split(u'|');
        const QString wholes =
            u"|0|123456789012345|1234567890123456|9007199254740993|"_s + QString(70, u'0') + u"12"_s;
        for (const QString& sign : u"|-|+|--|+-|\u2212|\u2003-"_s.split(u'|'))
            for (const QString& whole : wholes.split(u'|'))
                for (const QString& fraction : u"|.|.5|.123456789012345|.1.2"_s.split(u'|'))
                    for (const QString& exponent : u"|e3|E-5|e+2|e400|e-400|e|x"_s.split(u'|'))
                        texts << sign + whole + fraction + exponent;
        for (const QString& text : texts) {
            bool ok = false;
            const auto expected = std::bit_cast<quint64>(text.toDouble(&ok));
            double found = 0.0;
            QVERIFY2(LineParser::toNumber(text, found) == ok, qPrintable(text));
            QVERIFY2(!ok || std::bit_cast<quint64>(found) == expected, qPrintable(text));
        }
    }

    void reusesTheMapsOfLinesInTurnUnlessSomebodyHoldsThem()
    {
        LineValues values;
        const auto map = [&](char16_t key, double number) {
            const LineValues::KeyedNumber numbers[] = {{u"A", 1.0}, {{&key, 1}, number}};
            return values.toMap(numbers);
        };
        const auto placeOf = [&](int key) { return &*map(char16_t(key), 0.0).constFind(QChar(key)); };
        QList<const double*> places;
        for (int i = 0; i < 100; ++i) // eighty other kinds of line, then ten that take turns
            places << placeOf(i < 80 ? 0x400 + i : 'B' + i % 10);
        QCOMPARE(places.last(10), places.mid(80, 10));
        QCOMPARE(places.last(10).count(places.last()), 1);

        const QMap<QString, double> held = map(u'B', 2.0);
        QCOMPARE(map(u'A', 3.0), (QMap<QString, double>{{u"A"_s, 3.0}}));
        QCOMPARE(map(u'B', 4.0).value(u"B"_s), 4.0);
        QCOMPARE(held, (QMap<QString, double>{{u"A"_s, 1.0}, {u"B"_s, 2.0}}));
    }
};

QTEST_GUILESS_MAIN(LineParserTest)
#include "tst_lineparser.moc"
