#include "windows/desktop/OpenExcelWindow.h"

#include "windows/widgets/Controls.h"
#include "windows/widgets/QtText.h"

#include <QVBoxLayout>

namespace ombrix {

OpenExcelWindow::OpenExcelWindow(QWidget* parent)
    : QWidget(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint),
      m_Message(new ValueLabel(QStringLiteral("lblMessage"), tr("What is being done"), this)) {
    Named(this, QStringLiteral("frmOpenExcel"), tr("Excel interface"));
    setWindowTitle(tr("Excel interface"));
    auto* layout = new QVBoxLayout(this);
    constexpr int margin = 24;
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->addWidget(MakeCaption(tr("Please Wait..."), this));
    layout->addWidget(m_Message);
    constexpr int leastWidth = 320;
    setMinimumWidth(leastWidth);
}

void OpenExcelWindow::Show(const std::string& message) {
    m_Message->ShowValue(ToQt(message));
    show();
    raise();
}

} // namespace ombrix
