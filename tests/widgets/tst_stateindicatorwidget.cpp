#include "support/WidgetTools.h"
#include "widgets/StateIndicatorWidget.h"

#include <QComboBox>
#include <QFormLayout>
#include <QTest>

class TestStateIndicatorWidget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void coloursByKeyword_data();
    void coloursByKeyword();
    void keepsBlanksInLabelOnly();
    void takesCaptionFromCatalogue();
    void lampKeepsItsHeight();
    void offersGroups();
};

void TestStateIndicatorWidget::coloursByKeyword_data()
{
    QTest::addColumn<QString>("state");
    QTest::addColumn<QColor>("colour");
    const QColor red(200, 60, 60);
    const QColor green(60, 170, 80);
    const QColor amber(230, 170, 40);
    const QColor blue(90, 120, 160);
    QTest::newRow("red first") << "LOGOUT" << red;
    QTest::newRow("lower case") << "timeout" << red;
    QTest::newRow("in") << "RUNNING" << green;
    QTest::newRow("pause") << "PAUSED" << amber;
    QTest::newRow("none") << "STANDBY" << blue;
    QTest::newRow("empty") << "" << blue;
}

void TestStateIndicatorWidget::coloursByKeyword()
{
    QFETCH(QString, state);
    QFETCH(QColor, colour);
    StateIndicatorWidget indicator;
    indicator.resize(200, 120);
    indicator.setStateId(state, QString());
    QCOMPARE(picture(indicator).pixelColor(20, 100), colour);
}

void TestStateIndicatorWidget::keepsBlanksInLabelOnly()
{
    StateIndicatorWidget indicator;
    indicator.setStateId(" Pass ", QString());
    QCOMPARE(indicator.stateId(), QString("Pass"));
    QCOMPARE(indicator.stateLabel(), QString(" Pass "));
    indicator.setStateId("Pass", "Passed");
    QCOMPARE(indicator.stateLabel(), QString("Passed"));
}

void TestStateIndicatorWidget::takesCaptionFromCatalogue()
{
    StateIndicatorWidget indicator;
    indicator.loadConfig({{"groupId", " MODE "}});
    QCOMPARE(indicator.groupId(), QString("MODE"));
    QCOMPARE(indicator.groupLabel(), QString("MODE"));
    const TestCatalogue catalogue("DASHBOARD_STATE_GROUP(MODE, \"Operating mode\")\n");
    indicator.refreshGroupDisplayFromParser();
    QCOMPARE(indicator.groupLabel(), QString("Operating mode"));
    indicator.setGroupId("OTHER");
    QCOMPARE(indicator.groupLabel(), QString("OTHER"));
}

void TestStateIndicatorWidget::lampKeepsItsHeight()
{
    StateIndicatorWidget indicator;
    indicator.resize(160, 60);
    indicator.loadConfig({{"corner", 0}});
    QFont font = indicator.font();
    font.setPointSize(14);
    const int top = 8 + QFontMetrics(font).height() + 6;
    const QImage image = picture(indicator);
    const QColor window = indicator.palette().color(QPalette::Window);
    QCOMPARE(image.pixelColor(10, top - 1), window);
    for (int y = top; y < qMin(60, top + 24); ++y)
        QCOMPARE(image.pixelColor(10, y), indicator.colorForState(QString()));
    QCOMPARE(image.pixelColor(7, top), window);
    QCOMPARE(image.pixelColor(152, top), window);
}

void TestStateIndicatorWidget::offersGroups()
{
    const TestCatalogue catalogue("DASHBOARD_STATE(B, ON, \"On\")\nDASHBOARD_STATE_GROUP(A, \"First\")\n"
                                  "DASHBOARD_STATE_GROUP(B, \"Second\")\n");
    const auto choose = [](const QString& current, int index) {
        StateIndicatorWidget indicator;
        indicator.setGroupId(current);
        QWidget parent;
        indicator.buildConfigUI(new QFormLayout(&parent), &parent);
        auto* box = parent.findChild<QComboBox*>();
        const QString shown = box->currentText();
        if (index >= 0)
            box->setCurrentIndex(index);
        indicator.applyConfigUI();
        return QStringList{QString::number(box->count()), shown, indicator.groupId()};
    };
    QCOMPARE(choose("A", 0), QStringList({"2", "First (A)", "B"}));
    QCOMPARE(choose(QString(), -1), QStringList({"2", "Second (B)", "B"}));
    QCOMPARE(choose("GONE", -1), QStringList({"2", "", "GONE"}));
}

QTEST_MAIN(TestStateIndicatorWidget)
#include "tst_stateindicatorwidget.moc"
