#include "canvas/StackingOrder.h"
#include "support/Canvas.h"
#include "support/ModalAnswer.h"
#include "widgets/DashboardWidget.h"

#include <QClipboard>
#include <QGraphicsProxyWidget>
#include <QMenu>
#include <QPointer>
#include <QScrollBar>
#include <QTextEdit>
#include <QTimer>

using namespace Qt::StringLiterals;

// Picks an entry of the menu that the next call pops up; none closes it again.
class MenuPick : public QObject
{
public:
    explicit MenuPick(const QString& text = {})
        : m_text(text)
    {
        connect(&m_timer, &QTimer::timeout, this, &MenuPick::look);
        m_timer.start(5);
    }
    QStringList entries;

private:
    void look()
    {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!menu)
            return;
        m_timer.stop();
        const QList<QAction*> actions = menu->actions();
        for (QAction* action : actions) {
            entries.append(action->text());
            if (!m_text.isEmpty() && action->text() == m_text)
                menu->setActiveAction(action);
        }
        QTest::keyClick(menu, m_text.isEmpty() ? Qt::Key_Escape : Qt::Key_Return);
    }

    QString m_text;
    QTimer m_timer;
};

class TestDashboardItem : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dragsAndResizesOnTheGrid()
    {
        for (const char* type : {"AnalogGauge", "DigitalDisplay", "MessagesConsole", "StateIndicator"}) {
            Canvas canvas;
            DashboardItem* item = canvas.add(type, QRectF(100, 100, 250, 250));
            canvas.setDesignMode(true);
            canvas.drag({200, 200}, {214, 215});
            QCOMPARE(item->pos(), QPointF(110, 120)); // halves round away from zero
            canvas.press({355, 365});                 // the corner
            QCOMPARE(QApplication::overrideCursor()->shape(), Qt::SizeFDiagCursor);
            canvas.move({431, 403});
            canvas.release({431, 403});
            QCOMPARE(item->sceneBoundingRect(), QRectF(110, 120, 330, 290));
            item->setPos(100, 100);
            canvas.drag({200, 200}, {185, 204});
            QCOMPARE(item->pos(), QPointF(90, 100));
            QVERIFY(!QApplication::overrideCursor());
        }
    }

    void overrideCursorIsRestoredWhateverEndsTheDrag_data()
    {
        QTest::addColumn<int>("ending");
        QTest::newRow("mode change") << 0;
        QTest::newRow("deletion") << 1;
        QTest::newRow("second press") << 2;
        QTest::newRow("its menu") << 3;
        QTest::newRow("release lost to a box") << 4;
    }
    void overrideCursorIsRestoredWhateverEndsTheDrag()
    {
        QFETCH(int, ending);
        Canvas canvas;
        DashboardItem* item = canvas.add("AnalogGauge", QRectF(100, 100, 250, 250));
        canvas.setDesignMode(true);
        canvas.press({200, 200});
        QCOMPARE(QApplication::overrideCursor()->shape(), Qt::ClosedHandCursor);
        if (ending == 0)
            canvas.setDesignMode(false);
        else if (ending == 1)
            item->requestDelete();
        else if (ending == 2)
            canvas.press({200, 200});
        MenuPick pick;
        if (ending == 3)
            canvas.contextMenu({200, 200});
        if (ending == 4)
            canvas.move({210, 210}, Qt::NoButton);
        else if (ending == 0 || ending == 3)
            canvas.move({233, 247}); // the rest of the gesture moves nothing
        const QPointF left = item->pos();
        canvas.release({200, 200});
        QVERIFY(!QApplication::overrideCursor());
        if (ending != 1)
            QCOMPARE(left, QPointF(100, 100));
    }

    void widgetGetsTheMouseInRunModesOnly()
    {
        Canvas canvas;
        canvas.view.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&canvas.view)); // without the focus no widget's menu opens
        DashboardItem* item = canvas.add("MessagesConsole", QRectF(100, 100, 250, 150));
        auto* editor = item->widget()->findChild<QTextEdit*>();
        editor->setPlainText(u"line\n"_s.repeated(100));
        QCoreApplication::processEvents();
        const QScrollBar* bar = editor->verticalScrollBar();
        const auto cursorAt = [&canvas](const QPointF& pos) {
            canvas.move(pos, Qt::NoButton);
            QCoreApplication::processEvents();
            return canvas.view.viewport()->cursor().shape();
        };
        QCOMPARE(cursorAt({200, 150}), Qt::IBeamCursor);

        canvas.setDesignMode(true);
        QCOMPARE(cursorAt({201, 150}), Qt::OpenHandCursor);
        QCOMPARE(cursorAt({345, 245}), Qt::SizeFDiagCursor);
        const int before = bar->value();
        canvas.wheel({200, 150}, -240);
        QCOMPARE(bar->value(), before);
        canvas.drag({120, 120}, {150, 120});
        QVERIFY(!editor->textCursor().hasSelection());
        MenuPick designMenu;
        canvas.contextMenu({200, 150});
        QCOMPARE(designMenu.entries,
                 QStringList({u"Configure Widget..."_s, u"Bring to Front"_s, u"Send to Back"_s,
                              u"Bring Forward"_s, u"Send Backward"_s, QString(), u"Delete"_s}));

        item->setPos(100, 100);
        canvas.setDesignMode(false);
        QCOMPARE(cursorAt({202, 150}), Qt::IBeamCursor);
        canvas.wheel({200, 150}, -240);
        QVERIFY(bar->value() > before);
        canvas.drag({120, 120}, {150, 120});
        QVERIFY(editor->textCursor().hasSelection());
        QCOMPARE(item->pos(), QPointF(100, 100));
        canvas.contextMenu({200, 150});
        const QPointer<QWidget> menu = QApplication::activePopupWidget();
        QVERIFY(menu && !menu->graphicsProxyWidget()); // not drawn inside the view, cut off
        QCOMPARE(menu->pos(), canvas.view.viewport()->mapToGlobal(canvas.at({200, 150})));
        QCOMPARE(menu->actions().size(), 2);
        QTest::keyClick(menu, Qt::Key_C);
        QCOMPARE(QApplication::clipboard()->text(), editor->textCursor().selectedText());
        QTRY_VERIFY(!menu);
    }

    void deletesFromItsOwnMenu_data()
    {
        QTest::addColumn<QMessageBox::StandardButton>("button");
        QTest::newRow("yes") << QMessageBox::Yes;
        QTest::newRow("no") << QMessageBox::No;
    }
    void deletesFromItsOwnMenu()
    {
        QFETCH(QMessageBox::StandardButton, button);
        Canvas canvas;
        const QPointer<DashboardWidget> widget =
            canvas.add("MessagesConsole", QRectF(100, 100, 250, 250))->widget();
        canvas.setDesignMode(true);
        MenuPick pick(u"Delete"_s);
        ModalAnswer answer;
        answer.press(button);
        canvas.contextMenu({200, 200});
        QCOMPARE(answer.titles(), QStringList(u"Delete Widget"_s));
        QCOMPARE(answer.texts(), QStringList(u"Are you sure you want to delete this widget?"_s));
        QCOMPARE(canvas.scene.dashboardItems().size(), button == QMessageBox::Yes ? 0 : 1);
        QVERIFY(widget); // not while its own handler runs
        if (button == QMessageBox::Yes)
            QTRY_VERIFY(!widget);
    }

    void deletedByOthersWhileItsMenuIsOpen()
    {
        Canvas canvas;
        DashboardItem* item = canvas.add("DigitalDisplay", QRectF(100, 100, 250, 250));
        const QPointer<DashboardWidget> widget = item->widget();
        canvas.setDesignMode(true);
        QTimer::singleShot(0, &canvas.scene, [item] { item->requestDelete(); });
        MenuPick pick(u"Bring to Front"_s);
        canvas.contextMenu({200, 200});
        QVERIFY(!pick.entries.isEmpty());
        QTRY_VERIFY(!widget);
    }

    void configuresItsWidget()
    {
        Canvas canvas;
        canvas.add("DigitalDisplay", QRectF(100, 100, 250, 250));
        canvas.setDesignMode(true);
        MenuPick pick(u"Configure Widget..."_s);
        ModalAnswer answer;
        answer.accept();
        canvas.contextMenu({200, 200});
        QCOMPARE(answer.titles(), QStringList(u"Configure Widget"_s));
    }

    void restacks_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<int>("index");
        QTest::addColumn<double>("expected");
        QTest::newRow("forward") << u"Bring Forward"_s << 0 << 1.5;
        QTest::newRow("forward on top") << u"Bring Forward"_s << 2 << 2.0;
        QTest::newRow("backward") << u"Send Backward"_s << 2 << 0.5;
        QTest::newRow("backward at the bottom") << u"Send Backward"_s << 0 << 0.0;
        QTest::newRow("front") << u"Bring to Front"_s << 0 << 3.0;
        QTest::newRow("back") << u"Send to Back"_s << 2 << -1.0;
    }
    void restacks()
    {
        QFETCH(QString, entry);
        QFETCH(int, index);
        Canvas canvas;
        QList<DashboardItem*> items;
        for (int i = 0; i < 3; ++i) {
            items.append(canvas.add("AnalogGauge", QRectF(200 * i, 0, 150, 150)));
            items.last()->setZValue(i);
        }
        canvas.setDesignMode(true);
        MenuPick pick(entry);
        canvas.contextMenu(QPointF(200 * index + 50, 50));
        QTEST(items[index]->zValue(), "expected");

        const QList<DashboardItem*> before = canvas.scene.dashboardItems();
        normalizeZOrder(&canvas.scene);
        QCOMPARE(canvas.scene.dashboardItems(), before);
        for (int i = 0; i < 3; ++i)
            QCOMPARE(before[2 - i]->zValue(), double(i));
    }
};

QTEST_MAIN(TestDashboardItem)
#include "tst_dashboarditem.moc"
