#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

class QStatusBar;

// The left part of the status bar: the mode, messages for a time that give way to it again, and notices that
// stay until something else is shown. The permanent fields on the right are widgets of their own.
class StatusLine : public QObject
{
    Q_OBJECT

public:
    explicit StatusLine(QStatusBar* bar);

    /// Shows the mode, and comes back to it from now on.
    void showMode(const QString& text);
    /// milliseconds of 0 keep the message until the next one.
    void showMessage(const QString& text, int milliseconds);
    void showNotice(const QString& text);
    /// While the mode is changing, the last message for a time waits until the new mode has been shown.
    void setModeChanging(bool changing);
    /// Says what could not be done at start, as a notice and on standard error, a line each.
    void reportProblems(const QStringList& problems);
    /// Back to the mode, if a notice is what is shown.
    void dropNotice();

private:
    void onMessageChanged(const QString& text);
    void showWaiting();

    QStatusBar* m_bar;
    QString m_mode;
    QString m_notice;
    bool m_modeChanging = false;
    QString m_waitingMessage;
    int m_waitingMs = 0;
};
