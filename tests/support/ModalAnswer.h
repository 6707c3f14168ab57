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
// up with no answer left is rejected and counted as unexpected.
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
    void look();

    QTimer m_timer;
    std::deque<Answer> m_answers;
    QPointer<QDialog> m_last;
    QStringList m_titles;
    QStringList m_texts;
    int m_unexpected = 0;
};
