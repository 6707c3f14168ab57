#include "support/WidgetPicture.h"
#include "widgets/consoles/MessagesConsoleWidget.h"

#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QTextEdit>

using namespace Qt::StringLiterals;

// A message console on screen and its parts.
struct Shown
{
    Shown()
    {
        console.loadConfig({{"maxLines", 100}});
        console.resize(300, 150);
        console.show();
        append(100);
    }
    void append(int count, const QString& text = u"line"_s)
    {
        while (--count >= 0)
            console.appendMessage(++number, text);
        console.plainText();
    }
    bool isAtEnd() const { return vertical->maximum() > 0 && vertical->value() == vertical->maximum(); }

    MessagesConsoleWidget console;
    QTextEdit* editor = console.findChild<QTextEdit*>();
    QWidget* viewport = editor->viewport();
    QScrollBar* vertical = editor->verticalScrollBar();
    int number = 0;
};

// What both consoles have in common.
class TestEventConsoleWidget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsWhatWouldBreakTheLineAsSymbols()
    {
        MessagesConsoleWidget console;
        console.appendMessage(1, u"\n\tb\v\r\x1b\x85\u2028\u2029\xfdd0\xfdd1\xfffc"_s);
        QCOMPARE(console.plainText(), u"[1.000s] \xfffd\tb"_s + QString(9, QChar::ReplacementCharacter));
    }

    void cutsOffLongText()
    {
        MessagesConsoleWidget console;
        console.appendMessage(1, QString(999, 'x') + u"😀"_s + QString(1'000'000, 'y'));
        QCOMPARE(console.plainText(), "[1.000s] " + QString(999, 'x') + QChar(0x2026));
    }

    void keepsNewestLines()
    {
        MessagesConsoleWidget console;
        console.loadConfig({{"maxLines", 3}});
        for (int i = 1; i <= 60; ++i) {
            console.appendMessage(i, "m");
            if (i % 7 == 0)
                console.plainText(); // some lines leave the document, some before they get there
        }
        QCOMPARE(console.plainText(), u"[58.000s] m\n[59.000s] m\n[60.000s] m"_s);
    }

    void writesBurstInPortions()
    {
        MessagesConsoleWidget console;
        for (int i = 0; i < 600; ++i)
            console.appendMessage(i, QString(1000, 'x'));
        const QTextDocument* document = console.findChild<QTextEdit*>()->document();
        QCoreApplication::processEvents();
        QCOMPARE(document->firstBlock().text().left(7), u"[100.00"_s);
        QVERIFY(document->blockCount() < 250);
        QTRY_COMPARE(document->blockCount(), 500);
    }

    void holdsViewWithoutAutoScroll()
    {
        Shown shown;
        shown.console.loadConfig({{"autoScroll", false}});
        shown.vertical->setValue(shown.vertical->maximum() / 2);
        const QImage before = picture(*shown.viewport);
        shown.append(7); // seven leave at the top
        QCOMPARE(picture(*shown.viewport), before);
    }

    void followsNewestButNotSideways()
    {
        Shown shown;
        shown.append(1, QString(500, 'x'));
        QVERIFY(shown.isAtEnd());
        QCOMPARE(shown.editor->horizontalScrollBar()->value(), 0);
    }

    void selectsWhileLinesArrive()
    {
        Shown shown;
        const QString marked = shown.editor->cursorForPosition(QPoint(2, 4)).block().text();
        QTest::mousePress(shown.viewport, Qt::LeftButton, {}, QPoint(1, 4));
        shown.append(5);
        QTest::mouseMove(shown.viewport, QPoint(290, 4));
        QTest::mouseRelease(shown.viewport, Qt::LeftButton, {}, QPoint(290, 4));
        shown.append(5);
        QVERIFY(shown.isAtEnd());
        QCOMPARE(shown.editor->textCursor().selectedText(), marked);
    }
};

QTEST_MAIN(TestEventConsoleWidget)
#include "tst_eventconsolewidget.moc"
