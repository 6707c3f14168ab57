#include "widgets/consoles/EventConsoleWidget.h"

#include <QAbstractTextDocumentLayout>
#include <QEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextEdit>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <algorithm>
#include <utility>

namespace {

constexpr int kMargin = 4;
constexpr qsizetype kMaxLineCharacters = 1000;
constexpr qsizetype kFlushCharacters = 50'000; ///< about what is laid out in a frame's time
constexpr qsizetype kUsualLineLength = 60;
constexpr int kFlushesToReplaceAll = 8;
constexpr qint64 kFrameMs = 16;
/// So that flushing takes a small part of the time, also where very many lines are kept.
constexpr qint64 kPausePerFlushTime = 4;
constexpr qint64 kMaxPauseMs = 500;

/// At most kMaxLineCharacters of the text, a cut marked by "…", no surrogate pair torn apart.
QString cut(const QString& text)
{
    if (text.size() <= kMaxLineCharacters)
        return text;
    qsizetype length = kMaxLineCharacters;
    if (text.at(length - 1).isHighSurrogate())
        --length;
    return text.left(length) + QChar(0x2026);
}

/// What a document would take for the end of a block or line, a frame or an embedded object, and other
/// control characters, become a symbol that is seen; the tabulator stays.
QChar visible(QChar c)
{
    const char16_t code = c.unicode();
    const bool control = (code < 0x20 && code != u'\t') || (code >= 0x7f && code < 0xa0);
    const bool separator = code == QChar::LineSeparator || code == QChar::ParagraphSeparator;
    const bool internal = code == QChar::ObjectReplacementCharacter || code == 0xfdd0 || code == 0xfdd1;
    return control || separator || internal ? QChar(QChar::ReplacementCharacter) : c;
}

QString visibleText(QString text)
{
    std::transform(text.begin(), text.end(), text.begin(), visible);
    return text;
}

} // namespace

EventConsoleWidget::EventConsoleWidget(const QString& emptyText, QWidget* parent)
    : WidgetWithSettings(parent)
{
    setMinimumSize(200, 100);
    setupEditor();
    m_editor->setPlaceholderText(emptyText);
    m_flushTimer.setSingleShot(true);
    m_flushTimer.setTimerType(Qt::PreciseTimer);
    connect(&m_flushTimer, &QTimer::timeout, this, &EventConsoleWidget::flush);
}

void EventConsoleWidget::setupEditor()
{
    m_editor = new QTextEdit(this);
    m_editor->setReadOnly(true);
    m_editor->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_editor->setFrameShape(QFrame::NoFrame);
    m_editor->setLineWrapMode(QTextEdit::NoWrap);
    m_editor->setUndoRedoEnabled(false);
    m_editor->setAcceptDrops(false);
    m_editor->viewport()->setAcceptDrops(false);
    m_editor->installEventFilter(this);
    m_editor->viewport()->installEventFilter(this);
    m_editor->setAccessibleName(tr("Events, one per line"));
    m_editor->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_editor, &QWidget::customContextMenuRequested, this, &EventConsoleWidget::showContextMenu);
    connect(m_editor->verticalScrollBar(), &QScrollBar::rangeChanged, this,
            &EventConsoleWidget::followNewest);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    layout->addWidget(m_editor);
}

QString EventConsoleWidget::plainText()
{
    flushAll();
    return m_editor ? m_editor->toPlainText() : QString();
}

QString EventConsoleWidget::formatTime(double tSec)
{
    return QString::number(tSec, 'f', 3) + QLatin1Char('s');
}

void EventConsoleWidget::buildConfigUI(QFormLayout* form, QWidget* parent)
{
    WidgetWithSettings::buildConfigUI(form, parent);
    // A number is taken when it is complete: on the way to 500 it is 50 for a moment.
    maxLinesEditor()->setKeyboardTracking(false);
}

// What came before is still kept by the old limit.
void EventConsoleWidget::settingsAboutToChange() { flushAll(); }

bool EventConsoleWidget::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease:
        // While text is being selected the view holds still, or nobody could select in a stream of lines.
        m_selecting = static_cast<QMouseEvent*>(event)->buttons().testFlag(Qt::LeftButton);
        break;
    case QEvent::Hide:
    case QEvent::FocusOut:
        m_selecting = false; // the release may go elsewhere
        break;
    case QEvent::Wheel:
        // With Ctrl the editor would change its font, and nothing would bring the old one back.
        if (static_cast<QWheelEvent*>(event)->modifiers().testFlag(Qt::ControlModifier)) {
            event->accept();
            return true;
        }
        break;
    default:
        break;
    }
    return WidgetWithSettings::eventFilter(watched, event);
}

void EventConsoleWidget::appendEvent(double tSec, const QString& text)
{
    if (!m_editor)
        return;
    if (m_pending.size() >= lineLimit())
        m_pending.removeFirst();
    m_pending.append({tSec, cut(text)});
    if (!m_flushTimer.isActive()) {
        const qint64 elapsed = m_sinceFlush.isValid() ? m_sinceFlush.elapsed() : m_flushPause;
        m_flushTimer.start(int(std::max<qint64>(0, m_flushPause - elapsed)));
    }
}

