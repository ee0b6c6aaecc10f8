#include "windows/desktop/WindowPlace.h"

#include "support/TemporaryFolder.h"

#include <QSettings>
#include <QWidget>
#include <gtest/gtest.h>

namespace ombrix {
namespace {

TEST(WindowPlace, AWindowOpensAsLargeAsItWasLeft) {
    const TemporaryFolder folder;
    QSettings settings(QString::fromStdString(folder.Path() / "ombrix.ini"), QSettings::IniFormat);
    for (const int width : {300, 417}) { // as it is made, then as it was left
        QWidget window;
        window.setObjectName("frmAnyWindow");
        window.resize(300, 200);
        const WindowPlace place(window, settings);
        EXPECT_EQ(window.width(), width);
        window.resize(417, 233);
    }
}

} // namespace
} // namespace ombrix
