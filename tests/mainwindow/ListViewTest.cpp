#include "support/modListView.h"

#include <QHeaderView>
#include <QListWidget>
#include <QTreeWidget>
#include <gtest/gtest.h>

namespace ombrix {
namespace {

class ListViewTest : public ::testing::Test {
  protected:
    ListViewTest() {
        m_List.setRootIsDecorated(false);
        m_List.setHeaderLabels({"A heading wider than its entries", "B", "C"});
        m_List.header()->setStretchLastSection(false);
        m_List.show();
    }
    int TextWidth(const QString& text) const {
        return m_List.fontMetrics().horizontalAdvance(text);
    }

    QTreeWidget m_List;
};

TEST_F(ListViewTest, ColumnsTakeTheWiderOfHeadingAndEntries) {
    const QString longEntry(60, QLatin1Char('W'));
    new QTreeWidgetItem(&m_List, {"1", longEntry, "x"});
    AutoSizeColumns(m_List);
    EXPECT_GE(m_List.columnWidth(0), TextWidth("A heading wider than its entries"));
    EXPECT_GE(m_List.columnWidth(1), TextWidth(longEntry));
    EXPECT_LT(m_List.columnWidth(2), TextWidth("WWWWWWWW"));
    EXPECT_TRUE(m_List.isVisible());
    EXPECT_TRUE(m_List.updatesEnabled());
}

TEST_F(ListViewTest, EntriesThatDoNotShowCountToo) {
    constexpr int farBelow = 3000;
    for (int line = 0; line < farBelow; ++line)
        new QTreeWidgetItem(&m_List, {"1", "x", "x"});
    const QString longEntry(40, QLatin1Char('W'));
    new QTreeWidgetItem(&m_List, {"1", longEntry, "x"});
    AutoSizeColumns(m_List);
    EXPECT_GE(m_List.columnWidth(1), TextWidth(longEntry));
}

TEST(ListView, ListOfIconsIsLeftUntouched) {
    QListWidget icons;
    icons.setViewMode(QListView::IconMode);
    icons.addItem("One");
    icons.show();
    const QRect before = icons.visualItemRect(icons.item(0));
    AutoSizeColumns(icons);
    EXPECT_TRUE(icons.isVisible());
    EXPECT_EQ(icons.visualItemRect(icons.item(0)), before);
}

} // namespace
} // namespace ombrix
