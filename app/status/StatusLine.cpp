#include "app/status/StatusLine.h"

#include <QStatusBar>
#include <QTimer>

#include <utility>

StatusLine::StatusLine(QStatusBar* bar)
    : QObject(bar)
    , m_bar(bar)
{
    connect(bar, &QStatusBar::messageChanged, this, &StatusLine::onMessageChanged);
}

void StatusLine::showMode(const QString& text)
{
    m_mode = text;
    m_bar->showMessage(text, 0);
}

void StatusLine::showMessage(const QString& text, int milliseconds)
{
    if (m_modeChanging && milliseconds > 0) {
        const bool noticeWaits = !m_waiting.isEmpty() && m_waitingMs == 0;
        if (!noticeWaits)
            wait(text, milliseconds);
    } else {
        m_waiting.clear();
        m_bar->showMessage(text, milliseconds);
    }
}

void StatusLine::showNotice(const QString& text)
{
    m_notice = text;
    if (m_modeChanging)
        wait(text, 0);
    else
        showMessage(text, 0);
}

void StatusLine::wait(const QString& text, int milliseconds)
{
    m_waiting = text;
    m_waitingMs = milliseconds;
}

void StatusLine::setModeChanging(bool changing)
{
    m_modeChanging = changing;
    if (!changing && !m_waiting.isEmpty())
        QTimer::singleShot(0, this, &StatusLine::showWaiting);
}

void StatusLine::showWaiting()
{
    if (!m_modeChanging && !m_waiting.isEmpty()) // something newer may have come
        m_bar->showMessage(std::exchange(m_waiting, QString()), m_waitingMs);
}

void StatusLine::dropNotice()
{
    if (m_bar->currentMessage() == m_notice)
        m_bar->showMessage(m_mode, 0);
}

// What is shown for a time gives way to the mode again. A text longer than the bar can be read in the tool
// tip.
void StatusLine::onMessageChanged(const QString& text)
{
    m_bar->setToolTip(text);
    if (text.isEmpty())
        m_bar->showMessage(m_mode, 0);
}
