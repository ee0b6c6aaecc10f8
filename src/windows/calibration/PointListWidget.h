#pragma once

#include "calibration/judge/PointTable.h"

#include <QTreeWidget>

namespace ombrix {

/// The points of a calibration sequence, in groups as they are measured together, each with its
/// figures, its verdict and, when it has failed, the reason (`lvwPoints`).
class PointListWidget final : public QTreeWidget {
    Q_OBJECT

  public:
    explicit PointListWidget(QWidget* parent);

    /// Begins a group below those before it.
    void Begin(const QString& title, const PointTable& table);
    /// Shows a point, from 0, of the last group.
    void Show(std::size_t point, const PointLine& line);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  private:
    void SetColumns(const PointTable& table);
    void ShowLine(QTreeWidgetItem& item, const PointLine& line) const;
    void ShowReason(QTreeWidgetItem& item, const std::string& why);
    /// How many points of a group have failed.
    static int FailuresIn(const QTreeWidgetItem& group);

    QString m_GroupTitle;
};

} // namespace ombrix
