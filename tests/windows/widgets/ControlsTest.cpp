#include "windows/widgets/Controls.h"

#include <QHeaderView>
#include <QTreeWidget>
#include <gtest/gtest.h>

namespace ombrix {
namespace {

TEST(Controls, ColumnsTakeTheWiderOfHeadingAndEntriesThatNeedNotShow) {
    const QString heading = "A heading wider than its entries";
    const QString longEntry(60, QLatin1Char('W'));
    QTreeWidget list;
    list.setHeaderLabels({heading, "B", "C"});
    list.header()->setStretchLastSection(false);
    list.show();
    constexpr int farBelow = 3000;
    for (int line = 0; line < farBelow; ++line)
        new QTreeWidgetItem(&list, {"1", "x", "x"});
    new QTreeWidgetItem(&list, {"1", longEntry, "x"});
    AutoSizeColumns(list);
    const QFontMetrics metrics = list.fontMetrics();
    EXPECT_GE(list.columnWidth(0), metrics.horizontalAdvance(heading));
    EXPECT_GE(list.columnWidth(1), metrics.horizontalAdvance(longEntry));
    EXPECT_LT(list.columnWidth(2), metrics.horizontalAdvance("WWWWWWWW"));
    EXPECT_TRUE(list.updatesEnabled());
}

} // namespace
} // namespace ombrix
