#include "windows/widgets/Controls.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QSlider>
#include <QTreeView>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace ombrix {

namespace {

constexpr double LeastContrast = 4.5;

double Linear(double component) {
    return component <= 0.03928 ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
}

double Luminance(const QColor& colour) {
    return 0.2126 * Linear(colour.redF()) + 0.7152 * Linear(colour.greenF()) +
           0.0722 * Linear(colour.blueF());
}

} // namespace

double Contrast(const QColor& first, const QColor& second) {
    constexpr double ambientLight = 0.05;
    const double one = Luminance(first) + ambientLight;
    const double other = Luminance(second) + ambientLight;
    return std::max(one, other) / std::min(one, other);
}

QColor ReadableColour(Colour colour, const QColor& background) {
    constexpr int middle = 128;
    constexpr int brightest = 255;
    constexpr int step = 8;
    QColor readable = ToQt(colour);
    if (background.lightness() >= middle)
        return readable;
    for (int lightness = readable.lightness();
         Contrast(readable, background) < LeastContrast && lightness < brightest;) {
        lightness = std::min(lightness + step, brightest);
        readable.setHsl(readable.hslHue(), readable.hslSaturation(), lightness);
    }
    return readable;
}

ClickableLabel::ClickableLabel(const QString& objectName, QString meaning, QWidget* parent)
    : ValueLabel(objectName, std::move(meaning), parent) {
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
}

void ClickableLabel::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && rect().contains(event->pos()))
        emit Clicked();
}

void ClickableLabel::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space || event->key() == Qt::Key_Return ||
        event->key() == Qt::Key_Enter)
        emit Clicked();
    else
        ValueLabel::keyPressEvent(event);
}

namespace {

/// A caption as it is read out: "&&" stands for one "&".
QString Spoken(QString caption) {
    return caption.replace(QStringLiteral("&&"), QStringLiteral("&"));
}

} // namespace

QString ElementName(const char* array, int index) {
    return QStringLiteral("%1_%2").arg(QLatin1String(array)).arg(index);
}

QPushButton* MakeButton(const QString& objectName, const QString& caption, QWidget* parent) {
    auto* button = Named(new QPushButton(caption, parent), objectName, Spoken(caption));
    button->setAutoDefault(false);
    return button;
}

QCheckBox* MakeCheckBox(const QString& objectName, const QString& caption, QWidget* parent) {
    return Named(new QCheckBox(caption, parent), objectName, Spoken(caption));
}

namespace {

/// Keeps a wheel from a control that has not the focus.
class WheelNeedsFocus final : public QObject {
  public:
    explicit WheelNeedsFocus(QWidget* control) : QObject(control) {}

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        const bool refuses =
            event->type() == QEvent::Wheel && !static_cast<const QWidget*>(watched)->hasFocus();
        if (refuses)
            event->ignore();
        return refuses;
    }
};

} // namespace

QSlider* MakeDemandSlider(const QString& objectName, const QString& accessibleName, int highest,
                          QWidget* parent) {
    constexpr int pageShare = 20;
    constexpr int fineShare = 1000;
    constexpr int tickShare = 10;
    auto* slider = Named(new QSlider(Qt::Vertical, parent), objectName, accessibleName);
    slider->setRange(0, highest);
    slider->setPageStep(highest / pageShare);
    slider->setSingleStep(highest / fineShare);
    slider->setTickPosition(QSlider::TicksLeft);
    slider->setTickInterval(highest / tickShare);
    // A wheel that scrolls past must not open the air: it moves the slider in use alone.
    slider->setFocusPolicy(Qt::StrongFocus);
    slider->installEventFilter(new WheelNeedsFocus(slider));
    return slider;
}

QComboBox* MakeChooser(const char* objectName, const QString& caption, QHBoxLayout& row,
                       QWidget* parent) {
    auto* chooser = Named(new QComboBox(parent), QLatin1String(objectName), caption);
    auto* label = MakeCaption(caption, parent);
    label->setBuddy(chooser);
    row.addWidget(label);
    row.addWidget(chooser);
    return chooser;
}

void SetTabOrder(std::initializer_list<QWidget*> controls) {
    for (auto next = std::next(controls.begin()); next != controls.end(); ++next)
        QWidget::setTabOrder(*std::prev(next), *next);
}

QSize ScaledToFonts(const QWidget& widget, QSize usual) {
    constexpr int usualResolution = 96;
    return usual * widget.logicalDpiX() / usualResolution;
}

QSize ScaledToScreen(const QWidget& window, QSize usual) {
    constexpr int titleBar = 40;
    constexpr QSize smallest(853, 440);
    const QSize room = window.screen()->availableGeometry().size() - QSize(0, titleBar);
    return ScaledToFonts(window, usual).boundedTo(room.expandedTo(ScaledToFonts(window, smallest)));
}

QScrollArea* MakeScrolling(QWidget* content, const QString& name, QWidget* parent) {
    auto* scroll = new QScrollArea(parent);
    scroll->setAccessibleName(name);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setFocusPolicy(Qt::NoFocus); // its content is reached by the keys, and comes into sight
    scroll->setWidget(content);
    content->setAutoFillBackground(false);
    scroll->viewport()->setAutoFillBackground(false);
    return scroll;
}

QLabel* MakeCaption(const QString& caption, QWidget* parent) {
    auto* label = new QLabel(caption, parent);
    label->setTextFormat(Qt::PlainText);
    label->setAccessibleName(caption);
    return label;
}

void ShowWrapped(QLabel& label, const QString& text) {
    constexpr int comfortable = 440;
    label.setWordWrap(true);
    label.setText(text);
    label.setAccessibleName(text);
    label.setMinimumWidth(ScaledToFonts(label, {comfortable, 0}).width());
    label.setMinimumHeight(std::max(0, label.heightForWidth(label.minimumWidth())));
}

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
