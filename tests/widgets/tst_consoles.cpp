#include "support/WidgetTools.h"
#include "widgets/DashboardWidgetConfigDialog.h"
#include "widgets/ErrorConsoleWidget.h"
#include "widgets/MessagesConsoleWidget.h"

#include <QCheckBox>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QPushButton>
#include <QScrollBar>
#include <QSpinBox>
#include <QTest>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextEdit>

#include <limits>

namespace {

/// A message console on screen and its parts.
struct Shown
{
    explicit Shown(int maxLines = 500, bool autoScroll = true)
    {
        console.loadConfig({{"maxLines", maxLines}, {"autoScroll", autoScroll}});
        console.resize(300, 150);
        console.show();
    }
    void append(int count)
    {
        for (int i = 0; i < count; ++i)
            console.appendMessage(0, QStringLiteral("line %1").arg(++number));
        console.plainText();
    }
    QString topLine() const { return editor->cursorForPosition(QPoint(2, 2)).block().text(); }

    MessagesConsoleWidget console;
    QTextEdit* editor = console.findChild<QTextEdit*>();
    QScrollBar* vertical = editor->verticalScrollBar();
    int number = 0;
};

} // namespace

class TestConsoles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void formatsErrors_data();
    void formatsErrors();
    void makesOneBlockPerEvent_data();
    void makesOneBlockPerEvent();
    void cutsEnormousLine();
    void keepsNewestLines_data();
    void keepsNewestLines();
    void trimsWithNextLineOnly();
    void writesAtNextTurn();
    void takesBurst();
    void clears();
    void holdsViewWhereReaderIs();
    void followsNewestAtLeftEdge();
    void selectsAndCopiesWhileLinesArrive();
    void doesNothingWithoutEditor();
    void cancelUndoesErrorsOnly();
};

void TestConsoles::formatsErrors_data()
{
    QTest::addColumn<double>("time");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("line");
    QTest::newRow("text") << 12.5 << "Motor overheated"
                          << "[12.500s] E7 : Motor overheated";
    QTest::newRow("id for text") << 1.0 << ""
                                 << "[1.000s] E7 : E7";
    QTest::newRow("negative") << -0.25 << "x"
                              << "[-0.250s] E7 : x";
    QTest::newRow("markup") << 0.0 << "<b>&amp;</b><img src=x>"
                            << "[0.000s] E7 : <b>&amp;</b><img src=x>";
    QTest::newRow("NaN") << std::numeric_limits<double>::quiet_NaN() << "x"
                         << "[nans] E7 : x";
}

void TestConsoles::formatsErrors()
{
    QFETCH(double, time);
    QFETCH(QString, text);
    ErrorConsoleWidget console;
    console.appendError(time, "E7", text);
    QTEST(console.plainText(), "line");
}

void TestConsoles::makesOneBlockPerEvent_data()
{
    QTest::addColumn<int>("code");
    for (const int code : {0x00, 0x0a, 0x0b, 0x0d, 0x1b, 0x85, 0x2028, 0x2029, 0xfdd0, 0xfdd1, 0xfffc})
        QTest::addRow("U+%04X", code) << code;
}

void TestConsoles::makesOneBlockPerEvent()
{
    QFETCH(int, code);
    Shown shown;
    const QChar c(static_cast<char16_t>(code));
    shown.console.appendMessage(0, QString("a") + c + "\tb" + c);
    shown.console.appendMessage(1, QString(c));
    shown.console.plainText();
    const QTextDocument* document = shown.editor->document();
    QCOMPARE(document->blockCount(), 2);
    const QChar sign(QChar::ReplacementCharacter);
    QCOMPARE(document->firstBlock().text(), QString("[0.000s] a") + sign + "\tb" + sign);
    QCOMPARE(document->lastBlock().text(), QString("[1.000s] ") + sign);
}

void TestConsoles::cutsEnormousLine()
{
    Shown shown;
    shown.console.appendMessage(0, QString(3999, 'x') + QString::fromUtf8("😀") + QString(1'000'000, 'y'));
    QCOMPARE(shown.console.plainText(), "[0.000s] " + QString(3999, 'x') + QChar(0x2026));
}

void TestConsoles::keepsNewestLines_data()
{
    QTest::addColumn<double>("maxLines");
    QTest::addColumn<int>("first");
    QTest::newRow("fifty") << 50.0 << 11;
    QTest::newRow("exactly") << 60.0 << 1;
    QTest::newRow("zero") << 0.0 << 60;
    QTest::newRow("negative") << -5.0 << 60;
    QTest::newRow("huge") << 1e300 << 1;
}

void TestConsoles::keepsNewestLines()
{
    QFETCH(double, maxLines);
    QFETCH(int, first);
    for (const int flushEvery : {1, 7, 1000}) {
        MessagesConsoleWidget console;
        console.loadConfig({{"maxLines", maxLines}});
        QStringList expected;
        for (int i = 1; i <= 60; ++i) {
            console.appendMessage(i, "m");
            if (i >= first)
                expected += QStringLiteral("[%1.000s] m").arg(i);
            if (i % flushEvery == 0)
                console.plainText();
        }
        QCOMPARE(console.plainText().split('\n'), expected);
    }
}

void TestConsoles::trimsWithNextLineOnly()
{
    Shown shown;
    shown.append(10);
    shown.console.appendMessage(0, "waiting");
    shown.console.loadConfig({{"maxLines", 3}});
    QCOMPARE(shown.console.plainText().count('\n'), 10);
    shown.append(1);
    QCOMPARE(shown.console.plainText().count('\n'), 2);
}

