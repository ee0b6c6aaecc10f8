#include "windows/desktop/SafeEnd.h"

#include <QStyleFactory>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    // Without a window manager but where a test needs one.
    qputenv("QT_QPA_PLATFORM", qEnvironmentVariable("OMBRIX_TEST_PLATFORM", "offscreen").toUtf8());
    // Where a run asks for larger fonts, the toolkit would magnify everything with them.
    if (qEnvironmentVariableIsSet("QT_FONT_DPI"))
        qputenv("QT_ENABLE_HIGHDPI_SCALING", "0");
    ::testing::InitGoogleTest(&argc, argv);
    const ombrix::SafeApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
