#include "app/CommandLine.h"
#include "app/Sigvane.h"
#include "app/ValueRouter.h"
#include "app/WidgetPalette.h"
#include "canvas/DashboardItem.h"
#include "canvas/DesignScene.h"
#include "licensing/LicenseCheck.h"
#include "support/ModalAnswer.h"
#include "widgets/DashboardWidget.h"

#include <QAction>
#include <QDir>
#include <QLabel>
#include <QMenuBar>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>
#include <QToolButton>

using namespace Qt::StringLiterals;

class TestSigvane : public QObject
{
    Q_OBJECT

    LicenseCheck m_license{true, u"All features"_s};
    QTemporaryDir m_dir;

    static QAction* action(const Sigvane& window, const char* text)
    {
        const QList<QAction*> all = window.findChildren<QAction*>();
        for (QAction* found : all) {
            if (found->text() == QString::fromUtf8(text))
                return found;
        }
        return nullptr;
    }
    static QString status(const Sigvane& window) { return window.statusBar()->currentMessage(); }
    static QStringList types(const Sigvane& window)
    {
        QStringList found;
        const QList<DashboardItem*> items = window.scene()->dashboardItems();
        for (const DashboardItem* item : items)
            found.append(item->widget()->typeName());
        return found;
    }
    static void doubleClick(WidgetPalette* palette, int row)
    {
        const QPoint pos = palette->visualItemRect(palette->item(row)).center();
        QTest::mouseClick(palette->viewport(), Qt::LeftButton, {}, pos);
        QTest::mouseDClick(palette->viewport(), Qt::LeftButton, {}, pos);
    }

private Q_SLOTS:
    void startsInIdle()
    {
        Sigvane window;
        QCOMPARE(window.mode(), Sigvane::Idle);
        QCOMPARE(status(window), u"Idle"_s);
        auto* chip = window.findChild<QLabel*>(u"licenseChip"_s);
        QCOMPARE(chip->text(), u"Unknown license status"_s);
        window.setLicenseCheck(&m_license);
        QCOMPARE(chip->text(), u"All features"_s);
        QVERIFY(!window.findChild<WidgetPalette*>()->isEnabled());
        QCOMPARE(gSignalParser, nullptr);

        QStringList bars;
        const QList<QToolBar*> toolBars = window.findChildren<QToolBar*>();
        for (const QToolBar* bar : toolBars)
            bars.append(bar->windowTitle() + QLatin1Char('/') + bar->objectName());
        QCOMPARE(bars, QStringList({u"Controls/tb_controls"_s, u"Export/tb_export"_s, u"I/O/tb_io"_s}));
        for (const char* text : {"Record", "Play", "Signals", "Events"})
            QVERIFY2(action(window, text) && !action(window, text)->isEnabled(), text);
        for (const char* text : {"Design", "Save Layout", "Load Layout", "Stop"})
            QVERIFY2(action(window, text) && action(window, text)->isEnabled(), text);
    }

    void designTogglesPaletteAndItems()
    {
        Sigvane window;
        window.setLicenseCheck(&m_license);
        window.addWidget(u"AnalogGauge"_s);
        DashboardItem* item = window.scene()->dashboardItems().first();
        const auto movable = [item] { return bool(item->flags() & QGraphicsItem::ItemIsMovable); };
        QVERIFY(!movable());
        action(window, "Design")->trigger();
        QCOMPARE(window.mode(), Sigvane::Design);
        QCOMPARE(status(window), u"Design Mode"_s);
        QVERIFY(movable() && window.scene()->isDesignMode());
        QVERIFY(window.findChild<WidgetPalette*>()->isEnabled());
        action(window, "Design")->trigger();
        QCOMPARE(window.mode(), Sigvane::Idle);
        QVERIFY(!movable() && !window.scene()->isDesignMode());
        QVERIFY(!window.findChild<WidgetPalette*>()->isEnabled());
    }

    void modeTable_data()
    {
        QTest::addColumn<int>("from");
        QTest::addColumn<bool>("stop");
        QTest::addColumn<int>("to");
        QTest::addColumn<QString>("text");
        const auto row = [](const char* name, int from, bool stop, int to, const char* text) {
            QTest::newRow(name) << from << stop << to << QString::fromUtf8(text);
        };
        row("design, stop", Sigvane::Design, true, Sigvane::Idle, "Idle");
        row("play, stop", Sigvane::Play, true, Sigvane::Pause, "Pause...");
        row("pause, stop", Sigvane::Pause, true, Sigvane::Idle, "Idle");
        row("idle, stop", Sigvane::Idle, true, Sigvane::Idle, "Idle");
        row("play, design", Sigvane::Play, false, Sigvane::Design, "Design Mode");
        row("pause, design", Sigvane::Pause, false, Sigvane::Design, "Design Mode");
    }
    void modeTable()
    {
        QFETCH(int, from);
        QFETCH(bool, stop);
        Sigvane window;
        window.setMode(Sigvane::Mode(from));
        QCOMPARE(window.router()->isLive(), from != Sigvane::Play && from != Sigvane::Pause);
        QAction* stopAction = action(window, from == Sigvane::Play ? "Pause" : "Stop");
        QVERIFY(stopAction);
        QCOMPARE(stopAction->toolTip(), from == Sigvane::Play ? u"Pause playback"_s : u"Stop"_s);
        (stop ? stopAction : action(window, "Design"))->trigger();
        QTEST(int(window.mode()), "to");
        QTEST(status(window), "text");
    }

