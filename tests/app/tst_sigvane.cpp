#include "app/CommandLine.h"
#include "app/ProjectIntroDialog.h"
#include "app/Sigvane.h"
#include "app/ValueRouter.h"
#include "app/WidgetPalette.h"
#include "canvas/DashboardItem.h"
#include "canvas/DesignScene.h"
#include "licensing/LicenseCheck.h"
#include "support/ModalAnswer.h"
#include "widgets/DashboardWidget.h"

#include <QAction>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>

using namespace Qt::StringLiterals;

class TestSigvane : public QObject
{
    Q_OBJECT

    LicenseCheck m_license{true, u"All features"_s};
    QTemporaryDir m_dir;

    static QAction* action(const Sigvane& window, const QString& text)
    {
        const QList<QAction*> all = window.findChildren<QAction*>();
        const auto found =
            std::find_if(all.begin(), all.end(), [&](QAction* a) { return a->text() == text; });
        return found == all.end() ? nullptr : *found;
    }
    static QString status(const Sigvane& window) { return window.statusBar()->currentMessage(); }
    static bool write(const QString& path, const QByteArray& bytes)
    {
        QFile file(path);
        return QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly) &&
               file.write(bytes) > 0;
    }

private Q_SLOTS:
    void startsInIdle()
    {
        Sigvane window;
        QCOMPARE(window.mode(), Sigvane::Idle);
        QCOMPARE(status(window), u"Idle"_s);
        QCOMPARE(window.router()->isLive(), true);
        QVERIFY(!window.findChild<WidgetPalette*>()->isEnabled());
        QCOMPARE(gSignalParser, nullptr);
        for (const char* bar : {"tb_controls", "tb_export", "tb_io"}) // saved layouts name them
            QVERIFY(window.findChild<QToolBar*>(QLatin1String(bar)));
        for (const QString& text : {u"Record"_s, u"Play"_s, u"Signals"_s, u"Events"_s})
            QVERIFY2(!action(window, text)->isEnabled(), qPrintable(text));
        for (const QString& text : {u"Design"_s, u"Save Layout"_s, u"Load Layout"_s, u"Stop"_s})
            QVERIFY2(action(window, text)->isEnabled(), qPrintable(text));
    }

    void modeTable_data()
    {
        QTest::addColumn<Sigvane::Mode>("from");
        QTest::addColumn<QString>("button");
        QTest::addColumn<Sigvane::Mode>("to");
        QTest::addColumn<QString>("text");
        QTest::newRow("idle, design") << Sigvane::Idle << u"Design"_s << Sigvane::Design << u"Design Mode"_s;
        QTest::newRow("design, design") << Sigvane::Design << u"Design"_s << Sigvane::Idle << u"Idle"_s;
        QTest::newRow("design, stop") << Sigvane::Design << u"Stop"_s << Sigvane::Idle << u"Idle"_s;
        QTest::newRow("play, stop") << Sigvane::Play << u"Pause"_s << Sigvane::Pause << u"Pause..."_s;
        QTest::newRow("pause, stop") << Sigvane::Pause << u"Stop"_s << Sigvane::Idle << u"Idle"_s;
        QTest::newRow("play, design") << Sigvane::Play << u"Design"_s << Sigvane::Design << u"Design Mode"_s;
    }
    void modeTable()
    {
        QFETCH(Sigvane::Mode, from);
        QFETCH(QString, button);
        QFETCH(Sigvane::Mode, to);
        Sigvane window;
        window.setLicenseCheck(&m_license);
        window.addWidget(u"AnalogGauge"_s);
        window.setMode(from);
        QCOMPARE(window.router()->isLive(), from != Sigvane::Play && from != Sigvane::Pause);
        action(window, button)->trigger();
        QCOMPARE(window.mode(), to);
        QTEST(status(window), "text");
        const bool design = to == Sigvane::Design;
        const DashboardItem* item = window.scene()->dashboardItems().first();
        QCOMPARE(bool(item->flags() & QGraphicsItem::ItemIsMovable), design);
        QCOMPARE(window.scene()->isDesignMode(), design);
        QCOMPARE(window.findChild<WidgetPalette*>()->isEnabled(), design);
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

    void modeStaysInSight()
    {
        Sigvane window;
        window.show();
        QStatusTipEvent emptyTip{QString()}; // what a closing menu sends
        QCoreApplication::sendEvent(window.menuBar()->actions().first()->menu(), &emptyTip);
        QCoreApplication::sendEvent(&window, &emptyTip);
        QCOMPARE(status(window), u"Idle"_s);
        window.statusBar()->showMessage(u"for a moment"_s, 1);
        QTRY_COMPARE(status(window), u"Idle"_s);
    }

    void addsWidgetsFromThePalette()
    {
        Sigvane window;
        window.setLicenseCheck(&m_license);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        auto* palette = window.findChild<WidgetPalette*>();
        const auto doubleClick = [palette] {
            const QPoint pos = palette->visualItemRect(palette->item(0)).center();
            QTest::mouseClick(palette->viewport(), Qt::LeftButton, {}, pos);
            QTest::mouseDClick(palette->viewport(), Qt::LeftButton, {}, pos);
        };
        doubleClick(); // disabled: nothing happens
        QVERIFY(window.scene()->dashboardItems().isEmpty());
        window.setMode(Sigvane::Design);
        doubleClick();
        palette->setCurrentRow(1);
        QTest::keyClick(palette, Qt::Key_Return);
        const QList<DashboardItem*> items = window.scene()->dashboardItems();
        QCOMPARE(items.size(), 2);
        QCOMPARE(items[0]->widget()->typeName(), palette->item(1)->text()); // above the first one
        QCOMPARE(items[1]->widget()->typeName(), palette->item(0)->text());
        QCOMPARE(items[0]->sceneBoundingRect(), QRectF(100, 100, 250, 250));
        QVERIFY(items[0]->flags() & QGraphicsItem::ItemIsMovable);
    }

    void sixthWidgetNeedsALicense()
    {
        auto license = std::make_unique<LicenseCheck>(false, u"Trial"_s);
        Sigvane window;
        const auto* chip = window.findChild<QLabel*>(u"licenseChip"_s);
        QCOMPARE(chip->text(), u"Unknown license status"_s);
        window.setLicenseCheck(license.get());
        QCOMPARE(chip->text(), u"Trial"_s);
        ModalAnswer answer;
        answer.press(QMessageBox::Ok).press(QMessageBox::Ok);
        for (int i = 0; i < 6; ++i)
            window.addWidget(u"DigitalDisplay"_s);
        QCOMPARE(window.scene()->dashboardItems().size(), 5);
        license->setAnswer(true, u"Bought"_s);
        window.addWidget(u"DigitalDisplay"_s);
        QCOMPARE(window.scene()->dashboardItems().size(), 6);
        action(window, u"License &Status…"_s)->trigger();
        QCOMPARE(answer.titles(), QStringList({u"Limit reached"_s, u"License"_s}));
        QCOMPARE(answer.texts(),
                 QStringList({u"In the unlicensed version you can add up to 5 widgets."_s, u"Bought"_s}));
        license.reset();
        QCOMPARE(chip->text(), u"Unknown license status"_s);
    }

    void reloadsDefinitionsAndMapsAnew()
    {
        Sigvane window;
        window.setLicenseCheck(&m_license);
        QAction* reload = action(window, u"&Reload Definitions"_s);
        reload->trigger(); // no project yet: only said
        const QString path = m_dir.filePath(u"dashboard_signals.def"_s);
        const QByteArray signal = "DASHBOARD_SIGNAL(T, \"t\", M)\n";
        QVERIFY(write(path, "DASHBOARD_MAPPING(M, 0, 2)\n" + signal));
        const QSignalSpy changed(&window, &Sigvane::signalsDefChanged);
        window.setMode(Sigvane::Design);
        QVERIFY(window.setProjectDir(m_dir.path()));
        QCOMPARE(window.mode(), Sigvane::Idle); // a project is opened through Idle
        QCOMPARE(changed, QList<QVariantList>({{path}}));
        QCOMPARE(window.windowTitle(), u"Sigvane — "_s + m_dir.path());
        QCOMPARE(status(window), u"Project: "_s + m_dir.path());

        window.addWidget(u"DigitalDisplay"_s);
        DashboardWidget* display = window.scene()->dashboardItems().first()->widget();
        display->assignSignals({u"T"_s});
        const auto shown = [display] {
            display->grab();
            return display->findChild<QLabel*>()->text();
        };
        window.router()->routeLiveValues({{u"T"_s, 21.0}});
        QCOMPARE(shown(), u"42.0"_s);
        QVERIFY(write(path, "DASHBOARD_MAPPING(M, 0, 3)\n" + signal));
        reload->trigger();
        QCOMPARE(shown(), u"63.0"_s);
        QCOMPARE(window.windowTitle(), u"Sigvane — "_s + m_dir.path());

        // After a project that does not load, a reload tries that project again.
        const QString broken = m_dir.filePath(u"broken"_s);
        QVERIFY(QDir().mkpath(broken + u"/dashboard_signals.def"_s));
        ModalAnswer answer;
        answer.press(QMessageBox::Ok).press(QMessageBox::Ok);
        QVERIFY(!window.setProjectDir(broken));
        reload->trigger();
        QCOMPARE(answer.titles().size(), 2);
        QVERIFY(answer.texts().last().contains(broken));
        QVERIFY(QDir(broken).rmdir(u"dashboard_signals.def"_s));
        QVERIFY(write(broken + u"/dashboard_signals.def"_s, signal));
        reload->trigger();
        QCOMPARE(window.windowTitle(), u"Sigvane — "_s + broken);
        QCOMPARE(shown(), u"21.0"_s);
    }

    void startsWithWhatCanBeUsed()
    {
        CommandLine wanted;
        wanted.projectDir = QString();
        wanted.layoutFile = m_dir.filePath(u"missing.json"_s);
        wanted.baudRate = 9600;
        wanted.portName = m_dir.filePath(u"missing-port"_s);
        Sigvane window;
        window.startWith(wanted); // asks nothing, although the project's name is empty
        for (const QString& text : {u"Not a usable project"_s, *wanted.layoutFile, *wanted.portName})
            QVERIFY2(status(window).contains(text), qPrintable(status(window)));
        QCOMPARE(window.statusBar()->toolTip(), status(window));
        QCOMPARE(window.findChild<QComboBox*>(u"baudBox"_s)->currentData().toInt(), 9600);
        QCOMPARE(gSignalParser, nullptr);
    }

    void withoutAProjectNoFolderIsMade()
    {
        const QString path = m_dir.filePath(u"other/rig.def"_s);
        QVERIFY(write(path, "DASHBOARD_SIGNAL(A, \"a\", M)\n"));
        CommandLine wanted;
        wanted.definitionsFile = path;
        Sigvane window;
        window.startWith(wanted);
        QCOMPARE(window.projectDir(), QString());
        QVERIFY(gSignalParser && gSignalParser->signalList().size() == 1);
        QCOMPARE(window.windowTitle(), u"Sigvane — "_s + path);
        ModalAnswer answer;
        answer.reject();
        action(window, u"Save Layout"_s)->trigger();
        QCOMPARE(answer.titles(), QStringList(u"Save Layout"_s));
        QVERIFY(!QFileInfo::exists(u"/layouts"_s));
        QCOMPARE(QFileInfo(path).dir().entryList(QDir::Dirs | QDir::NoDotAndDotDot), QStringList());
    }

    void narrowWindowUnfoldsItsToolBars()
    {
        Sigvane window;
        window.resize(600, 600);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        auto* bar = window.findChild<QToolBar*>(u"tb_controls"_s);
        auto* button = window.findChild<QWidget*>(u"connectButton"_s);
        QVERIFY(!button->isVisible());
        QTest::mouseClick(bar->findChild<QWidget*>(u"qt_toolbar_ext_button"_s), Qt::LeftButton);
        QTRY_VERIFY(button->isVisible() && !button->visibleRegion().isEmpty());
    }

    void introductionShowsAllItsText()
    {
        ProjectIntroDialog dialog;
        dialog.show();
        const QList<QLabel*> labels = dialog.findChildren<QLabel*>();
        QCOMPARE(labels.size(), 8);
        for (const QLabel* label : labels)
            QVERIFY2(label->heightForWidth(label->width()) <= label->height(), qPrintable(label->text()));
    }
};

QTEST_MAIN(TestSigvane)
#include "tst_sigvane.moc"
