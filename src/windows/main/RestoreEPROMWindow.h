#pragma once

#include "board/eprom/EpromFields.h"

#include <QDialog>

#include <filesystem>
#include <optional>
#include <vector>

namespace ombrix {

/// Shows, field by field, what restoring an EPROM will change, and asks whether it shall.
class RestoreEPROMWindow final : public QDialog {
    Q_OBJECT

  public:
    /// @param warning stands above all; empty for none
    RestoreEPROMWindow(const QString& fileName, const QString& warning,
                       const std::vector<EpromDifference>& differences, QWidget* parent);
};

/// Lets the operator choose an EPROM image; nothing when none is chosen.
/// @param folder where to begin
std::optional<std::filesystem::path> ChooseEpromImage(const std::filesystem::path& folder,
                                                      QWidget* parent);

} // namespace ombrix
