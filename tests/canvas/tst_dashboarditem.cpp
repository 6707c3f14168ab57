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

#include <functional>

using namespace Qt::StringLiterals;

static void answerMenu(const QString& text)
{
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    QVERIFY(menu);
    Qt::Key key = Qt::Key_Escape;
    const QList<QAction*> actions = menu->actions();
    for (QAction* action : actions) {
        if (action->isSeparator() || action->text() != text)
            continue;
        menu->setActiveAction(action);
        key = Qt::Key_Return;
    }
    QTest::keyClick(menu, key);
}

// Opens the menu there and picks an entry; without that entry it is closed again.
static void pick(Canvas& canvas, const QPointF& pos, const QString& entry = {})
{
    QTimer::singleShot(0, qApp, [entry] { answerMenu(entry); });
    canvas.contextMenu(pos);
}

// One event of a button while others are down, which QTest's own never say; buttons are those down
// afterwards.
static void sendButton(Canvas& canvas, QEvent::Type type, Qt::MouseButton button, Qt::MouseButtons buttons,
                       const QPointF& pos)
{
    QWidget* viewport = canvas.view.viewport();
    const QPoint at = canvas.at(pos);
    QMouseEvent event(type, at, viewport->mapToGlobal(at), button, buttons, {});
    QCoreApplication::sendEvent(viewport, &event);
}

// A canvas with one item, in design mode.
struct Designed : Canvas
{
    Designed() { setDesignMode(true); }
    DashboardItem* item = add("MessagesConsole", QRectF(100, 100, 250, 250));
};

using Ending = std::function<void(Designed&)>;