    void refusedModeHasLeftTheOldOne()
    {
        Sigvane window;
        window.setMode(Sigvane::Design);
        window.setMode(Sigvane::Record);
        QCOMPARE(window.mode(), Sigvane::Design);
        QCOMPARE(status(window), u"Design Mode"_s);
        QVERIFY(!window.findChild<WidgetPalette*>()->isEnabled());
    }

    void addsWidgetsFromThePalette()
    {
        Sigvane window;
        window.setLicenseCheck(&m_license);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        auto* palette = window.findChild<WidgetPalette*>();
        doubleClick(palette, 0); // disabled: nothing happens
        QVERIFY(types(window).isEmpty());
        window.setMode(Sigvane::Design);
        doubleClick(palette, 0);
        palette->setCurrentRow(1);
        QTest::keyClick(palette, Qt::Key_Return);
        QCOMPARE(types(window), QStringList({palette->item(1)->text(), palette->item(0)->text()}));
        const DashboardItem* item = window.scene()->dashboardItems().first();
        QCOMPARE(item->sceneBoundingRect(), QRectF(100, 100, 250, 250));
        QVERIFY(item->flags() & QGraphicsItem::ItemIsMovable);
    }

    void sixthWidgetNeedsALicense()
    {
        LicenseCheck license(false, u"Trial"_s);
        Sigvane window;
        window.setLicenseCheck(&license);
        for (int i = 0; i < 5; ++i)
            window.addWidget(u"DigitalDisplay"_s);
        QCOMPARE(types(window).size(), 5);
        ModalAnswer answer;
        answer.press(QMessageBox::Ok);
        window.addWidget(u"DigitalDisplay"_s);
        QCOMPARE(types(window).size(), 5);
        QCOMPARE(answer.titles(), QStringList(u"Limit reached"_s));
        QCOMPARE(answer.texts(), QStringList(u"In the unlicensed version you can add up to 5 widgets."_s));
        license.setAnswer(true, u"Bought"_s);
        window.addWidget(u"DigitalDisplay"_s);
        QCOMPARE(types(window).size(), 6);
        answer.press(QMessageBox::Ok);
        action(window, "License &Status…")->trigger();
        QCOMPARE(answer.texts().last(), u"Bought"_s);
    }

    void reloadsDefinitionsAndMapsAnew()
    {
        Sigvane window;
        window.setLicenseCheck(&m_license);
        action(window, "&Reload Definitions")->trigger(); // no project yet: only said
        const QString path = m_dir.filePath(u"dashboard_signals.def"_s);
        const auto define = [&path](const char* scale) {
            QFile file(path);
            return file.open(QIODevice::WriteOnly) &&
                   file.write(QByteArray("DASHBOARD_MAPPING(M, 0, ") + scale +
                              ")\nDASHBOARD_SIGNAL(T, \"t\", M)\n") > 0;
        };
        QVERIFY(define("2"));
        const QSignalSpy changed(&window, &Sigvane::signalsDefChanged);
        window.setMode(Sigvane::Design);
        QVERIFY(window.setProjectDir(m_dir.path()));
        QCOMPARE(window.mode(), Sigvane::Idle); // a project is opened through Idle
        QCOMPARE(changed.size(), 1);
        QCOMPARE(changed.first().first().toString(), path);
        QCOMPARE(window.windowTitle(), u"Sigvane — "_s + m_dir.path());
        QCOMPARE(status(window), u"Project: "_s + m_dir.path());

        window.addWidget(u"DigitalDisplay"_s);
        DashboardWidget* display = window.scene()->dashboardItems().first()->widget();
        display->assignSignals({u"T"_s});
        const auto* label = display->findChild<QLabel*>();
        window.router()->routeLiveValues({{u"T"_s, 21.0}});
        display->grab();
        QCOMPARE(label->text(), u"42.0"_s);
        QVERIFY(define("3"));
        action(window, "&Reload Definitions")->trigger();
        display->grab();
        QCOMPARE(label->text(), u"63.0"_s);
    }

    void startsWithWhatCanBeUsed()
    {
        CommandLine wanted;
        wanted.projectDir = m_dir.filePath(u"missing"_s);
        wanted.layoutFile = m_dir.filePath(u"missing.json"_s);
        wanted.portName = m_dir.filePath(u"missing-port"_s);
        Sigvane window;
        window.startWith(wanted);
        for (const QString& name : {wanted.projectDir, wanted.layoutFile, wanted.portName})
            QVERIFY2(status(window).contains(name), qPrintable(status(window)));
        QCOMPARE(gSignalParser, nullptr);
        QCOMPARE(window.mode(), Sigvane::Idle);
    }

    void definitionsOfAnotherName()
    {
        const QString path = m_dir.filePath(u"other/rig.def"_s);
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("DASHBOARD_SIGNAL(A, \"a\", M)\n") > 0);
        file.close();
        CommandLine wanted;
        wanted.definitionsFile = path;
        Sigvane window;
        window.startWith(wanted);
        QCOMPARE(window.projectDir(), QString());
        QVERIFY(gSignalParser && gSignalParser->signalList().size() == 1);
        QCOMPARE(window.windowTitle(), u"Sigvane — "_s + path);
        QCOMPARE(QDir(QFileInfo(path).path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot), QStringList());
    }
};

QTEST_MAIN(TestSigvane)
#include "tst_sigvane.moc"
