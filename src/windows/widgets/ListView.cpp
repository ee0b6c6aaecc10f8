#include "windows/widgets/ListView.h"

#include <QHeaderView>
#include <QTreeView>

namespace ombrix {

void AutoSizeColumns(QAbstractItemView& list) {
    auto* report = qobject_cast<QTreeView*>(&list);
    if (report == nullptr)
        return;
    // All entries count, not only those that show.
    constexpr int everyEntry = -1;
    report->header()->setResizeContentsPrecision(everyEntry);
    const bool painted = report->updatesEnabled();
    report->setUpdatesEnabled(false);
    for (int column = 0; column < report->header()->count(); ++column)
        report->resizeColumnToContents(column);
    report->setUpdatesEnabled(painted);
}

} // namespace ombrix
