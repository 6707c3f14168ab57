#include "support/TextRecorder.h"
#include "widgets/drawing/ValueLabels.h"

#include <QTest>

class TestValueLabels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void leavesOutWhatWouldOverlap_data()
    {
        QTest::addColumn<int>("top"); ///< beside a label in the rows 100 to 115
        QTest::addColumn<int>("drawn");
        QTest::newRow("far above") << 50 << 2;
        QTest::newRow("touching above") << 84 << 2;
        QTest::newRow("sharing empty rows") << 87 << 2;
        QTest::newRow("covering digits from above") << 92 << 1;
        QTest::newRow("at the same place") << 100 << 1;
        QTest::newRow("covering digits from below") << 108 << 1;
        QTest::newRow("touching below") << 116 << 2;
    }

    void leavesOutWhatWouldOverlap()
    {
        QFETCH(int, top);
        QFETCH(int, drawn);
        ValueLabels labels(QRect(50, 0, 100, 200), 6);
        labels.add(1.0, 100, 16);
        labels.addIfFree(2.0, top, 16);
        QCOMPARE(textsOf(labels), drawn);
    }

    void addsWhateverStandsThere()
    {
        ValueLabels labels(QRect(50, 0, 100, 200), 6);
        labels.add(1.0, 100, 16);
        labels.add(2.0, 100, 16);
        QCOMPARE(textsOf(labels), 2);
    }

private:
    static int textsOf(const ValueLabels& labels)
    {
        TextRecorder recorder({200, 200});
        QPainter painter(&recorder);
        labels.draw(painter);
        return recorder.textCount();
    }
};

QTEST_MAIN(TestValueLabels)
#include "tst_valuelabels.moc"
