#include "app/CommandLine.h"
#include "app/ValueRouter.h"
#include "app/WidgetPalette.h"
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

using namespace Qt::StringLiterals;

namespace {

using Ask = void (Sigvane::*)();

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
        openProject("DASHBOARD_STATE(M, RUN, \"Running\")\n"
                    "DASHBOARD_ERROR(E, 7, \"Too hot\")\n"
                    "DASHBOARD_MAPPING(TENFOLD, 0, 10)\n"
                    "DASHBOARD_SIGNAL(A, \"a\", TENFOLD)\n");
        trend->assignSignals({u"A"_s});
        window.router()->routeLiveValues({{u"C"_s, 0.0}}); // from here on it has to notice changes
        xy->loadConfig({{u"xSignal"_s, u"A"_s}, {u"ySignal"_s, u"B"_s}});
        state->setGroupId(u"M"_s);
        replay("0 A=1 B=1\n1 A=2 ST_M=RUN ERR=E\n1 RAW hello\n100 A=3\n");
        engine->advance(1000);
    }
    bool trendIsOnTheClock() const { return trend->currentNowMs() > 1'000'000'000'000; }
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
        display = items().constFirst()->widget();
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
};

} // namespace

class TestSigvane : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // --- Start and licence ---------------------------------------------------------------------------------

    void beginsInIdle()
    {
        const WindowRig rig;
        QCOMPARE(rig.status(), u"Idle"_s);
        QVERIFY(!rig.window.findChild<WidgetPalette*>()->isEnabled());
    }

    void startsWithWhatCanBeUsed()
    {
        WindowRig rig;
        const PseudoTerminal device;
        CommandLine wanted;
        wanted.definitionsFile = rig.write("rig.def", "\n");
        wanted.layoutFile = rig.dir.filePath(u"missing.json"_s);
        wanted.baudRate = 9600;
        wanted.portName = device.portName();
        wanted.playFile = rig.write("rig.rec", "0 A=1\n100\n");
        rig.window.startWith(wanted);
        QTRY_VERIFY2(rig.status().contains(*wanted.layoutFile), qPrintable(rig.status()));
        QCOMPARE(rig.window.findChild<QComboBox*>(u"baudBox"_s)->currentData().toInt(), 9600);
        QVERIFY(rig.window.serial()->isOpen());
        QCOMPARE(rig.window.mode(), Sigvane::Play);
    }

    void startWithoutAProjectEndsTheProgram_data()
    {
        QTest::addColumn<ModalAnswer::Answer>("introduction");
        QTest::addColumn<int>("dialogs");
        QTest::newRow("introduction rejected") << ModalAnswer::Answer(&QDialog::reject) << 1;
        QTest::newRow("picker cancelled") << ModalAnswer::Answer(&QDialog::accept) << 2;
    }

    void startWithoutAProjectEndsTheProgram()
    {
        QFETCH(ModalAnswer::Answer, introduction);
        WindowRig rig;
        rig.window.show();
        rig.answer.then(introduction).reject();
        rig.window.startWith({});
        QTEST(int(rig.answer.titles().size()), "dialogs");
        QTRY_VERIFY(!rig.window.isVisible());
    }

    void unlicensedExportShowsTheLicense()
    {
        WindowRig rig;
        rig.license.setAnswer(false, u"Trial"_s);
        rig.answer.press(QMessageBox::Ok).press(QMessageBox::Ok);
        rig.press(u"Signals"_s);
        QTRY_VERIFY(rig.answer.allUsed()); // the licence's own box comes from the event loop
        QCOMPARE(rig.answer.titles(), QStringList({u"Export CSV"_s, u"License"_s}));
        QCOMPARE(rig.answer.texts().constLast(), u"Trial"_s);
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
    }

    // --- Replay --------------------------------------------------------------------------------------------

    void replayReachesEveryWidget()
    {
        const ReplayRig rig;
        QVERIFY(rig.trend->series(u"A"_s));
        QCOMPARE(rig.trend->series(u"A"_s)->last().tMs, 1000);
        QCOMPARE(rig.trend->series(u"A"_s)->last().value, 20.0);
        QCOMPARE(rig.xy->points().points(), QList({QPointF(10, 1), QPointF(20, 1)}));
        QCOMPARE(rig.state->stateLabel(), u"Running"_s);
        QCOMPARE(rig.errors->plainText(), u"[1.000s] E : Too hot"_s);
        QCOMPARE(rig.messages->plainText(), u"[1.000s] hello"_s);
    }

    void liveValuesKeepOutOfAReplay()
    {
        const ReplayRig rig;
        rig.window.serial()->parseLine(u"A=9"_s);
        QCOMPARE(rig.trend->series(u"A"_s)->last().value, 20.0);
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
        QTest::keyClick(rig.slider, Qt::Key_Right);
        QVERIFY(!rig.trendIsOnTheClock());
        rig.window.serial()->parseLine(u"A=5"_s);
        QVERIFY(rig.trendIsOnTheClock());
    }

    void clickInTheSliderJumpsThere()
    {
        WindowRig rig;
        rig.replay("0 A=1\n100 A=3\n");
        rig.press(u"Pause"_s);
        const QPoint quarter(rig.slider->width() / 4, rig.slider->height() / 2);
        QTest::mouseClick(rig.slider, Qt::LeftButton, {}, quarter);
        QVERIFY2(qAbs(rig.slider->value() - 250) < 50, QByteArray::number(rig.slider->value()));
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
        QCOMPARE(rig.window.scene()->projectFolder(), rig.dir.path());
        QCOMPARE(rig.window.windowTitle(), u"Sigvane — "_s + rig.dir.path());
        QCOMPARE(loaded.value(0), QVariantList{path});
        QCOMPARE(rig.window.mode(), Sigvane::Idle);
        QTRY_COMPARE(rig.status(), u"Project: "_s + rig.dir.path());
    }

    void dialogsBeginInTheProject_data()
    {
        QTest::addColumn<Ask>("ask");
        QTest::addColumn<QString>("folder");
        QTest::newRow("Open Recording") << &Sigvane::selectPlaybackFile << u"recordings"_s;
        QTest::newRow("Save Layout") << &Sigvane::saveLayout << u"layouts"_s;
        QTest::newRow("Load Layout") << &Sigvane::loadLayout << u"layouts"_s;
        QTest::newRow("Export CSV") << &Sigvane::exportEventsButton << u"exports"_s;
    }

    void dialogsBeginInTheProject()
    {
        QFETCH(Ask, ask);
        WindowRig rig;
        rig.openProject();
        rig.replay("0 A=1\n");
        QString begin;
        rig.answer.then([&](QDialog* dialog) {
            begin = qobject_cast<QFileDialog*>(dialog)->directory().dirName();
            dialog->reject();
        });
        (rig.window.*ask)();
        QCOMPARE(rig.answer.titles(), QStringList(QLatin1String(QTest::currentDataTag())));
        QTEST(begin, "folder");
    }

    void reloadMapsTheLastValuesAnew()
    {
        const DefinitionsRig rig;
        QCOMPARE(rig.shown(), u"42.0"_s);
        rig.reload(definitions("3"));
        QCOMPARE(rig.shown(), u"63.0"_s);
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

    void recordingsOwnDefinitionsCountUntilDesign()
    {
        DefinitionsRig rig;
        rig.write("replay.signals.h", definitions("5"));
        rig.window.findChild<QCheckBox*>()->click();
        rig.replay("0 T=1\n100 T=3\n");
        QCOMPARE(rig.shown(), u"5.0"_s);
        rig.press(u"Design"_s);
        rig.window.router()->routeLiveValues({{u"T"_s, 21.0}});
        QCOMPARE(rig.shown(), u"42.0"_s);
    }

    // --- Status bar and palette
    // -----------------------------------------------------------------------------

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
        auto* palette = rig.window.findChild<WidgetPalette*>();
        rig.press(u"Design"_s);
        const QPoint first = palette->visualItemRect(palette->item(0)).center();
        QTest::mouseClick(palette->viewport(), Qt::LeftButton, {}, first);
        QTest::mouseDClick(palette->viewport(), Qt::LeftButton, {}, first);
        QCOMPARE(rig.items().size(), 1);
        QCOMPARE(rig.items().constFirst()->widget()->typeName(), palette->item(0)->text());
        QVERIFY(rig.items().constFirst()->flags() & QGraphicsItem::ItemIsMovable);
    }
};

QTEST_MAIN(TestSigvane)
#include "tst_sigvane.moc"
