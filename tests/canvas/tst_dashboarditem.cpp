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

// A canvas with one item, in design mode.
struct Designed : Canvas
{
    static constexpr QPointF kCorner{345, 345}; ///< on the handle

    Designed() { setDesignMode(true); }
    DashboardItem* item = add("MessagesConsole", QRectF(100, 100, 250, 250));
};

// The item's console, with more lines than it can show; the window is active.
struct Console : Designed
{
    explicit Console(bool designMode)
    {
        view.activateWindow();
        if (!QTest::qWaitForWindowActive(&view)) // without the focus no widget's menu opens
            qFatal("the view does not become active");
        editor->setPlainText(u"line\n"_s.repeated(100));
        setDesignMode(designMode);
    }
    int scrolled() const { return editor->verticalScrollBar()->value(); }

    QTextEdit* editor = item->widget()->findChild<QTextEdit*>();
};

using Ending = void (*)(Designed&);

class TestDashboardItem : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dragsOnTheGridHoweverManyMovesAreHandledAtOnce()
    {
        Designed canvas;
        canvas.press({200, 200});
        canvas.move({207, 208}); // and nothing is painted before the next
        canvas.move({214, 215});
        QCOMPARE(canvas.item->pos(), QPointF(110, 120)); // halves round away from zero
        canvas.release({214, 215});
    }

    void resizesOnTheGrid()
    {
        Designed canvas;
        canvas.drag(Designed::kCorner, {421, 383});
        QCOMPARE(canvas.item->sceneBoundingRect(), QRectF(100, 100, 330, 290));
    }

    void middleClickDoesNotEndTheGesture()
    {
        Designed canvas;
        QWidget* viewport = canvas.view.viewport();
        const QPoint at = canvas.at({200, 200});
        canvas.press({200, 200});
        QTest::mousePress(viewport, Qt::MiddleButton, {}, at);
        // QTest's own release would say that the left button is up, too.
        QMouseEvent release(QEvent::MouseButtonRelease, at, viewport->mapToGlobal(at), Qt::MiddleButton,
                            Qt::LeftButton, {});
        QCoreApplication::sendEvent(viewport, &release);
        canvas.move({233, 247});
        QCOMPARE(canvas.item->pos(), QPointF(130, 150));
        canvas.release({233, 247});
    }

    void overrideCursorIsRestoredWhateverEndsTheDrag_data()
    {
        QTest::addColumn<Ending>("end");
        QTest::newRow("mode change") << Ending([](Designed& canvas) { canvas.setDesignMode(false); });
        QTest::newRow("its menu") << Ending([](Designed& canvas) { pick(canvas, {200, 200}); });
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

    void widgetGetsTheMouseInRunModesOnly_data()
    {
        QTest::addColumn<bool>("designMode");
        QTest::newRow("design") << true;
        QTest::newRow("run") << false;
    }
    void widgetGetsTheMouseInRunModesOnly()
    {
        QFETCH(bool, designMode);
        Console canvas(designMode);
        const int before = canvas.scrolled();
        canvas.wheel({200, 150}, -240);
        canvas.drag({120, 120}, {150, 120});
        QCOMPARE(canvas.scrolled() > before, !designMode);
        QCOMPARE(canvas.editor->textCursor().hasSelection(), !designMode);
        QCOMPARE(canvas.item->pos(), designMode ? QPointF(130, 100) : QPointF(100, 100));
    }

    void menuOfAWidgetOpensWholeAndAtTheMouse()
    {
        Console canvas(false);
        canvas.drag({120, 120}, {150, 120});
        canvas.contextMenu({200, 150});
        const QPointer<QWidget> menu = QApplication::activePopupWidget();
        QVERIFY(menu);
        QVERIFY(!menu->graphicsProxyWidget()); // not drawn inside the view, cut off
        QCOMPARE(menu->pos(), canvas.view.viewport()->mapToGlobal(canvas.at({200, 150})));
        QTest::keyClick(menu, Qt::Key_C);
        QCOMPARE(QApplication::clipboard()->text(), canvas.editor->textCursor().selectedText());
        QTRY_VERIFY(!menu);
    }

    void configuresFromItsMenu()
    {
        Designed canvas;
        ModalAnswer answer;
        answer.accept();
        pick(canvas, {200, 200}, u"Configure Widget..."_s);
        QCOMPARE(answer.titles(), QStringList(u"Configure Widget"_s));
    }

    void deletesFromItsMenuWhenTheAnswerIsYes_data()
    {
        QTest::addColumn<QMessageBox::StandardButton>("button");
        QTest::addColumn<int>("itemsLeft");
        QTest::newRow("No") << QMessageBox::No << 1;
        QTest::newRow("Yes") << QMessageBox::Yes << 0;
    }
    void deletesFromItsMenuWhenTheAnswerIsYes()
    {
        QFETCH(QMessageBox::StandardButton, button);
        Designed canvas;
        ModalAnswer answer;
        answer.press(button);
        pick(canvas, {200, 200}, u"Delete"_s);
        QCOMPARE(answer.titles(), QStringList(u"Delete Widget"_s));
        QCOMPARE(answer.texts(), QStringList(u"Are you sure you want to delete this widget?"_s));
        QTEST(int(canvas.scene.dashboardItems().size()), "itemsLeft");
    }

    void deletedByOthersWhileItsMenuIsOpen()
    {
        Designed canvas;
        const QPointer<DashboardWidget> widget = canvas.item->widget();
        ModalAnswer answer;
        QTimer::singleShot(0, qApp, [&canvas] {
            canvas.item->requestDelete();
            QTimer::singleShot(0, qApp, [] { answerMenu(u"Delete"_s); }); // after what that left to the loop
        });
        canvas.contextMenu({200, 200});
        QVERIFY(answer.titles().isEmpty()); // there is nothing left to ask about
        QVERIFY(widget);                    // not while its own handler runs
        QTRY_VERIFY(!widget);
    }

    void restacksFromItsMenu_data()
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
    void restacksFromItsMenu()
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
