#include "windows/eprom/ConfirmChangesWindow.h"

#include "windows/eprom/DifferenceList.h"
#include "windows/widgets/Controls.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace ombrix {

ConfirmChangesWindow::ConfirmChangesWindow(const QString& title, const QString& question,
                                           const std::vector<EpromDifference>& differences,
                                           QWidget* parent)
    : QDialog(parent) {
    setWindowTitle(title);
    Named(this, QStringLiteral("frmConfirmChanges"), title);
    auto* asked = MakeCaption({}, this);
    asked->setObjectName(QStringLiteral("lblQuestion"));
    ShowWrapped(*asked, question);
    auto* list = new DifferenceList(tr("New"), this);
    list->Show(differences);
    auto* yes = MakeButton(QStringLiteral("cmdYes"), tr("&Yes"), this);
    auto* no = MakeButton(QStringLiteral("cmdNo"), tr("&No"), this);
    yes->setToolTip(tr("Does what is asked."));
    no->setToolTip(tr("Leaves everything as it is."));
    no->setDefault(true);
    connect(yes, &QPushButton::clicked, this, &QDialog::accept);
    connect(no, &QPushButton::clicked, this, &QDialog::reject);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(yes);
    buttons->addWidget(no);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(asked);
    layout->addWidget(list, 1);
    layout->addLayout(buttons);
    constexpr QSize comfortable(640, 360);
    resize(ScaledToFonts(*this, comfortable));
    no->setFocus();
}

} // namespace ombrix
