#pragma once

#include <QDialog>

class QVBoxLayout;

// Greets the user at start-up and says what a project folder is.
class ProjectIntroDialog : public QDialog
{
    Q_OBJECT

public:
    explicit ProjectIntroDialog(QWidget* parent = nullptr);

private:
    void setupTexts(QVBoxLayout* layout);
    void setupGrid(QVBoxLayout* layout);
    void setupButtons(QVBoxLayout* layout);
};

/// Shows the introduction and waits; true when the user did not accept it.
bool showProjectIntro(QWidget* parent);
