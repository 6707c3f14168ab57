#include "support/TextRecorder.h"
#include "widgets/drawing/NumberStyle.h"
#include "widgets/drawing/ValueLabels.h"

#include <QFontMetrics>
#include <QTest>

class TestValueLabelsAndNumberStyle : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void leavesOutWhatWouldOverlap_data()
    {
        QTest::addColumn<int>("top"); ///< beside a label in the rows 100 to 115
        QTest::addColumn<int>("drawn");
        QTest::newRow("sharing empty rows") << 87 << 2;
        QTest::newRow("covering digits from above") << 92 << 1;
        QTest::newRow("covering digits from below") << 108 << 1;
        QTest::newRow("touching below") << 116 << 2;
    }

    void leavesOutWhatWouldOverlap()
    {
        QFETCH(int, top);
        ValueLabels labels(QRect(50, 0, 100, 200), 6);
        labels.add(1.0, 100, 16);
        labels.addIfFree(2.0, top, 16);
        TextRecorder recorder({200, 200});
        QPainter painter(&recorder);
        labels.draw(painter);
        QTEST(recorder.textCount(), "drawn");
    }

    void fitsWithoutLyingAboutNumbers_data()
    {
        QTest::addColumn<QList<double>>("values");
        QTest::addColumn<int>("width"); ///< in digits of 6 points
        QTest::addColumn<QStringList>("texts");
        QTest::newRow("smaller") << QList{-0.123456789} << 10 << QStringList{"-0.123457"};
        QTest::newRow("rounded") << QList{-0.123456789, 98765.4321} << 7 << QStringList{"-0.1235", "9.877e4"};
        QTest::newRow("short exponent") << QList{1e6, 2.5e-7} << 6 << QStringList{"1e6", "2.5e-7"};
        QTest::newRow("kept apart") << QList{1.013e6, 1.014e6} << 4 << QStringList{"1.013e6", "1.014e6"};
    }

    void fitsWithoutLyingAboutNumbers()
    {
        QFETCH(QList<double>, values);
        QFETCH(int, width);
        QFont font;
        font.setPointSize(6);
        const int digit = QFontMetrics(font).horizontalAdvance('0');
        font.setPointSize(9);
        const NumberStyle style = NumberStyle::fitting(font, values, 6, width * digit);
        QStringList shown;
        for (const double value : values)
            shown.append(style.text(value));
        QTEST(shown, "texts");
    }
};

QTEST_MAIN(TestValueLabelsAndNumberStyle)
#include "tst_valuelabelsandnumberstyle.moc"
