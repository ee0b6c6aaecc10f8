#include "windows/main/RestoreEPROMWindow.h"

#include "windows/widgets/Controls.h"
#include "windows/widgets/QtText.h"

#include <QFileDialog>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace ombrix {

namespace {

QTreeWidget* MakeList(const std::vector<EpromDifference>& differences, QWidget* parent) {
    auto* list = Named(new QTreeWidget(parent), QStringLiteral("lvwDifferences"),
                       RestoreEPROMWindow::tr("Fields that will change"));
    list->setHeaderLabels({RestoreEPROMWindow::tr("Address"), RestoreEPROMWindow::tr("Field"),
                           RestoreEPROMWindow::tr("Now"), RestoreEPROMWindow::tr("Restored")});
    list->setRootIsDecorated(false);
    list->setAlternatingRowColors(true);
    for (const EpromDifference& difference : differences)
        new QTreeWidgetItem(list, {QString::number(difference.Address), ToQt(difference.Name),
                                   ToQt(difference.Old), ToQt(difference.New)});
    AutoSizeColumns(*list);
    return list;
}

QString ChangeHeading(const QString& fileName, bool changes) {
    return (changes ? RestoreEPROMWindow::tr("Restoring %1 changes:")
                    : RestoreEPROMWindow::tr("%1 holds what the EPROM holds."))
        .arg(fileName);
}

} // namespace

RestoreEPROMWindow::RestoreEPROMWindow(const QString& fileName, const QString& warning,
                                       const std::vector<EpromDifference>& differences,
                                       QWidget* parent)
    : QDialog(parent) {
    setWindowTitle(tr("Restore EPROM"));
    Named(this, QStringLiteral("frmRestoreEPROM"), windowTitle());
    auto* restore = MakeButton(QStringLiteral("cmdRestoreNow"), tr("Restore"), this);
    auto* cancel = MakeButton(QStringLiteral("cmdCancelRestore"), tr("Cancel"), this);
    connect(restore, &QPushButton::clicked, this, &QDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(restore);
    buttons->addWidget(cancel);
    auto* layout = new QVBoxLayout(this);
    if (!warning.isEmpty()) {
        auto* origin = MakeCaption(warning, this);
        origin->setObjectName(QStringLiteral("lblOrigin"));
        origin->setWordWrap(true);
        QFont bold = origin->font();
        bold.setBold(true);
        origin->setFont(bold);
        layout->addWidget(origin);
    }
    layout->addWidget(MakeCaption(ChangeHeading(fileName, !differences.empty()), this));
    layout->addWidget(MakeList(differences, this), 1);
    layout->addLayout(buttons);
    constexpr QSize comfortable(640, 400);
    resize(ScaledToFonts(*this, comfortable));
    cancel->setFocus();
}

std::optional<std::filesystem::path> ChooseEpromImage(const std::filesystem::path& folder,
                                                      QWidget* parent) {
    QFileDialog dialog(parent, RestoreEPROMWindow::tr("Restore EPROM"), ToQt(folder.string()),
                       RestoreEPROMWindow::tr("EPROM images (*.bin);;All files (*)"));
    dialog.setObjectName(QStringLiteral("dlgChooseImage"));
    dialog.setFileMode(QFileDialog::ExistingFile);
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return dialog.selectedFiles().constFirst().toStdString();
}

} // namespace ombrix
