#include "app/ProjectIntroDialog.h"
#include "app/ValueRouter.h"
#include "app/WidgetPalette.h"
#include "playback/PlaybackController.h"
#include "serial/SerialManager.h"
#include "support/WindowRig.h"
#include "widgets/DashboardWidget.h"
#include "widgets/consoles/ErrorConsoleWidget.h"
#include "widgets/consoles/MessagesConsoleWidget.h"
#include "widgets/trend/TrendPlotWidget.h"
#include "widgets/values/StateIndicatorWidget.h"
#include "widgets/xyplot/XYPlotWidget.h"

#include <QCheckBox>
#include <QFileDialog>
#include <QLabel>
#include <QSignalSpy>
#include <QTest>
#include <QToolBar>

using namespace Qt::StringLiterals;

namespace {

/// A widget of each kind, a second after a replay began.
struct ReplayRig : WindowRig
{
    TrendPlotWidget* trend = add<TrendPlotWidget>();
    XYPlotWidget* xy = add<XYPlotWidget>();
    StateIndicatorWidget* state = add<StateIndicatorWidget>();
    ErrorConsoleWidget* errors = add<ErrorConsoleWidget>();
    MessagesConsoleWidget* messages = add<MessagesConsoleWidget>();

    ReplayRig()
    {
        trend->assignSignals({u"A"_s});
        xy->loadConfig({{u"xSignal"_s, u"A"_s}, {u"ySignal"_s, u"B"_s}});
        state->setGroupId(u"M"_s);
        replay("0 A=1 B=1\n1 A=2 ST_M=RUN ERR=7\n1 RAW hello\n100 A=3\n");
        engine->advance(1000);
    }
    bool trendIsOnTheClock() const { return trend->currentNowMs() > 1'000'000'000'000; }
};

/// A paused replay in which the handle of the slider is in the middle.
struct SliderRig : WindowRig
{
    const QPoint middle = slider->rect().center();

    SliderRig()
    {
        replay("0 A=1\n45 A=2\n100 A=3\n");
        press(u"Pause"_s);
        QTest::mouseClick(slider, Qt::LeftButton, {}, middle);
    }
};

QByteArray definitions(const QByteArray& scale)
{
    return "DASHBOARD_MAPPING(M, 0, " + scale + ")\nDASHBOARD_SIGNAL(T, \"t\", M)\n";
}

/// A project that doubles a signal, and a display of it after a live value of 21.
struct DefinitionsRig : WindowRig
{
    DashboardWidget* display = nullptr;

    DefinitionsRig()
    {
        openProject(definitions("2"));
        window.addWidget(u"DigitalDisplay"_s);
        display = items().first()->widget();
        display->assignSignals({u"T"_s});
        window.router()->routeLiveValues({{u"T"_s, 21.0}});
    }
    QString shown() const
    {
        display->grab();
        return display->findChild<QLabel*>()->text();
    }
    void reload(const QByteArray& text) const
    {
        write("dashboard_signals.def", text);
        press(u"&Reload Definitions"_s);
    }
    /// With definitions of its own, which are used.
    void replayWithItsOwn(const QByteArray& text)
    {
        write("replay.signals.h", text);
        window.findChild<QCheckBox*>()->click();
        replay("0 T=1\n1 T=2\n100 T=3\n");
    }
};

} // namespace

