// What holds for every window: names for screen readers, reach by keyboard, and texts that are
// neither cut, at any scale that the environment of a run gives, nor hard to read.
#include "windows/EveryWindow.h"
#include "windows/desktop/AccessKeys.h"
#include "windows/widgets/Controls.h"

#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAccessible>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QScrollBar>
#include <QShortcut>
#include <QSlider>
#include <QTabBar>

#include <algorithm>
#include <set>

namespace ombrix {
namespace {

/// 1366 × 768 less a desktop's panel.
constexpr QSize SmallestScreen(1366, 728);

void Settle() {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
}

bool TakesTab(const QWidget* widget) {
    return (widget->focusPolicy() & Qt::TabFocus) != 0;
}

/// Parts that the toolkit puts into its own controls: arrows of tab bars, bars of lists.
bool BelongsToToolkit(const QWidget* widget) {
    const QWidget* parent = widget->parentWidget();
    const QString name = widget->objectName();
    return name.startsWith("qt_scrollarea") || name.endsWith("_ext_button") ||
           name.endsWith("icon_label") || parent->objectName().startsWith("qt_scrollarea") ||
           qobject_cast<const QTabBar*>(parent) != nullptr ||
           qobject_cast<const QAbstractItemView*>(parent) != nullptr;
}

/// What is not made of other controls, and what takes the focus.
std::vector<QWidget*> ControlsOf(const QWidget& window) {
    std::vector<QWidget*> controls;
    for (QWidget* widget : window.findChildren<QWidget*>()) {
        const bool isLeaf =
            widget->findChild<QWidget*>(QString(), Qt::FindDirectChildrenOnly) == nullptr;
        if (widget->isVisible() && !BelongsToToolkit(widget) && (isLeaf || TakesTab(widget)))
            controls.push_back(widget);
    }
    return controls;
}

std::string NameOf(const QWidget* widget) {
    return widget->metaObject()->className() + (" " + widget->objectName()).toStdString();
}

/// What is worked by hand must take the focus. A tab key does not stop at a radio button whose
/// neighbour is chosen: the arrows go there.
bool IsTabStop(const QWidget* control) {
    const auto operated = {"QAbstractButton", "QAbstractSlider", "QLineEdit", "QAbstractItemView",
                           "QTabBar"};
    const auto* radio = qobject_cast<const QRadioButton*>(control);
    return control->isEnabled() && (radio == nullptr || radio->isChecked()) &&
           (TakesTab(control) || std::any_of(operated.begin(), operated.end(),
                                             [&](auto* kind) { return control->inherits(kind); }));
}

void ExpectReach(QWidget& window, Qt::Key key) {
    std::set<const QWidget*> reached;
    for (QWidget* focus = QApplication::focusWidget();
         focus != nullptr && reached.insert(focus).second; focus = QApplication::focusWidget())
        QTest::keyClick(focus, key);
    for (const QWidget* control : ControlsOf(window))
        EXPECT_TRUE(reached.count(control) == 1 || !IsTabStop(control)) << NameOf(control);
}

void ExpectMnemonics(const QWidget& window) {
    for (const QMenu* menu : window.findChildren<QMenu*>()) {
        for (const QAction* action : menu->actions())
            EXPECT_TRUE(action->isSeparator() || action->text().contains('&'))
                << action->text().toStdString();
    }
}

bool ShowsWholeText(const QWidget& control) {
    if (const auto* field = qobject_cast<const QLineEdit*>(&control)) {
        constexpr int marginsAndCursor = 8;
        return field->fontMetrics().horizontalAdvance(field->text()) + marginsAndCursor <=
                   field->width() &&
               field->height() >= field->minimumSizeHint().height();
    }
    const auto* label = qobject_cast<const QLabel*>(&control);
    if (label == nullptr && !control.inherits("QAbstractButton"))
        return true;
    if (label != nullptr && label->wordWrap())
        return label->height() >= label->heightForWidth(label->width());
    // A text that comes from elsewhere may be cut where all of it can be had by pointing at it.
    const bool toldElsewhere = label != nullptr && label->toolTip() == label->text();
    return (toldElsewhere || control.width() >= control.sizeHint().width()) &&
           control.height() >= control.minimumSizeHint().height();
}

bool HasWayToGo(const QWidget& control) {
    constexpr int leastLines = 6;
    return qobject_cast<const QSlider*>(&control) == nullptr ||
           control.height() >= leastLines * control.fontMetrics().height();
}

/// The best contrast of anything in a picture to its corner, which is the ground.
double ContrastIn(const QImage& picture) {
    double best = 1.0;
    for (int pixel = 0; pixel < picture.width() * picture.height(); ++pixel)
        best = std::max(
            best, Contrast(picture.pixelColor(pixel % picture.width(), pixel / picture.width()),
                           picture.pixelColor(0, 0)));
    return best;
}

void ExpectReadable(QWidget& window, double leastContrast) {
    constexpr int frame = 4;
    Settle();
    for (QWidget* control : ControlsOf(window)) {
        const QString text = control->property("text").toString();
        if (text.isEmpty() || !control->isEnabled())
            continue;
        const bool hasMark = control->inherits("QCheckBox") || control->inherits("QRadioButton");
        QRect place(control->mapTo(&window, QPoint()), control->size());
        if (!control->inherits("QLabel"))
            place.adjust(hasMark ? place.height() : frame, frame, -frame, -frame);
        EXPECT_GE(ContrastIn(window.grab(place).toImage()), leastContrast)
            << NameOf(control) << " " << text.toStdString();
    }
}

class EveryWindowTest : public ::testing::TestWithParam<WindowOfProgram> {};

TEST_P(EveryWindowTest, ControlsHaveNamesForScreenReaders) {
    GetParam().Show([](QWidget& window) {
        EXPECT_FALSE(ControlsOf(window).empty());
        for (QWidget* control : ControlsOf(window)) {
            // A nameless control in a group is called like the group.
            const auto* group = qobject_cast<const QGroupBox*>(control->parentWidget());
            QString name = control->accessibleName();
            if (name.isEmpty())
                name = QAccessible::queryAccessibleInterface(control)->text(QAccessible::Name);
            EXPECT_FALSE(name.isEmpty() || (group != nullptr && name == group->title()))
                << NameOf(control);
        }
    });
}

TEST_P(EveryWindowTest, KeysReachAndMoveEveryControl) {
    GetParam().Show([](QWidget& window) {
        window.activateWindow();
        QCoreApplication::processEvents();
        if (window.focusWidget() == nullptr)
            QTest::keyClick(&window, Qt::Key_Tab);
        ExpectReach(window, Qt::Key_Tab);
        ExpectReach(window, Qt::Key_Backtab);
        ExpectMnemonics(window);
        for (auto* slider : window.findChildren<QAbstractSlider*>()) {
            if (BelongsToToolkit(slider) || !slider->isVisible() || !slider->isEnabled())
                continue;
            QTest::keyClick(slider, Qt::Key_Home);
            const int first = slider->value();
            QTest::keyClick(slider, Qt::Key_End);
            EXPECT_NE(slider->value(), first) << NameOf(slider);
        }
    });
}

TEST_P(EveryWindowTest, TabGoesThroughAPanelInReadingOrder) {
    GetParam().Show([](QWidget& window) {
        Settle();
        const QWidget* before = nullptr;
        for (QWidget* stop = window.nextInFocusChain(); stop != &window;
             stop = stop->nextInFocusChain()) {
            if (!stop->isVisible() || !TakesTab(stop) || BelongsToToolkit(stop))
                continue;
            const QRect to = stop->geometry();
            const QRect from = before != nullptr ? before->geometry() : QRect();
            const bool isNeighbour =
                before != nullptr && before->parentWidget() == stop->parentWidget();
            const bool isSameRow = to.top() < from.bottom() && from.top() < to.bottom();
            const bool isBack = isSameRow ? to.right() <= from.left()
                                          : to.bottom() <= from.top() && to.left() < from.right();
            EXPECT_FALSE(isNeighbour && isBack) << NameOf(before) << " → " << NameOf(stop);
            before = stop;
        }
    });
}

TEST_P(EveryWindowTest, NoTextIsCutOnTheSmallestScreen) {
    GetParam().Show([](QWidget& window) {
        Settle();
        for (const auto* area : window.findChildren<QAbstractScrollArea*>())
            EXPECT_EQ(area->horizontalScrollBar()->maximum(), 0) << NameOf(area);
        constexpr int usualResolution = 96;
        const QSize screen = SmallestScreen * window.logicalDpiX() / usualResolution;
        for (const QSize& size : {window.minimumSizeHint(), screen}) {
            window.resize(size);
            Settle();
            EXPECT_EQ(window.size().boundedTo(screen), window.size());
            for (const QWidget* control : ControlsOf(window))
                EXPECT_TRUE(ShowsWholeText(*control) && HasWayToGo(*control)) << NameOf(control);
        }
    });
}

/// Lies within the window and is not scrolled away.
bool IsInSight(const QWidget& window, const QWidget& control) {
    const QRect place(control.mapTo(&window, QPoint()), control.size());
    return window.rect().contains(place) &&
           control.visibleRegion().boundingRect() == control.rect();
}

TEST_P(EveryWindowTest, WhatEndsThingsStaysInSightOnAScreenOf1280By720At150Percent) {
    GetParam().Show([](QWidget& window) {
        constexpr QSize screen(853, 480 - 30); // less the window's own frame
        window.resize(window.size().boundedTo(screen));
        Settle();
        EXPECT_EQ(window.size().boundedTo(screen), window.size());
        for (const QWidget* control : ControlsOf(window)) {
            // Of a panel's tests the foot of the window has a Cancel too.
            static const QRegularExpression ends("^cmd(Cancel(Procedure|Run)?|Close|StopAir)$");
            const bool endsThings =
                control->objectName().contains(ends) ||
                qobject_cast<const QDialogButtonBox*>(control->parentWidget()) != nullptr;
            EXPECT_TRUE(!endsThings || IsInSight(window, *control)) << NameOf(control);
            EXPECT_TRUE(ShowsWholeText(*control)) << NameOf(control);
        }
    });
}

/// The keys that act at once: those that captions mark, and those that are given to buttons.
QStringList KeysOf(const QWidget& window) {
    QStringList keys;
    for (const QMenu* menu : window.findChildren<QMenu*>(QString(), Qt::FindDirectChildrenOnly))
        keys << QKeySequence::mnemonic(menu->title()).toString();
    for (const QAction* menu : window.findChildren<QAction*>(QString(), Qt::FindDirectChildrenOnly))
        keys << QKeySequence::mnemonic(menu->text()).toString();
    for (const QAbstractButton* button : window.findChildren<QAbstractButton*>()) {
        keys << QKeySequence::mnemonic(button->text()).toString();
        for (const QShortcut* key : button->findChildren<QShortcut*>())
            keys << key->key().toString();
    }
    keys.removeAll(QString());
    return keys;
}

TEST_P(EveryWindowTest, ButtonsHaveKeysOfTheirOwnAndTellWhatTheyDo) {
    const AccessKeys keys;
    GetParam().Show([](QWidget& window) {
        QStringList taken = KeysOf(window);
        EXPECT_EQ(taken.removeDuplicates(), 0) << taken.join(' ').toStdString();
        for (const QWidget* control : ControlsOf(window)) {
            if (!IsTabStop(control) || control->objectName().isEmpty())
                continue;
            const auto* button = qobject_cast<const QPushButton*>(control);
            EXPECT_TRUE(button == nullptr || button->findChild<QShortcut*>() != nullptr ||
                        button->toolTip().contains("Esc)") ||
                        !QKeySequence::mnemonic(button->text()).isEmpty())
                << NameOf(control);
            const bool acts = button != nullptr || control->inherits("QAbstractSlider");
            EXPECT_TRUE(!acts || !control->toolTip().isEmpty()) << NameOf(control);
        }
    });
}

TEST_P(EveryWindowTest, TextsAreReadableWhenTheDesktopTurnsDark) {
    GetParam().Show([](QWidget& window) {
        const QPalette light = QApplication::palette();
        constexpr double leastForGivenColours = 3.0; // red is red where the ground is light
        ExpectReadable(window, leastForGivenColours);
        QApplication::setPalette(QPalette(QColor(56, 60, 66), QColor(42, 45, 50)));
        constexpr double least = 4.5;
        ExpectReadable(window, least);
        QApplication::setPalette(light);
    });
}

TEST(AccessKeys, PressTheButtonWhoseToolTipNamesThem) {
    const AccessKeys keys;
    QWidget window;
    QPushButton first("Go", &window);
    QPushButton second("Go", &window);
    int pressed = 0;
    QObject::connect(&second, &QPushButton::clicked, [&pressed] { ++pressed; });
    window.show();
    window.activateWindow();
    QCoreApplication::processEvents();
    EXPECT_EQ(first.toolTip() + second.toolTip(), "Alt+GAlt+O");
    for (const bool enabled : {true, false}) {
        second.setEnabled(enabled);
        QTest::keyClick(&window, Qt::Key_O, Qt::AltModifier);
        EXPECT_EQ(pressed, 1);
    }
}

INSTANTIATE_TEST_SUITE_P(Accessibility, EveryWindowTest, ::testing::ValuesIn(EveryWindow()),
                         [](const auto& instance) { return std::string(instance.param.Name); });

} // namespace
} // namespace ombrix
