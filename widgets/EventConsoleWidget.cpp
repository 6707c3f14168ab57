#include "widgets/EventConsoleWidget.h"

#include "widgets/FileNumbers.h"

#include <QAbstractTextDocumentLayout>
#include <QCheckBox>
#include <QEvent>
#include <QFormLayout>
#include <QMenu>
#include <QMouseEvent>
#include <QScrollBar>
#include <QSpinBox>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextEdit>
#include <QVBoxLayout>

#include <algorithm>
#include <limits>
#include <utility>

namespace {

constexpr int kMargin = 4;
constexpr int kOfferedMinLines = 50;
constexpr int kMaxLines = 100'000;
constexpr qsizetype kMaxLineCharacters = 4000;
constexpr qint64 kFrameMs = 16;
constexpr qint64 kPausePerFlushTime =
    4; ///< a slow flush (very many lines kept) takes about a fifth of the time
constexpr qint64 kMaxPauseMs = 500;

constexpr QLatin1String kMaxLinesKey("maxLines");
constexpr QLatin1String kAutoScrollKey("autoScroll");

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
    : DashboardWidget(parent)
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
    flush();
    return m_editor ? m_editor->toPlainText() : QString();
}

QString EventConsoleWidget::formatTime(double tSec)
{
    return QString::number(tSec, 'f', 3) + QLatin1Char('s');
}

void EventConsoleWidget::loadConfig(const QJsonObject& config)
{
    using Limits = std::numeric_limits<int>;
    setMaxLines(jsonInt(config.value(kMaxLinesKey), Limits::min(), Limits::max(), m_maxLines));
    setAutoScroll(config.value(kAutoScrollKey).toBool(m_autoScroll));
}

QJsonObject EventConsoleWidget::saveConfig() const
{
    return {{kMaxLinesKey, m_maxLines}, {kAutoScrollKey, m_autoScroll}};
}

void EventConsoleWidget::buildConfigUI(QFormLayout* form, QWidget* parent)
{
    m_maxLinesEditor = new QSpinBox(parent);
    m_maxLinesEditor->setRange(kOfferedMinLines, kMaxLines);
    m_maxLinesEditor->setValue(m_maxLines);
    // A number is taken when it is complete: on the way to 500 it is 50 for a moment.
    m_maxLinesEditor->setKeyboardTracking(false);
    m_maxLinesEditor->setAccessibleName(tr("Maximum number of lines"));
    m_maxLinesEditor->setToolTip(tr("How many of the newest lines are kept"));
    form->addRow(tr("Max lines:"), m_maxLinesEditor);

    m_autoScrollEditor = new QCheckBox(tr("Auto-scroll"), parent);
    m_autoScrollEditor->setChecked(m_autoScroll);
    m_autoScrollEditor->setAccessibleName(tr("Auto-scroll"));
    m_autoScrollEditor->setToolTip(tr("Keep the newest line in sight"));
    form->addRow(m_autoScrollEditor);
}

void EventConsoleWidget::applyConfigUI()
{
    if (m_maxLinesEditor)
        setMaxLines(m_maxLinesEditor->value());
    if (m_autoScrollEditor)
        setAutoScroll(m_autoScrollEditor->isChecked());
}

bool EventConsoleWidget::eventFilter(QObject* watched, QEvent* event)
{
    // While text is being selected the view holds still, or nobody could select in a stream of lines.
    const QEvent::Type type = event->type();
    if (type == QEvent::MouseButtonPress || type == QEvent::MouseMove || type == QEvent::MouseButtonRelease)
        m_selecting = static_cast<QMouseEvent*>(event)->buttons().testFlag(Qt::LeftButton);
    return DashboardWidget::eventFilter(watched, event);
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
    flush(); // what came before is still kept by the old limit
    m_maxLines = lines;
}

void EventConsoleWidget::setAutoScroll(bool on) { m_autoScroll = on; }

QSpinBox* EventConsoleWidget::maxLinesEditor() const { return m_maxLinesEditor; }

QCheckBox* EventConsoleWidget::autoScrollEditor() const { return m_autoScrollEditor; }

int EventConsoleWidget::lineLimit() const { return std::clamp(m_maxLines, 1, kMaxLines); }

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
    const double removedHeight = trim();

    // Lines that left at the top must not pull the others away from under the reader's eyes.
    m_editor->verticalScrollBar()->setValue(top - qRound(removedHeight));
    m_editor->horizontalScrollBar()->setValue(left);
    followNewest();
    m_flushPause = std::clamp(kPausePerFlushTime * m_sinceFlush.elapsed(), kFrameMs, kMaxPauseMs);
}
void EventConsoleWidget::writePending()
{
    const QList<Event> events = std::exchange(m_pending, {});
    // An empty document already has the block that the first line takes.
    bool needsBlock = !m_editor->document()->isEmpty();
    QString lines;
    for (const Event& event : events) {
        if (std::exchange(needsBlock, true))
            lines += QChar(QChar::ParagraphSeparator);
        lines += QLatin1Char('[') + formatTime(event.tSec) + QLatin1String("] ") + visibleText(event.text);
    }
    QTextCursor cursor(m_editor->document());
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(lines);
}

/// Removes the oldest lines over the limit; returns their height in pixels when somebody has to know it.
double EventConsoleWidget::trim()
{
    const QTextDocument* document = m_editor->document();
    const int surplus = document->blockCount() - lineLimit();
    if (surplus <= 0)
        return 0.0;
    const QTextBlock firstKept = document->findBlockByNumber(surplus);
    double height = 0.0;
    if (!isFollowing()) {
        const QAbstractTextDocumentLayout* layout = document->documentLayout();
        height =
            layout->blockBoundingRect(firstKept).top() - layout->blockBoundingRect(document->begin()).top();
    }
    QTextCursor cursor(document->begin());
    cursor.setPosition(firstKept.position(), QTextCursor::KeepAnchor);
    cursor.removeSelectedText();
    return height;
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
    // Without a parent: as a child of an embedded widget it would be drawn inside the dashboard, cut off.
    QMenu* menu = m_editor->createStandardContextMenu();
    menu->setParent(nullptr, menu->windowFlags());
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(m_editor->viewport()->mapToGlobal(position));
}
