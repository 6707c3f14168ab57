#include "app/ProjectIntroDialog.h"

#include <QDialogButtonBox>
#include <QFontMetrics>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <utility>

namespace {

constexpr int kMinimumWidth = 720;
constexpr int kInitialWidth = 760;
constexpr int kIntroWidth = 680;
constexpr int kGridWidth = 520;
constexpr int kMargin = 24;

} // namespace

ProjectIntroDialog::ProjectIntroDialog(QWidget* parent)
    : QDialog(parent)
{
    setWindowTitle(tr("Select a Project"));
    setMinimumWidth(kMinimumWidth);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    layout->setSpacing(kMargin / 2);
    setupTexts(layout);
    setupGrid(layout);
    layout->addStretch(1);
    setupButtons(layout);
    resize(kInitialWidth, sizeHint().height());
}

void ProjectIntroDialog::setupTexts(QVBoxLayout* layout)
{
    auto* heading = new QLabel(tr("<h2>Welcome to Sigvane</h2>"), this);
    heading->setTextFormat(Qt::RichText);
    heading->setAlignment(Qt::AlignCenter);
    layout->addWidget(heading);

    auto* intro = new QLabel(tr("<p>Sigvane organizes work by <b>project folders</b></p>"
                                "<p style='margin-top:8px'>Please select a folder that contains a "
                                "<code>dashboard_signals.def</code> file.</p>"),
                             this);
    intro->setTextFormat(Qt::RichText);
    intro->setWordWrap(true);
    // Not only at most: a wrapped rich text would otherwise get its narrowest width and lose its last lines.
    intro->setFixedWidth(kIntroWidth);
    intro->setAlignment(Qt::AlignCenter);
    layout->addWidget(intro, 0, Qt::AlignHCenter);
}

void ProjectIntroDialog::setupGrid(QVBoxLayout* layout)
{
    const std::pair<QString, QString> rows[] = {
        {tr("Project folder:"),
         tr("Contains your <code>dashboard_signals.def</code>, recordings, and layouts.")},
        {tr("Recordings:"), tr("Saved under <code>recordings/</code> inside your project.")},
        {tr("Layouts:"), tr("Saved under <code>layouts/</code> inside your project.")},
    };
    auto* box = new QWidget(this);
    box->setFixedWidth(kGridWidth);
    auto* grid = new QGridLayout(box);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(kMargin / 2);
    grid->setColumnStretch(1, 1);
    int row = 0;
    for (const auto& [name, explanation] : rows) {
        auto* nameLabel = new QLabel(name, box);
        auto* explanationLabel = new QLabel(explanation, box);
        explanationLabel->setTextFormat(Qt::RichText);
        explanationLabel->setWordWrap(true);
        grid->addWidget(nameLabel, row, 0, Qt::AlignTop | Qt::AlignLeft);
        grid->addWidget(explanationLabel, row, 1, Qt::AlignTop);
        grid->setRowMinimumHeight(row, fontMetrics().lineSpacing());
        ++row;
    }
    layout->addWidget(box, 0, Qt::AlignHCenter);
}

void ProjectIntroDialog::setupButtons(QVBoxLayout* layout)
{
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Open | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Open)->setDefault(true);
    buttons->button(QDialogButtonBox::Open)->setToolTip(tr("Choose the project folder"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
}

bool showProjectIntro(QWidget* parent)
{
    ProjectIntroDialog dialog(parent);
    return dialog.exec() != QDialog::Accepted;
}