class TestDashboardItem : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dragsAndResizesOnTheGrid()
    {
        Designed canvas;
        canvas.drag({200, 200}, {214, 215});
        QCOMPARE(canvas.item->pos(), QPointF(110, 120)); // halves round away from zero
        canvas.press({355, 365});                        // the corner
        QCOMPARE(QApplication::overrideCursor()->shape(), Qt::SizeFDiagCursor);
        canvas.move({431, 403});
        canvas.release({431, 403});
        QCOMPARE(canvas.item->sceneBoundingRect(), QRectF(110, 120, 330, 290));
        QVERIFY(!QApplication::overrideCursor());
    }

    void dragStaysWithinTheCanvas()
    {
        Designed canvas;
        canvas.drag({200, 200}, {3e6, -3e6});
        QCOMPARE(canvas.item->pos(), QPointF(1e6, -1e6));
    }

    void leavingDesignLetsTheMouseGo()
    {
        Designed canvas;
        canvas.press({200, 200});
        canvas.setDesignMode(false);
        QVERIFY(!canvas.scene.mouseGrabberItem());
    }

    void dragsFromThePressHoweverManyMovesAreHandledAtOnce()
    {
        Designed canvas;
        canvas.item->setPos(0, 0);
        canvas.press({50, 50});
        canvas.move({57, 58}); // and nothing is painted before the next
        canvas.move({64, 65});
        QCOMPARE(canvas.item->pos(), QPointF(10, 20));
        canvas.release({64, 65});
    }

    void middleClickDoesNotEndTheGesture_data()
    {
        QTest::addColumn<QPointF>("start");
        QTest::addColumn<QRectF>("expected");
        QTest::newRow("drag") << QPointF(200, 200) << QRectF(130, 150, 250, 250);
        QTest::newRow("resize") << QPointF(345, 345) << QRectF(100, 100, 280, 300);
    }
    void middleClickDoesNotEndTheGesture()
    {
        QFETCH(QPointF, start);
        Designed canvas;
        canvas.press(start);
        sendButton(canvas, QEvent::MouseButtonPress, Qt::MiddleButton, Qt::LeftButton | Qt::MiddleButton,
                   start);
        sendButton(canvas, QEvent::MouseButtonRelease, Qt::MiddleButton, Qt::LeftButton, start);
        canvas.move(start + QPointF(33, 47));
        QTEST(canvas.item->sceneBoundingRect(), "expected");
        canvas.release(start + QPointF(33, 47));
    }

    void overrideCursorIsRestoredWhateverEndsTheDrag_data()
    {
        QTest::addColumn<Ending>("end");
        QTest::newRow("mode change") << Ending([](Designed& canvas) { canvas.setDesignMode(false); });
        QTest::newRow("deletion") << Ending([](Designed& canvas) { canvas.item->requestDelete(); });
        QTest::newRow("its menu") << Ending([](Designed& canvas) { pick(canvas, {200, 200}); });
        QTest::newRow("release while another button is down") << Ending([](Designed& canvas) {
            const QPointF pos(200, 200);
            sendButton(canvas, QEvent::MouseButtonPress, Qt::MiddleButton, Qt::LeftButton | Qt::MiddleButton,
                       pos);
            sendButton(canvas, QEvent::MouseButtonRelease, Qt::LeftButton, Qt::MiddleButton, pos);
        });
        QTest::newRow("release lost to a box") << Ending([](Designed& canvas) {
            canvas.move({210, 210}, Qt::NoButton);
        });
    }
    void overrideCursorIsRestoredWhateverEndsTheDrag()
    {
        QFETCH(Ending, end);
        Designed canvas;
        canvas.press({200, 200});
        QCOMPARE(QApplication::overrideCursor()->shape(), Qt::ClosedHandCursor);
        end(canvas);
        QVERIFY(!QApplication::overrideCursor());
        canvas.move({233, 247}); // the rest of the gesture moves nothing
        QCOMPARE(canvas.item->pos(), QPointF(100, 100));
        canvas.release({200, 200});
    }

    void widgetGetsTheMouseInRunModesOnly()
    {
        Designed canvas;
        canvas.view.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&canvas.view)); // without the focus no widget's menu opens
        auto* editor = canvas.item->widget()->findChild<QTextEdit*>();
        editor->setPlainText(u"line\n"_s.repeated(100));
        QCoreApplication::processEvents();
        const QScrollBar* bar = editor->verticalScrollBar();
        const auto cursorAt = [&canvas](const QPointF& pos) {
            canvas.move(pos, Qt::NoButton);
            QCoreApplication::processEvents();
            return canvas.view.viewport()->cursor().shape();
        };
        QCOMPARE(cursorAt({201, 150}), Qt::OpenHandCursor);
        QCOMPARE(cursorAt({345, 345}), Qt::SizeFDiagCursor);
        const int before = bar->value();
        canvas.wheel({200, 150}, -240);
        QCOMPARE(bar->value(), before);
        canvas.drag({120, 120}, {150, 120});
        QVERIFY(!editor->textCursor().hasSelection());

        canvas.item->setPos(100, 100);
        canvas.setDesignMode(false);
        QCOMPARE(cursorAt({202, 150}), Qt::IBeamCursor);
        canvas.wheel({200, 150}, -240);
        QVERIFY(bar->value() > before);
        canvas.drag({120, 120}, {150, 120});
        QVERIFY(editor->textCursor().hasSelection());
        QCOMPARE(canvas.item->pos(), QPointF(100, 100));
        canvas.contextMenu({200, 150});
        const QPointer<QWidget> menu = QApplication::activePopupWidget();
        QVERIFY(menu && !menu->graphicsProxyWidget()); // not drawn inside the view, cut off
        QCOMPARE(menu->pos(), canvas.view.viewport()->mapToGlobal(canvas.at({200, 150})));
        QTest::keyClick(menu, Qt::Key_C);
        QCOMPARE(QApplication::clipboard()->text(), editor->textCursor().selectedText());
        QTRY_VERIFY(!menu);
    }

    void configuresAndDeletesFromItsMenu()
    {
        Designed canvas;
        const QPointer<DashboardWidget> widget = canvas.item->widget();
        ModalAnswer answer;
        answer.accept().press(QMessageBox::No).press(QMessageBox::Yes);
        for (const QString& entry : {u"Configure Widget..."_s, u"Delete"_s, u"Delete"_s}) {
            QCOMPARE(canvas.scene.dashboardItems().size(), 1);
            pick(canvas, {200, 200}, entry);
        }
        const QString remove = u"Delete Widget"_s;
        QCOMPARE(answer.titles(), QStringList({u"Configure Widget"_s, remove, remove}));
        QVERIFY(canvas.scene.dashboardItems().isEmpty());
        QVERIFY(widget); // not while its own handler runs
        QTRY_VERIFY(!widget);
    }

    void deletedByOthersWhileItsMenuIsOpen()
    {
        Designed canvas;
        const QPointer<DashboardWidget> widget = canvas.item->widget();
        ModalAnswer answer;
        QTimer::singleShot(0, &canvas.scene, [&canvas] { canvas.item->requestDelete(); });
        pick(canvas, {200, 200}, u"Delete"_s);
        QVERIFY(answer.titles().isEmpty()); // there is nothing left to ask about
        QTRY_VERIFY(!widget);
    }

    void restacks_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<double>("expected");
        QTest::newRow("Bring Forward") << 0 << 1.5;
        QTest::newRow("Bring Forward, on top") << 2 << 2.0;
        QTest::newRow("Send Backward") << 2 << 0.5;
        QTest::newRow("Send Backward, at the bottom") << 0 << 0.0;
        QTest::newRow("Bring to Front") << 0 << 3.0;
        QTest::newRow("Send to Back") << 2 << -1.0;
    }
    void restacks()
    {
        QFETCH(int, index);
        Canvas canvas;
        QList<DashboardItem*> items;
        for (int i = 0; i < 3; ++i) {
            items.append(canvas.add("AnalogGauge", QRectF(200 * i, 0, 150, 150)));
            items.last()->setZValue(i);
        }
        canvas.setDesignMode(true);
        pick(canvas, QPointF(200 * index + 50, 50),
             QString::fromLatin1(QTest::currentDataTag()).section(',', 0, 0));
        QTEST(items[index]->zValue(), "expected");
    }
};

QTEST_MAIN(TestDashboardItem)
#include "tst_dashboarditem.moc"
