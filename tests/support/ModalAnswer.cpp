#include "support/ModalAnswer.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QProgressDialog>

ModalAnswer::ModalAnswer()
{
    connect(&m_timer, &QTimer::timeout, this, &ModalAnswer::look);
    m_timer.start(5);
}

ModalAnswer& ModalAnswer::then(Answer answer)
{
    m_answers.push_back({std::move(answer)});
    return *this;
}

ModalAnswer& ModalAnswer::accept()
{
    return then([](QDialog* dialog) { dialog->accept(); });
}

ModalAnswer& ModalAnswer::reject()
{
    return then([](QDialog* dialog) { dialog->reject(); });
}

ModalAnswer& ModalAnswer::rejectOrCancel()
{
    reject();
    m_answers.back().takesProgress = true;
    return *this;
}

ModalAnswer& ModalAnswer::press(QMessageBox::StandardButton button)
{
    return then([button](QDialog* dialog) {
        auto* box = qobject_cast<QMessageBox*>(dialog);
        QAbstractButton* found = box ? box->button(button) : nullptr;
        if (found)
            found->click();
        else
            dialog->reject();
    });
}

ModalAnswer& ModalAnswer::chooseFile(const QString& path)
{
    return then([path](QDialog* dialog) {
        if (auto* edit = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit")))
            edit->setText(path);
        dialog->accept();
    });
}

void ModalAnswer::look()
{
    auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    if (!dialog || dialog == m_last)
        return;
    const bool takesProgress = !m_answers.empty() && m_answers.front().takesProgress;
    if (qobject_cast<QProgressDialog*>(dialog) && !takesProgress)
        return;
    m_last = dialog;
    m_titles.append(dialog->windowTitle());
    const auto* box = qobject_cast<QMessageBox*>(dialog);
    m_texts.append(box ? box->text() : QString());
    if (m_answers.empty()) {
        ++m_unexpected;
        dialog->reject();
        return;
    }
    const Answer answer = std::move(m_answers.front().answer);
    m_answers.pop_front();
    answer(dialog);
}
