#include "app/CommandLine.h"
#include "app/ProjectIntroDialog.h"
#include "app/Sigvane.h"
#include "app/ValueRouter.h"
#include "app/WidgetPalette.h"
#include "app/status/RecordingStatus.h"
#include "canvas/DashboardItem.h"
#include "canvas/DesignScene.h"
#include "licensing/LicenseCheck.h"
#include "playback/PlaybackController.h"
#include "playback/recording/SignalPlaybackEngine.h"
#include "playback/recording/SignalRecorder.h"
#include "serial/SerialManager.h"
#include "support/ModalAnswer.h"
#include "support/PseudoTerminal.h"
#include "widgets/DashboardWidget.h"
#include "widgets/consoles/ErrorConsoleWidget.h"
#include "widgets/consoles/MessagesConsoleWidget.h"
#include "widgets/trend/TrendPlotWidget.h"
#include "widgets/values/StateIndicatorWidget.h"
#include "widgets/xyplot/XYPlotWidget.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QSignalSpy>
#include <QSlider>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>

using namespace Qt::StringLiterals;

class TestSigvane : public QObject
{
    Q_OBJECT

    struct Rig
    {
        LicenseCheck license{true, u"Bought"_s};
        Sigvane window;
        WidgetPalette* palette = window.findChild<WidgetPalette*>();
        SignalPlaybackEngine* engine = window.playbackEngine();
        QSlider* slider = window.findChild<QSlider*>();
        ModalAnswer answer;

        Rig() { window.setLicenseCheck(&license); }
        template <class Widget>
        Widget* add() const
        {
            auto* widget = new Widget;
            window.scene()->addItem(new DashboardItem(widget));
            return widget;
        }
        void trigger(const QString& text) const
        {
            const QList<QAction*> actions = window.findChildren<QAction*>();
            for (QAction* action : actions) {
                if (action->text() == text)
                    action->trigger();
            }
        }
        QString status() const { return window.statusBar()->currentMessage(); }
        QList<DashboardItem*> items() const { return window.scene()->dashboardItems(); }
    };

    QTemporaryDir m_dir;

    static QString write(const QString& path, const QByteArray& bytes)
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("no file");
        return path;
    }

