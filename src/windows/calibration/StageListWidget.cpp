#include "windows/calibration/StageListWidget.h"

#include "windows/widgets/Controls.h"

#include <QHeaderView>
#include <QStyledItemDelegate>

namespace ombrix {

namespace {

enum Column { Number, Stage, Result };

/// Of the result of a stage that has ended: whether it has passed.
constexpr int PassedRole = Qt::UserRole;

constexpr int RoomBetweenLines = 8;
constexpr int RoomBetweenColumns = 16;

constexpr Colour RunningBlue{0, 0, 255};
constexpr Colour PassedGreen{0, 255, 0};
constexpr Colour FailedLightRed{255, 128, 128};
constexpr Colour AbortedRed{255, 0, 0};

Colour FromQt(const QColor& colour) {
    return {static_cast<std::uint8_t>(colour.red()), static_cast<std::uint8_t>(colour.green()),
            static_cast<std::uint8_t>(colour.blue())};
}

/// Lines with room between them. Results show in their colours on any palette, also on the
/// selected line, whose bar would paint them over; a colour that is too pale for a light list
/// stands on a dark ground. What has ended has a sign before its result.
class StageDelegate final : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        const QSize text = QStyledItemDelegate::sizeHint(option, index);
        return {text.width() + RoomBetweenColumns, text.height() + RoomBetweenLines};
    }

  protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        const QColor base = option->palette.color(QPalette::Base);
        const QColor bar = option->palette.color(QPalette::Highlight);
        option->palette.setColor(QPalette::Highlight, Mixed(base, bar));
        option->text = SignOf(index) + option->text;
        const QVariant given = index.data(Qt::ForegroundRole);
        QColor text = option->widget->palette().color(QPalette::Text);
        if (given.isValid()) {
            text = ReadableColour(FromQt(given.value<QColor>()), base);
            constexpr double leastContrast = 3.0;
            if (Contrast(text, base) < leastContrast)
                StandOnDarkGround(*option);
        }
        option->palette.setColor(QPalette::Text, text);
        option->palette.setColor(QPalette::HighlightedText, text);
    }

  private:
    /// For those who do not see the colours apart.
    static QString SignOf(const QModelIndex& index) {
        const QVariant passed = index.data(PassedRole);
        return !passed.isValid() ? QString()
               : passed.toBool() ? QStringLiteral("✓ ")
                                 : QStringLiteral("✗ ");
    }

    static void StandOnDarkGround(QStyleOptionViewItem& option) {
        constexpr int roomBesideText = 10;
        option.backgroundBrush = QColor(32, 32, 32);
        option.state &= ~QStyle::State_Selected;
        option.rect.setWidth(option.fontMetrics.horizontalAdvance(option.text) + roomBesideText);
        option.rect.adjust(0, 1, 0, -1);
    }

    static QColor Mixed(const QColor& base, const QColor& bar) {
        constexpr int baseParts = 4;
        const auto mix = [](int first, int second) {
            return (baseParts * first + second) / (baseParts + 1);
        };
        return {mix(base.red(), bar.red()), mix(base.green(), bar.green()),
                mix(base.blue(), bar.blue())};
    }
};

} // namespace

StageListWidget::StageListWidget(QWidget* parent) : QTreeWidget(parent) {
    Named(this, QStringLiteral("lvwStage"), tr("Stages"));
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setSelectionMode(NoSelection);
    setItemDelegate(new StageDelegate(this));
    header()->setSectionsMovable(false);
}

int StageListWidget::HeightOf(int stages) const {
    constexpr int headings = 1;
    constexpr int roomForFrames = 4;
    return (stages + headings) * (fontMetrics().height() + RoomBetweenLines + roomForFrames);
}

QSize StageListWidget::sizeHint() const {
    constexpr int longestSequence = 8;
    return {QTreeWidget::sizeHint().width(), HeightOf(longestSequence)};
}

QSize StageListWidget::minimumSizeHint() const {
    constexpr int fewest = 3;
    return {QTreeWidget::minimumSizeHint().width(), HeightOf(fewest)};
}

QString StageListWidget::CurrentName() const {
    const QTreeWidgetItem* current = Current();
    return current == nullptr ? QString() : current->text(Stage);
}

void StageListWidget::Add(const QString& name) {
    if (topLevelItemCount() == 0)
        setHeaderLabels({tr("No."), tr("Stage"), tr("Result")});
    const QString number = QString::number(topLevelItemCount() + 1);
    addTopLevelItem(new QTreeWidgetItem({number, name, tr("Pending")}));
    AutoSizeColumns(*this);
}

QTreeWidgetItem* StageListWidget::Current() const {
    const QList<QTreeWidgetItem*> selected = selectedItems();
    return selected.isEmpty() ? nullptr : selected.front();
}

void StageListWidget::RunNext() {
    QTreeWidgetItem* current = Current();
    QTreeWidgetItem* next = topLevelItem(current == nullptr ? 0 : indexOfTopLevelItem(current) + 1);
    if (next == nullptr)
        return;
    selectionModel()->setCurrentIndex(indexFromItem(next), QItemSelectionModel::ClearAndSelect |
                                                               QItemSelectionModel::Rows);
    ShowResult(*next, tr("Running..."), RunningBlue);
}

void StageListWidget::Complete(End ended) {
    QTreeWidgetItem* current = Current();
    if (current == nullptr)
        return;
    const Colour colour = ended == End::Cancelled ? AbortedRed
                          : ended == End::Passed  ? PassedGreen
                                                  : FailedLightRed;
    current->setData(Result, PassedRole, ended == End::Passed);
    ShowResult(*current, tr(StageResult(ended)), colour);
}

void StageListWidget::ShowResult(QTreeWidgetItem& stage, const QString& text, Colour colour) {
    stage.setText(Result, text);
    stage.setForeground(Result, ToQt(colour));
}

} // namespace ombrix
