#include "windows/eprom/DifferenceList.h"

#include "windows/widgets/Controls.h"
#include "windows/widgets/QtText.h"

namespace ombrix {

DifferenceList::DifferenceList(const QString& after, QWidget* parent) : QTreeWidget(parent) {
    Named(this, QStringLiteral("lvwDifferences"), tr("Fields that will change"));
    setHeaderLabels({tr("Address"), tr("Field"), tr("Now"), after});
    setRootIsDecorated(false);
    setAlternatingRowColors(true);
    setUniformRowHeights(true);
}

void DifferenceList::Show(const std::vector<EpromDifference>& differences) {
    clear();
    for (const EpromDifference& difference : differences)
        new QTreeWidgetItem(this, {QString::number(difference.Address), ToQt(difference.Name),
                                   ToQt(difference.Old), ToQt(difference.New)});
    AutoSizeColumns(*this);
}

} // namespace ombrix
