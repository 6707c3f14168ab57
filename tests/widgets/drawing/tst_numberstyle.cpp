#include "widgets/drawing/NumberStyle.h"

#include <QFontMetrics>
#include <QTest>

class TestNumberStyle : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fitsWithoutLyingAboutNumbers_data()
    {
        QTest::addColumn<QList<double>>("values");
        QTest::addColumn<int>("width"); ///< in digits of 6 points
        QTest::addColumn<QStringList>("texts");
        const QStringList full{"-0.123457", "98765.4"};
        QTest::newRow("room for all") << QList{-0.123456789, 98765.4321} << 60 << full;
        QTest::newRow("smaller") << QList{-0.123456789, 98765.4321} << 10 << full;
        QTest::newRow("rounded") << QList{-0.123456789, 98765.4321} << 7 << QStringList{"-0.1235", "9.877e4"};
        QTest::newRow("short exponent") << QList{1e6, 2.5e-7} << 6 << QStringList{"1e6", "2.5e-7"};
        QTest::newRow("kept apart") << QList{1'013'000.0, 1'014'000.0} << 4
                                    << QStringList{"1.013e6", "1.014e6"};
    }

    void fitsWithoutLyingAboutNumbers()
    {
        QFETCH(QList<double>, values);
        QFETCH(int, width);
        QFETCH(QStringList, texts);
        QFont font;
        font.setPointSize(6);
        const int digit = QFontMetrics(font).horizontalAdvance('0');
        font.setPointSize(9);
        const NumberStyle style = NumberStyle::fitting(font, values, 6, width * digit);
        QStringList shown;
        for (const double value : values)
            shown.append(style.text(value));
        QCOMPARE(shown, texts);
        QCOMPARE(style.font.pointSize() < 9, width < 60);
    }
};

QTEST_MAIN(TestNumberStyle)
#include "tst_numberstyle.moc"
