#pragma once

#include <QObject>
#include <QString>

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
    /// While the mode is changing, notices and messages for a time wait until the new mode has been shown;
    /// the last notice comes before the last message.
    void setModeChanging(bool changing);
    /// Back to the mode, if a notice is what is shown.
    void dropNotice();

private:
    void onMessageChanged(const QString& text);
    void wait(const QString& text, int milliseconds);
    void showWaiting();

    QStatusBar* m_bar;
    QString m_mode;
    QString m_notice;
    bool m_modeChanging = false;
    QString m_waiting;
    int m_waitingMs = 0; ///< 0 for a notice
};