class TestSigvane : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void beginsInIdle()
    {
        const WindowRig rig;
        QCOMPARE(rig.window.mode(), Sigvane::Idle);
        QCOMPARE(rig.status(), u"Idle"_s);
        QVERIFY(!rig.window.findChild<WidgetPalette*>()->isEnabled());
    }

    void exportNeedsARecording()
    {
        WindowRig rig;
        rig.answer.press(QMessageBox::Ok).press(QMessageBox::Ok);
        rig.press(u"Signals"_s);
        rig.press(u"Events"_s);
        QCOMPARE(rig.answer.titles(), QStringList({u"Export CSV"_s, u"Export Events CSV"_s}));
        QCOMPARE(rig.answer.texts(), QStringList(2, u"No playback data loaded."_s));
    }

    void unlicensedExportShowsTheLicense()
    {
        WindowRig rig;
        rig.license.setAnswer(false, u"Trial"_s);
        rig.answer.press(QMessageBox::Ok).press(QMessageBox::Ok);
        rig.press(u"Signals"_s);
        QTRY_VERIFY(rig.answer.allUsed()); // the licence's own box comes from the event loop
        QCOMPARE(rig.answer.titles(), QStringList({u"Export CSV"_s, u"License"_s}));
        QCOMPARE(rig.answer.texts().last(), u"Trial"_s);
    }

    void sixthWidgetNeedsALicense()
    {
        WindowRig rig;
        rig.license.setAnswer(false, u"Trial"_s);
        rig.answer.press(QMessageBox::Ok);
        for (int i = 0; i < 6; ++i)
            rig.window.addWidget(u"DigitalDisplay"_s);
        QCOMPARE(rig.answer.titles(), QStringList(u"Limit reached"_s));
        QCOMPARE(rig.items().size(), 5);
        rig.license.setAnswer(true, u"Bought"_s);
        rig.window.addWidget(u"DigitalDisplay"_s);
        QCOMPARE(rig.items().size(), 6);
    }

    // --- Replay --------------------------------------------------------------------------------------------

    void jumpBringsBackAsMuchAsTheTrendPlotsShow()
    {
        const WindowRig rig;
        QCOMPARE(rig.window.dominantTrendWindowSeconds(), 10.0);
        for (const int windowMs : {5000, 60'000, -1})
            rig.add<TrendPlotWidget>()->loadConfig({{u"timeWindowMs"_s, windowMs}});
        QCOMPARE(rig.window.dominantTrendWindowSeconds(), 30.0);
    }

    void replayReachesEveryWidget()
    {
        const ReplayRig rig;
        QVERIFY(rig.trend->series(u"A"_s));
        QCOMPARE(rig.trend->series(u"A"_s)->last().tMs, 1000);
        QCOMPARE(rig.xy->points().points(), QList({QPointF(1, 1), QPointF(2, 1)}));
        QCOMPARE(rig.state->stateId(), u"RUN"_s);
        QCOMPARE(rig.errors->plainText(), u"[1.000s] 7 : 7"_s);
        QCOMPARE(rig.messages->plainText(), u"[1.000s] hello"_s);
    }

    void valueWithoutATimeHasNoPlaceInAReplay()
    {
        WindowRig rig;
        auto* trend = rig.add<TrendPlotWidget>();
        trend->assignSignals({u"A"_s});
        rig.replay("inf A=1\n");
        QVERIFY(!trend->series(u"A"_s)); // and the clock does not give it one
    }

    void jumpToTheStartEmptiesTheWidgets()
    {
        const ReplayRig rig;
        rig.press(u"Pause"_s);
        QTest::keyClick(rig.slider, Qt::Key_Home);
        QVERIFY(!rig.trend->series(u"A"_s));
        QVERIFY(rig.xy->points().points().isEmpty());
        QCOMPARE(rig.errors->plainText(), QString());
        QCOMPARE(rig.messages->plainText(), QString());
    }

    void deviceTakesThePlotsBackAfterAJump()
    {
        const ReplayRig rig;
        rig.press(u"Design"_s);
        rig.slider->setValue(499);
        QTest::keyClick(rig.slider, Qt::Key_Right); // to 50 s, with no history to bring back
        QCOMPARE(rig.xy->points().points(), QList({QPointF(2, 1)}));
        rig.window.serial()->parseLine(u"A=5"_s);
        QVERIFY(rig.trendIsOnTheClock());
        QCOMPARE(rig.trend->series(u"A"_s)->size(), 1);
    }

    void endOfAReplayIsIdleWithEmptyPlots()
    {
        const ReplayRig rig;
        rig.engine->setPlaybackRate(100.0);
        rig.engine->advance(1000);
        QCOMPARE(rig.window.mode(), Sigvane::Idle);
        QVERIFY(rig.trendIsOnTheClock());
        QVERIFY(!rig.trend->series(u"A"_s));
    }

    void clickInTheSliderJumpsThereAndNotFromTheHandle()
    {
        const SliderRig rig;
        const QSignalSpy seeks(rig.engine, &SignalPlaybackEngine::messageReset);
        const QPoint quarter(rig.middle.x() / 2, rig.middle.y());
        QTest::mouseClick(rig.slider, Qt::LeftButton, {}, quarter);
        QCOMPARE(seeks.size(), 1);
        const int step = rig.slider->value();
        QVERIFY(step < 300);
        QTest::mousePress(rig.slider, Qt::LeftButton, {}, quarter + QPoint(4, 0));
        QCOMPARE(rig.slider->value(), step);
    }

    void playTakesTheHeldSliderAndGoesOnFromThere()
    {
        const SliderRig rig;
        QTest::mousePress(rig.slider, Qt::LeftButton, {}, rig.middle);
        const QSignalSpy frames(rig.engine, &SignalPlaybackEngine::signalValuesUpdatedAt);
        rig.press(u"Play"_s);
        QVERIFY(!rig.slider->isSliderDown());
        QCOMPARE(frames.size(), 2);
        QCOMPARE(frames[0][0], 45.0);
        QCOMPARE(frames[1][0], 100.0);
    }

    void boxTakesTheHeldSlider()
    {
        SliderRig rig;
        rig.window.show();
        QTest::mousePress(rig.slider, Qt::LeftButton, {}, rig.slider->rect().center());
        QVERIFY(rig.slider->isSliderDown());
        rig.answer.press(QMessageBox::Ok);
        rig.press(u"License &Status…"_s); // takes the release away
        QVERIFY(!rig.slider->isSliderDown());
        const int released = rig.slider->value();
        QTest::mouseMove(rig.slider, rig.slider->rect().center() + QPoint(150, 0)); // still pressed, for Qt
        QCOMPARE(rig.slider->value(), released);
    }

    // --- Project and definitions ---------------------------------------------------------------------------

    void opensTheProjectThatIsChosen()
    {
        WindowRig rig;
        const QSignalSpy loaded(&rig.window, &Sigvane::signalsDefChanged);
        const QString path = rig.write("dashboard_signals.def", "\n");
        rig.press(u"Design"_s);
        rig.answer.chooseFile(rig.dir.path());
        rig.press(u"&Open Project…"_s);
        QCOMPARE(rig.window.projectDir(), rig.dir.path());
        QCOMPARE(rig.window.scene()->projectFolder(), rig.dir.path());
        QCOMPARE(rig.window.windowTitle(), u"Sigvane — "_s + rig.dir.path());
        QCOMPARE(loaded.value(0), QVariantList{path});
        QCOMPARE(rig.window.mode(), Sigvane::Idle);
        QTRY_COMPARE(rig.status(), u"Project: "_s + rig.dir.path());
    }

    void dialogsBeginInTheProject_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("folder");
        QTest::newRow("Open Recording") << u"Open Recording"_s << u"recordings"_s;
        QTest::newRow("Save Layout") << u"Save Layout"_s << u"layouts"_s;
        QTest::newRow("Load Layout") << u"Load Layout"_s << u"layouts"_s;
        QTest::newRow("Events") << u"Export CSV"_s << u"exports"_s;
    }

    void dialogsBeginInTheProject()
    {
        QFETCH(QString, title);
        QFETCH(QString, folder);
        WindowRig rig;
        rig.openProject();
        rig.replay("0 A=1\n");
        QString begin;
        rig.answer.then([&](QDialog* dialog) {
            begin = qobject_cast<QFileDialog*>(dialog)->directory().path();
            dialog->reject();
        });
        if (title == u"Open Recording")
            rig.window.selectPlaybackFile();
        else
            rig.press(QLatin1String(QTest::currentDataTag()));
        QCOMPARE(rig.answer.titles(), QStringList(title));
        QCOMPARE(begin, rig.dir.filePath(folder));
    }

    void reloadMapsTheLastValuesAnew()
    {
        const DefinitionsRig rig;
        QCOMPARE(rig.shown(), u"42.0"_s);
        const QSignalSpy loaded(&rig.window, &Sigvane::signalsDefChanged);
        rig.reload(definitions("3"));
        QCOMPARE(rig.shown(), u"63.0"_s);
        QCOMPARE(loaded.size(), 1);
        QCOMPARE(rig.window.windowTitle(), u"Sigvane — "_s + rig.dir.path());
        QCOMPARE(rig.status(), u"Definitions reloaded: "_s + rig.dir.filePath(u"dashboard_signals.def"_s));
    }

    void reloadShowsNewCaptions()
    {
        const DefinitionsRig rig;
        auto* state = rig.add<StateIndicatorWidget>();
        state->setGroupId(u"G"_s);
        rig.reload("DASHBOARD_STATE_GROUP(G, \"Pump\")\n");
        QCOMPARE(state->groupLabel(), u"Pump"_s);
    }

    void reloadWithoutAProjectIsRefused()
    {
        const WindowRig rig;
        rig.press(u"&Reload Definitions"_s);
        QCOMPARE(rig.status(), u"No definitions to reload: open a project first."_s);
    }

    void recordingsOwnDefinitionsCountUntilDesign()
    {
        DefinitionsRig rig;
        rig.replayWithItsOwn(definitions("5"));
        QCOMPARE(rig.shown(), u"5.0"_s);
        rig.press(u"Design"_s);
        rig.window.router()->routeLiveValues({{u"T"_s, 21.0}});
        QCOMPARE(rig.shown(), u"42.0"_s);
        rig.press(u"Play"_s);
        QCOMPARE(rig.shown(), u"5.0"_s);
    }

    void replayGoesOnWithReloadedDefinitions()
    {
        DefinitionsRig rig;
        rig.replayWithItsOwn(definitions("5"));
        rig.reload(definitions("7"));
        rig.engine->advance(1000);
        QCOMPARE(rig.shown(), u"14.0"_s);
    }

    // --- Status bar, palette, tool bars --------------------------------------------------------------------

    void noticeOfALostDeviceStaysUntilItIsBack()
    {
        const QString notice = u"The device is gone. Press Connect when it is back."_s;
        PseudoTerminal device;
        const WindowRig rig;
        rig.connectTo(device);
        device.close();
        QTRY_COMPARE(rig.status(), notice);
        device.reopen();
        rig.connectTo(device);
        QCOMPARE(rig.status(), u"Idle"_s);
    }

    void closingMenuWipesNothingAndTheModeComesBack()
    {
        WindowRig rig;
        rig.window.statusBar()->showMessage(u"for a moment"_s, 50);
        QStatusTipEvent emptyTip{QString()}; // what a closing menu sends
        QCoreApplication::sendEvent(&rig.window, &emptyTip);
        QCOMPARE(rig.status(), u"for a moment"_s);
        QTRY_COMPARE(rig.status(), u"Idle"_s);
    }

    void addsWidgetsFromThePalette()
    {
        WindowRig rig;
        rig.window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&rig.window));
        auto* palette = rig.window.findChild<WidgetPalette*>();
        rig.press(u"Design"_s);
        const QPoint pos = palette->visualItemRect(palette->item(0)).center();
        QTest::mouseClick(palette->viewport(), Qt::LeftButton, {}, pos);
        QTest::mouseDClick(palette->viewport(), Qt::LeftButton, {}, pos);
        palette->setCurrentRow(1);
        QTest::keyClick(palette, Qt::Key_Return);
        QCOMPARE(rig.items().size(), 2);
        const DashboardItem* top = rig.items().first();
        QCOMPARE(top->widget()->typeName(), palette->item(1)->text());
        QCOMPARE(top->sceneBoundingRect(), QRectF(100, 100, 250, 250));
        QVERIFY(top->flags() & QGraphicsItem::ItemIsMovable);
    }

    void narrowWindowUnfoldsItsToolBars()
    {
        WindowRig rig;
        rig.window.resize(600, 600);
        rig.window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&rig.window));
        const auto* bar = rig.window.findChild<QToolBar*>(u"tb_controls"_s);
        const auto* button = rig.window.findChild<QWidget*>(u"connectButton"_s);
        QVERIFY(!button->isVisible());
        QTest::mouseClick(bar->findChild<QWidget*>(u"qt_toolbar_ext_button"_s), Qt::LeftButton);
        QTRY_VERIFY(!button->visibleRegion().isEmpty());
    }

    void introductionShowsAllItsText()
    {
        ProjectIntroDialog dialog;
        dialog.show();
        const QList<QLabel*> labels = dialog.findChildren<QLabel*>();
        QVERIFY(!labels.isEmpty());
        for (const QLabel* label : labels)
            QVERIFY2(label->heightForWidth(label->width()) <= label->height(), qPrintable(label->text()));
    }
};

QTEST_MAIN(TestSigvane)
#include "tst_sigvane.moc"
