// What holds for every control of the windows: names for screen readers, reach by keyboard, and
// texts that are not cut on the smallest screen the program is made for.
#include "mainwindow/WindowBench.h"

#include <QAction>
#include <QRadioButton>

#include <set>

namespace ombrix {
namespace {

/// 1366 × 768 less a desktop's panel.
constexpr QSize SmallestScreen(1366, 728);

bool IsOperated(const QWidget* widget) {
    return widget->inherits("QAbstractButton") || widget->inherits("QAbstractSlider") ||
           widget->inherits("QLineEdit") || widget->inherits("QTabBar") ||
           widget->inherits("QListWidget");
}

/// Parts that the toolkit puts into its own controls: arrows of tab bars, bars of lists.
bool BelongsToToolkit(const QWidget* widget) {
    const QWidget* parent = widget->parentWidget();
    return widget->objectName().startsWith("qt_") || parent->objectName().startsWith("qt_") ||
           parent->inherits("QTabBar");
}

std::vector<QWidget*> ControlsOf(const QWidget& window) {
    std::vector<QWidget*> controls;
    for (QWidget* widget : window.findChildren<QWidget*>()) {
        if (!BelongsToToolkit(widget) &&
            (IsOperated(widget) || qobject_cast<QLabel*>(widget) != nullptr))
            controls.push_back(widget);
    }
    return controls;
}

std::string NameOf(const QWidget* widget) {
    return widget->metaObject()->className() + (" " + widget->objectName()).toStdString();
}

void ExpectNamesAndFocus(const QWidget& window) {
    const std::vector<QWidget*> controls = ControlsOf(window);
    ASSERT_GE(controls.size(), 15U);
    for (const QWidget* control : controls) {
        EXPECT_FALSE(control->accessibleName().isEmpty()) << NameOf(control);
        const bool focusable = (control->focusPolicy() & Qt::TabFocus) != 0;
        EXPECT_TRUE(focusable || !IsOperated(control)) << NameOf(control);
    }
}

/// A tab key does not stop at a radio button whose neighbour is chosen: the arrows go there.
bool IsTabStop(const QWidget* control) {
    const auto* radio = qobject_cast<const QRadioButton*>(control);
    return IsOperated(control) && control->isEnabled() && control->isVisible() &&
           (radio == nullptr || radio->isChecked());
}

void ExpectEveryControlReachedByTab(QWidget& window, QWidget& first) {
    window.activateWindow();
    QCoreApplication::processEvents();
    first.setFocus();
    std::set<const QWidget*> reached;
    for (QWidget* focus = QApplication::focusWidget(); reached.insert(focus).second;
         focus = QApplication::focusWidget())
        QTest::keyClick(focus, Qt::Key_Tab);
    for (const QWidget* control : ControlsOf(window))
        EXPECT_TRUE(reached.count(control) == 1 || !IsTabStop(control)) << NameOf(control);
}

bool ShowsWholeText(const QWidget& control) {
    const auto* label = qobject_cast<const QLabel*>(&control);
    if (label == nullptr && !control.inherits("QAbstractButton"))
        return true;
    if (label != nullptr && label->wordWrap())
        return label->height() >= label->heightForWidth(label->width());
    return control.width() >= control.sizeHint().width() &&
           control.height() >= control.minimumSizeHint().height();
}

void ExpectNoCutText(QWidget& window) {
    window.resize(SmallestScreen);
    QCoreApplication::processEvents();
    EXPECT_EQ(window.size(), SmallestScreen);
    for (const QWidget* control : ControlsOf(window))
        EXPECT_TRUE(!control->isVisible() || ShowsWholeText(*control)) << NameOf(control);
}

TEST(Accessibility, ControlsOfTheMainWindowHaveNamesAndAreReachedByTheTabKey) {
    WindowBench bench;
    bench.Update();
    ExpectNamesAndFocus(bench.Window);
    ExpectEveryControlReachedByTab(bench.Window, bench.Find<QWidget>("Command3"));
    EXPECT_EQ(bench.Find<QLabel>("lblDeviceInfo_3").accessibleName(), "DEV Serial: 301");
}

TEST(Accessibility, ControlsOfTheBenchToolsHaveNamesTakeTheFocusAndAreNotCut) {
    WindowBench bench("rig");
    bench.Find<QAction>("mnuUARTs").trigger();
    bench.Click("cmdRunTests");
    QTest::mouseClick(&WindowBench::FindIn<QWidget>(*WindowBench::TopLevel("frmAIBTestRigOptions"),
                                                    "cmdOption_1"),
                      Qt::LeftButton);
    QCoreApplication::processEvents();
    for (const char* name : {"frmUARTs", "frmAIBTestRig"}) {
        SCOPED_TRACE(name);
        ExpectNamesAndFocus(*WindowBench::TopLevel(name));
        ExpectNoCutText(*WindowBench::TopLevel(name));
    }
}

TEST(Accessibility, ControlsOfTheHealthCheckHaveNamesAreReachedByTheTabKeyAndAreNotCut) {
    WindowBench bench;
    bench.Click("Command3");
    QWidget& window = *WindowBench::TopLevel("frmACUHealthCheck");
    ExpectNamesAndFocus(window);
    WindowBench::TickIn(window, "chkShort");
    ExpectEveryControlReachedByTab(window, WindowBench::FindIn<QWidget>(window, "cmdStart"));
    ExpectNoCutText(window);
}

TEST(Accessibility, NoTextOfTheMainWindowIsCutOnTheSmallestScreen) {
    for (const char* name : {"acu", "pair", "fresh", "none"}) {
        SCOPED_TRACE(name);
        WindowBench bench(name);
        ExpectNoCutText(bench.Window);
    }
}

} // namespace
} // namespace ombrix
