#pragma once

#include "board/eprom/EpromFields.h"

#include <QTreeWidget>

#include <vector>

namespace ombrix {

/// Lists fields of an EPROM that change: address, name, and what they hold before and after.
class DifferenceList final : public QTreeWidget {
    Q_OBJECT

  public:
    /// @param after heading of what they hold then
    DifferenceList(const QString& after, QWidget* parent);

    void Show(const std::vector<EpromDifference>& differences);
};

} // namespace ombrix