void EventConsoleWidget::clearEvents()
{
    m_pending.clear();
    m_flushTimer.stop();
    if (m_editor)
        m_editor->clear();
}

void EventConsoleWidget::setMaxLines(int lines)
{
    settingsAboutToChange();
    m_maxLines.set(lines);
}

void EventConsoleWidget::setAutoScroll(bool on) { m_autoScroll.set(on); }

int EventConsoleWidget::lineLimit() const { return std::clamp(m_maxLines.value(), 1, kMaxLines); }

void EventConsoleWidget::flush()
{
    m_flushTimer.stop();
    if (!m_editor || m_pending.isEmpty())
        return;
    m_sinceFlush.start();
    const int top = m_editor->verticalScrollBar()->value();
    const int left = m_editor->horizontalScrollBar()->value();

    // Two edits on purpose: joined in one edit block they would count as one change from the first line to
    // the last, and every line would be laid out anew.
    writePending();
    const double removedHeight = isFollowing() ? 0.0 : surplusHeight();
    trim();

    // Lines that left at the top must not pull the others away from under the reader's eyes.
    m_editor->verticalScrollBar()->setValue(top - qRound(removedHeight));
    m_editor->horizontalScrollBar()->setValue(left);
    followNewest();
    m_flushPause = std::clamp(kPausePerFlushTime * m_sinceFlush.elapsed(), kFrameMs, kMaxPauseMs);
    if (!m_pending.isEmpty())
        m_flushTimer.start(int(m_flushPause));
}

void EventConsoleWidget::flushAll()
{
    while (m_editor && !m_pending.isEmpty())
        flush();
}

void EventConsoleWidget::writePending()
{
    // An empty document already has the block that the first line takes.
    bool needsBlock = !m_editor->document()->isEmpty();
    QString lines;
    // In a document of very many lines every flush is slow: with small portions the console would fall
    // behind.
    const qsizetype portion = m_editor->document()->blockCount() / kFlushesToReplaceAll;
    qsizetype count = 0;
    while (count < m_pending.size() &&
           lines.size() < std::max(kFlushCharacters, portion * kUsualLineLength)) {
        const Event& event = m_pending.at(count++);
        if (std::exchange(needsBlock, true))
            lines += QChar(QChar::ParagraphSeparator);
        lines += QLatin1Char('[') + formatTime(event.tSec) + QLatin1String("] ") + visibleText(event.text);
    }
    m_pending.remove(0, count);
    insertAtEnd(lines);
}

void EventConsoleWidget::insertAtEnd(const QString& lines)
{
    QTextCursor selection = m_editor->textCursor();
    const int anchor = selection.anchor();
    const int position = selection.position();
    const bool keepSelection = m_selecting || selection.hasSelection();

    QTextCursor cursor(m_editor->document());
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(lines);

    // An end of the selection that stood at the end of the text has moved with it.
    if (keepSelection) {
        selection.setPosition(anchor);
        selection.setPosition(position, QTextCursor::KeepAnchor);
        m_editor->setTextCursor(selection);
    }
}

QTextBlock EventConsoleWidget::firstKeptLine() const
{
    const QTextDocument* document = m_editor->document();
    return document->findBlockByNumber(std::max(0, document->blockCount() - lineLimit()));
}

double EventConsoleWidget::surplusHeight() const
{
    const QTextDocument* document = m_editor->document();
    const QAbstractTextDocumentLayout* layout = document->documentLayout();
    return layout->blockBoundingRect(firstKeptLine()).top() -
           layout->blockBoundingRect(document->begin()).top();
}

void EventConsoleWidget::trim()
{
    QTextCursor cursor(m_editor->document());
    cursor.setPosition(firstKeptLine().position(), QTextCursor::KeepAnchor);
    cursor.removeSelectedText();
}

bool EventConsoleWidget::isFollowing() const { return m_autoScroll && !m_selecting; }

void EventConsoleWidget::followNewest()
{
    if (!m_editor || !isFollowing())
        return;
    QTextCursor cursor = m_editor->textCursor();
    if (!cursor.hasSelection() && !cursor.atEnd()) {
        // Showing the cursor would also scroll sideways, to the end of a long line.
        const int left = m_editor->horizontalScrollBar()->value();
        cursor.movePosition(QTextCursor::End);
        m_editor->setTextCursor(cursor);
        m_editor->horizontalScrollBar()->setValue(left);
    }
    m_editor->verticalScrollBar()->setValue(m_editor->verticalScrollBar()->maximum());
}

void EventConsoleWidget::showContextMenu(const QPoint& position)
{
    // Never with a parent, not even for a moment (as the editor's own menu has one): the child of an embedded
    // widget is drawn inside the dashboard, cut off.
    auto* menu = new QMenu;
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QAction* copy = menu->addAction(tr("&Copy"), QKeySequence::Copy, m_editor.data(), &QTextEdit::copy);
    copy->setEnabled(m_editor->textCursor().hasSelection());
    menu->addAction(tr("Select &All"), QKeySequence::SelectAll, m_editor.data(), &QTextEdit::selectAll);
    menu->popup(m_editor->viewport()->mapToGlobal(position));
}
