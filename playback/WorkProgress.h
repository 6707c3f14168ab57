#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QPointer>
#include <QString>

class QProgressBar;
class QProgressDialog;
class QWidget;

// Keeps the program alive during long work on the GUI thread: between two pieces of the work it lets timers
// and ports be served, and after half a second it shows how far the work is and offers to cancel it. As long
// as it shows nothing, no key and no click comes through.
class WorkProgress
{
    Q_DECLARE_TR_FUNCTIONS(WorkProgress)

public:
    WorkProgress(const QString& title, const QString& text, QWidget* parent);
    ~WorkProgress();
    WorkProgress(const WorkProgress&) = delete;
    WorkProgress& operator=(const WorkProgress&) = delete;

    /// Runs the event loop for a moment; done is 0 to 1. False once the user has cancelled.
    [[nodiscard]] bool update(double done);

private:
    void showDialog();

    QString m_title;
    QString m_text;
    QPointer<QWidget> m_parent;
    QPointer<QProgressDialog> m_dialog;
    QProgressBar* m_bar = nullptr; // lives as long as the dialog
    QElapsedTimer m_clock;
    bool m_cancelled = false;
};
