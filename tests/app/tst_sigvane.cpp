#include "app/CommandLine.h"
#include "app/ProjectIntroDialog.h"
#include "app/Sigvane.h"
#include "app/ValueRouter.h"
#include "app/WidgetPalette.h"
#include "canvas/DashboardItem.h"
#include "canvas/DesignScene.h"
#include "licensing/LicenseCheck.h"
#include "playback/PlaybackController.h"
#include "playback/SignalPlaybackEngine.h"
#include "playback/SignalRecorder.h"
#include "support/ModalAnswer.h"
#include "support/PseudoTerminal.h"
#include "widgets/DashboardWidget.h"
#include "widgets/TrendPlotWidget.h"

#include <QAction>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
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
        ModalAnswer answer;

        Rig() { window.setLicenseCheck(&license); }
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

    static bool write(const QString& path, const QByteArray& bytes)
    {
        QFile file(path);
        return file.open(QIODevice::WriteOnly) && file.write(bytes) > 0;
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
        rig.window.setMode(Sigvane::Design);
        rig.window.setMode(Sigvane::Record); // refused, and Design has been left
        QCOMPARE(rig.window.mode(), Sigvane::Design);
        QVERIFY(!rig.palette->isEnabled());
    }

    void modesSetThePlotsClockAndEmptyThem()
    {
        Rig rig;
        QCOMPARE(rig.window.dominantTrendWindowSeconds(), 10.0);
        for (const int windowMs : {5000, 60'000, -1}) {
            rig.window.addWidget(u"TrendPlot"_s);
            rig.items().first()->widget()->loadConfig({{u"timeWindowMs"_s, windowMs}});
        }
        QCOMPARE(rig.window.dominantTrendWindowSeconds(), 30.0);
        auto* plot = static_cast<TrendPlotWidget*>(rig.items().first()->widget());
        plot->assignSignals({u"A"_s});
        for (const auto& [from, to, cleared] : {std::tuple(Sigvane::Design, Sigvane::Play, false),
                                                std::tuple(Sigvane::Pause, Sigvane::Idle, true)}) {
            rig.window.setMode(from);
            plot->setExternalTimeEnabled(true);
            plot->setExternalNowMs(1000);
            plot->setValueForSignalAt(u"A"_s, double(from), 1.0);
            rig.window.setMode(to);
            QVERIFY(plot->currentNowMs() > 1000);
            QCOMPARE(plot->series(u"A"_s) == nullptr, cleared);
        }
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
        QVERIFY(write(other.filePath(u"dashboard_signals.def"_s), "\n"));
        for (const char* end : {"stop", "play", "lost", "project", "close", "removed"}) {
            const QTemporaryDir dir;
            QVERIFY(write(dir.filePath(u"dashboard_signals.def"_s), "\n"));
            PseudoTerminal device;
            Rig rig;
            CommandLine wanted;
            wanted.projectDir = dir.path();
            wanted.portName = device.portName();
            rig.window.startWith(wanted);
            rig.trigger(u"Record"_s);
            QCOMPARE(rig.window.mode(), Sigvane::Record);
            QVERIFY(device.writeAll("7 A=1\n7.5 A=2 word\n"));
            QTRY_COMPARE(rig.window.recorder()->lineCount(), 3);
            const QString path = rig.window.recorder()->path();

            const QLatin1String how(end);
            rig.answer.press(QMessageBox::Ok); // where the file is gone
            if (how == "stop"_L1)
                rig.trigger(u"Stop"_s);
            else if (how == "play"_L1)
                rig.trigger(u"Play"_s);
            else if (how == "lost"_L1)
                device.close();
            else if (how == "project"_L1)
                QVERIFY(rig.window.setProjectDir(other.path()));
            else if (how == "close"_L1)
                rig.window.close();
            else if (QDir(dir.path()).removeRecursively())
                rig.trigger(u"Play"_s);
            QTRY_VERIFY2(!rig.window.recorder()->isRecording(), end);
            if (how == "play"_L1) {
                QVERIFY(!rig.window.findChild<QSlider*>()->isSliderDown());
                QCOMPARE(rig.window.mode(), Sigvane::Play);
                rig.window.playbackEngine()->advance(1000);
            }
            if (how != "close"_L1)
                QTRY_COMPARE(rig.window.mode(), Sigvane::Idle);
            QCOMPARE(rig.answer.titles().size(), how == "removed"_L1 ? 1 : 0);
            QFile file(path);
            if (file.open(QIODevice::ReadOnly))
                QCOMPARE(file.readAll(), "0.000000 A=1\n0.500000 A=2\n0.500000 RAW word\n");
        }
    }

    void modeChangeEndsALongLoading()
    {
        const QTemporaryDir dir;
        const QString path = dir.filePath(u"long.rec"_s);
        QVERIFY(write(path, QByteArray("1 A=1 B=2 C=3\n").repeated(1'000'000)));
        Rig rig;
        int slices = 0;
        const auto interrupt = [&] {
            if (++slices == 2)
                rig.window.setMode(Sigvane::Design);
        };
        connect(rig.window.playbackEngine(), &SignalPlaybackEngine::loadProgressed, this, interrupt);
        rig.window.startPlayback(path);
        QCOMPARE(rig.window.mode(), Sigvane::Design); // asked for while Idle was loading
        QCOMPARE(rig.window.playback()->playbackFile(), path);
        slices = 0;
        rig.window.setMode(Sigvane::Play);
        QCOMPARE(rig.window.mode(), Sigvane::Design); // asked for in the middle of the change to Play
        QVERIFY(!rig.window.playbackEngine()->hasFrames() && !rig.window.playbackEngine()->isPlaying());
        QVERIFY(rig.answer.titles().isEmpty());
    }

    void tellsTheCanvasTheProjectAlsoWithoutDefinitions()
    {
        Rig rig;
        const QTemporaryDir dir;
        QVERIFY(QDir(dir.path()).mkdir(u"dashboard_signals.def"_s)); // a folder cannot be read
        rig.answer.press(QMessageBox::Ok);
        QVERIFY(!rig.window.setProjectDir(dir.path()));
        QCOMPARE(rig.window.scene()->projectFolder(), dir.path());
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
        const QString path = m_dir.filePath(u"dashboard_signals.def"_s);
        const QByteArray signal = "DASHBOARD_SIGNAL(T, \"t\", M)\n";
        QVERIFY(write(path, "DASHBOARD_MAPPING(M, 0, 2)\n" + signal));
        rig.window.setMode(Sigvane::Design);
        QVERIFY(rig.window.setProjectDir(m_dir.path()));
        QCOMPARE(rig.window.mode(), Sigvane::Idle); // a project is opened through Idle

        rig.window.addWidget(u"DigitalDisplay"_s);
        DashboardWidget* display = rig.items().first()->widget();
        display->assignSignals({u"T"_s});
        const auto shown = [display] {
            display->grab();
            return display->findChild<QLabel*>()->text();
        };
        rig.window.router()->routeLiveValues({{u"T"_s, 21.0}});
        QCOMPARE(shown(), u"42.0"_s);
        QVERIFY(write(path, "DASHBOARD_MAPPING(M, 0, 3)\n" + signal));
        rig.trigger(reload);
        QCOMPARE(shown(), u"63.0"_s);
        QCOMPARE(rig.window.windowTitle(), u"Sigvane — "_s + m_dir.path());
    }

    void startsWithWhatCanBeUsedAndMakesNoFolder()
    {
        const QTemporaryDir dir;
        CommandLine wanted;
        wanted.definitionsFile = dir.filePath(u"rig.def"_s);
        wanted.layoutFile = dir.filePath(u"missing.json"_s);
        wanted.baudRate = 9600;
        QVERIFY(write(*wanted.definitionsFile, "DASHBOARD_SIGNAL(A, \"a\", M)\n"));
        Rig rig;
        rig.window.startWith(wanted);
        QVERIFY(gSignalParser && gSignalParser->signalList().size() == 1);
        QTRY_VERIFY2(rig.status().contains(*wanted.layoutFile), qPrintable(rig.status()));
        QCOMPARE(rig.window.findChild<QComboBox*>(u"baudBox"_s)->currentData().toInt(), 9600);
        rig.answer.reject();
        rig.trigger(u"Save Layout"_s);
        QVERIFY(rig.answer.allUsed());
        QVERIFY(!QFile::exists(u"/layouts"_s));
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
