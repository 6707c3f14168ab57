#include "support/Catalogue.h"
#include "support/WidgetPicture.h"
#include "widgets/values/StateIndicatorWidget.h"

#include <QComboBox>
#include <QFormLayout>
#include <QTest>

using namespace Qt::StringLiterals;

class TestStateIndicatorWidget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void colorsLampByKeyword_data()
    {
        QTest::addColumn<QColor>("color");
        QTest::newRow("PASS_FAIL") << QColor(200, 60, 60);
        QTest::newRow("timeout") << QColor(200, 60, 60);
        QTest::newRow("RUNNING") << QColor(60, 170, 80);
        QTest::newRow("PAUSED") << QColor(230, 170, 40);
        QTest::newRow("STANDBY") << QColor(90, 120, 160);
    }

    void colorsLampByKeyword()
    {
        QFETCH(QColor, color);
        StateIndicatorWidget indicator;
        indicator.resize(160, 60); // lower than caption and lamp
        indicator.setStateId(QTest::currentDataTag(), QString());
        QCOMPARE(picture(indicator).pixelColor(20, 55), color);
    }

    void takesCaptionFromNewCatalogue()
    {
        StateIndicatorWidget indicator;
        indicator.setGroupId(" MODE ");
        const ProjectCatalogue catalogue(kGroups);
        indicator.definitionsChanged();
        QCOMPARE(indicator.groupLabel(), u"Operating"_s);
    }

    void trimsIdButNotText()
    {
        StateIndicatorWidget indicator;
        indicator.setStateId(" Pass ", QString());
        QCOMPARE(indicator.stateId(), u"Pass"_s);
        QCOMPARE(indicator.stateLabel(), u" Pass "_s);
    }

    void keepsStateWhenGroupStaysTheSame()
    {
        StateIndicatorWidget indicator;
        indicator.setGroupId("MODE");
        indicator.setStateId("Pass", QString());
        indicator.setGroupId("mode ");
        QCOMPARE(indicator.stateId(), u"Pass"_s);
    }

    void forgetsStateOfOldGroup()
    {
        const ProjectCatalogue catalogue(kGroups);
        StateIndicatorWidget indicator;
        indicator.setGroupId("MODE");
        indicator.setStateId("Pass", QString());
        QWidget parent;
        indicator.buildConfigUI(new QFormLayout(&parent), &parent);
        parent.findChild<QComboBox*>()->setCurrentText("Other (B)");
        indicator.applyConfigUI();
        QCOMPARE(indicator.groupId(), u"B"_s);
        QCOMPARE(indicator.stateId(), QString());
        QCOMPARE(indicator.stateLabel(), QString());
    }

private:
    static constexpr auto kGroups =
        "DASHBOARD_STATE_GROUP(MODE, \"Operating\")\nDASHBOARD_STATE_GROUP(B, \"Other\")\n";
};

QTEST_MAIN(TestStateIndicatorWidget)
#include "tst_stateindicatorwidget.moc"
