#include "serial/line/LineParser.h"

#include <QTest>

#include <bit>

using namespace Qt::StringLiterals;

using Kind = LineParser::Kind;
Q_DECLARE_METATYPE(Kind)

// The grammar of a line, and its numbers beside Qt's.
class LineParserTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsAToken_data()
    {
        QTest::addColumn<QString>("token");
        QTest::addColumn<Kind>("kind");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("text");
        QTest::newRow("value") << u"R=15"_s << Kind::Value << u"R"_s << u"15"_s;
        QTest::newRow("not quite an error") << u"err=17"_s << Kind::Value << u"err"_s << u"17"_s;
        QTest::newRow("more than an error") << u"ERRX=1"_s << Kind::Value << u"ERRX"_s << u"1"_s;
        QTest::newRow("no number") << u"R=abc"_s << Kind::Dropped << u"R"_s << u"abc"_s;
        QTest::newRow("two equal signs") << u"a=b=c"_s << Kind::Dropped << u"a"_s << u"b=c"_s;
        QTest::newRow("state") << u"ST_MODE=RUN"_s << Kind::State << u"MODE"_s << u"RUN"_s;
        QTest::newRow("state with equal sign") << u"ST_A=x=1"_s << Kind::State << u"A"_s << u"x=1"_s;
        QTest::newRow("state without group") << u"ST_=RUN"_s << Kind::Dropped << u""_s << u"RUN"_s;
        QTest::newRow("group without state") << u"ST_MODE="_s << Kind::Dropped << u"MODE"_s << u""_s;
        QTest::newRow("empty error") << u"ERR="_s << Kind::Dropped << u"ERR"_s << u""_s;
        QTest::newRow("word") << u"ST_"_s << Kind::Text << u""_s << u"ST_"_s;
    }

    void readsAToken()
    {
        QFETCH(QString, token);
        LineParser parser(token);
        QVERIFY(!parser.timestamp());
        LineParser::Token found;
        QVERIFY(parser.next(found));
        QTEST(found.kind, "kind");
        QTEST(found.key.toString(), "key");
        QTEST(found.text.toString(), "text");
        QVERIFY(!parser.next(found));
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
};

QTEST_GUILESS_MAIN(LineParserTest)
#include "tst_lineparser.moc"