private Q_SLOTS:
    void modeTable()
    {
        Rig rig;
        rig.window.addWidget(u"AnalogGauge"_s);
        for (const auto& [from, button, to] : {std::tuple(Sigvane::Idle, u"Design"_s, Sigvane::Design),
                                               std::tuple(Sigvane::Design, u"Design"_s, Sigvane::Idle),
                                               std::tuple(Sigvane::Play, u"Pause"_s, Sigvane::Pause),
                                               std::tuple(Sigvane::Pause, u"Stop"_s, Sigvane::Idle)}) {
            rig.window.setMode(from);
            rig.trigger(button);
            QCOMPARE(rig.window.mode(), to);
            const bool design = to == Sigvane::Design;
            QCOMPARE(bool(rig.items().first()->flags() & QGraphicsItem::ItemIsMovable), design);
            QCOMPARE(rig.window.scene()->isDesignMode(), design);
            QCOMPARE(rig.palette->isEnabled(), design);
            QCOMPARE(rig.window.router()->isLive(), to != Sigvane::Pause);
        }
        auto* plot = rig.add<TrendPlotWidget>();
        rig.window.setMode(Sigvane::Design);
        plot->setExternalTimeEnabled(true);
        rig.window.setMode(Sigvane::Record); // refused, and Design has been left
        QCOMPARE(rig.window.mode(), Sigvane::Design);
        QVERIFY(!rig.palette->isEnabled() && plot->currentNowMs() > 1e12);
    }

    void refusesWithABox()
    {
        Rig rig;
        LicenseCheck trial(false, u"Trial"_s);
        rig.window.setLicenseCheck(&trial);
        for (int i = 0; i < 5; ++i)
            rig.answer.press(QMessageBox::Ok);
        for (const QString& button : {u"Record"_s, u"Play"_s, u"Events"_s, u"Signals"_s})
            rig.trigger(button);
        QTRY_VERIFY(rig.answer.allUsed()); // the licence's own box comes from the event loop
        QCOMPARE(rig.answer.titles(), QStringList({u"Serial"_s, u"No File"_s, u"Export Events CSV"_s,
                                                   u"Export CSV"_s, u"License"_s}));
        QCOMPARE(rig.window.mode(), Sigvane::Play);
        QCOMPARE(rig.status(), u"Playing..."_s);
    }

    void recordsUntilSomethingEndsIt()
    {
        const QTemporaryDir other;
        const QString earlier = write(other.filePath(u"earlier.rec"_s), "0 A=1 ERR=7\n100\n");
        write(other.filePath(u"dashboard_signals.def"_s), "\n");
        const QList<QPair<QString, Sigvane::Mode>> endsAndNextModes{
            {u"Stop"_s, Sigvane::Idle},           {u"Play"_s, Sigvane::Play},
            {u"cancelled Play"_s, Sigvane::Idle}, {u"removed Play"_s, Sigvane::Idle},
            {u"other file"_s, Sigvane::Play},     {u"lost"_s, Sigvane::Idle},
            {u"project"_s, Sigvane::Idle},        {u"close"_s, Sigvane::Record}};
        for (const auto& [end, mode] : endsAndNextModes) {
            const QTemporaryDir dir;
            write(dir.filePath(u"dashboard_signals.def"_s), "\n");
            PseudoTerminal device;
            Rig rig;
            CommandLine wanted;
            wanted.projectDir = dir.path();
            wanted.portName = device.portName();
            rig.window.startWith(wanted);
            auto* plot = rig.add<TrendPlotWidget>();
            plot->loadConfig({{u"markers"_s, QJsonArray{QJsonObject()}}});
            auto* errors = rig.add<ErrorConsoleWidget>();
            rig.window.startPlayback(earlier);
            rig.engine->advance(1);
            QVERIFY(plot->currentNowMs() == 0 && !errors->plainText().isEmpty());
            rig.trigger(u"Record"_s);
            QCOMPARE(rig.window.mode(), Sigvane::Record);
            QVERIFY(plot->currentNowMs() > 1e12 && plot->markers().isEmpty());
            QVERIFY(errors->plainText().isEmpty() && !rig.slider->isEnabled());
            QVERIFY(rig.window.findChild<RecordingStatus*>()->isVisibleTo(&rig.window));
            QVERIFY(device.writeAll("7 A=1\n7.5 A=2 word\n"));
            QTRY_COMPARE(rig.window.recorder()->lineCount(), 3);
            const QString path = rig.window.recorder()->path();

            rig.answer.press(QMessageBox::Ok); // where the file is gone
            const QSignalSpy loads(rig.engine, &SignalPlaybackEngine::loadProgressed);
            if (end == u"cancelled Play"_s)
                connect(rig.engine, &SignalPlaybackEngine::loadProgressed, rig.engine,
                        &SignalPlaybackEngine::cancelLoading);
            if (end == u"removed Play"_s)
                QVERIFY(QDir(dir.path()).removeRecursively());
            if (end == u"other file"_s)
                rig.window.startPlayback(earlier);
            else if (end == u"lost"_s)
                device.close();
            else if (end == u"project"_s)
                QVERIFY(rig.window.setProjectDir(other.path()));
            else if (end == u"close"_s)
                rig.window.close();
            else
                rig.trigger(end.section(u' ', -1));
            QTRY_VERIFY2(!rig.window.recorder()->isRecording() && rig.window.mode() == mode, qPrintable(end));
            const bool replaysOther = end == u"other file"_s || end == u"close"_s;
            QCOMPARE(rig.window.playback()->playbackFile(), replaysOther ? earlier : path);
            QVERIFY(loads.size() == 1 || end != u"cancelled Play"_s); // and not for Play once more
            QCOMPARE(rig.answer.titles().size(), end == u"removed Play"_s ? 1 : 0);
            QFile file(path);
            if (file.open(QIODevice::ReadOnly))
                QCOMPARE(file.readAll(), "0.000000 A=1\n0.500000 A=2\n0.500000 RAW word\n");
        }
    }

    void replayReachesEveryWidget()
    {
        Rig rig;
        QCOMPARE(rig.window.dominantTrendWindowSeconds(), 10.0);
        for (const int windowMs : {5000, 60'000, -1})
            rig.add<TrendPlotWidget>()->loadConfig({{u"timeWindowMs"_s, windowMs}});
        QCOMPARE(rig.window.dominantTrendWindowSeconds(), 30.0);
        auto* trend = rig.add<TrendPlotWidget>();
        trend->assignSignals({u"A"_s});
        auto* xy = rig.add<XYPlotWidget>();
        xy->loadConfig({{u"xSignal"_s, u"A"_s}, {u"ySignal"_s, u"B"_s}});
        auto* state = rig.add<StateIndicatorWidget>();
        state->setGroupId(u"M"_s);
        auto* errors = rig.add<ErrorConsoleWidget>();
        auto* messages = rig.add<MessagesConsoleWidget>();
        rig.window.startPlayback(write(m_dir.filePath(u"never.rec"_s), "inf A=1\n"));
        QVERIFY(!trend->series(u"A"_s)); // it has no place in a replay, and the clock does not give it one
        rig.window.startPlayback(
            write(m_dir.filePath(u"all.rec"_s), "0 A=1 B=1\n1 A=2 ST_M=RUN ERR=7\n1 RAW hello\n100 A=3\n"));
        rig.engine->advance(1000);
        QVERIFY(trend->series(u"A"_s) && trend->series(u"A"_s)->last().tMs == 1000);
        QCOMPARE(xy->points().points(), QList({QPointF(1, 1), QPointF(2, 1)}));
        QCOMPARE(state->stateId(), u"RUN"_s);
        QCOMPARE(errors->plainText(), u"[1.000s] 7 : 7"_s);
        QCOMPARE(messages->plainText(), u"[1.000s] hello"_s);

        rig.trigger(u"Pause"_s);
        QTest::keyClick(rig.slider, Qt::Key_Home); // before all of that
        QVERIFY(!trend->series(u"A"_s) && xy->points().points().isEmpty());
        QVERIFY(errors->plainText().isEmpty() && messages->plainText().isEmpty());
        rig.trigger(u"Stop"_s);
        rig.slider->setValue(499);
        QTest::keyClick(rig.slider, Qt::Key_Right); // to 50 s, with no history to bring back
        QCOMPARE(xy->points().points(), QList({QPointF(2, 1)}));
        rig.window.serial()->parseLine(u"A=5"_s); // the device takes the plots back
        QVERIFY(trend->currentNowMs() > 1e12 && trend->series(u"A"_s)->size() == 1);

        rig.trigger(u"Play"_s);
        rig.engine->setPlaybackRate(100.0);
        rig.engine->advance(1000);
        QCOMPARE(rig.window.mode(), Sigvane::Idle); // at the end
        QVERIFY(trend->currentNowMs() > 1e12 && !trend->series(u"A"_s) && xy->points().points().isEmpty());
    }

    void sliderObeysTheMouseUntilThePlayButton()
    {
        Rig rig;
        rig.window.startPlayback(write(m_dir.filePath(u"slider.rec"_s), "0 A=1\n45 A=2\n100 A=3\n"));
        rig.trigger(u"Pause"_s);
        const QSignalSpy seeks(rig.engine, &SignalPlaybackEngine::messageReset);
        const QPoint middle = rig.slider->rect().center();
        QTest::mouseClick(rig.slider, Qt::LeftButton, {}, middle);
        const int step = rig.slider->value();
        QVERIFY(seeks.size() == 1 && step > 480 && step < 520);
        QTest::mousePress(rig.slider, Qt::LeftButton, {}, middle + QPoint(4, 0));
        QCOMPARE(rig.slider->value(), step); // it was on the handle

        const QSignalSpy frames(rig.engine, &SignalPlaybackEngine::signalValuesUpdatedAt);
        rig.trigger(u"Play"_s);
        QVERIFY(!rig.slider->isSliderDown() && frames.size() == 2);
        QVERIFY(frames[0][0] == 45.0 && frames[1][0] == 100.0);

        rig.window.show();
        rig.trigger(u"Pause"_s);
        QTest::mousePress(rig.slider, Qt::LeftButton, {}, middle);
        QVERIFY(rig.slider->isSliderDown());
        rig.answer.press(QMessageBox::Ok);
        rig.trigger(u"License &Status…"_s); // a box takes the release away
        QVERIFY(!rig.slider->isSliderDown() && rig.answer.allUsed());
        const int released = rig.slider->value();
        QTest::mouseMove(rig.slider, middle + QPoint(150, 0)); // the button still counts as pressed
        QCOMPARE(rig.slider->value(), released);
    }

    void modeChangeEndsALongLoading()
    {
        const QString path = write(m_dir.filePath(u"a.rec"_s), QByteArray("1 A=1 B=2\n").repeated(1'300'000));
        Rig rig;
        int slices = 0;
        connect(rig.engine, &SignalPlaybackEngine::loadProgressed, this, [&] {
            if (++slices == 2)
                rig.window.setMode(Sigvane::Design);
        });
        rig.window.startPlayback(path);
        QCOMPARE(rig.window.mode(), Sigvane::Design); // asked for while Idle was loading
        QCOMPARE(rig.window.playback()->playbackFile(), path);
        slices = 0;
        rig.window.setMode(Sigvane::Play);
        QCOMPARE(rig.window.mode(), Sigvane::Design); // asked for in the middle of the change to Play
        QVERIFY(!rig.engine->hasFrames() && !rig.engine->isPlaying() && rig.answer.titles().isEmpty());
    }

    void closingMenuWipesNothingAndTheModeComesBack()
    {
        Rig rig;
        rig.window.statusBar()->showMessage(u"for a moment"_s, 50);
        QStatusTipEvent emptyTip{QString()}; // what a closing menu sends
        QCoreApplication::sendEvent(&rig.window, &emptyTip);
        QCOMPARE(rig.status(), u"for a moment"_s);
        QTRY_COMPARE(rig.status(), u"Idle"_s);
    }

    void addsWidgetsFromThePalette()
    {
        Rig rig;
        rig.window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&rig.window));
        rig.window.setMode(Sigvane::Design);
        const QPoint pos = rig.palette->visualItemRect(rig.palette->item(0)).center();
        QTest::mouseClick(rig.palette->viewport(), Qt::LeftButton, {}, pos);
        QTest::mouseDClick(rig.palette->viewport(), Qt::LeftButton, {}, pos);
        rig.palette->setCurrentRow(1);
        QTest::keyClick(rig.palette, Qt::Key_Return);
        QCOMPARE(rig.items().size(), 2);
        const DashboardItem* top = rig.items().first();
        QCOMPARE(top->widget()->typeName(), rig.palette->item(1)->text());
        QCOMPARE(top->sceneBoundingRect(), QRectF(100, 100, 250, 250));
        QVERIFY(top->flags() & QGraphicsItem::ItemIsMovable);
    }

    void sixthWidgetNeedsALicense()
    {
        Rig rig;
        auto trial = std::make_unique<LicenseCheck>(false, u"Trial"_s);
        rig.window.setLicenseCheck(trial.get());
        rig.answer.press(QMessageBox::Ok);
        for (int i = 0; i < 6; ++i)
            rig.window.addWidget(u"DigitalDisplay"_s);
        QCOMPARE(rig.answer.titles(), QStringList(u"Limit reached"_s));
        QCOMPARE(rig.items().size(), 5);
        trial->setAnswer(true, u"Bought"_s);
        rig.window.addWidget(u"DigitalDisplay"_s);
        QCOMPARE(rig.items().size(), 6);
        trial.reset();
        QCOMPARE(rig.window.findChild<QLabel*>(u"licenseChip"_s)->text(), u"Unknown license status"_s);
    }

    void reloadsDefinitionsAndMapsAnew()
    {
        Rig rig;
        const QString reload = u"&Reload Definitions"_s;
        rig.trigger(reload); // no project yet: only said
        const auto define = [](const QString& path, const QByteArray& scale) {
            write(path, "DASHBOARD_MAPPING(M, 0, " + scale + ")\nDASHBOARD_SIGNAL(T, \"t\", M)\n");
        };
        const QString path = m_dir.filePath(u"dashboard_signals.def"_s);
        define(path, "2");
        rig.window.setMode(Sigvane::Design);
        QVERIFY(rig.window.setProjectDir(m_dir.path()));
        QCOMPARE(rig.window.mode(), Sigvane::Idle); // a project is opened through Idle
        QCOMPARE(rig.window.scene()->projectFolder(), m_dir.path());

        rig.window.addWidget(u"DigitalDisplay"_s);
        DashboardWidget* display = rig.items().first()->widget();
        display->assignSignals({u"T"_s});
        const auto shown = [display] {
            display->grab();
            return display->findChild<QLabel*>()->text();
        };
        rig.window.router()->routeLiveValues({{u"T"_s, 21.0}});
        QCOMPARE(shown(), u"42.0"_s);
        define(path, "3");
        rig.trigger(reload);
        QCOMPARE(shown(), u"63.0"_s);

        define(m_dir.filePath(u"a.signals.h"_s), "5");
        rig.window.startPlayback(write(m_dir.filePath(u"a.rec"_s), "0 T=1\n1 T=2\n100 T=3\n"));
        rig.window.setMode(Sigvane::Idle);
        rig.window.findChild<QCheckBox*>()->click();
        QCOMPARE(shown(), u"5.0"_s); // the recording's own mapping
        rig.trigger(u"Design"_s);
        rig.window.router()->routeLiveValues({{u"T"_s, 21.0}});
        QCOMPARE(shown(), u"63.0"_s);
        rig.trigger(u"Play"_s);
        QCOMPARE(shown(), u"5.0"_s);
        define(path, "7");
        rig.trigger(reload);
        rig.engine->advance(1000);
        QCOMPARE(shown(), u"14.0"_s); // the replay goes on with the project's new one
        QCOMPARE(rig.window.windowTitle(), u"Sigvane — "_s + m_dir.path());
    }

    void startsWithWhatCanBeUsedAndMakesNoFolder()
    {
        const QTemporaryDir dir;
        CommandLine wanted;
        wanted.definitionsFile = write(dir.filePath(u"rig.def"_s), "DASHBOARD_SIGNAL(A, \"a\", M)\n");
        wanted.layoutFile = dir.filePath(u"missing.json"_s);
        wanted.baudRate = 9600;
        const PseudoTerminal device;
        wanted.portName = device.portName();
        wanted.record = true; // there is no project to record in
        Rig rig;
        rig.window.startWith(wanted);
        QVERIFY(gSignalParser && gSignalParser->signalList().size() == 1);
        QTRY_VERIFY2(rig.status().contains(*wanted.layoutFile), qPrintable(rig.status()));
        QCOMPARE(rig.window.findChild<QComboBox*>(u"baudBox"_s)->currentData().toInt(), 9600);
        rig.answer.reject();
        rig.trigger(u"Save Layout"_s);
        QVERIFY(rig.answer.allUsed() && !QFile::exists(u"/layouts"_s));
        QCOMPARE(QDir(dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size(), 1);
    }

    void narrowWindowUnfoldsItsToolBars()
    {
        Rig rig;
        rig.window.resize(600, 600);
        rig.window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&rig.window));
        auto* bar = rig.window.findChild<QToolBar*>(u"tb_controls"_s);
        auto* button = rig.window.findChild<QWidget*>(u"connectButton"_s);
        QVERIFY(!button->isVisible());
        QTest::mouseClick(bar->findChild<QWidget*>(u"qt_toolbar_ext_button"_s), Qt::LeftButton);
        QTRY_VERIFY(button->isVisible() && !button->visibleRegion().isEmpty());
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
