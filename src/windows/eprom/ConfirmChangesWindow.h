#pragma once

#include "board/eprom/EpromFields.h"

#include <QDialog>

#include <vector>

namespace ombrix {

/// Shows, field by field, what is about to be written to an EPROM, and asks whether it shall: Yes
/// or No, which Enter and Esc choose.
class ConfirmChangesWindow final : public QDialog {
    Q_OBJECT

  public:
    ConfirmChangesWindow(const QString& title, const QString& question,
                         const std::vector<EpromDifference>& differences, QWidget* parent);
};

} // namespace ombrix
