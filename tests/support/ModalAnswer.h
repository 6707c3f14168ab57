#pragma once

#include <QDialog>
#include <QMessageBox>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <deque>
#include <functional>

// Answers modal dialogs while a test is inside the call that opens them: make one, queue the answers, call.
// Each dialog that comes up takes the next answer; its title and text are remembered. A dialog that comes
// up with no answer left is rejected and counted as unexpected. A progress, which comes up only where the
// machine is slow, is left alone unless an answer asks for it.
class ModalAnswer : public QObject
{
    Q_OBJECT

public:
    using Answer = std::function<void(QDialog*)>;

    ModalAnswer();

    /// Anything done to the dialog from inside its own event loop; it must close the dialog in the end.
    ModalAnswer& then(Answer answer);
    ModalAnswer& accept();
    ModalAnswer& reject();
    /// Rejects what comes up next, also a progress, whose work is cancelled by that.
    ModalAnswer& rejectOrCancel();
    /// Presses a button of a message box.
    ModalAnswer& press(QMessageBox::StandardButton button);
    /// Types a path into a file dialog and accepts it.
    ModalAnswer& chooseFile(const QString& path);

    QStringList titles() const { return m_titles; }
    /// A message box's text; empty for other dialogs.
    QStringList texts() const { return m_texts; }
    int unexpected() const { return m_unexpected; }
    bool allUsed() const { return m_answers.empty(); }

private:
    struct Queued
    {
        Answer answer;
        bool takesProgress = false;
    };
    void look();

    QTimer m_timer;
    std::deque<Queued> m_answers;
    QPointer<QDialog> m_last;
    QStringList m_titles;
    QStringList m_texts;
    int m_unexpected = 0;
};
