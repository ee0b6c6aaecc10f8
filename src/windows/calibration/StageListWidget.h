#pragma once

#include "board/procedure/Outcome.h"
#include "platform/text/Colour.h"

#include <QTreeWidget>

namespace ombrix {

/// The stages of a calibration sequence with their results (`lvwStage`). The selected line is
/// the current stage; it moves with the sequence alone, not with clicks.
class StageListWidget final : public QTreeWidget {
    Q_OBJECT

  public:
    explicit StageListWidget(QWidget* parent);

    void Add(const QString& name);
    /// Makes the first line, or the one after the current, the running stage.
    void RunNext();
    /// Gives the current stage its result.
    void Complete(End ended);
    /// Name of the current stage; empty before the first.
    QString CurrentName() const;

    /// Room for the longest sequence.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  private:
    int HeightOf(int stages) const;
    QTreeWidgetItem* Current() const;
    static void ShowResult(QTreeWidgetItem& stage, const QString& text, Colour colour);
};

} // namespace ombrix
