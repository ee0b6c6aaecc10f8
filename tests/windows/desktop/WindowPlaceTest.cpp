#include "windows/desktop/WindowPlace.h"

#include "support/TemporaryFolder.h"
#include "windows/desktop/KeepAbove.h"

#include <QSettings>
#include <QWidget>
#include <gtest/gtest.h>

namespace ombrix {
namespace {

TEST(WindowPlaces, AWindowOpensWhereAndAsLargeAsItWasLeft) {
    QWidget owner;
    owner.setGeometry(0, 0, 700, 500);
    owner.show();
    const TemporaryFolder folder;
    QSettings settings(QString::fromStdString(folder.Path() / "ombrix.ini"), QSettings::IniFormat);
    const WindowPlaces places(settings);
    for (const int width : {300, 417}) { // as it is made, then as it was left
        QWidget window;
        window.setObjectName("frmAnyWindow");
        window.resize(300, 200);
        KeepAbove(window, owner);
        window.show();
        EXPECT_EQ(window.width(), width);
        EXPECT_EQ(window.x() < 100, width == 417) << "else in the middle of its owner";
        window.setGeometry(31, 17, 417, 233);
        window.hide();
        window.show();
        EXPECT_EQ(window.width(), 417);
    }
    QWidget large;
    large.setObjectName("frmLarge");
    large.resize(9000, 9000);
    large.show();
    EXPECT_LT(large.height(), large.screen()->availableSize().height());
}

} // namespace
} // namespace ombrix
