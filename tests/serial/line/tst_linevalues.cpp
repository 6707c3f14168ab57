#include "serial/line/LineValues.h"

#include <QTest>

#include <vector>

using namespace Qt::StringLiterals;

using ValueMap = QMap<QString, double>;

// The value maps of lines, and when the same one is used again.
class LineValuesTest : public QObject
{
    Q_OBJECT

    struct Rig
    {
        LineValues values;

        /// Of a line of A=1 and one more pair.
        ValueMap map(char16_t key, double number)
        {
            const LineValues::KeyedNumber numbers[] = {{u"A", 1.0}, {{&key, 1}, number}};
            return values.toMap(numbers);
        }
        /// Where the number of that line is kept.
        const double* placeOf(char16_t key) { return &*map(key, 0.0).constFind(QChar(key)); }
    };

private Q_SLOTS:
    void heldMapStaysAsItIs()
    {
        Rig rig;
        const ValueMap held = rig.map(u'B', 2.0);
        QCOMPARE(rig.map(u'B', 4.0), (ValueMap{{u"A"_s, 1.0}, {u"B"_s, 4.0}}));
        QCOMPARE(held, (ValueMap{{u"A"_s, 1.0}, {u"B"_s, 2.0}}));
    }

    void linesThatTakeTurnsUseTheirMapsAgain()
    {
        Rig rig;
        QList<const double*> places;
        for (int i = 0; i < 100; ++i) // eighty other kinds of line, then ten that take turns
            places << rig.placeOf(char16_t(i < 80 ? 0x400 + i : 'B' + i % 10));
        QCOMPARE(places.last(10), places.mid(80, 10));
        QCOMPARE(places.last(10).count(places.last()), 1);
    }

    void keepsNoLineOfUnusualSize_data()
    {
        QTest::addColumn<int>("keys");
        QTest::addColumn<int>("charactersOfAKey");
        QTest::addColumn<bool>("kept");
        QTest::newRow("usual line") << 30 << 10 << true;
        QTest::newRow("many keys") << 1000 << 3 << false;
        QTest::newRow("one long key") << 1 << 1'000'000 << false;
        QTest::newRow("long together") << 10 << 1000 << false;
    }

    void keepsNoLineOfUnusualSize()
    {
        QFETCH(int, keys);
        QFETCH(int, charactersOfAKey);
        QStringList names;
        for (int i = 0; i < keys; ++i)
            names << QString::number(i).rightJustified(charactersOfAKey, u'K');
        std::vector<LineValues::KeyedNumber> numbers;
        for (const QString& name : names)
            numbers.push_back({name, 1.0});
        LineValues values;
        const ValueMap map = values.toMap(numbers);
        QCOMPARE(map.size(), keys);
        QTEST(!map.isDetached(), "kept"); // shared with the one that was kept
    }
};

QTEST_GUILESS_MAIN(LineValuesTest)
#include "tst_linevalues.moc"