void TestConsoles::writesAtNextTurn()
{
    Shown shown;
    QCoreApplication::processEvents();
    shown.console.appendMessage(0, "a");
    QCoreApplication::processEvents();
    QCOMPARE(shown.editor->toPlainText(), QString("[0.000s] a"));
    shown.console.appendMessage(1, "b");
    QTRY_COMPARE(shown.editor->toPlainText(), QString("[0.000s] a\n[1.000s] b"));
}

void TestConsoles::takesBurst()
{
    Shown shown;
    QElapsedTimer timer;
    timer.start();
    shown.append(100'000);
    QVERIFY2(timer.elapsed() < 3000, qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(shown.editor->document()->blockCount(), 500);
    QCOMPARE(shown.editor->document()->lastBlock().text(), QString("[0.000s] line 100000"));
}

void TestConsoles::clears()
{
    ErrorConsoleWidget console;
    console.appendError(0, "E1", "old");
    console.plainText();
    console.appendError(0, "E2", "waiting");
    console.clearErrors();
    QCOMPARE(console.plainText(), QString());
    console.appendError(0, "E3", "new");
    QCOMPARE(console.plainText(), QString("[0.000s] E3 : new"));
}

void TestConsoles::holdsViewWhereReaderIs()
{
    Shown shown(100, false);
    shown.append(100);
    QCOMPARE(shown.vertical->value(), 0);
    shown.vertical->setValue(shown.vertical->maximum() / 2);
    const QString read = shown.topLine();
    const QImage before = picture(*shown.editor->viewport());
    shown.append(7); // seven leave at the top
    QCOMPARE(shown.topLine(), read);
    QCOMPARE(picture(*shown.editor->viewport()), before);
    shown.append(200); // what was read has gone
    QCOMPARE(shown.vertical->value(), 0);
    QCOMPARE(shown.topLine(), QString("[0.000s] line 208"));
}

void TestConsoles::followsNewestAtLeftEdge()
{
    Shown shown(100);
    shown.append(150);
    QCOMPARE(shown.vertical->value(), shown.vertical->maximum());
    QVERIFY(shown.vertical->maximum() > 0);
    shown.vertical->setValue(0);
    shown.console.appendMessage(0, QString(500, 'x'));
    shown.append(1);
    QCOMPARE(shown.vertical->value(), shown.vertical->maximum());
    QVERIFY(shown.editor->horizontalScrollBar()->maximum() > 0);
    QCOMPARE(shown.editor->horizontalScrollBar()->value(), 0);
    shown.editor->horizontalScrollBar()->setValue(40); // the user's own
    shown.append(1);
    QCOMPARE(shown.editor->horizontalScrollBar()->value(), 40);
    shown.console.resize(300, 110);
    QCOMPARE(shown.vertical->value(), shown.vertical->maximum());
}

void TestConsoles::selectsAndCopiesWhileLinesArrive()
{
    Shown shown;
    shown.append(100);
    QWidget* viewport = shown.editor->viewport();
    const QString marked = shown.topLine();
    const int held = shown.vertical->value();
    QTest::mousePress(viewport, Qt::LeftButton, {}, QPoint(1, 4));
    shown.append(5);
    QCOMPARE(shown.vertical->value(), held);
    QTest::mouseMove(viewport, QPoint(290, 4));
    QTest::mouseRelease(viewport, Qt::LeftButton, {}, QPoint(290, 4));
    shown.append(5);
    QCOMPARE(shown.vertical->value(), shown.vertical->maximum());
    QTest::keyClick(shown.editor, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(), marked);
    QTest::keyClick(shown.editor, Qt::Key_X);
    QCOMPARE(shown.console.plainText().count('\n'), 109);
    QVERIFY(!shown.editor->acceptDrops() && !viewport->acceptDrops());
}

void TestConsoles::doesNothingWithoutEditor()
{
    Shown shown;
    shown.console.appendMessage(0, "waiting");
    delete shown.editor;
    shown.console.appendMessage(1, "late");
    QCOMPARE(shown.console.plainText(), QString());
    shown.console.clearMessages();
    shown.console.loadConfig({{"maxLines", 60}});
    QCOMPARE(shown.console.maxLines(), 60);
}

void TestConsoles::cancelUndoesErrorsOnly()
{
    ErrorConsoleWidget errors;
    MessagesConsoleWidget messages;
    for (EventConsoleWidget* console :
         {static_cast<EventConsoleWidget*>(&errors), static_cast<EventConsoleWidget*>(&messages)}) {
        const bool live = console == &messages;
        for (const auto button : {QDialogButtonBox::Cancel, QDialogButtonBox::Ok}) {
            console->loadConfig({{"maxLines", 500}, {"autoScroll", true}});
            DashboardWidgetConfigDialog dialog(console);
            dialog.show();
            dialog.findChild<QSpinBox*>()->setValue(80);
            dialog.findChild<QCheckBox*>()->click();
            QCOMPARE(console->maxLines(), live ? 80 : 500);
            QTest::mouseClick(dialog.findChild<QDialogButtonBox*>()->button(button), Qt::LeftButton);
            const bool taken = live || button == QDialogButtonBox::Ok;
            QCOMPARE(console->maxLines(), taken ? 80 : 500);
            QCOMPARE(console->autoScroll(), !taken);
        }
    }
}

QTEST_MAIN(TestConsoles)
#include "tst_consoles.moc"
