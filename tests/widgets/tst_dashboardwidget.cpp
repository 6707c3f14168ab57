#include "widgets/DashboardWidget.h"
#include "widgets/ITimeStampedConsumer.h"

#include <QJsonArray>
#include <QSignalSpy>
#include <QTest>

namespace {

class PlainWidget : public DashboardWidget
{
public:
    void setValue(double value) override { shown = value; }
    QString typeName() const override { return QStringLiteral("Plain"); }
    QSize minimumSizeHint() const override { return {50, 200}; }

    double shown = 0.0;
};

} // namespace

class TimedWidget : public PlainWidget, public ITimeStampedConsumer
{
    Q_OBJECT
    Q_INTERFACES(ITimeStampedConsumer)

public:
    void setValueForSignalAt(const QString&, double, double tSec) override { time = tSec; }

    double time = 0.0;
};

class TestDashboardWidget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void raisesMinimumCanvasSize();
    void passesTimedValuesOn();
    void isFoundAsTimeStampedConsumer();
    void assignsAndTells();
    void loadsOnlyStringsOfAnArray_data();
    void loadsOnlyStringsOfAnArray();
};

void TestDashboardWidget::raisesMinimumCanvasSize()
{
    QCOMPARE(PlainWidget().minimumCanvasSize(), QSize(80, 200));
}

void TestDashboardWidget::passesTimedValuesOn()
{
    PlainWidget widget;
    widget.setValueForSignalAt("A", 4.5, 100.0);
    QCOMPARE(widget.shown, 4.5);
}

void TestDashboardWidget::isFoundAsTimeStampedConsumer()
{
    TimedWidget timed;
    DashboardWidget* widget = &timed;
    auto* consumer = qobject_cast<ITimeStampedConsumer*>(widget);
    QVERIFY(consumer);
    consumer->setValueForSignalAt("A", 1.0, 7.0);
    QCOMPARE(timed.time, 7.0);
    PlainWidget plain;
    QVERIFY(!qobject_cast<ITimeStampedConsumer*>(static_cast<DashboardWidget*>(&plain)));
}

void TestDashboardWidget::assignsAndTells()
{
    PlainWidget widget;
    QCOMPARE(widget.signalName(), QString());
    QSignalSpy told(&widget, &DashboardWidget::assignmentChanged);
    widget.assignSignals({"B", "A", "B"});
    QCOMPARE(widget.assignedSignalList(), QList<QString>({"B", "A", "B"}));
    QCOMPARE(widget.signalName(), QString("B"));
    widget.assignSignal(QString());
    QCOMPARE(widget.assignedSignalList(), QList<QString>{QString()});
    QCOMPARE(told.count(), 2);
}

void TestDashboardWidget::loadsOnlyStringsOfAnArray_data()
{
    QTest::addColumn<QJsonObject>("config");
    QTest::addColumn<QStringList>("assigned");
    QTest::newRow("others skipped") << QJsonObject{{"signals", QJsonArray{"A", 3, QJsonValue(), "B"}}}
                                    << QStringList{"A", "B"};
    QTest::newRow("empty array") << QJsonObject{{"signals", QJsonArray()}} << QStringList();
    QTest::newRow("a string") << QJsonObject{{"signals", "A"}} << QStringList{"old"};
    QTest::newRow("absent") << QJsonObject() << QStringList{"old"};
}

void TestDashboardWidget::loadsOnlyStringsOfAnArray()
{
    QFETCH(QJsonObject, config);
    QFETCH(QStringList, assigned);
    PlainWidget widget;
    widget.assignSignals({"old"});
    widget.loadConfig(config);
    QCOMPARE(widget.assignedSignalList(), assigned);
    QCOMPARE(widget.saveConfig(), (QJsonObject{{"signals", QJsonArray::fromStringList(assigned)}}));
}

QTEST_MAIN(TestDashboardWidget)
#include "tst_dashboardwidget.moc"
