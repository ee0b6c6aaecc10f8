#include "windows/eprom/RestoreEPROMWindow.h"

#include "board/eprom/EpromWriter.h"
#include "platform/text/Paths.h"
#include "windows/eprom/DifferenceList.h"
#include "windows/widgets/Controls.h"
#include "windows/widgets/Guarded.h"
#include "windows/widgets/QtText.h"

#include <QLabel>
#include <QPushButton>
#include <QSplitter>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace ombrix {

namespace {

/// A part of a splitter.
QWidget* MakePart(QWidget* parent) {
    auto* part = new QWidget(parent);
    auto* layout = new QVBoxLayout(part);
    layout->setContentsMargins(0, 0, 0, 0);
    return part;
}

} // namespace

RestoreEPROMWindow::RestoreEPROMWindow(Station& station, QWidget* parent)
    : QDialog(parent), AskFile(FileDialogOf(*this, QFileDialog::AcceptOpen, tr("Restore EPROM"),
                                            tr("EPROM images (*.bin);;All files (*)"))),
      m_Station(station), m_Now(EpromImage::Read(*station.CurrentAIB)),
      m_Backups(ListBackups(station.World.Files)) {
    setWindowTitle(tr("Restore EPROM"));
    Named(this, QStringLiteral("frmRestoreEPROM"), windowTitle());
    auto* parts = new QSplitter(Qt::Vertical, this);
    parts->addWidget(MakeBackups());
    parts->addWidget(MakeChanges());
    parts->handle(1)->setAccessibleName(tr("Divider between saved contents and changes"));
    parts->setChildrenCollapsible(false);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(parts, 1);
    layout->addLayout(MakeButtons());
    constexpr QSize comfortable(800, 440);
    resize(ScaledToFonts(*this, comfortable));
    connect(m_List, &QTreeWidget::currentItemChanged, this, &RestoreEPROMWindow::ShowBackup);
    ListAll();
    m_List->setFocus();
}

QWidget* RestoreEPROMWindow::MakeBackups() {
    QWidget* part = MakePart(this);
    m_List = Named(new QTreeWidget(part), QStringLiteral("lvwBackups"),
                   tr("Saved contents, newest first"));
    m_List->setHeaderLabels({tr("Unit"), tr("Saved"), tr("Before"), tr("Changed then")});
    m_List->setRootIsDecorated(false);
    m_List->setAlternatingRowColors(true);
    m_List->setUniformRowHeights(true);
    part->layout()->addWidget(m_List);
    return part;
}

QWidget* RestoreEPROMWindow::MakeChanges() {
    QWidget* part = MakePart(this);
    m_Origin = MakeCaption({}, part);
    m_Origin->setObjectName(QStringLiteral("lblOrigin"));
    QFont bold = m_Origin->font();
    bold.setBold(true);
    m_Origin->setFont(bold);
    m_Heading = MakeCaption({}, part);
    m_Heading->setObjectName(QStringLiteral("lblChanges"));
    m_Differences = new DifferenceList(tr("Restored"), part);
    for (QWidget* control : std::initializer_list<QWidget*>{m_Origin, m_Heading, m_Differences})
        part->layout()->addWidget(control);
    return part;
}

QLayout* RestoreEPROMWindow::MakeButtons() {
    auto* file = MakeButton(QStringLiteral("cmdOtherFile"), tr("Other &File…"), this);
    file->setToolTip(tr("Chooses an image that lies elsewhere."));
    m_Restore = MakeButton(QStringLiteral("cmdRestoreNow"), tr("&Restore"), this);
    m_Restore->setToolTip(tr("Writes the chosen content to the board. What the board holds now is "
                             "saved before."));
    auto* cancel = MakeButton(QStringLiteral("cmdCancelRestore"), tr("Cancel"), this);
    connect(file, &QPushButton::clicked, this, &RestoreEPROMWindow::AskForFile);
    connect(m_Restore, &QPushButton::clicked, this, &QDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    auto* row = new QHBoxLayout;
    row->addWidget(file);
    row->addStretch(1);
    row->addWidget(m_Restore);
    row->addWidget(cancel);
    return row;
}

void RestoreEPROMWindow::ListAll() {
    const std::int32_t serial = m_Station.CurrentAIB->SerialNumber();
    QTreeWidgetItem* newest = nullptr;
    for (std::size_t i = 0; i < m_Backups.size(); ++i) {
        const EpromBackup& backup = m_Backups[i];
        const QString changed = ToQt(ChangedAfter(m_Backups, i, serial, m_Now));
        auto* line = new QTreeWidgetItem(
            m_List, {QStringLiteral("ACU%1").arg(backup.Serial, 5, 10, QLatin1Char('0')),
                     ToQt(IsoText(backup.When)), ToQt(backup.Purpose), changed});
        line->setToolTip(m_List->columnCount() - 1, changed);
        if (newest == nullptr && backup.Serial == serial)
            newest = line;
    }
    // What it came to in the end can be long: the last column takes what room there is.
    for (int column = 0; column + 1 < m_List->columnCount(); ++column)
        m_List->resizeColumnToContents(column);
    m_List->setCurrentItem(newest != nullptr ? newest : m_List->topLevelItem(0));
    ShowBackup();
}

void RestoreEPROMWindow::ShowBackup() {
    const int row = m_List->indexOfTopLevelItem(m_List->currentItem());
    if (row < 0) {
        m_Origin->hide();
        ShowWrapped(*m_Heading, tr("Nothing has been saved yet."));
        m_Restore->setEnabled(false);
        return;
    }
    const EpromBackup& backup = m_Backups.at(static_cast<std::size_t>(row));
    ShowContent(backup.File, backup.Content);
}

void RestoreEPROMWindow::AskForFile() {
    AskFile(ToQt(m_Station.World.Files.RealPath(Paths::Backups).string()),
            [this](const QString& file) {
                Guarded(m_Station.World.Messages, [&] {
                    const std::filesystem::path path = file.toStdString();
                    const EpromImage content = ReadEpromFile(path);
                    m_List->setCurrentItem(nullptr);
                    ShowContent(path, content);
                });
            });
}

void RestoreEPROMWindow::ShowContent(const std::filesystem::path& file,
                                     const std::optional<EpromImage>& content) {
    m_Chosen = content;
    m_Restore->setEnabled(content.has_value());
    const QString warning = ToQt(OriginWarning(file, *m_Station.CurrentAIB));
    ShowWrapped(*m_Origin, warning);
    m_Origin->setVisible(!warning.isEmpty());
    const auto differences =
        content ? EpromDifferences(m_Now, *content) : std::vector<EpromDifference>();
    const QString heading = !content              ? tr("%1 cannot be read, or is no image.")
                            : differences.empty() ? tr("%1 holds what the EPROM holds.")
                                                  : tr("Restoring %1 changes:");
    ShowWrapped(*m_Heading, heading.arg(ToQt(file.filename().string())));
    m_Differences->Show(differences);
}

} // namespace ombrix
