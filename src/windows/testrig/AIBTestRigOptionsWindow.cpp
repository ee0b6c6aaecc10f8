#include "windows/testrig/AIBTestRigOptionsWindow.h"

#include "windows/testrig/AIBTestRigWindow.h"
#include "windows/widgets/Controls.h"
#include "windows/widgets/QtText.h"

#include <QHideEvent>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

namespace ombrix {

AIBTestRigOptionsWindow::AIBTestRigOptionsWindow(AIBTestRigWindow& rig) : m_Rig(rig) {
    Named(this, QStringLiteral("frmAIBTestRigOptions"), tr("ACU Test Rig Options"));
    setWindowTitle(tr("ACU Test Rig Options"));
    setWindowModality(Qt::ApplicationModal);
    auto* layout = new QVBoxLayout(this);
    constexpr int margin = 24;
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->setSpacing(margin / 2);
    for (int job = 0; job < TestRigJob::Count; ++job) {
        auto* button =
            MakeButton(ElementName("cmdOption", job),
                       QStringLiteral("%1 - %2").arg(job + 1).arg(ToQt(TestRigJobName(job))), this);
        constexpr QSize easilyHit(300, 44);
        button->setMinimumSize(ScaledToFonts(*this, easilyHit).expandedTo(button->sizeHint()));
        button->setToolTip(tr("Opens the test rig with this job."));
        connect(button, &QPushButton::clicked, this, [this, job] { Choose(job); });
        layout->addWidget(button);
    }
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, &QWidget::close);
}

void AIBTestRigOptionsWindow::Choose(int job) {
    m_Rig.RunTest(job);
    close();
}

void AIBTestRigOptionsWindow::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    if (!isVisible()) // a minimised window is still open
        emit Closed();
}

} // namespace ombrix
